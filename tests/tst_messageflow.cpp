// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "eventlog.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "messagesourcemultiplexer.h"
#include "parsemessagesadapter.h"
#include "sourcerecorder.h"
#include "testdecoder.h"
#include "testmessage.h"
#include "testparser.h"
#include "timesource.h"

#include <QTest>

// One block from the parser's signal through the adapter, a decoder and a multiplexer to the
// listeners of every phase and to the event log.
class tst_MessageFlow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockReachesListenersAndLog_data();
    void blockReachesListenersAndLog();
    void crcAndConnectionEventsReachLog();

private:
    // The registry is process-wide and the CRC format is looked up once, so one dictionary
    // serves every test.
    DictionaryFixture mDictionary;
};

namespace {
// The parser's blocks reach the decoder "Rover" through an adapter; the decoder's announcements
// reach a multiplexer with an event log (on receiver time 2024-03-15 12:34:56.789) and a recorder.
struct Chain
{
    explicit Chain(FormatInfo const *vexa)
        : decoder(vexa, QStringLiteral("Rover"))
    {
        clock.setMillis(1394541296789ull);
        new ParseMessagesAdapter(&parser, &connection, parser.buffer(), &decoder);
        mux.addSource(&decoder);
    }

    // The log, as "time type format text" lines.
    QStringList logged() const
    {
        QStringList lines;
        for (EventLog::Entry const &entry : log->getEntries()) {
            FormatInfo const *format = entry.event.getFormat();
            lines << QStringList { entry.time.toString(Qt::ISODate),
                                   QString::number(entry.event.getType()),
                                   format ? format->getName() : QStringLiteral("-"),
                                   entry.event.getMessage() }
                         .join(QLatin1Char(' '));
        }
        return lines;
    }

    TestParser parser;
    TestConnection connection;
    TimeSource clock;
    TestDecoder decoder;
    MessageSourceMultiplexer mux { QStringLiteral("All"), nullptr };
    EventLog *log = new EventLog(&mux, &clock);
    SourceRecorder *recorder = new SourceRecorder(&mux);
};
} // namespace

void tst_MessageFlow::blockReachesListenersAndLog_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QStringList>("announced");
    QTest::addColumn<QString>("message"); // type of the decoded message, or the unknown's type
    QTest::addColumn<QStringList>("logged");

    const QStringList phases { "early", "normal", "late" };
    QTest::newRow("PosCart") << TestDecoder::makeBlock(4006, "payload") << phases << "PosCart"
                             << QStringList();
    QTest::newRow("unknown number")
        << TestDecoder::makeBlock(4242) << QStringList { "unknown" } << "4242" << QStringList();
    QTest::newRow("malformed")
        << QByteArray("\x24\xA6", 2) << QStringList { "event" } << ""
        << QStringList { "2024-03-15T12:34:56Z 4 VEXA Rover: malformed block of 2 bytes" };
}

void tst_MessageFlow::blockReachesListenersAndLog()
{
    QFETCH(QByteArray, block);
    QFETCH(QStringList, announced);
    QFETCH(QString, message);
    QFETCH(QStringList, logged);

    Chain c(mDictionary.vexa());
    QStringList seen; // what an ordinary listener sees while the message is alive
    connect(&c.mux, &MessageSource::newMessage, this, [&seen](Message const *m) {
        seen << m->getInfo()->getName()
             << QString::fromLatin1(static_cast<TestMessage const *>(m)->getRaw().toHex());
    });
    c.parser.deliverBlock(17, block);

    QCOMPARE(c.recorder->signalNames(), announced);
    auto const &records = c.recorder->records;
    if (announced.size() == 3) {
        QCOMPARE(seen, QStringList({ message, QString::fromLatin1(block.toHex()) }));
        // One message object, passed on in every phase.
        QCOMPARE(records[0].subject, records[1].subject);
        QCOMPARE(records[2].subject, records[1].subject);
    } else if (announced == QStringList { "unknown" }) {
        QCOMPARE(records[0].subject, mDictionary.vexa());
        QCOMPARE(records[0].text, message);
    }
    QCOMPARE(c.logged(), logged);
}

void tst_MessageFlow::crcAndConnectionEventsReachLog()
{
    Chain c(mDictionary.vexa());
    Q_EMIT c.connection.connected();
    Q_EMIT c.parser.crcErrorVexa();
    Q_EMIT c.connection.connectionClosed();

    QCOMPARE(c.logged(),
             QStringList({ "2024-03-15T12:34:56Z 0 - Rover connection opened",
                           "2024-03-15T12:34:56Z 2 VEXA VEXA CRC error",
                           "2024-03-15T12:34:56Z 1 - Rover connection closed" }));
    QCOMPARE(c.recorder->signalNames(), QStringList({ "event", "event", "event" }));
}

QTEST_GUILESS_MAIN(tst_MessageFlow)
#include "tst_messageflow.moc"
