// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagestatistics.h"

#include "formatinfo.h"
#include "message.h"
#include "messageinfo.h"
#include "messagestatisticscoordinator.h"
#include "timesource.h"

#include "auxiliary/tracing.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

MSGAPI_SOURCE_FILE("MESSAGESTATISTICS", "src/messagestatistics")

namespace {
/// How close to a whole multiple of the regular interval an epoch close must come to count the
/// epoch that has just ended, in regular intervals.
constexpr double epochCloseTolerance = 0.001;

/// Adds delta to a count that must not go below zero: a decrease larger than the count is
/// dropped as a whole.
void applyCountDelta(unsigned int &count, int delta)
{
    if (delta < 0 && -static_cast<long long>(delta) > static_cast<long long>(count))
        return;
    count += static_cast<unsigned int>(delta);
}

/// ceil(ratio) as an integer, held at the largest one for ratios beyond the 64-bit range.
unsigned long long ceilingOf(double ratio)
{
    constexpr double twoTo64 = 18446744073709551616.0;
    const double ceiling = std::ceil(ratio);
    return ceiling >= twoTo64 ? ULLONG_MAX : static_cast<unsigned long long>(ceiling);
}
} // namespace

MessageStatistics::MessageStatistics(MessageInfo const *messageInfo, TimeSource *timeSource,
                                     MessageStatisticsCoordinator *coordinator)
    : QObject(coordinator)
    , mMessageInfo(messageInfo)
    , mFormatInfo(messageInfo ? messageInfo->getFormatInfo() : nullptr)
    , mMessageName(messageInfo ? messageInfo->getName() : QString())
    , mTimeSource(timeSource)
    , mCoordinator(coordinator)
{
    MessageApiTracing::allocated(QStringLiteral("MessageStatistics"));
    initStatistics();
}

MessageStatistics::MessageStatistics(FormatInfo const *formatInfo, QString messageName,
                                     TimeSource *timeSource,
                                     MessageStatisticsCoordinator *coordinator)
    : QObject(coordinator)
    , mMessageInfo(nullptr)
    , mFormatInfo(formatInfo)
    , mMessageName(std::move(messageName))
    , mTimeSource(timeSource)
    , mCoordinator(coordinator)
{
    MessageApiTracing::allocated(QStringLiteral("MessageStatistics"));
    initStatistics();
}

MessageStatistics::~MessageStatistics()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageStatistics"));
}

void MessageStatistics::initStatistics()
{
    mCount = 0;
    mCountWithUnknownInterval = 0;
    mCountWithUnknownTime = 0;
    mLastTimeValid = false;
    mLastMillis = 0;
    mLastIntervalValid = false;
    mLastInterval = 0;
    mLastIntervalRepeatCount = 0;
    mNumberOfGaps = 0;
    mNumberOfMissingEpochs = 0;
    mMissingEpochsInOpenGap = 0;
    mHasUnstoredGaps = false;
    mRegularInterval = 0;
    mHasRegularInterval = false;
    mGapOpen = false;
    mGapDetectionEnabled = false;
}

void MessageStatistics::processNewMessage(Message const *message)
{
    if (mMessageInfo && message && message->getInfo() == mMessageInfo)
        processNewMessage();
}

void MessageStatistics::processNewUnknownMessage(FormatInfo const *format, QString messageName)
{
    if (!mMessageInfo && format == mFormatInfo && messageName == mMessageName)
        processNewMessage();
}

void MessageStatistics::processNewMessage()
{
    // This message ends any gap since the previous one.
    updateGaps(false);
    mGapOpen = false;
    mMissingEpochsInOpenGap = 0;

    ++mCount;

    const bool timeKnown = mTimeSource && mTimeSource->hasValidMillis();
    const unsigned long long now = timeKnown ? mTimeSource->getMillis() : 0;

    if (mLastTimeValid && timeKnown) {
        const long long interval = static_cast<long long>(now - mLastMillis);
        // Only the low 32 bits of the previous interval, read as unsigned, are compared with the
        // whole new one: a negative interval or one of 2^32 ms or more never repeats.
        const long long previousLow32
            = static_cast<long long>(static_cast<quint32>(static_cast<quint64>(mLastInterval)));
        if (mLastIntervalValid && interval == previousLow32)
            ++mLastIntervalRepeatCount;
        else
            mLastIntervalRepeatCount = 1;
        mLastInterval = interval;
        mLastIntervalValid = true;
        addIntervalCount(interval, 1);
    } else {
        mLastIntervalValid = false;
        mLastInterval = unknownIntervalMarker;
        mLastIntervalRepeatCount = 0;
        ++mCountWithUnknownInterval;
        if (!timeKnown)
            ++mCountWithUnknownTime;
    }

    handleIntervalPropagation(mLastInterval);

    mLastTimeValid = timeKnown;
    mLastMillis = now;

    updateRegularIntervalForGapDetection();
}

