// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3fieldinfo.h"
#include "rtcm3/rtcm3framer.h"
#include "rtcm3/rtcm3streamtime.h"
#include "timesource.h"

#include <QSignalSpy>
#include <QTest>

/// The dictionary, the decoder on crafted frames and the stream time.
class tst_Rtcm3Decoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void dictionary();
    void decoderErrors_data();
    void decoderErrors();
    void announcesInThreePhases();
    void values_data();
    void values();
    void biasRecords();
    void unknownAndDisabled();
    void epochTimes_data();
    void epochTimes();
    void streamTimeDrivesStatistics();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

using Rtcm3TestData::bits;

// GPS week 2009: 2018-07-08 to 2018-07-14.
constexpr quint64 week2009 = 2009 * Rtcm3StreamTime::weekMs;

/// The bits of the message type's first fields; of all of them by default.
int bitsOf(MessageInfo const *info, int fields = -1)
{
    int count = 0;
    for (FieldInfo const *field : info->getFieldInfos().mid(0, fields))
        count += int(static_cast<Rtcm3FieldInfo const *>(field)->getBitWidth());
    return count;
}

/// The names of the fields of the message or record type of that name.
QString fieldNames(QString const &name)
{
    QStringList names;
    for (MessageInfo const *info : FormatInfo::getFormatInfo(QStringLiteral("RTCM3"))
                                       ->getMessageInfosIncludingSubMessages()) {
        for (FieldInfo const *field :
             info->getName() == name ? info->getFieldInfos() : QVector<FieldInfo const *>())
            names.append(field->getName());
    }
    return names.join(QLatin1Char(' '));
}

/// The precision of a field of the message type of that name; -1 when there is no such field.
int precisionOf(QString const &message, QString const &field)
{
    for (MessageInfo const *info : FormatInfo::getFormatInfo(QStringLiteral("RTCM3"))
                                       ->getMessageInfosIncludingSubMessages()) {
        if (info->getName() == message && info->getFieldInfo(field))
            return info->getFieldInfo(field)->getPrecision();
    }
    return -1;
}

// 1005 of station 7: GPS and GLONASS, X -1234.5678 m, Y 2345.6789 m, Z 0.0001 m.
const QString station1005 = bits(1005, 12) + bits(7, 12) + bits(0, 6) + QStringLiteral("1100")
    + bits(-12345678, 38) + QStringLiteral("10") + bits(23456789, 38) + bits(2, 2) + bits(1, 38);

QByteArray frameOf(QString const &payloadBits)
{
    return Rtcm3TestData::frameFromBits(payloadBits);
}

} // namespace

void tst_Rtcm3Decoder::initTestCase()
{
    // Values are rendered in the default locale: the C locale does not group digits.
    QLocale::setDefault(QLocale::c());
}

void tst_Rtcm3Decoder::dictionary()
{
    // Every message type is named by its number, found by it as discriminant and described.
    FormatInfo const *format = FormatInfo::getFormatInfo(QStringLiteral("RTCM3"));
    for (MessageInfo const *info : format->getMessageInfos()) {
        const quint64 number = info->getName().toULongLong();
        QCOMPARE(format->getMessageInfosForDiscriminant(FieldValue::u(number, 12)),
                 QVector<MessageInfo const *> { info });
        QVERIFY(!info->getDescriptiveText().isEmpty());
        for (FieldInfo const *field : info->getFieldInfos())
            QVERIFY2(!field->getShortDescriptiveText().isEmpty(), qPrintable(field->getName()));
    }
    // 1001-1008, 1009-1012, 1013, 1019, 1020, 1029, 1033, 1042, 1044-1046, 1230 and 49 MSM.
    QCOMPARE(format->getMessageInfos().size(), 71);
    QCOMPARE(mDictionary.getMessageInfo(1077)->getShortDescriptiveText(),
             QStringLiteral("GPS MSM7"));
    QCOMPARE(fieldNames(QStringLiteral("1137 satellite")),
             QStringLiteral("SatelliteId DF397 ExtendedInfo DF398 DF399"));
    QCOMPARE(fieldNames(QStringLiteral("1137 signal")),
             QStringLiteral("SatelliteId SignalId DF405 DF406 DF407 DF420 DF408 DF404"));
    // Values show one whole step of their resolution: 0.0001 m, 1/16 and 1/4 dB-Hz.
    QCOMPARE(precisionOf(QStringLiteral("1005"), QStringLiteral("DF025")), 4);
    QCOMPARE(precisionOf(QStringLiteral("1137 signal"), QStringLiteral("DF408")), 4);
    QCOMPARE(precisionOf(QStringLiteral("1004 satellite"), QStringLiteral("DF015")), 2);
}

