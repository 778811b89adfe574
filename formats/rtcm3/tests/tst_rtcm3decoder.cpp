// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "fieldinfo.h"
#include "memleaktracer.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3epochclock.h"
#include "rtcm3/rtcm3fieldinfo.h"
#include "rtcm3/rtcm3framer.h"
#include "rtcm3/rtcm3streamtime.h"
#include "timesource.h"

#include <QMap>
#include <QTest>

#include <random>

/// The framer and the decoder on crafted frames, on the captures and on damaged input, the
/// dictionary and the stream time.
class tst_Rtcm3Decoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); } // no digit grouping
    void framing_data();
    void framing();
    void decoding_data();
    void decoding();
    void announcesInThreePhasesUnlessDisabled();
    void captures_data();
    void captures();
    void dictionary();
    void epochTimes_data();
    void epochTimes();
    void streamTimeDrivesStatistics();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

using Rtcm3TestData::bits;
using Rtcm3TestData::frame;

// GPS week 2009: 2018-07-08 to 2018-07-14.
constexpr quint64 week2009 = 2009 * Rtcm3StreamTime::weekMs;

/// A frame of the message type whose fields are all zero but the number and the given one.
QByteArray withField(Rtcm3Dictionary const &dictionary, int number, char const *name,
                     QString const &value)
{
    QString payload = bits(number, 12);
    for (FieldInfo const *field : dictionary.getMessageInfo(number)->getFieldInfos().mid(1)) {
        const int width = int(static_cast<Rtcm3FieldInfo const *>(field)->getBitWidth());
        payload += field->getName() == QLatin1String(name) && value.size() == width
            ? value
            : QString(width, QLatin1Char('0'));
    }
    return frame(payload);
}

// 1005 of station 7: GPS and GLONASS, X -1234.5678 m, Y 2345.6789 m, Z 0.0001 m.
const QString station1005 = bits(1005, 12) + bits(7, 12) + bits(0, 6) + QStringLiteral("1100")
    + bits(-12345678, 38) + QStringLiteral("10") + bits(23456789, 38) + bits(2, 2) + bits(1, 38);

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

