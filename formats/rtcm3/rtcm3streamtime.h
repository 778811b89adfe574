// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3STREAMTIME_H
#define MESSAGEAPI_RTCM3_RTCM3STREAMTIME_H

#include "messageapirtcm3_export.h"

#include <QDate>

class Message;

/**
 * The receiver time of an RTCM 3 stream, in milliseconds since the GPS epoch, as a TimeSource
 * and the statistics want it.
 *
 * Feed it every decoded message (newMessageEarly is the place, so that listeners of the same
 * message see its time). Observation messages (MSM, legacy observations) carry their epoch's
 * time of week: GPS, Galileo, QZSS, SBAS and NavIC as GPS time, BeiDou 14 s behind it, GLONASS
 * as day of week and Moscow time of day (UTC + 3 h), turned into GPS time with the leap seconds
 * of 1013 (18 s until a 1013 says otherwise). The full week comes from the stream (the date of
 * 1013, the week of a GPS, BeiDou or Galileo ephemeris) or else from the date given to the
 * constructor. A time of week that falls back by more than half a week starts the next week,
 * so the time never steps back at a week boundary.
 *
 * Rtcm3EpochClock feeds it a decoder's messages, runs a TimeSource on its time and closes the
 * statistics' epochs.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3StreamTime
{
public:
    /// One week in milliseconds.
    static constexpr quint64 weekMs = 604800000;

    /// fallbackDate (UTC) gives the week until the stream gives one.
    explicit Rtcm3StreamTime(QDate fallbackDate = QDate::currentDate());

    /// Takes what the message tells about the time; true when it carried an epoch time.
    bool processMessage(Message const *message);
    /// The time of the latest epoch; 0 before the first.
    quint64 getMillis() const { return mMillis; }
    /// Whether the week was taken from the stream rather than from the fallback date.
    bool hasWeekFromStream() const { return mWeekFromStream; }
    /// GPS-UTC in seconds, as the stream last said.
    int getLeapSeconds() const { return mLeapSeconds; }
    /// Whether the message is the last observation message of its epoch (MSM multiple message
    /// bit, legacy synchronous flag 0).
    static bool isEndOfEpoch(Message const *message);

private:
    void setWeek(qint64 week);
    /// Places the time of week (ms, GPS time) in the week that keeps the time going forward.
    void setTimeOfWeek(qint64 towMs);

    qint64 mWeek;
    bool mWeekFromStream = false;
    int mLeapSeconds = 18;
    quint64 mMillis = 0;
};

#endif // MESSAGEAPI_RTCM3_RTCM3STREAMTIME_H
