// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3EPOCHCLOCK_H
#define MESSAGEAPI_RTCM3_RTCM3EPOCHCLOCK_H

#include "messageapirtcm3_export.h"
#include "rtcm3streamtime.h"

#include <QObject>

class Message;
class MessageSource;
class MessageStatisticsCoordinator;
class TimeSource;

/**
 * Runs a TimeSource on the stream's own time and closes the statistics' epochs, so that rates,
 * intervals and gaps are measured in receiver time, not in the time the bytes took to arrive.
 *
 *   Rtcm3EpochClock clock(&decoder, &timeSource, &coordinator);
 *
 * Every message the decoder announces goes through an Rtcm3StreamTime in the early phase, so
 * that the time source shows the message's epoch to every listener of the normal phase. An
 * epoch ends with its last observation message (Rtcm3StreamTime::isEndOfEpoch()), or, when that
 * message was lost, with the first message of a later epoch; then the coordinator (when given)
 * closes the epoch and epochClosed() is emitted.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3EpochClock : public QObject
{
    Q_OBJECT

public:
    /// decoder, timeSource and coordinator are not owned and must outlive the clock;
    /// coordinator may be null. fallbackDate gives the week until the stream gives one.
    Rtcm3EpochClock(MessageSource *decoder, TimeSource *timeSource,
                    MessageStatisticsCoordinator *coordinator = nullptr,
                    QDate fallbackDate = QDate::currentDate(), QObject *parent = nullptr);

    /// The stream time that the clock follows.
    Rtcm3StreamTime const &getStreamTime() const { return mStreamTime; }

Q_SIGNALS:
    /// The epoch at millis (ms since the GPS epoch) has ended.
    void epochClosed(quint64 millis);

private:
    void processEarly(Message const *message);
    void processLate(Message const *message);
    void closeEpoch();

    TimeSource *mTimeSource;
    MessageStatisticsCoordinator *mCoordinator;
    Rtcm3StreamTime mStreamTime;
    quint64 mOpenEpoch = 0; // 0: none open
};

#endif // MESSAGEAPI_RTCM3_RTCM3EPOCHCLOCK_H
