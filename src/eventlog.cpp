// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"

#include "auxiliary/tracing.h"
#include "messagesource.h"
#include "timesource.h"

MSGAPI_SOURCE_FILE("EVENTLOG", "src/eventlog")

namespace {
constexpr int maxRepeat = 100;
}

EventLog::EventLog(MessageSource *source, TimeSource *timeSource)
    : QObject(source)
    , mTimeSource(timeSource)
{
    MessageApiTracing::allocated(QStringLiteral("EventLog"));
    // Lets applications carry entries through queued and string-based connections.
    qRegisterMetaType<EventLog::Entry>("EventLog::Entry");
    connect(source, &MessageSource::newEvent, this, &EventLog::processEvent);
}

EventLog::~EventLog()
{
    MessageApiTracing::deallocated(QStringLiteral("EventLog"));
}

int EventLog::getMaxRepeat() const
{
    return maxRepeat;
}

QDateTime EventLog::getTime() const
{
    if (mTimeSource)
        return mTimeSource->getTime();
    return QDateTime::currentDateTime();
}

void EventLog::processEvent(MessageApiEvent event)
{
    // Counted under the text as it arrived, before any prefix is added. Once past the limit
    // the count stays there, so an endless stream of one text cannot wrap it around.
    int32_t &count = mRepeatCounts[event.getMessage()];
    if (count > getMaxRepeat())
        return;
    ++count;
    if (count > getMaxRepeat())
        return;
    if (count == getMaxRepeat())
        event.addNotificationOfFutureDiscarding();

    const Entry entry(getTime(), event);
    mEntries.append(entry);
    Q_EMIT newEntry(entry);
}

void EventLog::clear()
{
    mEntries.clear();
    mRepeatCounts.clear();
    Q_EMIT cleared();
}
