// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sourcerecorder.h"

SourceRecorder::SourceRecorder(MessageSource *source)
    : QObject(source)
{
    connect(source, &MessageSource::newMessageEarly, this, [this](Message const *m) {
        records.append({ QStringLiteral("early"), m, {} });
    });
    connect(source, &MessageSource::newMessage, this, [this](Message const *m) {
        records.append({ QStringLiteral("normal"), m, {} });
    });
    connect(source, &MessageSource::newMessageLate, this, [this](Message const *m) {
        records.append({ QStringLiteral("late"), m, {} });
    });
    connect(source, &MessageSource::newUnknownMessage, this,
            [this](FormatInfo const *f, QString type) {
                records.append({ QStringLiteral("unknown"), f, type });
            });
    connect(source, &MessageSource::newEvent, this, [this](MessageApiEvent e) {
        records.append(
            { QStringLiteral("event"), e.getFormat(), e.getMessage(), int(e.getType()) });
    });
}

QStringList SourceRecorder::signalNames() const
{
    QStringList names;
    for (Record const &record : records)
        names.append(record.signal);
    return names;
}
