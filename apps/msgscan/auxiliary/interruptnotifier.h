// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGSCAN_INTERRUPTNOTIFIER_H
#define MSGSCAN_INTERRUPTNOTIFIER_H

#include <QObject>

class QSocketNotifier;

/**
 * Turns SIGINT and SIGTERM into the Qt signal interrupted(), delivered by the event loop: the
 * signal handler only writes a byte to a socket pair, so that nothing else runs inside it.
 * One instance per process.
 */
class InterruptNotifier : public QObject
{
    Q_OBJECT

public:
    explicit InterruptNotifier(QObject *parent = nullptr);
    ~InterruptNotifier() override;

Q_SIGNALS:
    void interrupted();

private:
    Q_DISABLE_COPY(InterruptNotifier)

    void readSignal();

    QSocketNotifier *mNotifier = nullptr;
};

#endif // MSGSCAN_INTERRUPTNOTIFIER_H