void MessageStatistics::addIntervalCount(long long interval, int delta)
{
    if (interval == unknownIntervalMarker) {
        applyCountDelta(mCountWithUnknownInterval, delta);
        return;
    }
    // The kept count stays where it is until the hash grows (an insertion may move every
    // entry, and then replaces it), but a write through it must not reach a copy of the hash
    // handed out by getIntervalCountHash(): only while the hash is ours alone.
    if (mCachedIntervalCount && interval == mCachedInterval && mIntervalCounts.isDetached()) {
        applyCountDelta(*mCachedIntervalCount, delta);
        return;
    }
    auto it = mIntervalCounts.find(interval);
    if (it != mIntervalCounts.end())
        applyCountDelta(it.value(), delta);
    else if (delta > 0)
        it = mIntervalCounts.insert(interval, static_cast<unsigned int>(delta));
    else
        return;
    mCachedInterval = interval;
    mCachedIntervalCount = &it.value();
}

void MessageStatistics::handleIntervalPropagation(long long interval)
{
    if (mRecentIntervalCount == recentIntervalCapacity) {
        for (int i = 1; i < recentIntervalCapacity; ++i)
            mRecentIntervals[i - 1] = mRecentIntervals[i];
        --mRecentIntervalCount;
    }
    mRecentIntervals[mRecentIntervalCount++] = interval;
    const int size = mRecentIntervalCount;
    if (size < 3)
        return;

    // A message whose interval was unknown takes the interval of the two that follow it when
    // those agree.
    const long long newest = mRecentIntervals[size - 1];
    const long long before = mRecentIntervals[size - 2];
    const long long beforeThat = mRecentIntervals[size - 3];
    if (newest == 0 || newest == unknownIntervalMarker || before != newest
        || beforeThat != unknownIntervalMarker)
        return;
    addIntervalCount(unknownIntervalMarker, -1);
    addIntervalCount(newest, 1);
}

void MessageStatistics::updateRegularIntervalForGapDetection()
{
    if (!mGapDetectionEnabled)
        return;

    if (mLastIntervalRepeatCount >= 2 && mLastInterval > 0) {
        if (!mHasRegularInterval) {
            mRegularInterval = mLastInterval;
            mHasRegularInterval = true;
            return;
        }
        if (mLastInterval < mRegularInterval) {
            mRegularInterval = mLastInterval;
            return;
        }
        if (mLastInterval > mRegularInterval) {
            mRegularInterval = mLastInterval;
            // The gaps of the last two new intervals were the slower rate setting in, not lost
            // messages. The totals keep them. Gaps start after the threshold
            // last millis - 2 * interval, which is below every gap when it would be negative.
            const unsigned long long reach
                = 2ULL * static_cast<unsigned long long>(mRegularInterval);
            while (!mGaps.isEmpty()
                   && (reach > mLastMillis || mGaps.last().startMillis > mLastMillis - reach))
                mGaps.removeLast();
            return;
        }
    }

    if (mLastIntervalValid && mHasRegularInterval) {
        const bool wholeMultiple = mLastInterval >= 0 && mLastInterval >= mRegularInterval
            && mLastInterval % mRegularInterval == 0;
        if (!wholeMultiple || !mLastTimeValid)
            mHasRegularInterval = false;
    } else if (!mLastTimeValid) {
        mHasRegularInterval = false;
    }
}