void tst_Rtcm3Decoder::decoderErrors_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QString>("event");

    QTest::newRow("shorter than header and CRC")
        << QByteArray::fromHex("d30000")
        << QStringLiteral("Decoder: frame of 3 bytes is shorter than a frame's header and CRC");
    QTest::newRow("shorter than its declared length")
        << QByteArray::fromHex("d300053ed0aabbcc")
        << QStringLiteral("Decoder: frame of 8 bytes is shorter than the 11 bytes its header "
                          "declares");
    QTest::newRow("payload without a message number")
        << Rtcm3TestData::frame(QByteArray::fromHex("3e"))
        << QStringLiteral("Decoder: payload of 1 bytes holds no message number");
    QTest::newRow("1005 cut inside DF027")
        << frameOf(station1005.left(144))
        << QStringLiteral("Decoder: message 1005: DF027 (38 bits at bit 114) overruns the "
                          "payload of 144 bits");
    QTest::newRow("1007 descriptor counter beyond the frame")
        << frameOf(bits(1007, 12) + bits(7, 12) + bits(200, 8) + bits(0, 16))
        << QStringLiteral("Decoder: message 1007: DF030 (200 values of 8 bits at bit 32) "
                          "overruns the payload of 48 bits");
    QTest::newRow("1013 message count beyond the frame")
        << frameOf(bits(1013, 12) + bits(0, 45) + bits(31, 5) + bits(0, 10))
        << QStringLiteral("Decoder: message 1013: Messages (31 values of 29 bits at bit 70) "
                          "overruns the payload of 72 bits");
    // Nine satellites and eight signals would need a cell mask of 72 bits.
    QTest::newRow("MSM cell mask wider than 64 bits")
        << frameOf(bits(1077, 12) + bits(0, 61) + bits(0x1FF, 64) + bits(0xFF, 32) + bits(0, 7))
        << QStringLiteral("Decoder: message 1077: DF396 of 72 bits exceeds 64 bits");
    QTest::newRow("MSM cells beyond the frame")
        << frameOf(bits(1074, 12) + bits(0, 61) + bits(1, 64) + bits(1, 32) + QStringLiteral("1")
                   + bits(0, 6))
        << QStringLiteral("Decoder: message 1074: Satellites (18 bits at bit 170) overruns the "
                          "payload of 176 bits");
    QTest::newRow("1230 mask with more biases than the frame holds")
        << frameOf(bits(1230, 12) + bits(0, 16) + QStringLiteral("1111") + bits(-50, 16))
        << QStringLiteral("Decoder: message 1230: Biases (4 values of 16 bits at bit 32) "
                          "overruns the payload of 48 bits");
}

void tst_Rtcm3Decoder::decoderErrors()
{
    QFETCH(QByteArray, frame);
    QFETCH(QString, event);

    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QSignalSpy messages(&decoder, &MessageSource::newMessage);
    QSignalSpy events(&decoder, &MessageSource::newEvent);
    QCOMPARE(decoder.decodeMessage(frame), -1);
    QCOMPARE(messages.count(), 0);
    QCOMPARE(events.count(), 1);
    const auto reported = events.first().first().value<MessageApiEvent>();
    QCOMPARE(reported.getType(), MessageApiEvent::DecoderError);
    QCOMPARE(reported.getFormat(), mDictionary.getFormat());
    QCOMPARE(reported.getMessage(), event);
}

