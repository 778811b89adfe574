// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3message.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTest>

class tst_Rtcm3Decoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void dictionary_data();
    void dictionary();
    void msmRecords_data();
    void msmRecords();
    void decoderErrors_data();
    void decoderErrors();
    void announcesInThreePhases();
    void values_data();
    void values();
    void records_data();
    void records();
    void unknownAndDisabled();
    void legacyObservationsAgreeWithGpsdecode();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

/// width bits of value, most significant first.
QString bits(qint64 value, int width)
{
    QString text;
    for (int bit = width - 1; bit >= 0; --bit)
        text.append((quint64(value) >> bit) & 1 ? QLatin1Char('1') : QLatin1Char('0'));
    return text;
}

QString chars(QByteArray const &text)
{
    QString result;
    for (char c : text)
        result += bits(c, 8);
    return result;
}

// 1005 of station 7: GPS and GLONASS, X -1234.5678 m, Y 2345.6789 m, Z 0.0001 m.
const QString station1005 = bits(1005, 12) + bits(7, 12) + bits(0, 6) + QStringLiteral("1100")
    + bits(-12345678, 38) + QStringLiteral("10") + bits(23456789, 38) + bits(2, 2) + bits(1, 38);
// 1013 of station 7: MJD 58311, second 19494, two announced messages (1074 every 1 s, sync;
// 1006 every 10 s, async), 18 leap seconds.
const QString system1013 = bits(1013, 12) + bits(7, 12) + bits(58311, 16) + bits(19494, 17)
    + bits(2, 5) + bits(18, 8) + bits(1074, 12) + QStringLiteral("1") + bits(10, 16)
    + bits(1006, 12) + QStringLiteral("0") + bits(100, 16);
// 1230: biases of L1 C/A (-1.00 m) and L2 C/A (0.50 m).
const QString biases1230 = bits(1230, 12) + bits(7, 12) + QStringLiteral("1") + bits(0, 3)
    + QStringLiteral("1010") + bits(-50, 16) + bits(25, 16);
// 1033: antenna "ANT", no serial number, receiver "RX", firmware "1.0", serial "".
const QString descriptors1033 = bits(1033, 12) + bits(7, 12) + bits(3, 8) + chars("ANT")
    + bits(5, 8) + bits(0, 8) + bits(2, 8) + chars("RX") + bits(3, 8) + chars("1.0") + bits(0, 8);

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

void tst_Rtcm3Decoder::dictionary_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("fields");

    QTest::newRow("1005") << 1005 << QStringLiteral("Stationary RTK reference station ARP")
                          << QStringLiteral("DF002 DF003 DF021 DF022 DF023 DF024 DF141 DF025 "
                                            "DF142 DF001 DF026 DF364 DF027");
    QTest::newRow("1006") << 1006
                          << QStringLiteral("Stationary RTK reference station ARP with antenna "
                                            "height")
                          << QStringLiteral("DF002 DF003 DF021 DF022 DF023 DF024 DF141 DF025 "
                                            "DF142 DF001 DF026 DF364 DF027 DF028");
    QTest::newRow("1007") << 1007 << QStringLiteral("Antenna descriptor")
                          << QStringLiteral("DF002 DF003 DF029 DF030 DF031");
    QTest::newRow("1008") << 1008 << QStringLiteral("Antenna descriptor and serial number")
                          << QStringLiteral("DF002 DF003 DF029 DF030 DF031 DF032 DF033");
    QTest::newRow("1013") << 1013 << QStringLiteral("System parameters")
                          << QStringLiteral("DF002 DF003 DF051 DF052 DF053 DF054 Messages");
    QTest::newRow("1029") << 1029 << QStringLiteral("Unicode text string")
                          << QStringLiteral("DF002 DF003 DF051 DF052 DF138 DF139 DF140");
    QTest::newRow("1033") << 1033 << QStringLiteral("Receiver and antenna descriptors")
                          << QStringLiteral("DF002 DF003 DF029 DF030 DF031 DF032 DF033 DF227 "
                                            "DF228 DF229 DF230 DF231 DF232");
    QTest::newRow("1230") << 1230 << QStringLiteral("GLONASS L1 and L2 code-phase biases")
                          << QStringLiteral("DF002 DF003 DF421 DF001 DF422 Biases");
    const QString msmHeader = QStringLiteral(
        "DF393 DF409 DF001 DF411 DF412 DF417 DF418 DF394 DF395 DF396 Satellites Signals");
    QTest::newRow("1071") << 1071 << QStringLiteral("GPS MSM1")
                          << QStringLiteral("DF002 DF003 DF004 ") + msmHeader;
    QTest::newRow("1084") << 1084 << QStringLiteral("GLONASS MSM4")
                          << QStringLiteral("DF002 DF003 DF416 DF034 ") + msmHeader;
    QTest::newRow("1097") << 1097 << QStringLiteral("Galileo MSM7")
                          << QStringLiteral("DF002 DF003 DF248 ") + msmHeader;
    QTest::newRow("1107") << 1107 << QStringLiteral("SBAS MSM7")
                          << QStringLiteral("DF002 DF003 DF004 ") + msmHeader;
    QTest::newRow("1115") << 1115 << QStringLiteral("QZSS MSM5")
                          << QStringLiteral("DF002 DF003 DF428 ") + msmHeader;
    QTest::newRow("1126") << 1126 << QStringLiteral("BeiDou MSM6")
                          << QStringLiteral("DF002 DF003 DF427 ") + msmHeader;
    QTest::newRow("1004") << 1004 << QStringLiteral("GPS extended L1&L2 RTK")
                          << QStringLiteral("DF002 DF003 DF004 DF005 DF006 DF007 DF008 Satellites");
    QTest::newRow("1012") << 1012 << QStringLiteral("GLONASS extended L1&L2 RTK")
                          << QStringLiteral("DF002 DF003 DF034 DF005 DF035 DF036 DF037 Satellites");
    QTest::newRow("1133") << 1133 << QStringLiteral("NavIC MSM3")
                          << QStringLiteral("DF002 DF003 DF546 ") + msmHeader;
}

