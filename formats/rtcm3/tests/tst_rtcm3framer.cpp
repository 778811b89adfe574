// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "auxiliary/rtcm3bitreader.h"
#include "auxiliary/rtcm3crc24q.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3framer.h"

#include <QMap>
#include <QTest>

#include <random>

/// The bit reader, the framer on crafted and real streams, and damaged input.
class tst_Rtcm3Framer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bitReader_data();
    void bitReader();
    void crafted_data();
    void crafted();
    void captures_data();
    void captures();
    void survivesDamagedFrames_data();
    void survivesDamagedFrames();
    void keepsFramesAroundGarbage();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

enum Kind { U, I, S };

/// Everything one framer run gives.
struct Run
{
    QStringList frames;
    QStringList events;
    QMap<int, int> framesPerNumber;
};

Run frameInChunks(FormatInfo const *format, QByteArray const &input, int chunkSize)
{
    Rtcm3Framer framer(format, QStringLiteral("Test"));
    Run run;
    QObject::connect(&framer, &Rtcm3Framer::frameFound, [&](const uint8_t *frame, uint length) {
        run.frames.append(QString::fromLatin1(
            QByteArray(reinterpret_cast<char const *>(frame), int(length)).toHex()));
        ++run.framesPerNumber[length >= 5 ? (frame[3] << 4) | (frame[4] >> 4) : -1];
    });
    QObject::connect(&framer, &MessageSource::newEvent, [&](MessageApiEvent const &event) {
        QCOMPARE(event.getFormat(), format);
        run.events.append(event.getTypeString() + QLatin1String(": ") + event.getMessage());
    });
    for (int offset = 0; offset < input.size(); offset += chunkSize)
        framer.addData(input.mid(offset, chunkSize));
    framer.finish();
    run.events.append(QStringLiteral("%1 foreign, %2 incomplete")
                          .arg(framer.getForeignByteCount())
                          .arg(framer.getIncompleteFrameByteCount()));
    return run;
}

QString hex(QByteArray const &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

/// Reads every value of the message and of its records, which are the values of its group
/// fields with the message as parent; false when one is invalid.
bool readEverything(Message const *message)
{
    QVector<Message const *> records;
    for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
        for (unsigned int i = 0; i < field->getNumberOfValues(message); ++i) {
            const FieldValue v = field->getValue(message, i);
            if (!v.isValid())
                return false;
            if (v.getType().getBasisType() == FieldType::SubMessage)
                records.append(v.getSubMessage());
            else
                field->getInterpretedString(v, true);
        }
    }
    return records == message->getSubMessages()
        && std::all_of(records.cbegin(), records.cend(), [message](Message const *record) {
               return record->getParentMessage() == message && readEverything(record);
           });
}

} // namespace

void tst_Rtcm3Framer::bitReader_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("width");
    QTest::addColumn<qint64>("expected"); // 42: refused

    QTest::newRow("unsigned, 12 bits") << int(U) << 0 << 12 << qint64(0x123);
    QTest::newRow("unsigned, across three bytes") << int(U) << 4 << 20 << qint64(0x23456);
    QTest::newRow("unsigned, 64 bits unaligned")
        << int(U) << 4 << 64 << qint64(0x23456789abcdef0fLL);
    QTest::newRow("signed, 38 bits negative") << int(I) << 64 << 38 << qint64(-1071644577);
    QTest::newRow("signed, 64 bits") << int(I) << 64 << 64 << qint64(-71916850107121665LL);
    QTest::newRow("sign-magnitude, negative") << int(S) << 64 << 8 << qint64(-127);
    QTest::newRow("sign-magnitude, negative zero") << int(S) << 80 << 8 << qint64(0);
    QTest::newRow("sign-magnitude, 27 bits") << int(S) << 93 << 27 << qint64(25165823);
    QTest::newRow("refused: one bit past the end") << int(U) << 120 << 9 << qint64(42);
    QTest::newRow("refused: wider than 64 bits") << int(U) << 0 << 65 << qint64(42);
    QTest::newRow("refused: huge position") << int(U) << 0x7fffffff << 8 << qint64(42);
    QTest::newRow("refused: signed of zero width") << int(I) << 0 << 0 << qint64(42);
    QTest::newRow("refused: sign-magnitude past the end") << int(S) << 127 << 2 << qint64(42);
}

