// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGMONITOR_MONITORSESSION_H
#define MSGMONITOR_MONITORSESSION_H

#include "scaninput.h"
#include "streamscanner.h"

#include <QDate>
#include <QHash>
#include <QObject>

class Message;
class MessageInfo;
class Rtcm3Dictionary;

/**
 * One run of the monitor over one input: the input as msgscan reads it, the scanner that runs
 * the stream through the message flow, and the latest message of each message type, kept
 * (with a reference) so that the window can show it whenever the user asks.
 */
class MonitorSession : public QObject
{
    Q_OBJECT

public:
    /// The dictionary is not owned and must outlive the session.
    MonitorSession(Rtcm3Dictionary const *dictionary, QString const &input, QDate fallbackDate,
                   int reconnectSeconds, QObject *parent = nullptr);
    ~MonitorSession() override;

    /// Empty when the input text names an input, else what is wrong with it.
    QString getUsageError() const { return mInput.getUsageError(); }
    bool isRunning() const { return mRunning; }
    StreamScanner const &getScanner() const { return mScanner; }
    ScanInput const &getInput() const { return mInput; }
    /// The latest message of the (top-level) type, or null.
    Message const *getLastMessage(MessageInfo const *info) const
    {
        return mLastMessages.value(info);
    }

public Q_SLOTS:
    void start();
    /// Stops reading; what was read stays.
    void stop();

Q_SIGNALS:
    /// A file or standard input has ended.
    void finished();
    /// The input cannot be read; why is "what failed: why".
    void failed(QString const &why);
    void runningChanged(bool running);

private:
    Q_DISABLE_COPY(MonitorSession)

    void keepMessage(Message const *message);
    void setRunning(bool running);

    ScanInput mInput;
    StreamScanner mScanner;
    QHash<MessageInfo const *, Message const *> mLastMessages;
    bool mRunning = false;
};

#endif // MSGMONITOR_MONITORSESSION_H
