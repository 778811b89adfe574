// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demoepochclock.h"

#include "fieldinfo.h"
#include "messagestatisticscoordinator.h"
#include "timesource.h"

DemoEpochClock::DemoEpochClock(FieldInfo const *timeField, TimeSource *clock,
                               MessageStatisticsCoordinator *coordinator, QObject *parent)
    : QObject(parent)
    , mTimeField(timeField)
    , mClock(clock)
    , mCoordinator(coordinator)
{ }

DemoEpochClock::~DemoEpochClock() = default;

void DemoEpochClock::processMessageEarly(const Message *message)
{
    if (!mTimeField->isPresent(message))
        return;
    const unsigned long long time = mTimeField->getValue(message, 0).getU64();
    // The clock still shows the epoch that is ending: close it first (see the class comment).
    if (mClock->hasValidMillis() && time > mClock->getMillis())
        closeEpoch();
    mClock->setMillis(time);
}

void DemoEpochClock::closeLastEpoch()
{
    if (mClock->hasValidMillis())
        closeEpoch();
}

void DemoEpochClock::closeEpoch()
{
    mCoordinator->closeEpoch();
    ++mClosedEpochCount;
}