void tst_Rtcm3Decoder::announcesInThreePhases()
{
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QStringList phases;
    Message const *seen = nullptr;
    auto record = [&](QString const &phase) {
        return [&, phase](Message const *message) {
            QVERIFY(!seen || seen == message);
            seen = message;
            phases.append(phase + QLatin1Char(' ')
                          + QString::number(message->getNumberOfReferences()));
        };
    };
    connect(&decoder, &MessageSource::newMessageEarly, record(QStringLiteral("early")));
    connect(&decoder, &MessageSource::newMessage, record(QStringLiteral("normal")));
    connect(&decoder, &MessageSource::newMessageLate, record(QStringLiteral("late")));
    QByteArray frame = frameOf(station1005);
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        // The message holds its own copy of the frame.
        QCOMPARE(message->getRawSize(), uint(frame.size()));
        QCOMPARE(
            QByteArray(reinterpret_cast<char const *>(message->getRawRepresentationOf(message)),
                       frame.size()),
            frame);
    });
    QCOMPARE(decoder.decodeMessage(frame + QByteArray("trailing")), int32_t(frame.size()));
    QCOMPARE(phases,
             (QStringList { QStringLiteral("early 1"), QStringLiteral("normal 1"),
                            QStringLiteral("late 1") }));
}

void tst_Rtcm3Decoder::values_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("bits");
    QTest::addColumn<QString>("interpreted");

    const struct
    {
        char const *name;
        int number;
        char const *field;
        QString bits;
        char const *interpreted;
    } rows[] = {
        { "1005 negative X", 1005, "DF025", bits(-12345678, 38), "-1234.5678 m" },
        { "1005 GPS indicator", 1005, "DF022", "1", "yes" },
        { "1005 quarter cycle", 1005, "DF364", "10", "quarter-cycle phase corrections applied" },
        { "1230 indicator", 1230, "DF421", "1", "pseudorange and phaserange aligned" },
        { "1020 x, sign-magnitude", 1020, "DF112", "100000000000000110000000000", "-1.5000 km" },
        { "1020 negative zero", 1020, "DF117", "100000000000000000000000", "0.0000000 km/s" },
        { "1020 tb", 1020, "DF110", "0001011", "165 min." },
        { "1020 NT not available", 1020, "DF129", "00000000000", "N/A" },
        { "1019 mean anomaly", 1019, "DF088", bits(1 << 30, 32), "0.5000000000 semi-circle" },
        { "1042 group delay", 1042, "DF513", "1111111011", "-0.5 ns" },
        { "1046 E1-B in test", 1046, "DF287", "11", "signal component currently in test" },
    };
    for (auto const &row : rows) {
        QTest::newRow(row.name) << row.number << QString::fromLatin1(row.field) << row.bits
                                << QString::fromLatin1(row.interpreted);
    }
}

void tst_Rtcm3Decoder::values()
{
    QFETCH(int, number);
    QFETCH(QString, field);
    QFETCH(QString, bits);
    QFETCH(QString, interpreted);

    // Every field zero but the message number and this one.
    MessageInfo const *info = mDictionary.getMessageInfo(number);
    FieldInfo const *fieldInfo = info->getFieldInfo(field);
    QCOMPARE(bits.size(), int(static_cast<Rtcm3FieldInfo const *>(fieldInfo)->getBitWidth()));
    QString payload
        = Rtcm3TestData::bits(number, 12) + QString(bitsOf(info) - 12, QLatin1Char('0'));
    payload.replace(bitsOf(info, fieldInfo->getIndexInMessageInfo(info)), bits.size(), bits);
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QString text;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        QCOMPARE(fieldInfo->getNumberOfValues(message), 1u);
        text = fieldInfo->getInterpretedString(fieldInfo->getValue(message, 0), true);
    });
    decoder.decodeMessage(frameOf(payload));
    QCOMPARE(text, interpreted);
}

void tst_Rtcm3Decoder::biasRecords()
{
    // 1230 with the biases of L1 C/A (-1.00 m) and L2 C/A (0.50 m).
    const QByteArray frame = frameOf(bits(1230, 12) + bits(7, 12) + QStringLiteral("10001010")
                                     + bits(-50, 16) + bits(25, 16));
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QStringList records;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        for (Message const *record : message->getSubMessages()) {
            for (FieldInfo const *field : record->getInfo()->getFieldInfos()) {
                records.append(field->getName() + QLatin1Char('=')
                               + field->getInterpretedString(field->getValue(record, 0), true));
            }
        }
    });
    decoder.decodeMessage(frame);
    QCOMPARE(records.join(QLatin1Char(' ')),
             QStringLiteral("SignalId=L1 C/A DF423=-1.00 m SignalId=L2 C/A DF423=0.50 m"));
}

