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

public:
    tst_MessageStatisticsCoordinator()
    {
        for (MessageInfo *info : { &mPosition, &mStatus }) {
            info->setFormatInfo(&mVexa);
            mVexa.addMessageInfo(info);
        }
    }

private Q_SLOTS:
    void init() { mCoordinator = new MessageStatisticsCoordinator(&mSource, &mTime); }
    void cleanup() { delete mCoordinator; }

    void routing_data();
    void routing();
    void gapDetectionRegistrationAndCloseEpoch();
    void eventsAndNewestMessageTime();
    void clearAndDisconnect();

private:
    /// Space-separated messages: "Pos@1000" a known message of VEXA at 1000 ms,
    /// "RTCM3/B2@2000" an unknown one of that format and name.
    void send(QString const &messages)
    {
        for (QString const &message : messages.split(QLatin1Char(' '))) {
            QString const name = message.section(QLatin1Char('@'), 0, 0);
            mTime.setMillis(message.section(QLatin1Char('@'), 1).toULongLong());
            if (name.contains(QLatin1Char('/'))) {
                Q_EMIT mSource.newUnknownMessage(
                    FormatInfo::getFormatInfo(name.section(QLatin1Char('/'), 0, 0)),
                    name.section(QLatin1Char('/'), 1));
            } else {
                TestMessage known(mVexa.getMessageInfo(name));
                Q_EMIT mSource.newMessage(&known);
            }
        }
    }

    /// Every statistics object in creation order as "FORMAT name:count", with "*" after the
    /// name when the object is the one of a known type.
    QString statistics() const
    {
        QStringList entries;
        for (MessageStatistics const *statistics : mCoordinator->getAllMessageStatistics()) {
            MessageInfo const *info = statistics->getMessageInfo();
            bool const ofInfo = info && mCoordinator->getMessageStatistics(info) == statistics;
            entries.append(QStringLiteral("%1 %2%3:%4")
                               .arg(statistics->getFormatInfo()->getName(),
                                    statistics->getMessageName(),
                                    ofInfo ? QStringLiteral("*") : QString())
                               .arg(statistics->getCount()));
            if (statistics->parent() != mCoordinator)
                entries.last() += QStringLiteral(" (other parent)");
        }
        return entries.join(QStringLiteral(", "));
    }

    FormatInfo mVexa { QStringLiteral("VEXA") };
    FormatInfo mRtcm3 { QStringLiteral("RTCM3") };
    MessageInfo mPosition { QStringLiteral("Pos") };
    MessageInfo mStatus { QStringLiteral("Status") };
    TimeSource mTime;
    MessageSource mSource { QStringLiteral("receiver"), nullptr };
    MessageStatisticsCoordinator *mCoordinator = nullptr;
};

void tst_MessageStatisticsCoordinator::routing_data()
{
    QTest::addColumn<QString>("messages");
    QTest::addColumn<QString>("statistics");
    auto row = [](char const *name, char const *messages, char const *statistics) {
        QTest::newRow(name) << messages << statistics;
    };

    row("one object per known type", "Pos@1000 Status@1500 Pos@2000",
        "VEXA Pos*:2, VEXA Status*:1");
    row("unknown messages by format and name", "VEXA/B1@1000 VEXA/B1@2000 VEXA/B2@3000",
        "VEXA B1:2, VEXA B2:1");
    // Both kinds share the "FORMAT name" keys.
    row("a known type's name catches unknown ones", "Pos@1000 VEXA/Pos@2000", "VEXA Pos*:1");
    row("a known type takes the name over", "VEXA/Pos@1000 Pos@2000 VEXA/Pos@3000",
        "VEXA Pos:1, VEXA Pos*:1");
    row("the same name in another format", "Pos@1000 RTCM3/Pos@2000", "VEXA Pos*:1, RTCM3 Pos:1");
}

void tst_MessageStatisticsCoordinator::routing()
{
    QFETCH(QString, messages);
    QFETCH(QString, statistics);

    QCOMPARE(mCoordinator->getMessageSource(), &mSource);
    send(messages);
    QCOMPARE(this->statistics(), statistics);
    QCOMPARE(mCoordinator->hasStatistics(&mPosition), statistics.contains(QLatin1String("Pos*")));
    if (mCoordinator->hasStatistics(&mPosition))
        QCOMPARE(mCoordinator->getMessageStatistics(&mVexa, QStringLiteral("Pos")),
                 mCoordinator->getMessageStatistics(&mPosition));
}

