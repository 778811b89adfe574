// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"

#include "auxiliary/qtcompat.h"
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
    // Counted under the text as it arrived, before any prefix is added.
    const QString text = event.getMessage();
    // A count past the limit never changes again until clear(), so the remembered text needs
    // no look-up.
    if (mHasTextPastLimit && text == mTextPastLimit)
        return;
    // Once past the limit the count stays there, so an endless stream of one text cannot wrap
    // it around.
    int32_t &count = mRepeatCounts[text];
    if (count > getMaxRepeat() || ++count > getMaxRepeat()) {
        mTextPastLimit = text;
        mHasTextPastLimit = true;
        return;
    }
    if (count == getMaxRepeat())
        event.addNotificationOfFutureDiscarding();

    // The event is this call's own copy: it moves into the entry.
    MessageApiCompat::emplaceBack(mEntries, getTime(), std::move(event));
    // The signal's argument is a copy made before any listener runs, so a listener that
    // clears the log does not pull the entry from under the others.
    Q_EMIT newEntry(mEntries.constLast());
}

void EventLog::clear()
{
    mEntries.clear();
    mRepeatCounts.clear();
    mTextPastLimit.clear();
    mHasTextPastLimit = false;
    Q_EMIT cleared();
}
