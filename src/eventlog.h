// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_EVENTLOG_H
#define MESSAGEAPI_EVENTLOG_H

#include "messageapiframework_export.h"

#include "messageapievent.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <cstdint>
#include <utility>

class MessageSource;
class TimeSource;

/**
 * Keeps the events that a source announces, each stamped with the time at which it arrived.
 *
 * A stream of equal errors must not flood the log: events are counted by their text alone
 * (whatever their type), and of each text only the first getMaxRepeat() are kept. The last one
 * kept carries the prefix "[Event discarded in future:] "; later ones are dropped without a
 * signal until clear().
 *
 * The log is a child of its source and dies with it. The time source is not owned.
 */
class MESSAGEAPIFRAMEWORK_EXPORT EventLog : public QObject
{
    Q_OBJECT

public:
    /// One logged event and the time at which it was logged.
    struct Entry
    {
        Entry() = default;
        /// The event at the time.
        ///@{
        Entry(QDateTime time, MessageApiEvent const &event)
            : time(std::move(time))
            , event(event)
        { }
        Entry(QDateTime time, MessageApiEvent &&event)
            : time(std::move(time))
            , event(std::move(event))
        { }
        ///@}

        QDateTime time; ///< when the event was logged
        MessageApiEvent event; ///< what happened
    };

    /// Without a time source, entries are stamped with the computer's local time.
    EventLog(MessageSource *source, TimeSource *timeSource);
    ~EventLog() override;

    /// How many events with one text are kept: 100.
    int getMaxRepeat() const;
    /// The time source's time, or the computer's current local time when there is none.
    QDateTime getTime() const;
    /// The entries, oldest first.
    QList<Entry> getEntries() const { return mEntries; }

public Q_SLOTS:
    /// Logs the event unless its text has reached the repeat limit; emits newEntry() when
    /// logged.
    void processEvent(MessageApiEvent event);
    /// Empties the entries and the repeat counts, then emits cleared().
    void clear();

Q_SIGNALS:
    /// The entries were emptied by clear().
    void cleared();
    /// An entry was appended.
    void newEntry(EventLog::Entry entry);

private:
    Q_DISABLE_COPY(EventLog)

    QList<Entry> mEntries;
    TimeSource *mTimeSource;
    QHash<QString, int32_t> mRepeatCounts;
    /// The text most recently found past the repeat limit (valid when mHasTextPastLimit): a
    /// storm of one error text is then dropped after one comparison, without a look-up.
    QString mTextPastLimit;
    bool mHasTextPastLimit = false;
};

// Entries hold nothing that points at itself: a growing list may move them as raw memory
// instead of copying each event.
Q_DECLARE_TYPEINFO(EventLog::Entry, Q_RELOCATABLE_TYPE);
Q_DECLARE_METATYPE(EventLog::Entry)

#endif // MESSAGEAPI_EVENTLOG_H