void tst_Rtcm3Framer::bitReader()
{
    QFETCH(int, kind);
    QFETCH(int, position);
    QFETCH(int, width);
    QFETCH(qint64, expected);

    // The reader sees 16 bytes of a longer buffer: the bytes after them are never read.
    const QByteArray block = QByteArray::fromHex("123456789abcdef0ff0080017fffffffaaaa");
    const Rtcm3BitReader reader(reinterpret_cast<uint8_t const *>(block.constData()), 16);
    const auto at = std::size_t(position);
    uint64_t u = 42;
    int64_t i = 42;
    const bool accepted = kind == U ? reader.readUnsigned(at, unsigned(width), &u)
        : kind == I                 ? reader.readSigned(at, unsigned(width), &i)
                                    : reader.readSignMagnitude(at, unsigned(width), &i);
    QCOMPARE(accepted, expected != 42);
    QCOMPARE(kind == U ? qint64(u) : qint64(i), expected);
    // The usual check value of CRC-24Q.
    QCOMPARE(rtcm3Crc24q(reinterpret_cast<uint8_t const *>("123456789"), 9), 0xCDE703u);
}

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
    const QString incomplete = QStringLiteral(
        "Decoder Error: Test: incomplete frame at stream offset %1: %2 bytes when the input ended");
    const QString counts = QStringLiteral("%1 foreign, %2 incomplete");

    QTest::newRow("two frames back to back")
        << (a + b) << QStringList { hex(a), hex(b) } << QStringList { counts.arg(0).arg(0) };
    QTest::newRow("frame with an empty payload")
        << empty << QStringList { hex(empty) } << QStringList { counts.arg(0).arg(0) };
    QTest::newRow("foreign bytes before, between and after")
        << (QByteArray("$GP") + a + QByteArray("xy") + b + QByteArray("z"))
        << QStringList { hex(a), hex(b) }
        << QStringList { outside.arg(3).arg(0), outside.arg(2).arg(3 + a.size()),
                         outside.arg(1).arg(5 + a.size() + b.size()), counts.arg(6).arg(0) };
    QTest::newRow("false preamble in foreign data before a frame")
        << (QByteArray::fromHex("d30002aabbccddeeff") + a) << QStringList { hex(a) }
        << QStringList { crcError, outside.arg(9).arg(0), counts.arg(9).arg(0) };
    QTest::newRow("false preamble whose length reaches into a frame")
        << (QByteArray::fromHex("d30004") + a + b) << QStringList { hex(a), hex(b) }
        << QStringList { crcError, outside.arg(3).arg(0), counts.arg(3).arg(0) };
    QTest::newRow("false preamble whose length reaches past the end")
        << (QByteArray::fromHex("d300ff") + a) << QStringList { hex(a) }
        << QStringList { outside.arg(3).arg(0), counts.arg(3).arg(0) };
    QTest::newRow("preamble with reserved bits set is foreign")
        << (QByteArray::fromHex("d3fc00") + a) << QStringList { hex(a) }
        << QStringList { outside.arg(3).arg(0), counts.arg(3).arg(0) };
    QTest::newRow("corrupted CRC between two frames")
        << (b + badCrc + b) << QStringList { hex(b), hex(b) }
        << QStringList { crcError, outside.arg(badCrc.size()).arg(b.size()),
                         counts.arg(badCrc.size()).arg(0) };
    QTest::newRow("incomplete frame at the end")
        << (a + b.left(5)) << QStringList { hex(a) }
        << QStringList { incomplete.arg(a.size()).arg(QStringLiteral("5 of 10")),
                         counts.arg(5).arg(5) };
    QTest::newRow("lone preamble at the end")
        << (a + QByteArray::fromHex("d3")) << QStringList { hex(a) }
        << QStringList { incomplete.arg(a.size()).arg(1), counts.arg(1).arg(1) };
    QTest::newRow("no input") << QByteArray() << QStringList()
                              << QStringList { counts.arg(0).arg(0) };

    // A log keeps every distinct text up to its repeat limit: from the 101st run on the runs
    // share one text, so that foreign data for weeks cannot fill it.
    QByteArray manyRuns;
    QStringList manyFrames;
    QStringList manyEvents;
    for (int run = 0; run < 102; ++run) {
        if (run < 100)
            manyEvents.append(outside.arg(1).arg(manyRuns.size()));
        else
            manyEvents.append(QStringLiteral(
                "Decoder Error: Test: more bytes outside frames, counted without their offsets"));
        manyRuns.append('x');
        if (run < 101) {
            manyRuns.append(a);
            manyFrames.append(hex(a));
        }
    }
    manyEvents.append(counts.arg(102).arg(0));
    QTest::newRow("runs past the hundredth share one text") << manyRuns << manyFrames << manyEvents;
}