void tst_Rtcm3Decoder::framing_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("frames");
    QTest::addColumn<QStringList>("events");

    const QByteArray a = frame(bits(4000, 12) + bits(0x102030405, 44));
    const QByteArray b = frame(bits(4001, 12) + bits(0xabb, 12));
    const QByteArray empty = frame(QString());
    QByteArray badCrc = a;
    badCrc[badCrc.size() - 1] = char(badCrc.at(badCrc.size() - 1) ^ 0x01);
    const QString hexA = QString::fromLatin1(a.toHex()), hexB = QString::fromLatin1(b.toHex());
    const QString outside
        = QStringLiteral("Decoder Error: Framer: %1 bytes outside frames at stream offset %2");
    const QString crcError = QStringLiteral("CRC Error: RTCM3 CRC error");
    const QString incomplete = QStringLiteral("Decoder Error: Framer: incomplete frame at stream "
                                              "offset %1: %2 bytes when the input ended");
    const QString counts = QStringLiteral("%1 foreign, %2 incomplete");
    const QString none = counts.arg(0).arg(0);

    QTest::newRow("two frames") << (a + b) << QStringList { hexA, hexB } << QStringList { none };
    QTest::newRow("empty payload")
        << empty << QStringList { QString::fromLatin1(empty.toHex()) }
        << QStringList { QStringLiteral("Decoder Error: Decoder: payload of 0 bytes holds no "
                                        "message number"),
                         none };
    QTest::newRow("foreign bytes before, between and after")
        << (QByteArray("$GP") + a + QByteArray("xy") + b + QByteArray("z"))
        << QStringList { hexA, hexB }
        << QStringList { outside.arg(3).arg(0), outside.arg(2).arg(3 + a.size()),
                         outside.arg(1).arg(5 + a.size() + b.size()), counts.arg(6).arg(0) };
    QTest::newRow("false preamble before a frame")
        << (QByteArray::fromHex("d30002aabbccddeeff") + a) << QStringList { hexA }
        << QStringList { crcError, outside.arg(9).arg(0), counts.arg(9).arg(0) };
    QTest::newRow("false preamble whose length reaches into a frame")
        << (QByteArray::fromHex("d30004") + a + b) << QStringList { hexA, hexB }
        << QStringList { crcError, outside.arg(3).arg(0), counts.arg(3).arg(0) };
    QTest::newRow("false preamble whose length reaches past the end")
        << (QByteArray::fromHex("d300ff") + a) << QStringList { hexA }
        << QStringList { outside.arg(3).arg(0), counts.arg(3).arg(0) };
    QTest::newRow("reserved bits set")
        << (QByteArray::fromHex("d3fc00") + a) << QStringList { hexA }
        << QStringList { outside.arg(3).arg(0), counts.arg(3).arg(0) };
    QTest::newRow("corrupted CRC between two frames")
        << (b + badCrc + b) << QStringList { hexB, hexB }
        << QStringList { crcError, outside.arg(badCrc.size()).arg(b.size()),
                         counts.arg(badCrc.size()).arg(0) };
    QTest::newRow("incomplete frame at the end")
        << (a + b.left(5)) << QStringList { hexA }
        << QStringList { incomplete.arg(a.size()).arg(QStringLiteral("5 of 9")),
                         counts.arg(5).arg(5) };
    QTest::newRow("lone preamble at the end")
        << (a + QByteArray::fromHex("d3")) << QStringList { hexA }
        << QStringList { incomplete.arg(a.size()).arg(1), counts.arg(1).arg(1) };
    QTest::newRow("no input") << QByteArray() << QStringList() << QStringList { none };

    // A log keeps every distinct text up to its repeat limit: from the 101st run on the runs
    // share one text, so that foreign data for weeks cannot fill it.
    QByteArray manyRuns;
    QStringList manyFrames;
    QStringList manyEvents;
    for (int run = 0; run < 102; ++run) {
        manyEvents.append(run < 100 ? outside.arg(1).arg(manyRuns.size())
                                    : QStringLiteral("Decoder Error: Framer: more bytes outside "
                                                     "frames, counted without their offsets"));
        manyRuns.append(run < 101 ? 'x' + a : QByteArray("x"));
        manyFrames.append(run < 101 ? hexA : QString());
    }
    manyFrames.removeAll(QString());
    manyEvents.append(counts.arg(102).arg(0));
    QTest::newRow("runs past the hundredth share one text") << manyRuns << manyFrames << manyEvents;
}

void tst_Rtcm3Decoder::framing()
{
    QFETCH(QByteArray, input);
    QFETCH(QStringList, frames);
    QFETCH(QStringList, events);

    for (int chunkSize : { 0, 1, 2, 7 }) {
        const Rtcm3TestData::DecodedStream stream(mDictionary, input, chunkSize);
        QCOMPARE(stream.frames, frames);
        QCOMPARE(stream.events, events);
    }
}

