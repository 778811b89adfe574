// SPDX-License-Identifier: LGPL-2.1-or-later
#include "streamscanner.h"

#include "messagedump.h"

#include <rtcm3/rtcm3dictionary.h>

#include <fieldinfo.h>
#include <messageinfo.h>
#include <messagestatistics.h>

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>

namespace {

/// The station messages, the one that tells most first.
constexpr int stationMessageNumbers[] = { 1006, 1005, 1033, 1008, 1007 };

struct StationRow
{
    char const *key;
    char const *field;
};

constexpr StationRow stationRows[] = {
    { "stationId", "DF003" },
    { "x", "DF025" },
    { "y", "DF026" },
    { "z", "DF027" },
    { "antennaHeight", "DF028" },
    { "antennaDescriptor", "DF030" },
    { "antennaSetupId", "DF031" },
    { "antennaSerialNumber", "DF033" },
    { "receiverType", "DF228" },
    { "receiverFirmware", "DF230" },
    { "receiverSerialNumber", "DF232" },
};

/// Event log entries the text report lists; the JSON report lists all.
constexpr int maxTextLogEntries = 20;

QString timeText(QDateTime const &time)
{
    return time.isValid() ? time.toString(Qt::ISODate) : QStringLiteral("-");
}

} // namespace

StreamScanner::StreamScanner(Rtcm3Dictionary const *dictionary, QString input, QDate fallbackDate,
                             QObject *parent)
    : QObject(parent)
    , mInput(std::move(input))
    , mFramer(dictionary->getFormat(), QStringLiteral("framer"))
    , mDecoder(dictionary, QStringLiteral("decoder"))
    , mMultiplexer(QStringLiteral("scan"), nullptr)
    , mStreamTime(fallbackDate)
    , mCoordinator(&mMultiplexer, &mTimeSource)
    , mEventLog(new EventLog(&mMultiplexer, &mTimeSource))
{
    for (MessageInfo const *info : dictionary->getFormat()->getMessageInfos())
        mCoordinator.enableGapDetection(info);
    mMultiplexer.addSource(&mFramer);
    mMultiplexer.addSource(&mDecoder);
    connect(&mFramer, &Rtcm3Framer::frameFound, &mDecoder,
            qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    // The time must be set before the statistics count a message.
    connect(&mDecoder, &MessageSource::newMessageEarly, this, &StreamScanner::processEarly);
}

StreamScanner::~StreamScanner()
{
    for (Message const *message : qAsConst(mStationMessages))
        message->removeReference();
}

QDate StreamScanner::getStreamDate(Rtcm3Dictionary const *dictionary, QString const &input,
                                   QDate fallbackDate)
{
    QFile file(input);
    if (!QFileInfo(input).isFile() || !file.open(QIODevice::ReadOnly))
        return fallbackDate;
    Rtcm3Framer framer(dictionary->getFormat(), QStringLiteral("framer"));
    Rtcm3Decoder decoder(dictionary, QStringLiteral("decoder"));
    Rtcm3StreamTime time(fallbackDate);
    connect(&framer, &Rtcm3Framer::frameFound, &decoder,
            qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    // The epochs before the stream tells its week are timed in the fallback week; how long they
    // lasted takes the first epoch back from the first time in the stream's own week.
    quint64 first = 0;
    quint64 last = 0;
    quint64 firstInStreamWeek = 0;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        if (!time.processMessage(message) || firstInStreamWeek != 0)
            return;
        if (time.hasWeekFromStream())
            firstInStreamWeek = time.getMillis();
        else
            last = time.getMillis();
        first = first == 0 ? last : first;
    });
    constexpr qint64 chunk = 65536;
    for (qint64 read = 0; read < 4 * 1024 * 1024 && firstInStreamWeek == 0 && !file.atEnd();
         read += chunk)
        framer.addData(file.read(chunk));
    if (firstInStreamWeek == 0)
        return fallbackDate;
    constexpr quint64 dayMs = 86400000;
    return QDate(1980, 1, 6).addDays(qint64((firstInStreamWeek - (last - first)) / dayMs));
}