void tst_Rtcm3Framer::crafted()
{
    QFETCH(QByteArray, input);
    QFETCH(QStringList, frames);
    QFETCH(QStringList, events);

    FormatInfo format(QStringLiteral("RTCM3"));
    for (int chunkSize : { 1, 2, 7, int(qMax(1, input.size())) }) {
        const Run run = frameInChunks(&format, input, chunkSize);
        QCOMPARE(run.frames, frames);
        QCOMPARE(run.events, events);
    }
}

void tst_Rtcm3Framer::captures_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("framesPerNumber");
    QTest::addColumn<QString>("outside");

    // The counts of the captures' SOURCES.md; bytes outside frames include an incomplete last
    // frame (gmsd7 is cut inside a frame, the f9t log inside a 4072).
    QTest::newRow("dropped-packets")
        << QStringLiteral("dropped-packets.rtcm3")
        << QStringLiteral("1006:131 1008:131 1013:132 1019:363 1020:242 1033:131 1042:42 1044:4 "
                          "1045:34 1046:34 1074:1311 1084:1312 1094:1312 1114:1312 1124:1312 "
                          "1230:131")
        << QStringLiteral("171 foreign, 0 incomplete");
    QTest::newRow("gmsd7-truncated")
        << QStringLiteral("gmsd7-truncated.rtcm3")
        << QStringLiteral("1007:28 1008:28 1019:15 1020:16 1033:28 1077:257 1087:257 1117:257 "
                          "1127:257")
        << QStringLiteral("302 foreign, 302 incomplete");
    QTest::newRow("f9t-interleaved")
        << QStringLiteral("f9t-interleaved.log")
        << QStringLiteral("1005:26 1077:26 1087:26 1097:26 1127:26 1230:26 4072:26")
        << QStringLiteral("8496 foreign, 89 incomplete");
}

void tst_Rtcm3Framer::captures()
{
    RTCM3_REQUIRE_CAPTURES();
    QFETCH(QString, file);
    QFETCH(QString, framesPerNumber);
    QFETCH(QString, outside);

    const QByteArray input = Rtcm3TestData::readCapture(file);
    QStringList wholeEvents;
    int frames = 0;
    for (int chunkSize : { int(input.size()), 1, 13, 1029 }) {
        const Run run = frameInChunks(mDictionary.getFormat(), input, chunkSize);
        QStringList counts;
        for (auto it = run.framesPerNumber.cbegin(); it != run.framesPerNumber.cend(); ++it)
            counts.append(QStringLiteral("%1:%2").arg(it.key()).arg(it.value()));
        QCOMPARE(counts.join(QLatin1Char(' ')), framesPerNumber);
        QCOMPARE(run.events.last(), outside);
        // The events do not depend on how the stream was cut.
        if (wholeEvents.isEmpty())
            wholeEvents = run.events;
        QCOMPARE(run.events, wholeEvents);
        frames = run.frames.size();
    }
    // Every frame decodes and every value reads; only the proprietary 4072 is unknown.
    const Rtcm3TestData::DecodedStream stream(mDictionary, input);
    for (Message const *message : stream.messages)
        QVERIFY(readEverything(message));
    QCOMPARE(stream.messages.size() + stream.unknown.count(QStringLiteral("4072")), frames);
    for (QString const &event : stream.events)
        QVERIFY2(!event.contains(QLatin1String("Decoder: ")), qPrintable(event));
}

