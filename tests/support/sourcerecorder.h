// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_SOURCERECORDER_H
#define MESSAGEAPI_TESTS_SOURCERECORDER_H

#include "messagesource.h"

#include <QList>
#include <QObject>
#include <QStringList>

/**
 * Records, in one list and in order, everything a source announces, so that the order across
 * the three message phases can be checked.
 */
class SourceRecorder : public QObject
{
public:
    struct Record
    {
        QString signal; ///< "early", "normal", "late", "unknown" or "event"
        void const *subject; ///< the message, or the format of an unknown block or event
        QString text; ///< the unknown block's type or the event's text
        int eventType = -1;
    };

    explicit SourceRecorder(MessageSource *source);

    QList<Record> records;
    /// The signal names of the records, in order.
    QStringList signalNames() const;
};

#endif // MESSAGEAPI_TESTS_SOURCERECORDER_H