void MessageStatistics::updateGaps(bool epochClosed)
{
    if (!mGapDetectionEnabled || !mHasRegularInterval || !mLastTimeValid || !mTimeSource
        || !mTimeSource->hasValidMillis())
        return;

    const unsigned long long now = mTimeSource->getMillis();
    if (now <= mLastMillis)
        return;
    const unsigned long long elapsed = now - mLastMillis;
    const auto regular = static_cast<unsigned long long>(mRegularInterval);
    if (elapsed < regular || (elapsed == regular && !epochClosed))
        return;

    const double ratio = static_cast<double>(elapsed) / static_cast<double>(regular);
    const unsigned long long epochs = ceilingOf(ratio);
    unsigned long long missing = epochs - 1;
    if (epochClosed && static_cast<double>(epochs) - ratio < epochCloseTolerance)
        missing = epochs;
    const auto missing32 = static_cast<unsigned int>(missing);

    // Only the growth of an open gap is new; the gap can also shrink when time goes back.
    mNumberOfMissingEpochs = static_cast<int>(static_cast<unsigned int>(mNumberOfMissingEpochs)
                                              + missing32 - mMissingEpochsInOpenGap);
    mMissingEpochsInOpenGap = missing32;

    if (!mGapOpen) {
        ++mNumberOfGaps;
        if (mGaps.size() < maxStoredGaps)
            mGaps.append(Gap { mLastMillis + regular, missing32, regular });
        else
            mHasUnstoredGaps = true;
    } else if (!mHasUnstoredGaps && !mGaps.isEmpty()) {
        mGaps.last().missingEpochs = missing32;
    }
    mGapOpen = true;
}

bool MessageStatistics::isCurrentlyRegular() const
{
    if (!mLastIntervalValid || mLastIntervalRepeatCount < 2 || mLastInterval <= 0 || !mCoordinator
        || !mCoordinator->hasValidLastMessageMillis())
        return false;
    const unsigned long long behind = mCoordinator->getLastMessageMillis() - mLastMillis;
    return behind <= static_cast<unsigned long long>(mLastInterval);
}

QList<long long> MessageStatistics::getIntervalsSortedOnDuration() const
{
    QList<long long> intervals = mIntervalCounts.keys();
    std::sort(intervals.begin(), intervals.end());
    return intervals;
}

QList<long long> MessageStatistics::getIntervalsSortedOnFrequency(int maxCount) const
{
    QMultiHash<unsigned int, long long> intervalsByCount;
    QList<unsigned int> counts;
    for (auto it = mIntervalCounts.cbegin(); it != mIntervalCounts.cend(); ++it) {
        if (!intervalsByCount.contains(it.value()))
            counts.append(it.value());
        intervalsByCount.insert(it.value(), it.key());
    }
    std::sort(counts.begin(), counts.end());
    if (maxCount < 0)
        maxCount = mIntervalCounts.size();

    QList<long long> result;
    for (auto count = counts.crbegin(); count != counts.crend(); ++count) {
        result.append(intervalsByCount.values(*count));
        if (result.size() >= maxCount)
            break;
    }
    return result;
}

QString MessageStatistics::getIntervalString(unsigned long long millis) const
{
    if (millis > 1000 && millis % 1000 == 0)
        return tr("%1 s").arg(millis / 1000);
    const QString seconds = tr("%1 s").arg(static_cast<double>(millis) / 1000.0, 0, 'g');
    if (millis >= 1 && millis <= 1000 && 1000 % millis == 0)
        return tr("%1 Hz/").arg(1000 / millis) + seconds;
    return seconds;
}

QString MessageStatistics::getRateString(unsigned long long millis) const
{
    return tr("%1 Hz").arg(1000.0 / static_cast<double>(millis), 0, 'g');
}

QString MessageStatistics::getTimeString(unsigned long long millis) const
{
    return mTimeSource ? mTimeSource->millisToString(millis) : QString::number(millis);
}

void MessageStatistics::printStatistics() const
{
    qDebug().noquote() << "Message statistics for " << mMessageName;
    qDebug() << "  count: " << mCount;
    qDebug() << "  message intervals:";
    for (long long interval : getIntervalsSortedOnDuration()) {
        qDebug().noquote() << "    " << getIntervalString(static_cast<unsigned long long>(interval))
                           << " : " << mIntervalCounts.value(interval);
    }
    if (mCountWithUnknownInterval != 0) {
        qDebug() << "    Interval unknown: " << mCountWithUnknownInterval;
        if (mCountWithUnknownTime != 0)
            qDebug() << "       of which messages with time unknown: " << mCountWithUnknownTime;
    }
    if (mGaps.isEmpty())
        return;
    qDebug() << "  gaps:";
    for (Gap const &gap : mGaps) {
        qDebug() << "  - gap @" << gap.startMillis << "with interval" << gap.intervalMillis << "and"
                 << gap.missingEpochs << "epochs missing.";
    }
    qDebug() << "  total number of gaps:" << mNumberOfGaps;
    qDebug() << "  total number of epochs missing:" << mNumberOfMissingEpochs;
}
