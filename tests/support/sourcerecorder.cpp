// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sourcerecorder.h"

SourceRecorder::SourceRecorder(MessageSource *source)
    : QObject(source)
{
    const auto phase = [this](char const *name) {
        return [this, name](Message const *m) { records.append({ QLatin1String(name), m, {} }); };
    };
    connect(source, &MessageSource::newMessageEarly, this, phase("early"));
    connect(source, &MessageSource::newMessage, this, phase("normal"));
    connect(source, &MessageSource::newMessageLate, this, phase("late"));
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
