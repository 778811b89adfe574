// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3streamtime.h"

#include "fieldinfo.h"
#include "message.h"
#include "messageinfo.h"
#include "rtcm3dictionary.h"

namespace {

constexpr qint64 dayMs = 86400000;
constexpr qint64 weekLengthMs = qint64(Rtcm3StreamTime::weekMs);
// GPS weeks at the start of BeiDou time (2006-01-01) and of Galileo system time (1999-08-22).
constexpr qint64 beidouWeekOffset = 1356;
constexpr qint64 galileoWeekOffset = 1024;
constexpr qint64 mjdOfGpsEpoch = 44244;

/// The unsigned value of the field; -1 when the message has no such field.
qint64 valueOf(Message const *message, QString const &name)
{
    FieldInfo const *field = message->getInfo()->getFieldInfo(name);
    if (!field || field->getNumberOfValues(message) == 0)
        return -1;
    return qint64(field->getValue(message, 0).getU64());
}

/// The week nearest to the reference week that equals week modulo the modulus.
qint64 unwrapWeek(qint64 week, qint64 modulus, qint64 reference)
{
    return week + modulus * ((reference - week + modulus / 2) / modulus);
}

} // namespace

Rtcm3StreamTime::Rtcm3StreamTime(QDate fallbackDate)
    : mWeek(QDate(1980, 1, 6).daysTo(fallbackDate) / 7)
{ }

void Rtcm3StreamTime::setWeek(qint64 week)
{
    // The first week from the stream overrides whatever the fallback date suggested.
    if (!mWeekFromStream)
        mMillis = 0;
    mWeek = week;
    mWeekFromStream = true;
}

void Rtcm3StreamTime::setTimeOfWeek(qint64 towMs)
{
    qint64 time = mWeek * weekLengthMs + towMs;
    if (mMillis != 0) {
        // The time of week wraps once a week: take the week that lies nearest the last time.
        while (time < qint64(mMillis) - weekLengthMs / 2)
            time += weekLengthMs;
        while (time > qint64(mMillis) + weekLengthMs / 2)
            time -= weekLengthMs;
    }
    if (time <= 0)
        return;
    mWeek = time / weekLengthMs;
    mMillis = quint64(time);
}

bool Rtcm3StreamTime::processMessage(Message const *message)
{
    const int number = Rtcm3Dictionary::getNumber(message->getInfo());
    const qint64 referenceWeek = mWeek;
    switch (number) {
    case 1013: {
        const qint64 mjd = valueOf(message, QStringLiteral("DF051"));
        const qint64 seconds = valueOf(message, QStringLiteral("DF052"));
        mLeapSeconds = int(valueOf(message, QStringLiteral("DF054")));
        const qint64 gpsMs = (mjd - mjdOfGpsEpoch) * dayMs + (seconds + mLeapSeconds) * 1000;
        if (mjd > mjdOfGpsEpoch)
            setWeek(gpsMs / weekLengthMs);
        return false;
    }
    case 1019:
        setWeek(unwrapWeek(valueOf(message, QStringLiteral("DF076")), 1024, referenceWeek));
        return false;
    case 1042:
        setWeek(unwrapWeek(valueOf(message, QStringLiteral("DF489")) + beidouWeekOffset, 8192,
                           referenceWeek));
        return false;
    case 1045:
    case 1046:
        setWeek(unwrapWeek(valueOf(message, QStringLiteral("DF289")) + galileoWeekOffset, 4096,
                           referenceWeek));
        return false;
    default:
        break;
    }
    const bool msm = number >= 1071 && number <= 1137 && number % 10 != 0 && number % 10 <= 7;
    const int system = msm ? number / 10 * 10 : 0;
    if (number >= 1001 && number <= 1004)
        setTimeOfWeek(valueOf(message, QStringLiteral("DF004")));
    else if ((number >= 1009 && number <= 1012) || system == 1080) {
        // Moscow time of day; the day of week when MSM gives it, else the day of the last epoch.
        const qint64 dayOfWeek = system == 1080 ? valueOf(message, QStringLiteral("DF416")) : 7;
        const qint64 gpsOfDay
            = valueOf(message, QStringLiteral("DF034")) - 3 * 3600000 + mLeapSeconds * 1000;
        const qint64 day
            = dayOfWeek < 7 ? dayOfWeek : qint64(mMillis % quint64(weekLengthMs)) / dayMs;
        setTimeOfWeek(day * dayMs + gpsOfDay);
    } else if (system == 1120) {
        setTimeOfWeek(valueOf(message, QStringLiteral("DF427")) + 14000);
    } else if (system != 0) {
        // GPS, SBAS, QZSS, Galileo and NavIC: the epoch time is the third field.
        FieldInfo const *epoch = message->getInfo()->getFieldInfos().value(2);
        setTimeOfWeek(qint64(epoch->getValue(message, 0).getU64()));
    } else {
        return false;
    }
    return true;
}

bool Rtcm3StreamTime::isEndOfEpoch(Message const *message)
{
    const int number = Rtcm3Dictionary::getNumber(message->getInfo());
    if (number >= 1071 && number <= 1137)
        return valueOf(message, QStringLiteral("DF393")) == 0;
    if ((number >= 1001 && number <= 1004) || (number >= 1009 && number <= 1012))
        return valueOf(message, QStringLiteral("DF005")) == 0;
    return false;
}
