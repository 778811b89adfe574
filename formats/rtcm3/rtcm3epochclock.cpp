// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3epochclock.h"

#include "messagesource.h"
#include "messagestatisticscoordinator.h"
#include "timesource.h"

Rtcm3EpochClock::Rtcm3EpochClock(MessageSource *decoder, TimeSource *timeSource,
                                 MessageStatisticsCoordinator *coordinator, QDate fallbackDate,
                                 QObject *parent)
    : QObject(parent)
    , mTimeSource(timeSource)
    , mCoordinator(coordinator)
    , mStreamTime(fallbackDate)
{
    connect(decoder, &MessageSource::newMessageEarly, this, &Rtcm3EpochClock::processEarly);
    connect(decoder, &MessageSource::newMessageLate, this, &Rtcm3EpochClock::processLate);
}

void Rtcm3EpochClock::processEarly(Message const *message)
{
    if (!mStreamTime.processMessage(message))
        return;
    // The last message of the open epoch was lost: the epoch ends before this one starts.
    if (mOpenEpoch != 0 && mStreamTime.getMillis() != mOpenEpoch)
        closeEpoch();
    mOpenEpoch = mStreamTime.getMillis();
    mTimeSource->setMillis(mOpenEpoch);
}

void Rtcm3EpochClock::processLate(Message const *message)
{
    if (mOpenEpoch != 0 && Rtcm3StreamTime::isEndOfEpoch(message))
        closeEpoch();
}

void Rtcm3EpochClock::closeEpoch()
{
    const quint64 millis = mOpenEpoch;
    mOpenEpoch = 0;
    if (mCoordinator)
        mCoordinator->closeEpoch();
    Q_EMIT epochClosed(millis);
}
