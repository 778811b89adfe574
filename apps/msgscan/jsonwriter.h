// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGSCAN_JSONWRITER_H
#define MSGSCAN_JSONWRITER_H

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>

class FieldInfo;
class Message;
class MessageDump;
class StreamScanner;

/**
 * The JSON forms of msgscan, which scripts rely on, so their names stay as they are:
 *
 *   report: {"input", "bytes", "frames", "bytesOutsideFrames", "crcErrors",
 *            "messages": [{"format", "message", "title", "count", "intervals": {"1000": N},
 *                          "unknownIntervals", "regularIntervalMs", "numberOfGaps",
 *                          "missingEpochs", "gaps": [{"startMillis", "intervalMillis",
 *                          "missingEpochs"}]}],
 *            "events": {"CRC Error": N}, "eventLog": [{"time", "type", "text"}],
 *            "station": {"stationId", "x", ...} or null}
 *   dump:   {"format", "message", "time", "fields": {"DF002": 1077},
 *            "subMessages": [{"message", "fields", "subMessages"}]}
 *
 * A field's value is the scaled number (raw value times the scale factor), a string for a text
 * field or a character, null for the do-not-use value, and a list for a repeated field that is
 * not text. Times are UTC in ISO 8601, or null when the stream has told none yet.
 */
class JsonWriter
{
public:
    static QJsonObject report(StreamScanner const &scanner);
    /// One object per shown message (see MessageDump::getShownMessages).
    static QList<QJsonObject> dump(MessageDump const &dump, Message const *message,
                                   QDateTime const &time);
    static QJsonValue fieldValue(FieldInfo const *field, Message const *message);
    /// The object on one line, followed by a line feed.
    static QByteArray line(QJsonObject const &object);
    /// The object indented for people, followed by a line feed.
    static QByteArray indented(QJsonObject const &object);

private:
    static QJsonObject messageObject(MessageDump const &dump, Message const *message);
};

#endif // MSGSCAN_JSONWRITER_H
