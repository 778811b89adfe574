// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "formatinfo.h"
#include "rtcm3/rtcm3framer.h"

#include <QMap>
#include <QTest>

class tst_Rtcm3Framer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void crafted_data();
    void crafted();
    void captures_data();
    void captures();
    void finishStartsAfresh();
};

namespace {

/// Everything one framer run gives: frames (as hex), event texts with their type, counts.
struct Run
{
    QStringList frames;
    QStringList events;
    QMap<int, int> framesPerNumber;
    quint64 foreignBytes = 0;
    quint64 incompleteBytes = 0;
    quint64 crcErrors = 0;
};

Run frameInChunks(QByteArray const &input, int chunkSize, bool keepFrames)
{
    FormatInfo format(QStringLiteral("RTCM3"));
    Rtcm3Framer framer(&format, QStringLiteral("Test"));
    Run run;
    QObject::connect(&framer, &Rtcm3Framer::frameFound, [&](const uint8_t *frame, uint length) {
        if (keepFrames) {
            run.frames.append(QString::fromLatin1(
                QByteArray(reinterpret_cast<char const *>(frame), int(length)).toHex()));
        }
        const int number = length >= 5 ? (frame[3] << 4) | (frame[4] >> 4) : -1;
        ++run.framesPerNumber[number];
    });
    QObject::connect(&framer, &MessageSource::newEvent, [&](MessageApiEvent const &event) {
        QCOMPARE(event.getFormat(), &format);
        run.events.append(event.getTypeString() + QLatin1String(": ") + event.getMessage());
    });
    for (int offset = 0; offset < input.size(); offset += chunkSize)
        framer.addData(input.mid(offset, chunkSize));
    framer.finish();
    run.foreignBytes = framer.getForeignByteCount();
    run.incompleteBytes = framer.getIncompleteFrameByteCount();
    run.crcErrors = framer.getCrcErrorCount();
    return run;
}

QString hex(QByteArray const &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

} // namespace

void tst_Rtcm3Framer::crafted_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("frames");
    QTest::addColumn<QStringList>("events");

    using Rtcm3TestData::frame;
    const QByteArray a = frame(QByteArray::fromHex("3ed00102030405"));
    const QByteArray b = frame(QByteArray::fromHex("3ee0aabb"));
    const QByteArray empty = frame(QByteArray());
    QByteArray badCrc = a;
    badCrc[badCrc.size() - 1] = char(badCrc.at(badCrc.size() - 1) ^ 0x01);
    const QString outside
        = QStringLiteral("Decoder Error: Test: %1 bytes outside frames at stream offset %2");
    const QString crcError = QStringLiteral("CRC Error: RTCM3 CRC error");

    QTest::newRow("two frames back to back")
        << (a + b) << QStringList { hex(a), hex(b) } << QStringList();
    QTest::newRow("frame with an empty payload")
        << empty << QStringList { hex(empty) } << QStringList();
    QTest::newRow("foreign bytes before, between and after")
        << (QByteArray("$GP") + a + QByteArray("xy") + b + QByteArray("z"))
        << QStringList { hex(a), hex(b) }
        << QStringList { outside.arg(3).arg(0), outside.arg(2).arg(3 + a.size()),
                         outside.arg(1).arg(5 + a.size() + b.size()) };
    QTest::newRow("false preamble in foreign data before a frame")
        << (QByteArray::fromHex("d30002aabbccddeeff") + a) << QStringList { hex(a) }
        << QStringList { crcError, outside.arg(9).arg(0) };
    QTest::newRow("false preamble whose length reaches into a frame")
        << (QByteArray::fromHex("d30004") + a + b) << QStringList { hex(a), hex(b) }
        << QStringList { crcError, outside.arg(3).arg(0) };
    QTest::newRow("false preamble whose length reaches past the end")
        << (QByteArray::fromHex("d300ff") + a) << QStringList { hex(a) }
        << QStringList { outside.arg(3).arg(0) };
    QTest::newRow("preamble with reserved bits set is foreign")
        << (QByteArray::fromHex("d3fc00") + a) << QStringList { hex(a) }
        << QStringList { outside.arg(3).arg(0) };
    QTest::newRow("corrupted CRC between two frames")
        << (b + badCrc + b) << QStringList { hex(b), hex(b) }
        << QStringList { crcError, outside.arg(badCrc.size()).arg(b.size()) };
    QTest::newRow("incomplete frame at the end")
        << (a + b.left(5)) << QStringList { hex(a) }
        << QStringList { QStringLiteral("Decoder Error: Test: incomplete frame at stream offset "
                                        "%1: 5 of 10 bytes when the input ended")
                             .arg(a.size()) };
    QTest::newRow("lone preamble at the end")
        << (a + QByteArray::fromHex("d3")) << QStringList { hex(a) }
        << QStringList { QStringLiteral("Decoder Error: Test: incomplete frame at stream offset "
                                        "%1: 1 bytes when the input ended")
                             .arg(a.size()) };
    QTest::newRow("nothing but foreign bytes") << QByteArray("# a comment line\n") << QStringList()
                                               << QStringList { outside.arg(17).arg(0) };
    QTest::newRow("no input") << QByteArray() << QStringList() << QStringList();
}