void tst_Rtcm3Decoder::unknownAndDisabled()
{
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QSignalSpy messages(&decoder, &MessageSource::newMessage);
    QStringList unknown;
    connect(&decoder, &MessageSource::newUnknownMessage,
            [&](FormatInfo const *format, QString const &type) {
                QCOMPARE(format, mDictionary.getFormat());
                unknown.append(type);
            });
    QSignalSpy events(&decoder, &MessageSource::newEvent);
    const QByteArray proprietary = frameOf(bits(4072, 12) + bits(0, 20));
    QCOMPARE(decoder.decodeMessage(proprietary), int32_t(proprietary.size()));
    QCOMPARE(unknown, QStringList { QStringLiteral("4072") });

    MessageInfo const *info = mDictionary.getMessageInfo(1005);
    QCOMPARE(decoder.getMessageEnum(info), 1005);
    QVERIFY(decoder.isEnabledMessage(info));
    decoder.disableMessage(info);
    QVERIFY(!decoder.isEnabledMessage(info));
    decoder.decodeMessage(frameOf(station1005));
    QCOMPARE(messages.count(), 0);
    decoder.enableMessage(info);
    decoder.decodeMessage(frameOf(station1005));
    QCOMPARE(messages.count(), 1);
    QCOMPARE(events.count(), 0);
}

void tst_Rtcm3Decoder::epochTimes_data()
{
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<QList<quint64>>("millis");

    // An MSM1 of no satellites whose 30 bits of epoch time are given.
    auto msm1 = [](int number, qint64 epochTime) {
        return frameOf(bits(number, 12) + bits(0, 12) + bits(epochTime, 30) + bits(0, 127));
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
    // Thursday 00:00:05 GPS: Wednesday 23:59:47 UTC, Thursday 02:59:47 Moscow time.
    QTest::newRow("GLONASS day of week and Moscow time")
        << QList<QByteArray> { msm1(1084, (qint64(4) << 27) | (2 * 3600000 + 59 * 60000 + 47000)) }
        << QList<quint64> { week2009 + 4 * 86400000 + 5000 };
    QTest::newRow("BeiDou time is 14 s behind")
        << QList<QByteArray> { msm1(1124, 345586000) } << QList<quint64> { week2009 + 345600000 };
    QTest::newRow("QZSS and Galileo as GPS")
        << QList<QByteArray> { msm1(1114, 7000), msm1(1094, 8000) }
        << QList<quint64> { week2009 + 7000, week2009 + 8000 };
}

void tst_Rtcm3Decoder::epochTimes()
{
    QFETCH(QList<QByteArray>, frames);
    QFETCH(QList<quint64>, millis);

    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    Rtcm3StreamTime time(QDate(2018, 7, 12));
    QList<quint64> seen;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        QVERIFY(time.processMessage(message));
        seen.append(time.getMillis());
    });
    for (QByteArray const &frame : frames)
        decoder.decodeMessage(frame);
    QCOMPARE(seen, millis);
}

void tst_Rtcm3Decoder::streamTimeDrivesStatistics()
{
    RTCM3_REQUIRE_CAPTURES();
    Rtcm3Framer framer(mDictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    connect(&framer, &Rtcm3Framer::frameFound, &decoder,
            qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    TimeSource clock;
    MessageStatisticsCoordinator coordinator(&decoder, &clock);
    const QList<int> msm4 { 1074, 1084, 1094, 1114, 1124 };
    for (int number : msm4)
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

    QVERIFY(time.hasWeekFromStream());
    QCOMPARE(time.getLeapSeconds(), 18);
    QCOMPARE(inconsistent, QStringList());
    // 1 Hz without a missing second up to 2018-07-12 23:59:19 GPS time, as convbin's epochs.
    QCOMPARE(epochStarts.size(), 1311);
    QCOMPARE(epochStarts.last(), week2009 + 4 * 86400000ull + (23 * 3600 + 59 * 60 + 19) * 1000ull);
    QCOMPARE(epochStarts.last() - epochStarts.first(), 1310000ull);
    for (int number : msm4) {
        MessageStatistics *statistics
            = coordinator.getMessageStatistics(mDictionary.getMessageInfo(number));
        QCOMPARE(statistics->getNumberOfGaps(), 0);
        QCOMPARE(statistics->getNumberOfMissingEpochs(), 0);
    }
}

QTEST_GUILESS_MAIN(tst_Rtcm3Decoder)
#include "tst_rtcm3decoder.moc"
