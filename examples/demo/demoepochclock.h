// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMOEPOCHCLOCK_H
#define MESSAGEAPI_DEMO_DEMOEPOCHCLOCK_H

#include <QObject>

class FieldInfo;
class Message;
class MessageStatisticsCoordinator;
class TimeSource;

/**
 * Drives the message flow's clock from the blocks themselves: every block carries the receiver
 * time of its epoch, and all blocks of one epoch carry the same time. Listening to the early
 * phase, the clock sets the time source before the ordinary listeners (statistics, event log)
 * see the message, and ends an epoch for the statistics whenever the stream moves on to a
 * later time.
 *
 * When an epoch is ended matters. The coordinator's closeEpoch() measures each message type
 * from its last message to the time source's time, and at the close of an epoch a type that is
 * exactly one regular interval overdue counts one missing epoch. So the epoch must be closed
 * while the clock still shows the epoch that has ended, before it is set to the new one:
 *
 *  - Closed with the old time, a type whose message was in the ended epoch has waited 0 ms,
 *    and a type that missed it has waited exactly one interval since its previous message,
 *    so the ended epoch counts as missing for it and for no one else.
 *  - Closed with the new time, every 1 Hz type would be one interval "overdue" at the very
 *    moment its on-time message of the new epoch is about to arrive: the close counts a
 *    missing epoch and opens a gap, and the message that then arrives exactly one interval
 *    after its predecessor does not take it back (a message fills the epoch it arrives in
 *    without re-measuring a gap that is exactly one interval long). Every epoch would add a
 *    false gap.
 *
 * Epochs without any block are not closed one by one; the next message of each type counts
 * them when it arrives. The last epoch is closed when the stream ends (closeLastEpoch()), on
 * the assumption that a recording ends after a complete epoch.
 */
class DemoEpochClock : public QObject
{
    Q_OBJECT

public:
    /// timeField is the blocks' time stamp (u64 milliseconds since the GPS epoch). None of the
    /// three is owned.
    DemoEpochClock(FieldInfo const *timeField, TimeSource *clock,
                   MessageStatisticsCoordinator *coordinator, QObject *parent = nullptr);
    ~DemoEpochClock() override;

    int getClosedEpochCount() const { return mClosedEpochCount; }

public Q_SLOTS:
    /// Connect to the early phase of the message source.
    void processMessageEarly(const Message *message);
    /// Ends the last epoch of the stream, if any time was seen.
    void closeLastEpoch();

private:
    Q_DISABLE_COPY(DemoEpochClock)

    void closeEpoch();

    FieldInfo const *mTimeField;
    TimeSource *mClock;
    MessageStatisticsCoordinator *mCoordinator;
    int mClosedEpochCount = 0;
};

#endif // MESSAGEAPI_DEMO_DEMOEPOCHCLOCK_H