void StreamScanner::addData(QByteArray const &bytes)
{
    mByteCount += quint64(bytes.size());
    mFramer.addData(bytes);
}

void StreamScanner::finish()
{
    mFramer.finish();
}

void StreamScanner::processEarly(Message const *message)
{
    // The time only moves forward: receivers disagree on the time base of some systems (leap
    // seconds of GLONASS, BeiDou time given as GPS time), and a clock that jumps back and forth
    // within an epoch would break every interval. An epoch ends when the time moves on. The
    // week of the fallback date was a guess, so the stream's own week replaces it either way.
    if (mStreamTime.processMessage(message)) {
        const quint64 millis = mStreamTime.getMillis();
        if (mTimeHasStreamWeek != mStreamTime.hasWeekFromStream() || mFirstMillis == 0) {
            mTimeHasStreamWeek = mStreamTime.hasWeekFromStream();
            mFirstMillis = millis;
            mTimeSource.setMillis(millis);
        } else if (millis > mTimeSource.getMillis()) {
            mCoordinator.closeEpoch();
            mTimeSource.setMillis(millis);
        }
    }
    const int number = Rtcm3Dictionary::getNumber(message->getInfo());
    if (std::find(std::begin(stationMessageNumbers), std::end(stationMessageNumbers), number)
        == std::end(stationMessageNumbers))
        return;
    message->addReference();
    if (Message const *previous = mStationMessages.value(number))
        previous->removeReference();
    mStationMessages.insert(number, message);
}

QList<MessageStatistics const *> StreamScanner::getMessageStatistics() const
{
    QList<MessageStatistics const *> list;
    for (MessageStatistics const *statistics : mCoordinator.getAllMessageStatistics())
        list.append(statistics);
    std::sort(list.begin(), list.end(), [](auto a, auto b) {
        const QString formatA = a->getFormatInfo()->getName();
        const QString formatB = b->getFormatInfo()->getName();
        if (formatA != formatB)
            return formatA < formatB;
        return a->getMessageName().toInt() < b->getMessageName().toInt();
    });
    return list;
}

long long StreamScanner::getRegularInterval(MessageStatistics const *statistics)
{
    return statistics->getLastIntervalRepeatCount() >= 2 && statistics->getLastInterval() > 0
        ? statistics->getLastInterval()
        : 0;
}

QVector<StreamScanner::StationItem> StreamScanner::getStationItems() const
{
    QVector<StationItem> items;
    for (StationRow const &row : stationRows) {
        for (int number : stationMessageNumbers) {
            Message const *message = mStationMessages.value(number);
            FieldInfo const *field
                = message ? message->getInfo()->getFieldInfo(QLatin1String(row.field)) : nullptr;
            if (field && field->getNumberOfValues(message) > 0) {
                items.append({ QLatin1String(row.key), field, message });
                break;
            }
        }
    }
    return items;
}

