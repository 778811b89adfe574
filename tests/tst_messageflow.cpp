// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "eventlog.h"
#include "messageinfo.h"
#include "messagesourcemultiplexer.h"
#include "parsemessagesadapter.h"
#include "sourcerecorder.h"
#include "testdecoder.h"
#include "testmessage.h"
#include "testparser.h"
#include "timesource.h"

#include <QTest>

#include <memory>

// One block from the parser's signal through the adapter, a decoder and a multiplexer to the
// listeners of every phase and to the event log.
class tst_MessageFlow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void blockReachesListenersAndLog_data();
    void blockReachesListenersAndLog();
    void crcAndConnectionEventsReachLog();

private:
    // The registry is process-wide and the CRC format is looked up once, so one dictionary
    // serves every test.
    DictionaryFixture *mDictionary = nullptr;

    struct Chain
    {
        TestParser parser;
        TestConnection connection;
        TimeSource clock;
        std::unique_ptr<TestDecoder> decoder;
        std::unique_ptr<MessageSourceMultiplexer> mux;
        EventLog *log = nullptr;
        std::unique_ptr<SourceRecorder> recorder;
    };
    std::unique_ptr<Chain> mChain;
};

namespace {
// 2024-03-15 12:34:56.789 UTC in receiver time.
constexpr unsigned long long receiverMillis = 1394541296789ull;
const QDateTime receiverTime(QDate(2024, 3, 15), QTime(12, 34, 56), Qt::UTC);
} // namespace

void tst_MessageFlow::initTestCase()
{
    mDictionary = new DictionaryFixture;
}

void tst_MessageFlow::cleanupTestCase()
{
    delete mDictionary;
}

void tst_MessageFlow::init()
{
    mChain = std::make_unique<Chain>();
    Chain &c = *mChain;
    c.clock.setMillis(receiverMillis);
    c.decoder = std::make_unique<TestDecoder>(mDictionary->vexa(), QStringLiteral("Rover"));
    new ParseMessagesAdapter(&c.parser, &c.connection, c.parser.buffer(), c.decoder.get());
    c.mux = std::make_unique<MessageSourceMultiplexer>(QStringLiteral("All"), nullptr);
    c.mux->addSource(c.decoder.get());
    c.log = new EventLog(c.mux.get(), &c.clock);
    c.recorder = std::make_unique<SourceRecorder>(c.mux.get());
}

void tst_MessageFlow::cleanup()
{
    mChain.reset();
}

void tst_MessageFlow::blockReachesListenersAndLog_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QString>("disabled"); // a message type switched off in the decoder
    QTest::addColumn<QStringList>("announced");
    QTest::addColumn<QString>("message"); // type of the decoded message, or the unknown's type
    QTest::addColumn<QString>("error"); // text of the decoder error in the log

    const QStringList phases { "early", "normal", "late" };
    QTest::newRow("PosCart") << TestDecoder::makeBlock(4006, "payload") << "" << phases << "PosCart"
                             << "";
    QTest::newRow("ReceiverSetup, not a main type")
        << TestDecoder::makeBlock(5902) << "" << phases << "ReceiverSetup"
        << "";
    QTest::newRow("disabled type not announced")
        << TestDecoder::makeBlock(4006) << "PosCart" << QStringList() << ""
        << "";
    QTest::newRow("other types stay enabled")
        << TestDecoder::makeBlock(4007) << "PosCart" << phases << "PosGeod"
        << "";
    QTest::newRow("unknown number")
        << TestDecoder::makeBlock(4242) << "" << QStringList { "unknown" } << "4242"
        << "";
    QTest::newRow("shorter than header")
        << QByteArray("\x24\xA6", 2) << "" << QStringList { "event" } << ""
        << "Rover: block of 2 bytes is shorter than its header";
    QTest::newRow("no sync byte") << QByteArray("\x25\xA6\x0F\x00", 4) << ""
                                  << QStringList { "event" } << ""
                                  << "Rover: block does not start with the sync byte";
    QTest::newRow("payload beyond the block")
        << TestDecoder::makeBlock(4006, "abc").left(6) << "" << QStringList { "event" } << ""
        << "Rover: payload of 3 bytes exceeds the block of 6 bytes";
}

void tst_MessageFlow::blockReachesListenersAndLog()
{
    QFETCH(QByteArray, block);
    QFETCH(QString, disabled);
    QFETCH(QStringList, announced);
    QFETCH(QString, message);
    QFETCH(QString, error);

    Chain &c = *mChain;
    if (!disabled.isEmpty())
        c.decoder->disableMessage(mDictionary->message(QStringLiteral("VEXA"), disabled));
    // What a listener sees while the message is alive.
    QStringList seen;
    connect(c.mux.get(), &MessageSource::newMessage, this, [&seen](Message const *m) {
        auto const *test = static_cast<TestMessage const *>(m);
        seen << m->getInfo()->getName() << QString::fromLatin1(test->getRaw().toHex());
    });
    c.parser.deliverBlock(17, block);

    QCOMPARE(c.recorder->signalNames(), announced);
    if (announced == QStringList { "early", "normal", "late" }) {
        QCOMPARE(seen, QStringList({ message, QString::fromLatin1(block.toHex()) }));
        // One message object, passed on in every phase.
        QCOMPARE(c.recorder->records[0].subject, c.recorder->records[1].subject);
        QCOMPARE(c.recorder->records[2].subject, c.recorder->records[1].subject);
    } else if (announced == QStringList { "unknown" }) {
        QCOMPARE(c.recorder->records[0].subject, mDictionary->vexa());
        QCOMPARE(c.recorder->records[0].text, message);
    }

    const QList<EventLog::Entry> entries = c.log->getEntries();
    QCOMPARE(entries.size(), error.isEmpty() ? 0 : 1);
    if (!error.isEmpty()) {
        QCOMPARE(entries[0].event.getMessage(), error);
        QCOMPARE(entries[0].event.getType(), MessageApiEvent::DecoderError);
        QCOMPARE(entries[0].event.getFormat(), mDictionary->vexa());
        QCOMPARE(entries[0].time, receiverTime);
    }
    QCOMPARE(c.decoder->decodeMessage(block), error.isEmpty() ? int32_t(block.size()) : -1);
}

void tst_MessageFlow::crcAndConnectionEventsReachLog()
{
    Chain &c = *mChain;
    Q_EMIT c.connection.connected();
    Q_EMIT c.parser.crcErrorVexa();
    Q_EMIT c.connection.connectionClosed();

    const QList<EventLog::Entry> entries = c.log->getEntries();
    QCOMPARE(entries.size(), 3);
    const QStringList texts { "Rover connection opened", "VEXA CRC error",
                              "Rover connection closed" };
    const QList<MessageApiEvent::Type> types { MessageApiEvent::ConnectionOpened,
                                               MessageApiEvent::CrcError,
                                               MessageApiEvent::ConnectionClosed };
    const QList<FormatInfo const *> formats { nullptr, mDictionary->vexa(), nullptr };
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(entries[i].event.getMessage(), texts[i]);
        QCOMPARE(entries[i].event.getType(), types[i]);
        QCOMPARE(entries[i].event.getFormat(), formats[i]);
        QCOMPARE(entries[i].time, receiverTime);
    }
    QCOMPARE(c.recorder->signalNames(), QStringList({ "event", "event", "event" }));
}

QTEST_GUILESS_MAIN(tst_MessageFlow)
#include "tst_messageflow.moc"
