// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_WARNINGCAPTURE_H
#define MESSAGEAPI_TESTS_WARNINGCAPTURE_H

#include <QList>
#include <QStringList>
#include <QtGlobal>

/**
 * Captures Qt's message output (debug, warning, …) while it lives, instead of printing it:
 * installs a message handler and restores the previous one when destroyed. The texts are
 * kept exactly as the library wrote them, trailing blanks included.
 */
class WarningCapture
{
public:
    struct Entry
    {
        QtMsgType type;
        QString text;
    };

    WarningCapture();
    ~WarningCapture();
    Q_DISABLE_COPY(WarningCapture)

    /// The texts of the warnings (QtWarningMsg) only, in order.
    QStringList warnings() const { return textsOf(QtWarningMsg); }
    /// The texts of the debug lines (QtDebugMsg) only, in order.
    QStringList debugLines() const { return textsOf(QtDebugMsg); }
    void clear() { mEntries.clear(); }

private:
    QStringList textsOf(QtMsgType type) const;
    static void handle(QtMsgType type, QMessageLogContext const &context, QString const &text);

    QList<Entry> mEntries;
    WarningCapture *mOuter;
    QtMessageHandler mPreviousHandler;
};

#endif // MESSAGEAPI_TESTS_WARNINGCAPTURE_H
