// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The message flow of a receiver application, run on a recorded stream: a connection replays
// the stream, a parser finds the blocks, the library's adapter hands them to the decoder, and
// the decoded messages and events reach, through a multiplexer, the statistics coordinator and
// the event log. The blocks' own time stamps drive the clock and end the epochs for gap
// detection. At the end the program prints the statistics of every message type, the events
// by type, the last message of each type and the event log.
//
// Usage: messageapidemo [stream file]   (default: the bundled demo-stream.vexa)

#include "demodecoder.h"
#include "demodictionary.h"
#include "demoepochclock.h"
#include "demofieldinfo.h"
#include "demoreplayconnection.h"
#include "demostreamparser.h"

#include "eventlog.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "messagesourcemultiplexer.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "parsemessagesadapter.h"
#include "timesource.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QLocale>
#include <QStringList>

#include <cstdio>

namespace {

/// From the Unix epoch to the GPS epoch (1980-01-06 00:00:00 UTC), no leap seconds.
constexpr qint64 gpsEpochOffsetMs = 315964800000LL;

// One sink for everything the program writes, so that our own lines and the statistics
// reports (which come through qDebug) keep their order. Always UTF-8, whatever the locale.
void print(QString const &line)
{
    std::fputs(line.toUtf8().constData(), stdout);
    std::fputc('\n', stdout);
}

void writeDebugToStandardOutput(QtMsgType type, QMessageLogContext const &, QString const &text)
{
    if (type == QtDebugMsg) {
        print(text);
    } else {
        std::fputs(text.toUtf8().constData(), stderr);
        std::fputc('\n', stderr);
    }
}

QString defaultStreamPath()
{
    const QString beside = QDir(QCoreApplication::applicationDirPath())
                               .filePath(QStringLiteral("data/demo-stream.vexa"));
    return QFile::exists(beside) ? beside : QStringLiteral(MESSAGEAPI_DEMO_STREAM);
}

QString timeText(QDateTime const &time)
{
    return time.isNull() ? QStringLiteral("(no receiver time)")
                         : time.toUTC().toString(Qt::ISODate);
}

/// "X 4027894.123 m, ..., Svid [3, 7, 12]": the payload fields, read through the dictionary.
QString payloadText(Message const *message, DemoDictionary const &dictionary)
{
    QStringList fields;
    for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
        if (field == dictionary.getNumberField() || field == dictionary.getTimeField())
            continue;
        QStringList values;
        for (unsigned int i = 0; i < field->getNumberOfValues(message); ++i)
            values << field->getInterpretedString(field->getValue(message, i), true);
        const QString value = field->isRepeated()
            ? QLatin1Char('[') + values.join(QStringLiteral(", ")) + QLatin1Char(']')
            : values.value(0);
        fields << field->getName() + QLatin1Char(' ') + value;
    }
    return fields.join(QStringLiteral(", "));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    // Numbers render the same on every machine.
    QLocale::setDefault(QLocale::c());
    qInstallMessageHandler(writeDebugToStandardOutput);

    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : defaultStreamPath();
    QFile stream(path);
    if (!stream.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "messageapidemo: cannot open %s\n", qPrintable(path));
        return 1;
    }

    // The dictionary first: everything else points into it and must go before it.
    DemoDictionary dictionary;
    TimeSource clock;
    DemoDecoder decoder(&dictionary, QStringLiteral("Rover"));

    DemoReplayConnection connection;
    DemoStreamParser parser;
    QObject::connect(&connection, &DemoReplayConnection::bytesReceived, &parser,
                     &DemoStreamParser::processBytes);
    // A child of the parser: it goes with it.
    new ParseMessagesAdapter(&parser, &connection, parser.buffer(), &decoder);

    // Applications merge their receivers' decoders into one source; here there is one.
    MessageSourceMultiplexer receivers(QStringLiteral("Receivers"), nullptr);
    receivers.addSource(&decoder);

    // A child of the multiplexer.
    auto *log = new EventLog(&receivers, &clock);
    MessageStatisticsCoordinator statistics(&receivers, &clock);
    const QVector<MessageInfo const *> messageTypes = dictionary.getFormat()->getMessageInfos();
    for (MessageInfo const *info : messageTypes)
        statistics.enableGapDetection(info);

    DemoEpochClock epochs(dictionary.getTimeField(), &clock, &statistics);
    QObject::connect(&receivers, &MessageSource::newMessageEarly, &epochs,
                     &DemoEpochClock::processMessageEarly);
    QObject::connect(&connection, &DemoReplayConnection::connectionClosed, &epochs,
                     &DemoEpochClock::closeLastEpoch);

    // The late phase: after everyone has seen a message, keep the newest of each type.
    QHash<MessageInfo const *, Message const *> lastMessages;
    QObject::connect(&receivers, &MessageSource::newMessageLate, &receivers,
                     [&lastMessages](Message const *message) {
                         message->addReference();
                         Message const *&last = lastMessages[message->getInfo()];
                         if (last)
                             last->removeReference();
                         last = message;
                     });

    connection.replay(&stream);

    print(QStringLiteral("Replayed %1 bytes: blocks %2, CRC errors %3, bytes skipped %4, "
                         "epochs closed %5")
              .arg(stream.size())
              .arg(parser.getBlockCount())
              .arg(parser.getCrcErrorCount())
              .arg(parser.getSkippedByteCount())
              .arg(epochs.getClosedEpochCount()));
    print(QString());

    const QList<MessageStatistics *> allStatistics = statistics.getAllMessageStatistics();
    for (MessageStatistics const *messageStatistics : allStatistics) {
        messageStatistics->printStatistics();
        print(QString());
    }

    print(QStringLiteral("Events by type:"));
    for (int type = MessageApiEvent::ConnectionOpened; type <= MessageApiEvent::ClientError;
         ++type) {
        const unsigned int count = statistics.getEventCount(MessageApiEvent::Type(type));
        if (count != 0) {
            print(QStringLiteral("  %1: %2")
                      .arg(MessageApiEvent::getTypeString(MessageApiEvent::Type(type)))
                      .arg(count));
        }
    }
    print(QString());

    print(QStringLiteral("Last message of each type:"));
    for (MessageInfo const *info : messageTypes) {
        Message const *message = lastMessages.take(info);
        if (!message)
            continue;
        const qint64 time = qint64(dictionary.getTimeField()->getValue(message, 0).getU64());
        print(QStringLiteral("  %1 at %2: %3")
                  .arg(info->getName(),
                       timeText(QDateTime::fromMSecsSinceEpoch(time + gpsEpochOffsetMs, Qt::UTC)),
                       payloadText(message, dictionary)));
        message->removeReference();
    }
    print(QString());

    print(QStringLiteral("Event log:"));
    const QList<EventLog::Entry> entries = log->getEntries();
    for (EventLog::Entry const &entry : entries) {
        print(
            QStringLiteral("  %1  %2  %3")
                .arg(timeText(entry.time), entry.event.getTypeString(), entry.event.getMessage()));
    }
    return 0;
}
