// SPDX-License-Identifier: LGPL-2.1-or-later
#include "jsonwriter.h"

#include "messagedump.h"
#include "streamscanner.h"

#include <fieldinfo.h>
#include <formatinfo.h>
#include <message.h>
#include <messageinfo.h>
#include <messagestatistics.h>

#include <QJsonArray>
#include <QJsonDocument>

namespace {

QJsonValue timeValue(QDateTime const &time)
{
    return time.isValid() ? QJsonValue(time.toString(Qt::ISODate)) : QJsonValue();
}

QJsonValue number(FieldInfo const *field, FieldValue const &value)
{
    if (field->isDoNotUseValue(value))
        return {};
    switch (value.getType().getBasisType()) {
    case FieldType::Char:
    case FieldType::NChar:
        return QString(QLatin1Char(value.getChar()));
    case FieldType::UnsignedInteger:
        if (!field->hasScaleFactor())
            return qint64(value.getU64());
        break;
    case FieldType::SignedInteger:
        if (!field->hasScaleFactor())
            return qint64(value.getI64());
        break;
    case FieldType::SubMessage:
    case FieldType::Invalid:
        return {};
    default:
        break;
    }
    // Rounded to the field's resolution, so that 0.0001 m steps read as such and not as the
    // nearest binary fraction's seventeen digits.
    const double scaled = value.scaled(field->getScaleFactor());
    return field->hasPrecision() ? QString::number(scaled, 'f', field->getPrecision()).toDouble()
                                 : scaled;
}

} // namespace

QJsonObject JsonWriter::report(StreamScanner const &scanner)
{
    Rtcm3Framer const &framer = scanner.getFramer();
    QJsonArray messages;
    for (MessageStatistics const *statistics : scanner.getMessageStatistics()) {
        QJsonObject intervals;
        const auto counts = statistics->getIntervalCountHash();
        for (auto it = counts.cbegin(); it != counts.cend(); ++it)
            intervals.insert(QString::number(it.key()), qint64(it.value()));
        QJsonArray gaps;
        for (MessageStatistics::Gap const &gap : statistics->getGaps())
            gaps.append(
                QJsonObject { { QStringLiteral("startMillis"), qint64(gap.startMillis) },
                              { QStringLiteral("intervalMillis"), qint64(gap.intervalMillis) },
                              { QStringLiteral("missingEpochs"), qint64(gap.missingEpochs) } });
        const long long regular = StreamScanner::getRegularInterval(statistics);
        MessageInfo const *info = statistics->getMessageInfo();
        messages.append(QJsonObject {
            { QStringLiteral("format"), statistics->getFormatInfo()->getName() },
            { QStringLiteral("message"), statistics->getMessageName() },
            { QStringLiteral("title"),
              info ? QJsonValue(info->getShortDescriptiveText()) : QJsonValue() },
            { QStringLiteral("count"), qint64(statistics->getCount()) },
            { QStringLiteral("intervals"), intervals },
            { QStringLiteral("unknownIntervals"),
              qint64(statistics->getCountWithUnknownInterval()) },
            { QStringLiteral("regularIntervalMs"),
              regular > 0 ? QJsonValue(regular) : QJsonValue() },
            { QStringLiteral("numberOfGaps"), statistics->getNumberOfGaps() },
            { QStringLiteral("missingEpochs"), statistics->getNumberOfMissingEpochs() },
            { QStringLiteral("gaps"), gaps } });
    }
    QJsonObject events;
    for (int type = MessageApiEvent::ConnectionOpened; type <= MessageApiEvent::ClientError;
         ++type) {
        const auto eventType = MessageApiEvent::Type(type);
        if (const unsigned int count = scanner.getCoordinator().getEventCount(eventType))
            events.insert(MessageApiEvent::getTypeString(eventType), qint64(count));
    }
    QJsonArray eventLog;
    for (EventLog::Entry const &entry : scanner.getEventLogEntries())
        eventLog.append(QJsonObject { { QStringLiteral("time"), timeValue(entry.time) },
                                      { QStringLiteral("type"), entry.event.getTypeString() },
                                      { QStringLiteral("text"), entry.event.getMessage() } });
    QJsonObject station;
    for (StreamScanner::StationItem const &item : scanner.getStationItems())
        station.insert(item.key, fieldValue(item.field, item.message));
    return QJsonObject {
        { QStringLiteral("input"), scanner.getInput() },
        { QStringLiteral("bytes"), qint64(scanner.getByteCount()) },
        { QStringLiteral("frames"), qint64(framer.getFrameCount()) },
        { QStringLiteral("bytesOutsideFrames"), qint64(framer.getForeignByteCount()) },
        { QStringLiteral("crcErrors"), qint64(framer.getCrcErrorCount()) },
        { QStringLiteral("messages"), messages },
        { QStringLiteral("events"), events },
        { QStringLiteral("eventLog"), eventLog },
        { QStringLiteral("station"), station.isEmpty() ? QJsonValue() : QJsonValue(station) },
    };
}

QList<QJsonObject> JsonWriter::dump(MessageDump const &dump, Message const *message,
                                    QDateTime const &time)
{
    QList<QJsonObject> objects;
    for (Message const *shown : dump.getShownMessages(message)) {
        QJsonObject object = messageObject(dump, shown);
        object.insert(QStringLiteral("format"), shown->getInfo()->getFormatInfo()->getName());
        object.insert(QStringLiteral("time"), timeValue(time));
        objects.append(object);
    }
    return objects;
}

QJsonObject JsonWriter::messageObject(MessageDump const &dump, Message const *message)
{
    QJsonObject fields;
    for (FieldInfo const *field : dump.getShownFields(message))
        fields.insert(field->getName(), fieldValue(field, message));
    QJsonArray subMessages;
    for (Message const *subMessage : message->getSubMessages())
        subMessages.append(messageObject(dump, subMessage));
    return QJsonObject { { QStringLiteral("message"), message->getInfo()->getName() },
                         { QStringLiteral("fields"), fields },
                         { QStringLiteral("subMessages"), subMessages } };
}

QJsonValue JsonWriter::fieldValue(FieldInfo const *field, Message const *message)
{
    if (field->isStringField())
        return field->getValueString(message);
    if (!field->isRepeated())
        return number(field, field->getValue(message, 0));
    QJsonArray values;
    const unsigned int count = field->getNumberOfValues(message);
    for (unsigned int index = 0; index < count; ++index)
        values.append(number(field, field->getValue(message, index)));
    return values;
}

QByteArray JsonWriter::line(QJsonObject const &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray JsonWriter::indented(QJsonObject const &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}
