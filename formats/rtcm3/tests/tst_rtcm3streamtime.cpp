// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "messageinfo.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3framer.h"
#include "rtcm3/rtcm3streamtime.h"
#include "timesource.h"

#include <QTest>

class tst_Rtcm3StreamTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void epochTimes_data();
    void epochTimes();
    void drivesStatisticsThroughACapture();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

QString bits(quint64 value, int width)
{
    return QString::number(value, 2).rightJustified(width, QLatin1Char('0')).right(width);
}

/// An MSM1 of no satellites whose 30 bits of epoch time are given.
QByteArray msm1(int number, quint64 epochTime)
{
    return Rtcm3TestData::frameFromBits(bits(quint64(number), 12) + bits(0, 12)
                                        + bits(epochTime, 30) + bits(0, 127));
}

constexpr quint64 weekMs = Rtcm3StreamTime::weekMs;
// GPS week 2009 (2018-07-08 to 2018-07-14) and the date the tests fall back to.
constexpr quint64 week2009 = 2009 * weekMs;
const QDate fallback(2018, 7, 12);

} // namespace

void tst_Rtcm3StreamTime::epochTimes_data()
{
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<QList<quint64>>("millis");

    QTest::newRow("GPS time of week in the fallback week")
        << QList<QByteArray> { msm1(1071, 345600000) } << QList<quint64> { week2009 + 345600000 };
    QTest::newRow("week rollover goes forward")
        << QList<QByteArray> { msm1(1077, weekMs - 1000), msm1(1077, 1000) }
        << QList<quint64> { week2009 + weekMs - 1000, week2009 + weekMs + 1000 };
    QTest::newRow("late message before the rollover goes back a little")
        << QList<QByteArray> { msm1(1077, 1000), msm1(1097, weekMs - 1000) }
        << QList<quint64> { week2009 + 1000, week2009 - 1000 };
    // Thursday 00:00:05 GPS: Wednesday 23:59:47 UTC, Thursday 02:59:47 Moscow time.
    QTest::newRow("GLONASS day of week and Moscow time")
        << QList<QByteArray> { msm1(1084, (quint64(4) << 27) | (2 * 3600000 + 59 * 60000 + 47000)) }
        << QList<quint64> { week2009 + 4 * 86400000 + 5000 };
    QTest::newRow("BeiDou time is 14 s behind")
        << QList<QByteArray> { msm1(1124, 345586000) } << QList<quint64> { week2009 + 345600000 };
    QTest::newRow("QZSS and Galileo as GPS")
        << QList<QByteArray> { msm1(1114, 7000), msm1(1094, 8000) }
        << QList<quint64> { week2009 + 7000, week2009 + 8000 };
}

void tst_Rtcm3StreamTime::epochTimes()
{
    QFETCH(QList<QByteArray>, frames);
    QFETCH(QList<quint64>, millis);

    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    Rtcm3StreamTime time(fallback);
    QList<quint64> seen;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        QVERIFY(time.processMessage(message));
        seen.append(time.getMillis());
    });
    for (QByteArray const &frame : frames)
        decoder.decodeMessage(frame);
    QCOMPARE(seen, millis);
}

void tst_Rtcm3StreamTime::drivesStatisticsThroughACapture()
{
    RTCM3_REQUIRE_CAPTURES();
    Rtcm3Framer framer(mDictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    connect(&framer, &Rtcm3Framer::frameFound, &decoder,
            qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    TimeSource clock;
    MessageStatisticsCoordinator coordinator(&decoder, &clock);
    for (int number : { 1074, 1084, 1094, 1114, 1124 })
        coordinator.enableGapDetection(mDictionary.getMessageInfo(number));
    // A fallback date years off: the week must come from the stream.
    Rtcm3StreamTime time(QDate(2026, 11, 23));
    QVector<quint64> epochStarts;
    QStringList inconsistent;
    quint64 epochTime = 0;
    connect(&decoder, &MessageSource::newMessageEarly, [&](Message const *message) {
        if (!time.processMessage(message))
            return;
        // Every system's messages of one epoch give the same GPS time.
        if (epochTime == 0) {
            epochTime = time.getMillis();
            if (time.hasWeekFromStream())
                epochStarts.append(epochTime);
        } else if (time.getMillis() != epochTime && time.hasWeekFromStream())
            inconsistent.append(message->getInfo()->getName());
        clock.setMillis(time.getMillis());
    });
    connect(&decoder, &MessageSource::newMessageLate, [&](Message const *message) {
        if (Rtcm3StreamTime::isEndOfEpoch(message)) {
            coordinator.closeEpoch();
            epochTime = 0;
        }
    });
    framer.addData(Rtcm3TestData::readCapture(QStringLiteral("dropped-packets.rtcm3")));
    framer.finish();

    QVERIFY(time.hasWeekFromStream());
    QCOMPARE(time.getLeapSeconds(), 18);
    QCOMPARE(inconsistent, QStringList());
    // The last epoch is 2018-07-12 23:59:19 GPS time, as convbin's RINEX says.
    QCOMPARE(epochStarts.last(), week2009 + 4 * 86400000ull + (23 * 3600 + 59 * 60 + 19) * 1000ull);
    for (int i = 1; i < epochStarts.size(); ++i)
        QVERIFY(epochStarts[i] > epochStarts[i - 1]);
    // 1 Hz without a missing second, as convbin's epochs from 23:37:31 on are; the lost
    // packets cost no whole epoch of any system.
    QCOMPARE(epochStarts.size(), 1311);
    QCOMPARE(epochStarts.last() - epochStarts.first(), 1310000ull);
    for (int number : { 1074, 1084, 1094, 1114, 1124 }) {
        MessageStatistics *statistics
            = coordinator.getMessageStatistics(mDictionary.getMessageInfo(number));
        QVERIFY(statistics->getCount() >= 1311u);
        QCOMPARE(statistics->getNumberOfGaps(), 0);
        QCOMPARE(statistics->getNumberOfMissingEpochs(), 0);
    }
}

QTEST_GUILESS_MAIN(tst_Rtcm3StreamTime)
#include "tst_rtcm3streamtime.moc"