void tst_Rtcm3Decoder::dictionary()
{
    QFETCH(int, number);
    QFETCH(QString, title);
    QFETCH(QString, fields);

    FormatInfo const *format = FormatInfo::getFormatInfo(QStringLiteral("RTCM3"));
    QCOMPARE(format, mDictionary.getFormat());
    MessageInfo const *info = mDictionary.getMessageInfo(number);
    QVERIFY(info);
    QCOMPARE(info->getName(), QString::number(number));
    QCOMPARE(info->getShortDescriptiveText(), title);
    QVERIFY(!info->getDescriptiveText().isEmpty());
    QCOMPARE(format->getMessageInfosForDiscriminant(FieldValue::u(quint64(number), 12)),
             QVector<MessageInfo const *> { info });
    QStringList names;
    for (FieldInfo const *field : info->getFieldInfos()) {
        names.append(field->getName());
        QVERIFY2(!field->getShortDescriptiveText().isEmpty(), qPrintable(field->getName()));
    }
    QCOMPARE(names.join(QLatin1Char(' ')), fields);
}

void tst_Rtcm3Decoder::msmRecords_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("satellite");
    QTest::addColumn<QString>("signal");

    const QString cell = QStringLiteral("SatelliteId SignalId ");
    QTest::newRow("MSM1") << 1071 << QStringLiteral("SatelliteId DF398")
                          << cell + QStringLiteral("DF400");
    QTest::newRow("MSM2") << 1082 << QStringLiteral("SatelliteId DF398")
                          << cell + QStringLiteral("DF401 DF402 DF420");
    QTest::newRow("MSM3") << 1093 << QStringLiteral("SatelliteId DF397 DF398")
                          << cell + QStringLiteral("DF400 DF401 DF402 DF420");
    QTest::newRow("MSM4") << 1104 << QStringLiteral("SatelliteId DF397 DF398")
                          << cell + QStringLiteral("DF400 DF401 DF402 DF420 DF403");
    QTest::newRow("MSM5, GLONASS frequency channel")
        << 1085 << QStringLiteral("SatelliteId DF397 DF419 DF398 DF399")
        << cell + QStringLiteral("DF400 DF401 DF402 DF420 DF403 DF404");
    QTest::newRow("MSM6") << 1116 << QStringLiteral("SatelliteId DF397 DF398")
                          << cell + QStringLiteral("DF405 DF406 DF407 DF420 DF408");
    QTest::newRow("MSM7") << 1137 << QStringLiteral("SatelliteId DF397 ExtendedInfo DF398 DF399")
                          << cell + QStringLiteral("DF405 DF406 DF407 DF420 DF408 DF404");
}

