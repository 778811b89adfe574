// SPDX-License-Identifier: LGPL-2.1-or-later
#include "timesource.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("TIMESOURCE", "src/timesource")

namespace {
/// From the Unix epoch (1970-01-01) to the GPS epoch (1980-01-06), both 00:00:00 UTC.
constexpr qint64 gpsEpochOffsetS = 315964800;
constexpr unsigned long long msPerS = 1000;
} // namespace

TimeSource::TimeSource(QObject *parent)
    : QObject(parent)
{
    MessageApiTracing::allocated(QStringLiteral("TimeSource"));
}

TimeSource::~TimeSource()
{
    MessageApiTracing::deallocated(QStringLiteral("TimeSource"));
}

QDateTime TimeSource::getTime()
{
    const unsigned long long millis = getMillis();
    // The fraction is deliberately not applied: the times shown to users are whole seconds,
    // and every display of this clock relies on that.
    const unsigned long long seconds = millis / msPerS;
    if (millis != 0 && mHasLastTime && seconds == mLastTimeSeconds)
        return mLastTime;

    QDateTime time;
    time.setTimeSpec(Qt::UTC);
    if (millis == 0)
        return time;
    time.setSecsSinceEpoch(qint64(seconds) + gpsEpochOffsetS);
    mLastTime = time;
    mLastTimeSeconds = seconds;
    mHasLastTime = true;
    return time;
}

bool TimeSource::hasValidMillis()
{
    return getMillis() != 0;
}

unsigned long long TimeSource::getMillis()
{
    return mMillis;
}

QString TimeSource::millisToString(unsigned long long millis)
{
    return QString::number(millis);
}
