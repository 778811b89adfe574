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

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// The bundled stream of examples/data: what its notes say is in it, and that its generator
/// still writes it byte for byte.
class tst_Rtcm3StationStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scansToItsNotes();
    void regenerates_data();
    void regenerates();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

QByteArray readFile(QString const &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QString bundled = QStringLiteral(RTCM3_STATION_STREAM);

/// 2026-01-04 00:00:00 GPS time, the week rollover in the middle of the stream.
constexpr quint64 week2400 = 2400 * Rtcm3StreamTime::weekMs;

} // namespace

void tst_Rtcm3StationStream::scansToItsNotes()
{
    Rtcm3Framer framer(mDictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    connect(&framer, &Rtcm3Framer::frameFound, &decoder,
            qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    QStringList events;
    connect(&framer, &MessageSource::newEvent, [&](MessageApiEvent const &event) {
        events.append(event.getTypeString() + QLatin1String(": ") + event.getMessage());
    });
    TimeSource clock;
    MessageStatisticsCoordinator coordinator(&decoder, &clock);
    const QList<int> numbers { 1005, 1019, 1020, 1033, 1077, 1087, 1097, 1127, 1230 };
    for (int number : numbers)
        coordinator.enableGapDetection(mDictionary.getMessageInfo(number));
    // A fallback date weeks off: the week must come from the stream's ephemerides.
    Rtcm3StreamTime time(QDate(2026, 3, 1));
    QVector<quint64> epochs;
    connect(&decoder, &MessageSource::newMessageEarly, [&](Message const *message) {
        if (time.processMessage(message))
            clock.setMillis(time.getMillis());
    });
    connect(&decoder, &MessageSource::newMessageLate, [&](Message const *message) {
        if (Rtcm3StreamTime::isEndOfEpoch(message)) {
            epochs.append(time.getMillis());
            coordinator.closeEpoch();
        }
    });
    framer.addData(readFile(bundled));
    framer.finish();

    QStringList counts;
    QStringList gaps;
    for (int number : numbers) {
        MessageStatistics const *statistics
            = coordinator.getMessageStatistics(mDictionary.getMessageInfo(number));
        counts.append(QStringLiteral("%1:%2").arg(number).arg(statistics->getCount()));
        for (MessageStatistics::Gap const &gap : statistics->getGaps()) {
            gaps.append(QStringLiteral("%1 from %2 ms into the week, %3 epochs of %4 ms")
                            .arg(number)
                            .arg(gap.startMillis - week2400)
                            .arg(gap.missingEpochs)
                            .arg(gap.intervalMillis));
        }
        QCOMPARE(statistics->getNumberOfGaps(), number == 1087 ? 1 : 0);
    }
    QCOMPARE(counts.join(QLatin1Char(' ')),
             QStringLiteral("1005:60 1019:10 1020:9 1033:60 1077:600 1087:597 1097:600 1127:600 "
                            "1230:100"));
    QCOMPARE(framer.getFrameCount(), 2636u);
    QCOMPARE(framer.getCrcErrorCount(), 1u);
    QCOMPARE(framer.getForeignByteCount(), 291u);
    QCOMPARE(framer.getIncompleteFrameByteCount(), 40u);
    QCOMPARE(
        events,
        QStringList({ QStringLiteral("CRC Error: RTCM3 CRC error"),
                      QStringLiteral("Decoder Error: Framer: 67 bytes outside frames at "
                                     "stream offset 134806"),
                      QStringLiteral("Decoder Error: Framer: 184 bytes outside frames at "
                                     "stream offset 203894"),
                      QStringLiteral("Decoder Error: Framer: incomplete frame at stream "
                                     "offset 268102: 40 of 151 bytes when the input ended") }));
    // The 1087 of 00:02:00 to 00:02:02 is lost.
    QCOMPARE(
        gaps,
        QStringList { QStringLiteral("1087 from 120000 ms into the week, 3 epochs of 1000 ms") });
    // 1230 changes from 10 s to 5 s and is regular at once.
    MessageStatistics const *biases
        = coordinator.getMessageStatistics(mDictionary.getMessageInfo(1230));
    QCOMPARE(biases->getIntervalCountHash(),
             (QHash<long long, unsigned int> { { 10000, 20 }, { 5000, 79 } }));
    QVERIFY(biases->isCurrentlyRegular());
    // 600 epochs a second apart across the week rollover: time never steps back.
    QCOMPARE(epochs.size(), 600);
    QCOMPARE(epochs.first(), week2400 - 300000);
    for (int i = 1; i < epochs.size(); ++i)
        QCOMPARE(epochs[i] - epochs[i - 1], 1000u);
}

void tst_Rtcm3StationStream::regenerates_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("stream") << QString();
    QTest::newRow("notes") << QStringLiteral(".md");
}

void tst_Rtcm3StationStream::regenerates()
{
    QFETCH(QString, suffix);
#ifndef RTCM3_MAKESTATIONSTREAM
    QSKIP("makestationstream is built with the examples");
#else
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("station.rtcm3"));
    Rtcm3TestData::run(QStringLiteral(RTCM3_MAKESTATIONSTREAM), { output });
    const QByteArray made = readFile(output + suffix);
    QVERIFY(!made.isEmpty());
    QVERIFY(made == readFile(bundled + suffix));
#endif
}

QTEST_GUILESS_MAIN(tst_Rtcm3StationStream)
#include "tst_rtcm3stationstream.moc"