void tst_Rtcm3Framer::crafted()
{
    QFETCH(QByteArray, input);
    QFETCH(QStringList, frames);
    QFETCH(QStringList, events);

    for (int chunkSize : { 1, 2, 7, int(qMax(1, input.size())) }) {
        const Run run = frameInChunks(input, chunkSize, true);
        QCOMPARE(run.frames, frames);
        QCOMPARE(run.events, events);
    }
}

void tst_Rtcm3Framer::captures_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("framesPerNumber");
    QTest::addColumn<quint64>("foreignBytes");
    QTest::addColumn<quint64>("incompleteBytes");

    // The counts that the captures' SOURCES.md gives. Bytes outside frames include those of
    // an incomplete last frame: gmsd7 is cut inside a frame, the f9t log inside a 4072.
    QTest::newRow("dropped-packets")
        << QStringLiteral("dropped-packets.rtcm3")
        << QStringLiteral("1006:131 1008:131 1013:132 1019:363 1020:242 1033:131 1042:42 1044:4 "
                          "1045:34 1046:34 1074:1311 1084:1312 1094:1312 1114:1312 1124:1312 "
                          "1230:131")
        << quint64(171) << quint64(0);
    QTest::newRow("gmsd7-truncated")
        << QStringLiteral("gmsd7-truncated.rtcm3")
        << QStringLiteral("1007:28 1008:28 1019:15 1020:16 1033:28 1077:257 1087:257 1117:257 "
                          "1127:257")
        << quint64(302) << quint64(302);
    QTest::newRow("f9t-interleaved")
        << QStringLiteral("f9t-interleaved.log")
        << QStringLiteral("1005:26 1077:26 1087:26 1097:26 1127:26 1230:26 4072:26")
        << quint64(8496) << quint64(89);
}

void tst_Rtcm3Framer::captures()
{
    RTCM3_REQUIRE_CAPTURES();
    QFETCH(QString, file);
    QFETCH(QString, framesPerNumber);
    QFETCH(quint64, foreignBytes);
    QFETCH(quint64, incompleteBytes);

    const QByteArray input = Rtcm3TestData::readCapture(file);
    QVERIFY(!input.isEmpty());
    Run whole;
    for (int chunkSize : { int(input.size()), 1, 13, 1029, 4096 }) {
        const Run run = frameInChunks(input, chunkSize, false);
        QStringList counts;
        for (auto it = run.framesPerNumber.cbegin(); it != run.framesPerNumber.cend(); ++it)
            counts.append(QStringLiteral("%1:%2").arg(it.key()).arg(it.value()));
        QCOMPARE(counts.join(QLatin1Char(' ')), framesPerNumber);
        QCOMPARE(run.foreignBytes, foreignBytes);
        QCOMPARE(run.incompleteBytes, incompleteBytes);
        // The events do not depend on how the stream was cut.
        if (chunkSize == input.size())
            whole = run;
        else
            QCOMPARE(run.events, whole.events);
    }
}

void tst_Rtcm3Framer::finishStartsAfresh()
{
    FormatInfo format(QStringLiteral("RTCM3"));
    Rtcm3Framer framer(&format, QStringLiteral("Test"));
    QStringList texts;
    connect(&framer, &MessageSource::newEvent,
            [&](MessageApiEvent const &event) { texts.append(event.getMessage()); });
    const QByteArray a = Rtcm3TestData::frame(QByteArray::fromHex("3ed0"));
    framer.addData(QByteArray("ab") + a.left(4));
    framer.finish();
    framer.addData(QByteArray("c") + a);
    framer.finish();
    QCOMPARE(texts,
             (QStringList { QStringLiteral("Test: 2 bytes outside frames at stream offset 0"),
                            QStringLiteral("Test: incomplete frame at stream offset 2: 4 of "
                                           "8 bytes when the input ended"),
                            QStringLiteral("Test: 1 bytes outside frames at stream offset 0") }));
    QCOMPARE(framer.getFrameCount(), quint64(1));
}

QTEST_GUILESS_MAIN(tst_Rtcm3Framer)
#include "tst_rtcm3framer.moc"