void tst_Rtcm3Decoder::msmRecords()
{
    QFETCH(int, number);
    QFETCH(QString, satellite);
    QFETCH(QString, signal);

    auto names = [](QString const &messageName) {
        QStringList list;
        MessageInfo const *info = nullptr;
        for (MessageInfo const *candidate : FormatInfo::getFormatInfo(QStringLiteral("RTCM3"))
                                                ->getMessageInfosIncludingSubMessages()) {
            if (candidate->getName() == messageName)
                info = candidate;
        }
        for (FieldInfo const *field : info ? info->getFieldInfos() : QVector<FieldInfo const *>())
            list.append(field->getName());
        return list.join(QLatin1Char(' '));
    };
    QCOMPARE(names(QStringLiteral("%1 satellite").arg(number)), satellite);
    QCOMPARE(names(QStringLiteral("%1 signal").arg(number)), signal);
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
        << frameOf(system1013.left(70).replace(57, 5, bits(31, 5)) + bits(0, 2))
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
        << frameOf(biases1230.left(28) + QStringLiteral("1111") + bits(-50, 16))
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
    QTest::addColumn<QString>("payload");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("interpreted");

    QTest::newRow("1005 message number") << station1005 << "DF002"
                                         << "1005";
    QTest::newRow("1005 station ID") << station1005 << "DF003"
                                     << "7";
    QTest::newRow("1005 GPS indicator, symbolic") << station1005 << "DF022"
                                                  << "yes";
    QTest::newRow("1005 Galileo indicator, symbolic") << station1005 << "DF024"
                                                      << "no";
    QTest::newRow("1005 negative X in meters") << station1005 << "DF025"
                                               << "-1234.5678 m";
    QTest::newRow("1005 Y in meters") << station1005 << "DF026"
                                      << "2345.6789 m";
    QTest::newRow("1005 Z of one step") << station1005 << "DF027"
                                        << "0.0001 m";
    QTest::newRow("1005 quarter cycle indicator") << station1005 << "DF364"
                                                  << "quarter-cycle phase corrections applied";
    QTest::newRow("1013 modified Julian day") << system1013 << "DF051"
                                              << "58311 d";
    QTest::newRow("1013 leap seconds") << system1013 << "DF054"
                                       << "18 s";
    QTest::newRow("1230 indicator") << biases1230 << "DF421"
                                    << "pseudorange and phaserange aligned";
}

void tst_Rtcm3Decoder::values()
{
    QFETCH(QString, payload);
    QFETCH(QString, field);
    QFETCH(QString, interpreted);

    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QString text;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        FieldInfo const *info = message->getInfo()->getFieldInfo(field);
        QVERIFY(info);
        QCOMPARE(info->getNumberOfValues(message), 1u);
        text = info->getInterpretedString(info->getValue(message, 0), true);
        QVERIFY(!info->getValue(message, 1).isValid());
    });
    decoder.decodeMessage(frameOf(payload));
    QCOMPARE(text, interpreted);
}

void tst_Rtcm3Decoder::records_data()
{
    QTest::addColumn<QString>("payload");
    QTest::addColumn<QString>("expected");

    QTest::newRow("1013 announced messages")
        << system1013
        << QStringLiteral("1013 message: DF055=1074 DF056=synchronous DF057=1.0 s | "
                          "1013 message: DF055=1006 DF056=asynchronous DF057=10.0 s");
    QTest::newRow("1230 biases of the masked signals")
        << biases1230
        << QStringLiteral("1230 bias: SignalId=L1 C/A DF423=-1.00 m | "
                          "1230 bias: SignalId=L2 C/A DF423=0.50 m");
    QTest::newRow("1033 texts, one of them empty") << descriptors1033 << QString();
}

void tst_Rtcm3Decoder::records()
{
    QFETCH(QString, payload);
    QFETCH(QString, expected);

    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QStringList records;
    QStringList texts;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        for (Message const *record : message->getSubMessages()) {
            QCOMPARE(record->getParentMessage(), message);
            QStringList values;
            for (FieldInfo const *field : record->getInfo()->getFieldInfos()) {
                values.append(field->getName() + QLatin1Char('=')
                              + field->getInterpretedString(field->getValue(record, 0), true));
            }
            records.append(record->getInfo()->getName() + QLatin1String(": ")
                           + values.join(QLatin1Char(' ')));
        }
        // The group field's values are the same records, in order.
        for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
            if (field->isStringField())
                texts.append(field->getName() + QLatin1Char('=') + field->getValueString(message));
            if (field->getType().getBasisType() != FieldType::SubMessage)
                continue;
            QCOMPARE(field->getNumberOfValues(message), uint(message->getSubMessages().size()));
            for (unsigned int i = 0; i < field->getNumberOfValues(message); ++i)
                QCOMPARE(field->getValue(message, i).getSubMessage(),
                         message->getSubMessages()[int(i)]);
        }
    });
    decoder.decodeMessage(frameOf(payload));
    QCOMPARE(records.join(QLatin1String(" | ")), expected);
    if (payload == descriptors1033) {
        QCOMPARE(texts.join(QLatin1Char(' ')),
                 QStringLiteral("DF030=ANT DF033= DF228=RX DF230=1.0 DF232="));
    }
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

