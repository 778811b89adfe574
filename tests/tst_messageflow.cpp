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
};

void tst_MessageFlow::blockReachesListenersAndLog_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QStringList>("announced");
    QTest::addColumn<QString>("message"); // type of the decoded message, or the unknown's type
    QTest::addColumn<QStringList>("logged");

    QTest::newRow("PosCart") << TestDecoder::makeBlock(4006, "payload")
                             << QStringList { "early", "normal", "late" } << "PosCart"
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

    DictionaryFixture dictionary;
    TestParser parser;
    TimeSource clock;
    clock.setMillis(1394541296789ull); // 2024-03-15 12:34:56.789 UTC
    TestDecoder decoder(dictionary.vexa(), QStringLiteral("Rover"));
    new ParseMessagesAdapter(&parser, nullptr, parser.buffer(), &decoder);
    MessageSourceMultiplexer mux(QStringLiteral("All"), nullptr);
    mux.addSource(&decoder);
    auto *log = new EventLog(&mux, &clock);
    SourceRecorder recorder(&mux);
    QStringList seen; // what an ordinary listener sees while the message is alive
    connect(&mux, &MessageSource::newMessage, this, [&seen](Message const *m) {
        seen << m->getInfo()->getName()
             << QString::fromLatin1(static_cast<TestMessage const *>(m)->getRaw().toHex());
    });
    parser.deliverBlock(17, block);

    QCOMPARE(recorder.signalNames(), announced);
    auto const &records = recorder.records;
    if (announced.size() == 3) {
        QCOMPARE(seen, QStringList({ message, QString::fromLatin1(block.toHex()) }));
        // One message object, passed on in every phase.
        QCOMPARE(records[0].subject, records[1].subject);
        QCOMPARE(records[2].subject, records[1].subject);
    } else if (announced == QStringList { "unknown" }) {
        QCOMPARE(records[0].subject, dictionary.vexa());
        QCOMPARE(records[0].text, message);
    }
    QStringList entries;
    for (EventLog::Entry const &entry : log->getEntries())
        entries << entry.time.toString(Qt::ISODate) + ' ' + QString::number(entry.event.getType())
                + ' ' + entry.event.getFormat()->getName() + ' ' + entry.event.getMessage();
    QCOMPARE(entries, logged);
}

QTEST_GUILESS_MAIN(tst_MessageFlow)
#include "tst_messageflow.moc"