void tst_MessageStatisticsCoordinator::gapDetectionRegistrationAndCloseEpoch()
{
    // Nothing to close yet.
    mCoordinator->closeEpoch();
    QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());

    // Registered before the first message: on. Registered afterwards: only after a clear().
    mCoordinator->enableGapDetection(&mPosition);
    send(QStringLiteral("Pos@1000 Status@1000"));
    mCoordinator->enableGapDetection(&mStatus);
    send(QStringLiteral("RTCM3/Pos@1000 Pos@2000 Status@2000 Pos@3000 Status@3000"));
    MessageStatistics *position = mCoordinator->getMessageStatistics(&mPosition);
    MessageStatistics *status = mCoordinator->getMessageStatistics(&mStatus);
    QVERIFY(position->isGapDetectionEnabled());
    QVERIFY(!status->isGapDetectionEnabled());
    QVERIFY(!mCoordinator->getAllMessageStatistics().constLast()->isGapDetectionEnabled());

    mTime.setMillis(4000);
    mCoordinator->closeEpoch();
    QCOMPARE(position->getNumberOfMissingEpochs(), 1);
    QCOMPARE(status->getNumberOfMissingEpochs(), 0);

    mCoordinator->clear();
    send(QStringLiteral("Status@5000"));
    QVERIFY(mCoordinator->getMessageStatistics(&mStatus)->isGapDetectionEnabled());
}

void tst_MessageStatisticsCoordinator::eventsAndNewestMessageTime()
{
    QVERIFY(!mCoordinator->hasValidLastMessageMillis());
    QCOMPARE(mCoordinator->getLastMessageMillis(), 0ULL);
    send(QStringLiteral("Pos@5000"));
    mTime.setMillis(9000);
    for (MessageApiEvent::Type type :
         { MessageApiEvent::CrcError, MessageApiEvent::ConnectionOpened,
           MessageApiEvent::CrcError })
        Q_EMIT mSource.newEvent(MessageApiEvent(type, QStringLiteral("VEXA CRC error"), nullptr));
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::CrcError), 2u);
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::ConnectionOpened), 1u);
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::DecoderError), 0u);
    // Events are not messages: the newest message time stays.
    QVERIFY(mCoordinator->hasValidLastMessageMillis());
    QCOMPARE(mCoordinator->getLastMessageMillis(), 5000ULL);

    send(QStringLiteral("VEXA/B1@7000"));
    QCOMPARE(mCoordinator->getLastMessageMillis(), 7000ULL);
    send(QStringLiteral("Status@0"));
    QVERIFY(!mCoordinator->hasValidLastMessageMillis());
    // A reading that the clock does not vouch for is kept all the same.
    UnfixedClock clock;
    MessageStatisticsCoordinator unfixed(&mSource, &clock);
    clock.setMillis(1234);
    Q_EMIT mSource.newUnknownMessage(&mVexa, QStringLiteral("B1"));
    QVERIFY(!unfixed.hasValidLastMessageMillis());
    QCOMPARE(unfixed.getLastMessageMillis(), 1234ULL);
}

void tst_MessageStatisticsCoordinator::clearAndDisconnect()
{
    mCoordinator->disconnectFromSource();
    TracerRecorder recorder;
    auto *coordinator = new MessageStatisticsCoordinator(&mSource, &mTime);
    MessageApiEvent const crcError(MessageApiEvent::CrcError, QStringLiteral("VEXA CRC error"),
                                   nullptr);
    Q_EMIT mSource.newEvent(crcError);
    send(QStringLiteral("Pos@1000 VEXA/B1@2000"));
    QPointer<MessageStatistics> known = coordinator->getMessageStatistics(&mPosition);
    QPointer<MessageStatistics> unknownMessage = coordinator->getAllMessageStatistics().constLast();

    coordinator->clear();
    QVERIFY(known.isNull() && unknownMessage.isNull());
    QVERIFY(!coordinator->hasStatistics(&mPosition));
    QCOMPARE(coordinator->getEventCount(MessageApiEvent::CrcError), 0u);
    QCOMPARE(coordinator->getLastMessageMillis(), 2000ULL);
    QVERIFY(coordinator->hasValidLastMessageMillis());
    // Still listening: the next message starts afresh.
    send(QStringLiteral("Pos@3000"));
    QPointer<MessageStatistics> fresh = coordinator->getMessageStatistics(&mPosition);
    QCOMPARE(coordinator->getAllMessageStatistics(), QList<MessageStatistics *> { fresh });
    QCOMPARE(fresh->getCount(), 1u);
    delete coordinator;
    QVERIFY(fresh.isNull());
    QCOMPARE(recorder.eventsOf(QStringLiteral("MessageStatisticsCoordinator")),
             QStringList({ "+MessageStatisticsCoordinator", "-MessageStatisticsCoordinator" }));

    // The disconnected coordinator saw none of it.
    QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());
    QCOMPARE(mCoordinator->getEventCount(MessageApiEvent::CrcError), 0u);
    QVERIFY(!mCoordinator->hasValidLastMessageMillis());
}

QTEST_GUILESS_MAIN(tst_MessageStatisticsCoordinator)
#include "tst_messagestatisticscoordinator.moc"