void tst_Rtcm3Framer::survivesDamagedFrames_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("dropped-packets") << QStringLiteral("dropped-packets.rtcm3");
    QTest::newRow("gmsd7-truncated") << QStringLiteral("gmsd7-truncated.rtcm3");
    QTest::newRow("f9t-interleaved") << QStringLiteral("f9t-interleaved.log");
}

void tst_Rtcm3Framer::survivesDamagedFrames()
{
    RTCM3_REQUIRE_CAPTURES();
    QFETCH(QString, file);

    QMap<int, QByteArray> firstFrames;
    Rtcm3Framer framer(mDictionary.getFormat(), QStringLiteral("Framer"));
    connect(&framer, &Rtcm3Framer::frameFound, [&](const uint8_t *frame, uint length) {
        const int type = (frame[3] << 4) | (frame[4] >> 4);
        if (!firstFrames.contains(type))
            firstFrames.insert(type,
                               QByteArray(reinterpret_cast<char const *>(frame), int(length)));
    });
    framer.addData(Rtcm3TestData::readCapture(file));
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    int outcomes = 0;
    int errors = 0;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        ++outcomes;
        QVERIFY(readEverything(message));
    });
    connect(&decoder, &MessageSource::newUnknownMessage, [&] { ++outcomes; });
    connect(&decoder, &MessageSource::newEvent, [&] { ++outcomes, ++errors; });
    int attempts = 0;
    for (QByteArray const &frame : std::as_const(firstFrames)) {
        // Every truncation, and every payload byte set to all ones and to all zeros: counts
        // and masks that claim more than the frame holds.
        const QByteArray payload = frame.mid(3, frame.size() - 6);
        QVector<QByteArray> damaged;
        for (int i = 0; i < payload.size(); ++i) {
            damaged.append(payload.left(i));
            damaged.append(QByteArray(payload).replace(i, 1, "\xff"));
            damaged.append(QByteArray(payload).replace(i, 1, QByteArray(1, '\0')));
        }
        for (QByteArray const &bytes : std::as_const(damaged)) {
            // A buffer of exactly the frame, so that a sanitizer sees any overrun.
            const QByteArray damagedFrame = Rtcm3TestData::frame(bytes);
            std::vector<uint8_t> copy(damagedFrame.cbegin(), damagedFrame.cend());
            decoder.decodeMessage(copy.data(), uint(copy.size()));
            ++attempts;
        }
    }
    // Each damaged frame ends as one message, one unknown message or one decoder error.
    QCOMPARE(outcomes, attempts);
    QVERIFY(errors > 0);
}

void tst_Rtcm3Framer::keepsFramesAroundGarbage()
{
    RTCM3_REQUIRE_CAPTURES();
    QByteArray stream;
    int frames = 0;
    std::mt19937 random(20121014);
    Rtcm3Framer splitter(mDictionary.getFormat(), QStringLiteral("Splitter"));
    connect(&splitter, &Rtcm3Framer::frameFound, [&](const uint8_t *frame, uint length) {
        // Garbage rich in false preambles, some with plausible lengths, before each frame.
        for (int i = int(random() % 64); i > 0; --i) {
            const unsigned int r = random() % 8;
            stream.append(r == 0 ? char(0xD3) : r == 1 ? char(0x00) : char(random() % 256));
        }
        stream.append(reinterpret_cast<char const *>(frame), int(length));
        ++frames;
    });
    splitter.addData(
        Rtcm3TestData::readCapture(QStringLiteral("gmsd7-truncated.rtcm3")).left(65536));
    QVERIFY(frames > 200);
    const Rtcm3TestData::DecodedStream decoded(mDictionary, stream);
    QCOMPARE(decoded.messages.size() + decoded.unknown.size(), frames);
}

QTEST_GUILESS_MAIN(tst_Rtcm3Framer)
#include "tst_rtcm3framer.moc"
