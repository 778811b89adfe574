// SPDX-License-Identifier: LGPL-2.1-or-later
#include "formatinfo.h"
#include "messageinfo.h"
#include "messagesource.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "testmessage.h"
#include "timesource.h"
#include "tracerrecorder.h"

#include <QPointer>
#include <QTest>

namespace {
/// Two formats with message types, as the application's start-up code would build them.
struct Dictionary
{
    Dictionary()
    {
        for (MessageInfo *info : { &position, &status }) {
            info->setFormatInfo(&vexa);
            vexa.addMessageInfo(info);
        }
        observations.setFormatInfo(&rtcm3);
        rtcm3.addMessageInfo(&observations);
    }
    FormatInfo vexa { QStringLiteral("VEXA") };
    FormatInfo rtcm3 { QStringLiteral("RTCM3") };
    MessageInfo position { QStringLiteral("PVTGeodetic") };
    MessageInfo status { QStringLiteral("ReceiverStatus") };
    MessageInfo observations { QStringLiteral("1004") };
};

/// A clock that has a reading but does not vouch for it.
class UnfixedClock : public TimeSource
{
public:
    bool hasValidMillis() override { return false; }
};
} // namespace

class tst_MessageStatisticsCoordinator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void routesMessagesByType();
    void sharedNames_data();
    void sharedNames();
    void gapDetectionRegistration();
    void eventCounts();
    void newestMessageTime_data();
    void newestMessageTime();
    void closeEpoch();
    void clearKeepsConnectionAndRegistrations();
    void disconnectFromSource();
    void tracing();

private:
    void sendMessage(MessageInfo const *info, unsigned long long millis);
    void sendUnknown(FormatInfo const *format, QString const &name, unsigned long long millis);

    Dictionary mDictionary;
    TimeSource *mTime = nullptr;
    MessageSource *mSource = nullptr;
    MessageStatisticsCoordinator *mCoordinator = nullptr;
};

void tst_MessageStatisticsCoordinator::init()
{
    mTime = new TimeSource;
    mSource = new MessageSource(QStringLiteral("receiver"), nullptr);
    mCoordinator = new MessageStatisticsCoordinator(mSource, mTime);
}

void tst_MessageStatisticsCoordinator::cleanup()
{
    delete mCoordinator;
    delete mSource;
    delete mTime;
}

void tst_MessageStatisticsCoordinator::sendMessage(MessageInfo const *info,
                                                   unsigned long long millis)
{
    mTime->setMillis(millis);
    TestMessage message(info);
    Q_EMIT mSource->newMessage(&message);
}

void tst_MessageStatisticsCoordinator::sendUnknown(FormatInfo const *format, QString const &name,
                                                   unsigned long long millis)
{
    mTime->setMillis(millis);
    Q_EMIT mSource->newUnknownMessage(format, name);
}

void tst_MessageStatisticsCoordinator::routesMessagesByType()
{
    QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());
    sendMessage(&mDictionary.position, 1000);
    sendMessage(&mDictionary.status, 1500);
    sendMessage(&mDictionary.position, 2000);

    const QList<MessageStatistics *> all = mCoordinator->getAllMessageStatistics();
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(0)->getMessageInfo(), &mDictionary.position);
    QCOMPARE(all.at(0)->getCount(), 2u);
    QCOMPARE(all.at(0)->getIntervalCountHash().value(1000), 1u);
    QCOMPARE(all.at(1)->getMessageInfo(), &mDictionary.status);
    QCOMPARE(all.at(1)->getCount(), 1u);
    QCOMPARE(all.at(0)->parent(), mCoordinator);
    QCOMPARE(mCoordinator->getMessageStatistics(&mDictionary.position), all.at(0));
    QCOMPARE(
        mCoordinator->getMessageStatistics(&mDictionary.vexa, QStringLiteral("ReceiverStatus")),
        all.at(1));
    QVERIFY(mCoordinator->hasStatistics(&mDictionary.status));
    QVERIFY(!mCoordinator->hasStatistics(&mDictionary.observations));
    QCOMPARE(mCoordinator->getAllMessageStatistics().size(), 2);
    QCOMPARE(mCoordinator->getMessageSource(), mSource);
}

