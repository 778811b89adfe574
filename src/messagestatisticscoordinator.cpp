// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagestatisticscoordinator.h"

#include "formatinfo.h"
#include "message.h"
#include "messageinfo.h"
#include "messagesource.h"
#include "messagestatistics.h"
#include "timesource.h"

#include "auxiliary/tracing.h"

#include <utility>

MSGAPI_SOURCE_FILE("MESSAGESTATISTICSCOORDINATOR", "src/messagestatisticscoordinator")

namespace {
/// The name under which known and unknown messages alike are found.
QString statisticsKey(FormatInfo const *format, QString const &messageName)
{
    return (format ? format->getName() : QString()) + QLatin1Char(' ') + messageName;
}
} // namespace

MessageStatisticsCoordinator::MessageStatisticsCoordinator(MessageSource *source,
                                                           TimeSource *timeSource, QObject *parent)
    : QObject(parent)
    , mSource(source)
    , mTimeSource(timeSource)
    , mLastMessageMillisValid(false)
    , mLastMessageMillis(0)
{
    MessageApiTracing::allocated(QStringLiteral("MessageStatisticsCoordinator"));
    if (!mSource)
        return;
    connect(mSource, &MessageSource::newMessage, this,
            &MessageStatisticsCoordinator::processNewMessage);
    connect(mSource, &MessageSource::newUnknownMessage, this,
            &MessageStatisticsCoordinator::processNewUnknownMessage);
    connect(mSource, &MessageSource::newEvent, this,
            &MessageStatisticsCoordinator::processNewEvent);
}

MessageStatisticsCoordinator::~MessageStatisticsCoordinator()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageStatisticsCoordinator"));
}

MessageStatistics *MessageStatisticsCoordinator::getMessageStatistics(MessageInfo const *info)
{
    if (MessageStatistics *existing = mStatisticsByInfo.value(info))
        return existing;
    auto *statistics = new MessageStatistics(info, mTimeSource, this);
    statistics->setGapDetectionEnabled(mGapDetectionInfos.contains(info));
    mStatisticsByInfo.insert(info, statistics);
    // Takes the name over from an unknown message of the same name, if any.
    mStatisticsByName.insert(
        statisticsKey(statistics->getFormatInfo(), statistics->getMessageName()), statistics);
    mAllStatistics.append(statistics);
    return statistics;
}

MessageStatistics *MessageStatisticsCoordinator::getMessageStatistics(FormatInfo const *format,
                                                                      QString const &messageName)
{
    const QString key = statisticsKey(format, messageName);
    if (MessageStatistics *existing = mStatisticsByName.value(key))
        return existing;
    auto *statistics = new MessageStatistics(format, messageName, mTimeSource, this);
    mStatisticsByName.insert(key, statistics);
    mAllStatistics.append(statistics);
    return statistics;
}

bool MessageStatisticsCoordinator::hasStatistics(MessageInfo const *info) const
{
    return mStatisticsByInfo.contains(info);
}

void MessageStatisticsCoordinator::enableGapDetection(MessageInfo const *info)
{
    mGapDetectionInfos.insert(info);
}

unsigned int MessageStatisticsCoordinator::getEventCount(MessageApiEvent::Type type) const
{
    return mEventCounts.value(type, 0);
}

void MessageStatisticsCoordinator::disconnectFromSource()
{
    if (mSource)
        disconnect(mSource, nullptr, this, nullptr);
}

void MessageStatisticsCoordinator::clear()
{
    // Deleting a child also takes it out of the Qt children.
    qDeleteAll(mAllStatistics);
    mStatisticsByName.clear();
    mStatisticsByInfo.clear();
    mAllStatistics.clear();
    mEventCounts.clear();
}

void MessageStatisticsCoordinator::closeEpoch()
{
    for (MessageStatistics *statistics : std::as_const(mAllStatistics))
        statistics->updateGaps(true);
}

void MessageStatisticsCoordinator::readMessageTime()
{
    mLastMessageMillisValid = mTimeSource && mTimeSource->hasValidMillis();
    mLastMessageMillis = mTimeSource ? mTimeSource->getMillis() : 0;
}

void MessageStatisticsCoordinator::processNewMessage(const Message *message)
{
    readMessageTime();
    if (message)
        getMessageStatistics(message->getInfo())->processNewMessage(message);
}

void MessageStatisticsCoordinator::processNewUnknownMessage(const FormatInfo *format, QString name)
{
    readMessageTime();
    getMessageStatistics(format, name)->processNewUnknownMessage(format, name);
}

void MessageStatisticsCoordinator::processNewEvent(MessageApiEvent event)
{
    ++mEventCounts[event.getType()];
}
