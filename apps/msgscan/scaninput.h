// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGSCAN_SCANINPUT_H
#define MSGSCAN_SCANINPUT_H

#include "auxiliary/ntripresponse.h"

#include <messagesource.h>

#include <QByteArray>
#include <QFile>
#include <QTimer>
#include <QUrl>

class QAbstractSocket;
class QSerialPort;
class QSocketNotifier;
class QTcpSocket;

/**
 * Where msgscan reads its bytes from, named as on the command line:
 *
 *   capture.rtcm3                                   a file
 *   -                                               standard input
 *   tcp://host:port                                 a TCP server
 *   ntrip://[user:password@]host[:port]/mountpoint  an NTRIP caster's mount point (port 2101)
 *   serial:///dev/ttyUSB0?baud=115200               a serial port (115200 baud by default)
 *
 * A file and standard input end by themselves (finished()). Live inputs run until closed; a
 * connection that drops after it was open is announced as a "Connection Closed" event and
 * opened again after the reconnect delay, and a failed attempt then is an "Application Error"
 * event. Failing to open the input the first time, a caster's refusal and a missing mount point
 * end the scan through failed(), with a text "what failed: why".
 *
 * Being a MessageSource, the input's events travel with the decoder's to the event log.
 */
class ScanInput : public MessageSource
{
    Q_OBJECT

public:
    enum Kind { File, StandardInput, Tcp, Ntrip, Serial };

    explicit ScanInput(QString const &text, QObject *parent = nullptr);
    ~ScanInput() override;

    /// Empty when the text names an input, else what is wrong with it (a usage error).
    QString getUsageError() const { return mUsageError; }
    Kind getKind() const { return mKind; }
    /// Whether the input runs until interrupted: a socket or a serial port.
    bool isLive() const { return mKind == Tcp || mKind == Ntrip || mKind == Serial; }
    /// The size of a file input, -1 for the others.
    qint64 getSize() const;
    quint64 getBytesRead() const { return mBytesRead; }

    void setReconnectSeconds(int seconds) { mReconnectTimer.setInterval(seconds * 1000); }

public Q_SLOTS:
    /// Starts reading; failures come through failed().
    void open();
    /// Stops reading for good.
    void close();

Q_SIGNALS:
    void dataReceived(QByteArray const &bytes);
    /// A file or standard input has ended.
    void finished();
    /// The scan cannot go on; why is "what failed: why", maybe followed by more lines.
    void failed(QString const &why);

private:
    Q_DISABLE_COPY(ScanInput)

    void parse(QString const &text);
    void openFile();
    void readFile();
    void connectSocket();
    void handleSocketConnected();
    void handleSocketData();
    void handleSocketError();
    void handleSocketClosed();
    void openSerialPort();
    void handleSerialError();
    void deliver(QByteArray const &bytes);
    /// The first failure is fatal; later ones are events, and the input is opened again.
    void failOrRetry(QString const &why);
    void handleCasterAnswer();
    QString getDescription() const;

    QString mText;
    QString mUsageError;
    Kind mKind = File;
    QUrl mUrl;
    qint32 mBaudRate = 115200;
    QFile mFile;
    QSocketNotifier *mNotifier = nullptr;
    QTcpSocket *mSocket = nullptr;
    QSerialPort *mSerialPort = nullptr;
    NtripResponse mNtripResponse;
    QTimer mReconnectTimer;
    bool mWasOpen = false;
    bool mConnected = false;
    bool mClosed = false;
    quint64 mBytesRead = 0;
};

#endif // MSGSCAN_SCANINPUT_H