void tst_Rtcm3Decoder::legacyObservationsAgreeWithGpsdecode()
{
    const QString gpsdecode = QStandardPaths::findExecutable(QStringLiteral("gpsdecode"));
    if (gpsdecode.isEmpty())
        QSKIP("gpsdecode (Debian package gpsd-clients) is not installed");
    // None of the captures holds legacy observations: a 1004 of two satellites and a 1012 of
    // one, with negative differences, read by both decoders.
    const QByteArray frames
        = QByteArray::fromHex("d300283ec0075265c00020141e8481ff65d911ad0fda801f42d4b180f423f01388c8"
                              "974000c9fe8916a580b3f449"
                              "d300183f40075265c000806487a1203ff3dd924c87ed40115c79548abd9f");
    QTemporaryFile input;
    QVERIFY(input.open());
    input.write(frames);
    input.flush();
    QProcess process;
    process.setStandardInputFile(input.fileName());
    process.start(gpsdecode, { QStringLiteral("-j") });
    QVERIFY(process.waitForFinished(30000));
    // gpsdecode reads the L2-L1 pseudorange differences (DF017, DF047) as unsigned and turns
    // GPS lock time indicators into other numbers: those are left out.
    QStringList theirs;
    for (QByteArray const &line : process.readAllStandardOutput().split('\n')) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        for (QJsonValue const satellite : object.value(QStringLiteral("satellites")).toArray()) {
            const QJsonObject l1 = satellite[QStringLiteral("L1")].toObject();
            const QJsonObject l2 = satellite[QStringLiteral("L2")].toObject();
            theirs.append(QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
                              .arg(object.value(QStringLiteral("tow")).toInt())
                              .arg(satellite[QStringLiteral("ident")].toInt())
                              .arg(l1[QStringLiteral("prange")].toDouble(), 0, 'f', 2)
                              .arg(l1[QStringLiteral("delta")].toDouble(), 0, 'f', 4)
                              .arg(l1[QStringLiteral("amb")].toInt())
                              .arg(l1[QStringLiteral("CNR")].toDouble(), 0, 'f', 2)
                              .arg(l2[QStringLiteral("delta")].toDouble(), 0, 'f', 4)
                              .arg(l2[QStringLiteral("CNR")].toDouble(), 0, 'f', 2));
        }
    }
    QStringList ours;
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        const bool gps = message->getInfo()->getName() == QLatin1String("1004");
        auto number = [gps](Message const *m, char const *gpsField, char const *glonassField) {
            FieldInfo const *field
                = m->getInfo()->getFieldInfo(QLatin1String(gps ? gpsField : glonassField));
            return field->getValue(m, 0).scaled(field->getScaleFactor());
        };
        for (Message const *satellite : message->getSubMessages()) {
            ours.append(
                QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
                    .arg(number(message, "DF004", "DF034"), 0, 'f', 0)
                    .arg(number(satellite, "DF009", "DF038"))
                    .arg(number(satellite, "DF011", "DF041"), 0, 'f', 2)
                    .arg(number(satellite, "DF012", "DF042"), 0, 'f', 4)
                    .arg(Rtcm3TestData::value(satellite, QLatin1String(gps ? "DF014" : "DF044"))
                             .getU64())
                    .arg(number(satellite, "DF015", "DF045"), 0, 'f', 2)
                    .arg(number(satellite, "DF018", "DF048"), 0, 'f', 4)
                    .arg(number(satellite, "DF020", "DF050"), 0, 'f', 2));
        }
    });
    decoder.decodeMessage(frames.left(46));
    decoder.decodeMessage(frames.mid(46));
    QCOMPARE(ours.size(), 3);
    QCOMPARE(ours, theirs);
}

QTEST_GUILESS_MAIN(tst_Rtcm3Decoder)
#include "tst_rtcm3decoder.moc"