void tst_Rtcm3Decoder::decoding_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("expected");

    auto row = [this](char const *name, int number, char const *field, QString const &value,
                      char const *text) {
        QTest::newRow(name) << withField(mDictionary, number, field, value)
                            << QString::fromLatin1(field)
                            << QStringLiteral("%1=%2").arg(QLatin1String(field),
                                                           QLatin1String(text));
    };
    row("1005 GPS indicator", 1005, "DF022", QStringLiteral("1"), "yes");
    row("1005 quarter cycle", 1005, "DF364", QStringLiteral("10"),
        "quarter-cycle phase corrections applied");
    row("1230 indicator", 1230, "DF421", QStringLiteral("1"), "pseudorange and phaserange aligned");
    row("1020 x, sign-magnitude", 1020, "DF112", QStringLiteral("100000000000000110000000000"),
        "-1.5000 km");
    row("1020 negative zero", 1020, "DF117", QStringLiteral("100000000000000000000000"),
        "0.0000000 km/s");
    row("1020 tb", 1020, "DF110", QStringLiteral("0001011"), "165 min.");
    row("1020 NT not available", 1020, "DF129", QStringLiteral("00000000000"), "N/A");
    row("1019 mean anomaly", 1019, "DF088", bits(1 << 30, 32), "0.5000000000 semi-circle");
    row("1042 group delay", 1042, "DF513", QStringLiteral("1111111011"), "-0.5 ns");
    row("1046 E1-B in test", 1046, "DF287", QStringLiteral("11"),
        "signal component currently in test");
    QTest::newRow("1005 station and position")
        << frame(station1005) << QStringLiteral("DF003 DF025 DF026 DF027")
        << QStringLiteral("DF003=7 DF025=-1234.5678 m DF026=2345.6789 m DF027=0.0001 m");
    QTest::newRow("1230 bias records")
        << frame(bits(1230, 12) + bits(7, 12) + QStringLiteral("10001010") + bits(-50, 16)
                 + bits(25, 16))
        << QStringLiteral("SignalId DF423")
        << QStringLiteral("SignalId=L1 C/A DF423=-1.00 m SignalId=L2 C/A DF423=0.50 m");
    QTest::newRow("proprietary message is unknown")
        << frame(bits(4072, 12) + bits(0, 20)) << QString() << QStringLiteral("unknown 4072");

    const QString error = QStringLiteral("Decoder Error: Decoder: message %1 overruns the payload "
                                         "of %2 bits");
    QTest::newRow("1005 cut inside DF027")
        << frame(station1005.left(144)) << QString()
        << error.arg(QStringLiteral("1005: DF027 (38 bits at bit 114)")).arg(144);
    QTest::newRow("1007 descriptor counter beyond the frame")
        << frame(bits(1007, 12) + bits(7, 12) + bits(200, 8) + bits(0, 16)) << QString()
        << error.arg(QStringLiteral("1007: DF030 (200 values of 8 bits at bit 32)")).arg(48);
    QTest::newRow("1013 message count beyond the frame")
        << frame(bits(1013, 12) + bits(0, 45) + bits(31, 5) + bits(0, 10)) << QString()
        << error.arg(QStringLiteral("1013: Messages (31 values of 29 bits at bit 70)")).arg(72);
    QTest::newRow("MSM cells beyond the frame")
        << frame(bits(1074, 12) + bits(0, 61) + bits(1, 64) + bits(1, 32) + QStringLiteral("1")
                 + bits(0, 6))
        << QString() << error.arg(QStringLiteral("1074: Satellites (18 bits at bit 170)")).arg(176);
    QTest::newRow("1230 more biases than the frame holds")
        << frame(bits(1230, 12) + bits(0, 16) + QStringLiteral("1111") + bits(-50, 16)) << QString()
        << error.arg(QStringLiteral("1230: Biases (4 values of 16 bits at bit 32)")).arg(48);
    // Nine satellites and eight signals would need a cell mask of 72 bits.
    QTest::newRow("MSM cell mask wider than 64 bits")
        << frame(bits(1077, 12) + bits(0, 61) + bits(0x1FF, 64) + bits(0xFF, 32) + bits(0, 7))
        << QString()
        << QStringLiteral("Decoder Error: Decoder: message 1077: DF396 of 72 bits exceeds 64 bits");
    QTest::newRow("payload without a message number")
        << frame(bits(0x3e, 8)) << QString()
        << QStringLiteral("Decoder Error: Decoder: payload of 1 bytes holds no message number");
}