void tst_MessageStatisticsCoordinator::sharedNames_data()
{
    // Each input: "known <message>" or "unknown <format> <name>".
    QTest::addColumn<QStringList>("inputs");
    // The counts of all statistics objects, in order of creation.
    QTest::addColumn<QString>("counts");
    QTest::addColumn<bool>("positionHasStatistics");

    QTest::newRow("unknown messages by format and name")
        << QStringList { "unknown VEXA Block4242", "unknown VEXA Block4242",
                         "unknown VEXA Block17" }
        << "2 1" << false;
    QTest::newRow("a known type's name catches unknown messages of that name")
        << QStringList { "known PVTGeodetic", "unknown VEXA PVTGeodetic" } << "1" << true;
    QTest::newRow("a known type takes the name over")
        << QStringList { "unknown VEXA PVTGeodetic", "known PVTGeodetic",
                         "unknown VEXA PVTGeodetic" }
        << "1 1" << true;
    QTest::newRow("the same name in another format")
        << QStringList { "known PVTGeodetic", "unknown RTCM3 PVTGeodetic" } << "1 1" << true;
}

void tst_MessageStatisticsCoordinator::sharedNames()
{
    QFETCH(QStringList, inputs);
    QFETCH(QString, counts);
    QFETCH(bool, positionHasStatistics);

    unsigned long long millis = 0;
    for (QString const &input : inputs) {
        const QStringList words = input.split(QLatin1Char(' '));
        millis += 1000;
        if (words.at(0) == QLatin1String("known")) {
            sendMessage(mDictionary.vexa.getMessageInfo(words.at(1)), millis);
        } else {
            sendUnknown(FormatInfo::getFormatInfo(words.at(1)), words.at(2), millis);
        }
    }

    QStringList actual;
    for (MessageStatistics const *statistics : mCoordinator->getAllMessageStatistics())
        actual.append(QString::number(statistics->getCount()));
    QCOMPARE(actual.join(QLatin1Char(' ')), counts);
    QCOMPARE(mCoordinator->hasStatistics(&mDictionary.position), positionHasStatistics);
    if (positionHasStatistics) {
        QCOMPARE(
            mCoordinator->getMessageStatistics(&mDictionary.vexa, QStringLiteral("PVTGeodetic")),
            mCoordinator->getMessageStatistics(&mDictionary.position));
    }
}

void tst_MessageStatisticsCoordinator::gapDetectionRegistration()
{
    mCoordinator->enableGapDetection(&mDictionary.position);
    sendMessage(&mDictionary.position, 1000);
    sendMessage(&mDictionary.status, 1000);
    mCoordinator->enableGapDetection(&mDictionary.status);
    sendUnknown(&mDictionary.vexa, QStringLiteral("PVTGeodetic"), 1000);
    sendUnknown(&mDictionary.rtcm3, QStringLiteral("PVTGeodetic"), 1000);

    QVERIFY(mCoordinator->getMessageStatistics(&mDictionary.position)->isGapDetectionEnabled());
    QVERIFY(!mCoordinator->getMessageStatistics(&mDictionary.status)->isGapDetectionEnabled());
    const QList<MessageStatistics *> all = mCoordinator->getAllMessageStatistics();
    QCOMPARE(all.size(), 3);
    QVERIFY(!all.at(2)->isGapDetectionEnabled());

    mCoordinator->clear();
    sendMessage(&mDictionary.status, 2000);
    QVERIFY(mCoordinator->getMessageStatistics(&mDictionary.status)->isGapDetectionEnabled());
}

void tst_MessageStatisticsCoordinator::eventCounts()
{
    sendMessage(&mDictionary.position, 5000);
    mTime->setMillis(9000);
    for (MessageApiEvent::Type type :
         { MessageApiEvent::CrcError, MessageApiEvent::ConnectionOpened,
           MessageApiEvent::CrcError })
        Q_EMIT mSource->newEvent(MessageApiEvent(type, QStringLiteral("VEXA CRC error"), nullptr));

    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::CrcError), 2u);
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::ConnectionOpened), 1u);
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::DecoderError), 0u);
    // Events are not messages: the newest message time stays.
    QCOMPARE(mCoordinator->getLastMessageMillis(), 5000ULL);

    mCoordinator->clear();
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::CrcError), 0u);
}

void tst_MessageStatisticsCoordinator::newestMessageTime_data()
{
    QTest::addColumn<bool>("unknownMessage");
    QTest::addColumn<bool>("unfixedClock");
    QTest::addColumn<unsigned long long>("millis");
    QTest::addColumn<bool>("valid");

    QTest::newRow("known message") << false << false << 5000ULL << true;
    QTest::newRow("unknown message") << true << false << 7000ULL << true;
    QTest::newRow("no time") << false << false << 0ULL << false;
    QTest::newRow("a reading without a valid time is kept") << true << true << 1234ULL << false;
}