QString StreamScanner::getTextReport() const
{
    QString text;
    QTextStream out(&text);
    out << tr("Input: %1").arg(mInput) << '\n';
    TimeSource first;
    first.setMillis(mFirstMillis);
    if (mFirstMillis != 0)
        out << tr("Stream time: %1 to %2 (%3 s)")
                   .arg(timeText(first.getTime()), timeText(mTimeSource.getTime()))
                   .arg((getLastMillis() - mFirstMillis) / 1000.0)
            << '\n';
    out << tr("Bytes: %1, frames: %2, bytes outside frames: %3, CRC errors: %4")
               .arg(mByteCount)
               .arg(mFramer.getFrameCount())
               .arg(mFramer.getForeignByteCount())
               .arg(mFramer.getCrcErrorCount())
        << "\n\n";

    // Per message type: one table row each, then the gaps.
    const double spanSeconds = (getLastMillis() - mFirstMillis) / 1000.0;
    QVector<QStringList> rows { { tr("Message"), tr("Title"), tr("Count"), tr("Rate"),
                                  tr("Regular"), tr("Intervals (most frequent)"), tr("Gaps"),
                                  tr("Missing") } };
    QStringList gapLines;
    for (MessageStatistics const *statistics : getMessageStatistics()) {
        const QString name = statistics->getFormatInfo()->getName() + QLatin1Char(' ')
            + statistics->getMessageName();
        QList<long long> intervals = statistics->getIntervalCountHash().keys();
        const auto counts = statistics->getIntervalCountHash();
        std::sort(intervals.begin(), intervals.end(), [&counts](long long a, long long b) {
            return counts[a] != counts[b] ? counts[a] > counts[b] : a < b;
        });
        QStringList frequent;
        for (long long interval : intervals.mid(0, 3))
            frequent.append(tr("%1 ms x%2").arg(interval).arg(counts[interval]));
        const long long regular = getRegularInterval(statistics);
        rows.append(
            { name,
              statistics->getMessageInfo() ? statistics->getMessageInfo()->getShortDescriptiveText()
                                           : tr("(unknown)"),
              QString::number(statistics->getCount()),
              spanSeconds > 0 ? tr("%1/s").arg(statistics->getCount() / spanSeconds, 0, 'g', 3)
                              : QStringLiteral("-"),
              regular > 0 ? statistics->getIntervalString(quint64(regular)) : QStringLiteral("-"),
              frequent.isEmpty() ? QStringLiteral("-") : frequent.join(QLatin1String(", ")),
              QString::number(statistics->getNumberOfGaps()),
              QString::number(statistics->getNumberOfMissingEpochs()) });
        for (MessageStatistics::Gap const &gap : statistics->getGaps()) {
            TimeSource at;
            at.setMillis(gap.startMillis);
            gapLines.append(tr("  %1: %2 missing from %3 (every %4 ms)")
                                .arg(name)
                                .arg(gap.missingEpochs)
                                .arg(timeText(at.getTime()))
                                .arg(gap.intervalMillis));
        }
    }
    QVector<int> widths(rows.first().size(), 0);
    for (QStringList const &row : rows)
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths[column], row[column].size());
    for (QStringList const &row : rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column) {
            // Numbers right-aligned, texts left-aligned.
            const bool number = column == 2 || column >= 6;
            line += (number ? row[column].rightJustified(widths[column])
                            : row[column].leftJustified(widths[column]))
                + QLatin1String("  ");
        }
        out << line.trimmed() << '\n';
    }
    if (!gapLines.isEmpty())
        out << '\n' << tr("Gaps:") << '\n' << gapLines.join(QLatin1Char('\n')) << '\n';

    out << '\n' << tr("Events:") << '\n';
    bool anyEvent = false;
    for (int type = MessageApiEvent::ConnectionOpened; type <= MessageApiEvent::ClientError;
         ++type) {
        const auto eventType = MessageApiEvent::Type(type);
        if (const unsigned int count = mCoordinator.getEventCount(eventType)) {
            out << "  " << MessageApiEvent::getTypeString(eventType) << ": " << count << '\n';
            anyEvent = true;
        }
    }
    if (!anyEvent)
        out << "  " << tr("none") << '\n';

    const QList<EventLog::Entry> entries = getEventLogEntries();
    if (!entries.isEmpty()) {
        out << '\n' << tr("Event log:") << '\n';
        for (EventLog::Entry const &entry : entries.mid(0, maxTextLogEntries))
            out << "  " << timeText(entry.time) << "  " << entry.event.getTypeString() << ": "
                << entry.event.getMessage() << '\n';
        if (entries.size() > maxTextLogEntries)
            out << "  "
                << tr("... and %1 more (--json lists them all)")
                       .arg(entries.size() - maxTextLogEntries)
                << '\n';
    }

    const QVector<StationItem> station = getStationItems();
    if (!station.isEmpty()) {
        out << '\n' << tr("Station:") << '\n';
        for (StationItem const &item : station)
            out << "  " << item.field->getShortDescriptiveText() << ": "
                << MessageDump::valueText(item.field, item.message, MessageDump::Interpreted)
                << " (" << item.message->getInfo()->getName() << ")\n";
    }
    out.flush();
    return text;
}