void tst_Rtcm3Decoder::decoding()
{
    QFETCH(QByteArray, input);
    QFETCH(QString, fields);
    QFETCH(QString, expected);

    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    const bool wasCounting = tracer->isEnabled();
    tracer->setEnabled(true);
    const qint64 messagesBefore = tracer->getLiveCount(QStringLiteral("Message"));
    {
        const Rtcm3TestData::DecodedStream stream(mDictionary, input);
        QStringList outcome = stream.events.mid(0, stream.events.size() - 1);
        for (QString const &type : stream.unknown)
            outcome.append(QStringLiteral("unknown ") + type);
        for (Message const *message : stream.messages) {
            for (Message const *m :
                 QVector<Message const *> { message } + message->getSubMessages()) {
                for (QString const &name : fields.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
                    if (FieldInfo const *field = m->getInfo()->getFieldInfo(name))
                        outcome.append(name + QLatin1Char('=')
                                       + field->getInterpretedString(field->getValue(m, 0), true));
                }
                // The decoder reads its own bytes: the framer's frame and the message's copy
                // are the same, and a record's raw representation is its message's frame.
                QCOMPARE(QByteArray(reinterpret_cast<char const *>(m->getRawRepresentationOf(m)),
                                    int(m->getRawSize())),
                         input);
            }
        }
        QCOMPARE(outcome.join(QLatin1Char(' ')), expected);
    }
    // Records are destroyed with their message.
    QCOMPARE(tracer->getLiveCount(QStringLiteral("Message")), messagesBefore);
    tracer->setEnabled(wasCounting);
}

void tst_Rtcm3Decoder::announcesInThreePhasesUnlessDisabled()
{
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QStringList phases;
    auto record = [&](char const *phase) {
        return [&, phase](Message const *message) {
            phases.append(QStringLiteral("%1 %2 %3")
                              .arg(QLatin1String(phase), message->getInfo()->getName())
                              .arg(message->getNumberOfReferences()));
        };
    };
    connect(&decoder, &MessageSource::newMessageEarly, record("early"));
    connect(&decoder, &MessageSource::newMessage, record("normal"));
    connect(&decoder, &MessageSource::newMessageLate, record("late"));
    connect(&decoder, &MessageSource::newEvent,
            [&](MessageApiEvent const &event) { phases.append(event.getMessage()); });
    // Frames that the framer never hands on, given directly.
    QCOMPARE(decoder.decodeMessage(QByteArray::fromHex("d30000")), -1);
    QCOMPARE(decoder.decodeMessage(QByteArray::fromHex("d300053ed0aabbcc")), -1);
    MessageInfo const *info = mDictionary.getMessageInfo(1005);
    QCOMPARE(decoder.getMessageEnum(info), 1005);
    const QByteArray station = frame(station1005);
    decoder.disableMessage(info);
    QVERIFY(!decoder.isEnabledMessage(info));
    QCOMPARE(decoder.decodeMessage(station), int32_t(station.size()));
    decoder.enableMessage(info);
    QCOMPARE(decoder.decodeMessage(station + QByteArray("trailing")), int32_t(station.size()));
    QCOMPARE(phases.join(QLatin1String(", ")),
             QStringLiteral("Decoder: frame of 3 bytes is shorter than a frame's header and CRC, "
                            "Decoder: frame of 8 bytes is shorter than the 11 bytes its header "
                            "declares, early 1005 1, normal 1005 1, late 1005 1"));
}

void tst_Rtcm3Decoder::captures_data()
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