void tst_MessageStatisticsCoordinator::newestMessageTime()
{
    QFETCH(bool, unknownMessage);
    QFETCH(bool, unfixedClock);
    QFETCH(unsigned long long, millis);
    QFETCH(bool, valid);

    if (unfixedClock) {
        delete mCoordinator;
        delete mTime;
        mTime = new UnfixedClock;
        mCoordinator = new MessageStatisticsCoordinator(mSource, mTime);
    }
    QVERIFY(!mCoordinator->hasValidLastMessageMillis());
    QCOMPARE(mCoordinator->getLastMessageMillis(), 0ULL);
    sendMessage(&mDictionary.status, 100);
    if (unknownMessage)
        sendUnknown(&mDictionary.vexa, QStringLiteral("Block4242"), millis);
    else
        sendMessage(&mDictionary.position, millis);
    QCOMPARE(mCoordinator->hasValidLastMessageMillis(), valid);
    QCOMPARE(mCoordinator->getLastMessageMillis(), millis);
}

void tst_MessageStatisticsCoordinator::closeEpoch()
{
    // Nothing to close yet.
    mCoordinator->closeEpoch();
    QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());

    mCoordinator->enableGapDetection(&mDictionary.position);
    for (unsigned long long millis : { 1000, 2000, 3000 }) {
        sendMessage(&mDictionary.position, millis);
        sendMessage(&mDictionary.status, millis);
    }
    mTime->setMillis(4000);
    mCoordinator->closeEpoch();

    QCOMPARE(mCoordinator->getMessageStatistics(&mDictionary.position)->getNumberOfMissingEpochs(),
             1);
    QCOMPARE(mCoordinator->getMessageStatistics(&mDictionary.status)->getNumberOfMissingEpochs(),
             0);
}

void tst_MessageStatisticsCoordinator::clearKeepsConnectionAndRegistrations()
{
    sendMessage(&mDictionary.position, 1000);
    sendUnknown(&mDictionary.vexa, QStringLiteral("Block4242"), 2000);
    QPointer<MessageStatistics> known = mCoordinator->getMessageStatistics(&mDictionary.position);
    QPointer<MessageStatistics> unknownMessage
        = mCoordinator->getAllMessageStatistics().constLast();

    mCoordinator->clear();
    QVERIFY(known.isNull());
    QVERIFY(unknownMessage.isNull());
    QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());
    QVERIFY(!mCoordinator->hasStatistics(&mDictionary.position));
    QVERIFY(mCoordinator->children().isEmpty());
    QCOMPARE(mCoordinator->getLastMessageMillis(), 2000ULL);
    QVERIFY(mCoordinator->hasValidLastMessageMillis());

    // Still listening: the next message starts afresh.
    sendMessage(&mDictionary.position, 3000);
    QCOMPARE(mCoordinator->getAllMessageStatistics().size(), 1);
    QCOMPARE(mCoordinator->getMessageStatistics(&mDictionary.position)->getCount(), 1u);
}

void tst_MessageStatisticsCoordinator::disconnectFromSource()
{
    mCoordinator->disconnectFromSource();
    sendMessage(&mDictionary.position, 1000);
    sendUnknown(&mDictionary.vexa, QStringLiteral("Block4242"), 2000);
    Q_EMIT mSource->newEvent(
        MessageApiEvent(MessageApiEvent::CrcError, QStringLiteral("VEXA CRC error"), nullptr));

    QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::CrcError), 0u);
    QVERIFY(!mCoordinator->hasValidLastMessageMillis());
}

void tst_MessageStatisticsCoordinator::tracing()
{
    TracerRecorder recorder;
    auto *coordinator = new MessageStatisticsCoordinator(mSource, mTime);
    coordinator->getMessageStatistics(&mDictionary.position);
    coordinator->getMessageStatistics(&mDictionary.vexa, QStringLiteral("Block4242"));
    delete coordinator;
    QCOMPARE(recorder.events(),
             QStringList({ "+MessageStatisticsCoordinator", "+MessageStatistics",
                           "+MessageStatistics", "-MessageStatisticsCoordinator",
                           "-MessageStatistics", "-MessageStatistics" }));
}

QTEST_GUILESS_MAIN(tst_MessageStatisticsCoordinator)
#include "tst_messagestatisticscoordinator.moc"