void tst_Rtcm3Decoder::captures()
{
    RTCM3_REQUIRE_CAPTURES();
    QFETCH(QString, file);
    QFETCH(QString, framesPerNumber);
    QFETCH(QString, outside);

    const QByteArray input = Rtcm3TestData::readCapture(file);
    const Rtcm3TestData::DecodedStream whole(mDictionary, input);
    QMap<int, int> counts;
    QMap<int, QByteArray> firstFrames;
    for (QString const &frame : whole.frames) {
        const int number = frame.mid(6, 3).toInt(nullptr, 16);
        ++counts[number];
        if (!firstFrames.contains(number))
            firstFrames.insert(number, QByteArray::fromHex(frame.toLatin1()));
    }
    QStringList text;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        text.append(QStringLiteral("%1:%2").arg(it.key()).arg(it.value()));
    QCOMPARE(text.join(QLatin1Char(' ')), framesPerNumber);
    QCOMPARE(whole.events.last(), outside);
    // Every frame decodes and every value reads; only the proprietary 4072 is unknown.
    QCOMPARE(whole.messages.size() + whole.unknown.count(QStringLiteral("4072")),
             whole.frames.size());
    QVERIFY(std::all_of(whole.messages.cbegin(), whole.messages.cend(), readEverything));
    // The outcome does not depend on how the stream was cut.
    for (int chunkSize : { 1, 13, 1029 }) {
        const Rtcm3TestData::DecodedStream cut(mDictionary, input, chunkSize);
        QCOMPARE(cut.frames, whole.frames);
        QCOMPARE(cut.events, whole.events);
    }

    // The first frame of each type, with every truncation and every payload byte set to all
    // ones and to all zeros (counts and masks that claim more than the frame holds), behind
    // garbage rich in false preambles: each decodes or is one decoder error, and garbage never
    // costs a frame.
    std::mt19937 random(20121014);
    QByteArray damaged;
    int valid = 0;
    for (QByteArray const &original : std::as_const(firstFrames)) {
        const QByteArray payload = original.mid(3, original.size() - 6);
        for (int i = 0; i < payload.size(); ++i) {
            for (QByteArray const &bytes :
                 { payload.left(i), QByteArray(payload).replace(i, 1, "\xff"),
                   QByteArray(payload).replace(i, 1, QByteArray(1, '\0')) }) {
                for (int j = int(random() % 16); j > 0; --j)
                    damaged.append(j % 3 ? char(random() % 256) : j % 2 ? char(0xD3) : char(0));
                QString payloadBits;
                for (char byte : bytes)
                    payloadBits += bits(quint8(byte), 8);
                damaged.append(frame(payloadBits));
                ++valid;
            }
        }
    }
    const Rtcm3TestData::DecodedStream stream(mDictionary, damaged);
    QCOMPARE(stream.frames.size(), valid);
    QVERIFY(std::all_of(stream.messages.cbegin(), stream.messages.cend(), readEverything));
    const int errors = int(stream.events.filter(QStringLiteral("Decoder Error: Decoder:")).size());
    QVERIFY(errors > 0);
    QCOMPARE(stream.messages.size() + stream.unknown.size() + errors, valid);
}

void tst_Rtcm3Decoder::dictionary()
{
    // Every message type is named by its number, found by it as discriminant and described:
    // 1001-1013, 1019, 1020, 1029, 1033, 1042, 1044-1046, 1230 and 49 MSM types.
    FormatInfo const *format = mDictionary.getFormat();
    QCOMPARE(format->getMessageInfos().size(), 71);
    for (MessageInfo const *info : format->getMessageInfos()) {
        QCOMPARE(
            format->getMessageInfosForDiscriminant(FieldValue::u(info->getName().toUInt(), 12)),
            QVector<MessageInfo const *> { info });
        QVERIFY(!info->getDescriptiveText().isEmpty());
        for (FieldInfo const *field : info->getFieldInfos())
            QVERIFY2(!field->getShortDescriptiveText().isEmpty(), qPrintable(field->getName()));
    }
    QCOMPARE(mDictionary.getMessageInfo(1077)->getShortDescriptiveText(),
             QStringLiteral("GPS MSM7"));
}

void tst_Rtcm3Decoder::epochTimes_data()
{
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<QList<quint64>>("closed");

    // An MSM1 of no satellites whose 30 bits of epoch time are given, the last of its epoch
    // unless more follow.
    auto msm1 = [](int number, qint64 epochTime, bool more = false) {
        return frame(bits(number, 12) + bits(0, 12) + bits(epochTime, 30) + bits(more, 1)
                     + bits(0, 126));
    };
    constexpr quint64 weekMs = Rtcm3StreamTime::weekMs;
    QTest::newRow("GPS time of week in the fallback week")
        << QList<QByteArray> { msm1(1071, 345600000) } << QList<quint64> { week2009 + 345600000 };
    QTest::newRow("week rollover goes forward")
        << QList<QByteArray> { msm1(1077, weekMs - 1000), msm1(1077, 1000) }
        << QList<quint64> { week2009 + weekMs - 1000, week2009 + weekMs + 1000 };
    QTest::newRow("late message before the rollover goes back a little")
        << QList<QByteArray> { msm1(1077, 1000), msm1(1097, weekMs - 1000) }
        << QList<quint64> { week2009 + 1000, week2009 - 1000 };
    // GLONASS, BeiDou, Galileo and QZSS times: the observations compared with convbin's.
    QTest::newRow("epoch whose last message was lost ends with the next")
        << QList<QByteArray> { msm1(1077, 1000, true), msm1(1077, 2000, true), msm1(1097, 2000) }
        << QList<quint64> { week2009 + 1000, week2009 + 2000 };
    QTest::newRow("epoch not ended yet")
        << QList<QByteArray> { msm1(1077, 1000, true) } << QList<quint64>();
}

void tst_Rtcm3Decoder::epochTimes()
{
    QFETCH(QList<QByteArray>, frames);
    QFETCH(QList<quint64>, closed);

    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    TimeSource timeSource;
    Rtcm3EpochClock clock(&decoder, &timeSource, nullptr, QDate(2018, 7, 12));
    QList<quint64> seen;
    connect(&clock, &Rtcm3EpochClock::epochClosed, [&](quint64 millis) {
        QCOMPARE(timeSource.getMillis(), millis);
        seen.append(millis);
    });
    for (QByteArray const &frame : frames)
        decoder.decodeMessage(frame);
    QCOMPARE(seen, closed);
}

void tst_Rtcm3Decoder::streamTimeDrivesStatistics()
{
    RTCM3_REQUIRE_CAPTURES();
    Rtcm3Framer framer(mDictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    connect(&framer, &Rtcm3Framer::frameFound, &decoder,
            qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    TimeSource timeSource;
    MessageStatisticsCoordinator coordinator(&decoder, &timeSource);
    const QList<int> msm4 { 1074, 1084, 1094, 1114, 1124 };
    for (int number : msm4)
        coordinator.enableGapDetection(mDictionary.getMessageInfo(number));
    // A fallback date years off: the week must come from the stream.
    Rtcm3EpochClock clock(&decoder, &timeSource, &coordinator, QDate(2026, 11, 23));
    QVector<quint64> epochs;
    connect(&clock, &Rtcm3EpochClock::epochClosed, [&](quint64 millis) { epochs.append(millis); });
    framer.addData(Rtcm3TestData::readCapture(QStringLiteral("dropped-packets.rtcm3")));

    QVERIFY(clock.getStreamTime().hasWeekFromStream());
    QCOMPARE(clock.getStreamTime().getLeapSeconds(), 18);
    // The first epoch comes before the first 1013, in the fallback date's week; then 1 Hz
    // without a missing second up to 2018-07-12 23:59:19 GPS time, as convbin's epochs.
    QCOMPARE(epochs.size(), 1312);
    QCOMPARE(epochs.first() / Rtcm3StreamTime::weekMs, 2446ull);
    QCOMPARE(epochs.last(), week2009 + 4 * 86400000ull + (23 * 3600 + 59 * 60 + 19) * 1000ull);
    QCOMPARE(epochs.last() - epochs.at(1), 1310000ull);
    for (int number : msm4) {
        MessageStatistics *statistics
            = coordinator.getMessageStatistics(mDictionary.getMessageInfo(number));
        QCOMPARE(statistics->getNumberOfGaps(), 0);
        QCOMPARE(statistics->getNumberOfMissingEpochs(), 0);
    }
}

QTEST_GUILESS_MAIN(tst_Rtcm3Decoder)
#include "tst_rtcm3decoder.moc"
