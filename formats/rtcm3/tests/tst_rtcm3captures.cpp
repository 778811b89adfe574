// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3framer.h"

#include <QHash>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <random>

/// The decoder on the real captures: every frame decoded, values as an independent decoder
/// reads them, and damaged frames never crash or lose the frames around them.
class tst_Rtcm3Captures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void decodesEveryFrame_data();
    void decodesEveryFrame();
    void agreesWithGpsdecode_data();
    void agreesWithGpsdecode();
    void agreesWithConvbin_data();
    void agreesWithConvbin();
    void ephemeridesAgreeWithConvbin();
    void survivesDamagedFrames_data();
    void survivesDamagedFrames();
    void keepsFramesAroundGarbage();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

using Rtcm3TestData::text;
using Rtcm3TestData::value;

/// Reads every value of every field of the message and of its records, as a user would.
int readEverything(Message const *message)
{
    int values = 0;
    for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
        for (unsigned int i = 0; i < field->getNumberOfValues(message); ++i) {
            const FieldValue v = field->getValue(message, i);
            if (!v.isValid())
                return -1;
            if (v.getType().getBasisType() != FieldType::SubMessage)
                field->getInterpretedString(v, true);
            ++values;
        }
    }
    for (Message const *record : message->getSubMessages()) {
        const int recordValues = readEverything(record);
        if (recordValues < 0)
            return -1;
        values += recordValues;
    }
    return values;
}

QString number(FieldValue const &v)
{
    return v.getType().getBasisType() == FieldType::SignedInteger ? QString::number(v.getI64())
                                                                  : QString::number(v.getU64());
}

QString flag(FieldValue const &v)
{
    return v.getU64() ? QStringLiteral("true") : QStringLiteral("false");
}

QString meters(Message const *message, char const *field, double scale = 0.0001)
{
    return QString::number(double(value(message, QLatin1String(field)).getI64()) * scale, 'f', 4);
}

/// The fields that gpsdecode -j prints for a message, as "key=value" in its order.
QStringList ourKeys(Message const *m)
{
    QStringList keys { QStringLiteral("station_id=") + number(value(m, QStringLiteral("DF003"))) };
    const int type = m->getInfo()->getName().toInt();
    auto add = [&keys](char const *key, QString const &text) {
        keys.append(QLatin1String(key) + QLatin1Char('=') + text);
    };
    if (type == 1005 || type == 1006) {
        QStringList systems;
        if (value(m, QStringLiteral("DF022")).getU64())
            systems.append(QStringLiteral("\"GPS\""));
        if (value(m, QStringLiteral("DF023")).getU64())
            systems.append(QStringLiteral("\"GLONASS\""));
        if (value(m, QStringLiteral("DF024")).getU64())
            systems.append(QStringLiteral("\"GALILEO\""));
        add("system", QLatin1Char('[') + systems.join(QLatin1Char(',')) + QLatin1Char(']'));
        add("refstation", flag(value(m, QStringLiteral("DF141"))));
        add("sro", flag(value(m, QStringLiteral("DF142"))));
        add("x", meters(m, "DF025"));
        add("y", meters(m, "DF026"));
        add("z", meters(m, "DF027"));
        if (type == 1006)
            add("h",
                QString::number(double(value(m, QStringLiteral("DF028")).getU64()) * 0.0001, 'f',
                                4));
    } else if (type == 1007 || type == 1008 || type == 1033) {
        add("desc", QLatin1Char('"') + text(m, QStringLiteral("DF030")) + QLatin1Char('"'));
        add("setup_id", number(value(m, QStringLiteral("DF031"))));
        if (type != 1007)
            add("serial", QLatin1Char('"') + text(m, QStringLiteral("DF033")) + QLatin1Char('"'));
        if (type == 1033) {
            add("receiver", QLatin1Char('"') + text(m, QStringLiteral("DF228")) + QLatin1Char('"'));
            // gpsdecode prints at most 13 characters of the firmware version: of the 16 of
            // "5.33,31/JAN/2018" in dropped-packets it shows "5.33,31/JAN/2".
            add("firmware",
                QLatin1Char('"') + text(m, QStringLiteral("DF230")).left(13) + QLatin1Char('"'));
        }
    } else if (type == 1013) {
        add("mjd", number(value(m, QStringLiteral("DF051"))));
        // gpsdecode keeps only the low 16 of the 17 bits of the seconds of day: the first 1013
        // of dropped-packets holds 85030 s (23:37:10 UTC, as the GPS time of the MSM4 frames
        // around it confirms) and gpsdecode prints 19494.
        add("sec", QString::number(value(m, QStringLiteral("DF052")).getU64() % 65536));
        add("leapsecs", number(value(m, QStringLiteral("DF054"))));
        for (Message const *record : m->getSubMessages()) {
            add("id", number(value(record, QStringLiteral("DF055"))));
            add("sync", flag(value(record, QStringLiteral("DF056"))));
            add("interval", number(value(record, QStringLiteral("DF057"))));
        }
    } else if (type == 1230) {
        // gpsdecode reads the biases of 1230 from the wrong bits: the f9t frame with payload
        // 4ce0008a00000000 has mask 1010 and two zero biases, where it prints l1_ca 16384.
        // Only the header is compared (convbin leaves the biases out of its RINEX header too);
        // tst_rtcm3decoder reads the biases of a crafted 1230.
        add("ind", QLatin1Char('"') + number(value(m, QStringLiteral("DF421"))) + QLatin1Char('"'));
    }
    return keys;
}

/// The same keys from one line of gpsdecode -j, whose 1013 lines are not quite JSON.
QStringList gpsdecodeKeys(QString const &line)
{
    static const QRegularExpression pair(
        QStringLiteral("\"(\\w+)\":(\"[^\"]*\"|\\[[^\\]]*\\]|[^,{}]+)"));
    static const QStringList skipped { QStringLiteral("class"), QStringLiteral("device"),
                                       QStringLiteral("type"),  QStringLiteral("length"),
                                       QStringLiteral("l1_ca"), QStringLiteral("l1_p"),
                                       QStringLiteral("l2_ca"), QStringLiteral("l2_p") };
    QStringList keys;
    auto it = pair.globalMatch(line);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        if (skipped.contains(match.captured(1)))
            continue;
        QString text = match.captured(2);
        if (match.captured(1) == QLatin1String("sync"))
            text.remove(QLatin1Char('"'));
        keys.append(match.captured(1) + QLatin1Char('=') + text);
    }
    return keys;
}

} // namespace

void tst_Rtcm3Captures::initTestCase()
{
    RTCM3_REQUIRE_CAPTURES();
}

void tst_Rtcm3Captures::decodesEveryFrame_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("messages");
    QTest::addColumn<QString>("unknown");

    QTest::newRow("dropped-packets")
        << QStringLiteral("dropped-packets.rtcm3")
        << QStringLiteral("1006:131 1008:131 1013:132 1019:363 1020:242 "
                          "1033:131 1042:42 1044:4 1045:34 1046:34 "
                          "1074:1311 "
                          "1084:1312 1094:1312 1114:1312 1124:1312 "
                          "1230:131")
        << QString();
    QTest::newRow("gmsd7-truncated")
        << QStringLiteral("gmsd7-truncated.rtcm3")
        << QStringLiteral("1007:28 1008:28 1019:15 1020:16 1033:28 1077:257 1087:257 "
                          "1117:257 1127:257")
        << QString();
    QTest::newRow("f9t-interleaved")
        << QStringLiteral("f9t-interleaved.log")
        << QStringLiteral("1005:26 1077:26 1087:26 1097:26 1127:26 1230:26")
        << QStringLiteral("4072:26");
}

void tst_Rtcm3Captures::decodesEveryFrame()
{
    QFETCH(QString, file);
    QFETCH(QString, messages);
    QFETCH(QString, unknown);

    const Rtcm3TestData::DecodedStream stream(mDictionary, Rtcm3TestData::readCapture(file));
    QMap<int, int> decoded;
    for (Message const *message : stream.messages) {
        ++decoded[message->getInfo()->getName().toInt()];
        QVERIFY(readEverything(message) > 0);
    }
    QMap<int, int> unknownCounts;
    for (QString const &type : stream.unknown)
        ++unknownCounts[type.toInt()];
    auto join = [](QMap<int, int> const &counts) {
        QStringList list;
        for (auto it = counts.cbegin(); it != counts.cend(); ++it)
            list.append(QStringLiteral("%1:%2").arg(it.key()).arg(it.value()));
        return list.join(QLatin1Char(' '));
    };
    QString decodedKnown = join(decoded);
    QCOMPARE(decodedKnown, messages);
    for (int type : { 1019, 1020, 1042, 1044, 1045, 1046, 1074, 1077, 1084, 1087, 1094, 1097, 1114,
                      1117, 1124, 1127 })
        unknownCounts.remove(type);
    QCOMPARE(join(unknownCounts), unknown);
    for (QString const &event : stream.events)
        QVERIFY2(!event.contains(QLatin1String("Decoder: ")), qPrintable(event));
}

void tst_Rtcm3Captures::agreesWithGpsdecode_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("type");

    QTest::newRow("f9t 1005") << QStringLiteral("f9t-interleaved.log") << 1005;
    QTest::newRow("f9t 1230") << QStringLiteral("f9t-interleaved.log") << 1230;
    QTest::newRow("dropped-packets 1006") << QStringLiteral("dropped-packets.rtcm3") << 1006;
    QTest::newRow("dropped-packets 1008") << QStringLiteral("dropped-packets.rtcm3") << 1008;
    QTest::newRow("dropped-packets 1013") << QStringLiteral("dropped-packets.rtcm3") << 1013;
    QTest::newRow("dropped-packets 1033") << QStringLiteral("dropped-packets.rtcm3") << 1033;
    QTest::newRow("dropped-packets 1230") << QStringLiteral("dropped-packets.rtcm3") << 1230;
    QTest::newRow("gmsd7 1007") << QStringLiteral("gmsd7-truncated.rtcm3") << 1007;
    QTest::newRow("gmsd7 1008") << QStringLiteral("gmsd7-truncated.rtcm3") << 1008;
    QTest::newRow("gmsd7 1033") << QStringLiteral("gmsd7-truncated.rtcm3") << 1033;
}

void tst_Rtcm3Captures::agreesWithGpsdecode()
{
    QFETCH(QString, file);
    QFETCH(int, type);

    const QString gpsdecode = QStandardPaths::findExecutable(QStringLiteral("gpsdecode"));
    if (gpsdecode.isEmpty())
        QSKIP("gpsdecode (Debian package gpsd-clients) is not installed");
    static QHash<QString, QStringList> outputs;
    if (!outputs.contains(file)) {
        QProcess process;
        process.setStandardInputFile(Rtcm3TestData::captureDir() + QLatin1Char('/') + file);
        process.start(gpsdecode, { QStringLiteral("-j") });
        QVERIFY(process.waitForFinished(60000));
        outputs.insert(file,
                       QString::fromUtf8(process.readAllStandardOutput())
                           .split(QLatin1Char('\n'), Qt::SkipEmptyParts));
    }
    const QString typeKey = QStringLiteral("\"type\":%1,").arg(type);
    QStringList theirs;
    for (QString const &line : outputs.value(file)) {
        if (line.contains(QLatin1String("\"class\":\"RTCM3\"")) && line.contains(typeKey))
            theirs.append(gpsdecodeKeys(line).join(QLatin1Char(' ')));
    }
    const Rtcm3TestData::DecodedStream stream(mDictionary, Rtcm3TestData::readCapture(file));
    QStringList ours;
    for (Message const *message : stream.ofNumber(type))
        ours.append(ourKeys(message).join(QLatin1Char(' ')));
    QVERIFY(!ours.isEmpty());
    QCOMPARE(ours.size(), theirs.size());
    for (int i = 0; i < ours.size(); ++i)
        QCOMPARE(ours.at(i), theirs.at(i));
}

namespace {

/// RINEX 3 observations as convbin writes them: "<ms of day> <satellite> <code>" to the value.
QHash<QString, double> readRinexObservations(QString const &path)
{
    QFile file(path);
    QHash<QString, double> values;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return values;
    QHash<QChar, QStringList> types;
    QChar lastSystem;
    bool header = true;
    qint64 msOfDay = -1;
    while (!file.atEnd()) {
        const QString line = QString::fromLatin1(file.readLine()).remove(QLatin1Char('\n'));
        if (header) {
            if (line.mid(60).startsWith(QLatin1String("SYS / # / OBS TYPES"))) {
                if (line.at(0) != QLatin1Char(' '))
                    lastSystem = line.at(0);
                types[lastSystem] += line.mid(7, 53).split(QLatin1Char(' '), Qt::SkipEmptyParts);
            }
            header = !line.mid(60).startsWith(QLatin1String("END OF HEADER"));
        } else if (line.startsWith(QLatin1Char('>'))) {
            const QStringList parts = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            msOfDay = qRound64((parts.value(4).toInt() * 3600 + parts.value(5).toInt() * 60
                                + parts.value(6).toDouble())
                               * 1000);
        } else if (line.size() > 3) {
            const QString satellite = line.left(3).replace(QLatin1Char(' '), QLatin1Char('0'));
            QStringList const &codes = types.value(satellite.at(0));
            for (int i = 0; i < codes.size(); ++i) {
                const QString field = line.mid(3 + 16 * i, 14).trimmed();
                if (!field.isEmpty())
                    values.insert(QStringLiteral("%1 %2 %3").arg(msOfDay).arg(satellite, codes[i]),
                                  field.toDouble());
            }
        }
    }
    return values;
}

/// Our pseudoranges (C, meters) and CNRs (S, dB-Hz) of an MSM message, keyed like the RINEX
/// observations, at GPS milliseconds of day.
QHash<QString, double> msmObservations(Message const *message, int leapSeconds)
{
    constexpr qint64 dayMs = 86400000;
    constexpr double metersPerMs = 299792.458;
    const int number = message->getInfo()->getName().toInt();
    const char system = "GRESJCI"[(number - 1070) / 10];
    qint64 ms = 0;
    switch (system) {
    case 'R': // Moscow time of day
        ms = qint64(value(message, QStringLiteral("DF034")).getU64()) - 3 * 3600000
            + leapSeconds * 1000;
        break;
    case 'C': // BeiDou time is 14 s behind GPS time
        ms = qint64(value(message, QStringLiteral("DF427")).getU64()) + 14000;
        break;
    default:
        ms = qint64(value(message, message->getInfo()->getFieldInfos().at(2)->getName()).getU64());
    }
    ms = ((ms % dayMs) + dayMs) % dayMs;
    QHash<quint64, double> roughMs;
    QHash<QString, double> observations;
    auto scaled = [](Message const *record, char const *name, bool *valid) {
        FieldInfo const *field = record->getInfo()->getFieldInfo(QLatin1String(name));
        if (!field)
            return 0.0;
        const FieldValue v = field->getValue(record, 0);
        *valid = !field->isDoNotUseValue(v);
        return v.scaled(field->getScaleFactor());
    };
    for (Message const *record : message->getSubMessages()) {
        bool valid = false;
        const quint64 satellite = value(record, QStringLiteral("SatelliteId")).getU64();
        if (record->getInfo()->getName().endsWith(QLatin1String(" satellite"))) {
            const double whole = scaled(record, "DF397", &valid);
            if (valid)
                roughMs.insert(satellite, whole + scaled(record, "DF398", &valid));
            continue;
        }
        FieldInfo const *signal = record->getInfo()->getFieldInfo(QStringLiteral("SignalId"));
        const QString code = signal->getSymbolicRepresentationForValue(signal->getValue(record, 0));
        const QString prefix = QStringLiteral("%1 %2%3 ")
                                   .arg(ms)
                                   .arg(QLatin1Char(system))
                                   .arg(satellite, 2, 10, QLatin1Char('0'));
        const bool extended = number % 10 >= 6;
        const double fine = scaled(record, extended ? "DF405" : "DF400", &valid);
        if (valid && roughMs.contains(satellite))
            observations.insert(prefix + QLatin1Char('C') + code,
                                (roughMs[satellite] + fine) * metersPerMs);
        const double cnr = scaled(record, extended ? "DF408" : "DF403", &valid);
        if (valid)
            observations.insert(prefix + QLatin1Char('S') + code, cnr);
    }
    return observations;
}

} // namespace

namespace {

/// Runs convbin on the capture with the output option ("-o" observations, "-n" navigation);
/// the RINEX file's path, empty when convbin is not installed.
QString convbinOutput(QTemporaryDir const &dir, QString const &file, QString const &option)
{
    const QString convbin = QStandardPaths::findExecutable(QStringLiteral("convbin"));
    if (convbin.isEmpty())
        return QString();
    const QString rinex = dir.filePath(QStringLiteral("output.rnx"));
    QProcess process;
    process.start(convbin,
                  { QStringLiteral("-r"), QStringLiteral("rtcm3"), QStringLiteral("-v"),
                    QStringLiteral("3.04"), QStringLiteral("-os"), option, rinex,
                    Rtcm3TestData::captureDir() + QLatin1Char('/') + file });
    process.waitForFinished(120000);
    return rinex;
}

/// The broadcast records of a RINEX 3 navigation file: satellite and values, in file order.
QVector<QPair<QString, QVector<double>>> readRinexNavigation(QString const &path)
{
    QFile file(path);
    QVector<QPair<QString, QVector<double>>> records;
    bool header = true;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return records;
    while (!file.atEnd()) {
        const QString line = QString::fromLatin1(file.readLine()).remove(QLatin1Char('\n'));
        if (header) {
            header = !line.mid(60).startsWith(QLatin1String("END OF HEADER"));
            continue;
        }
        const bool first = line.at(0) != QLatin1Char(' ');
        if (first)
            records.append({ line.left(3), {} });
        for (int i = first ? 23 : 4; i + 19 <= line.size() + 1 && !records.isEmpty(); i += 19) {
            const QString field
                = line.mid(i, 19).trimmed().replace(QLatin1Char('D'), QLatin1Char('E'));
            if (!field.isEmpty())
                records.last().second.append(field.toDouble());
        }
    }
    return records;
}

} // namespace

void tst_Rtcm3Captures::ephemeridesAgreeWithConvbin()
{
    QTemporaryDir dir;
    const QString rinex
        = convbinOutput(dir, QStringLiteral("dropped-packets.rtcm3"), QStringLiteral("-n"));
    if (rinex.isEmpty())
        QSKIP("convbin (Debian package rtklib) is not installed");
    const auto records = readRinexNavigation(rinex);
    QVERIFY(records.size() > 50);

    // Per system: the RINEX letter, the message, its satellite field and, in the order of the
    // RINEX record, our fields ("-" negated, empty skipped). Orbits in semicircles become
    // radians in RINEX; the record's toe (X for GLONASS) tells the broadcasts apart.
    struct System
    {
        char letter;
        QList<int> messages;
        QString fields;
        int keyIndex;
    };
    const QVector<System> systems {
        { 'G',
          { 1019 },
          QStringLiteral("DF009 DF084 DF083 DF082 DF071 DF086 DF087 DF088 DF089 DF090 "
                         "DF091 DF092 DF093 DF094 DF095 DF096 DF097 DF098 DF099 DF100 "
                         "DF079"),
          11 },
        { 'J',
          { 1044 },
          QStringLiteral("DF429 DF433 DF432 DF431 DF434 DF435 DF436 DF437 DF438 DF439 "
                         "DF440 DF441 DF442 DF443 DF444 DF445 DF446 DF447 DF448 DF449 "
                         "DF450"),
          11 },
        // F/NAV and I/NAV broadcasts of one issue differ in their clocks.
        { 'E',
          { 1045, 1046 },
          QStringLiteral("DF252 DF296 DF295 DF294 DF290 DF297 DF298 DF299 DF300 DF301 "
                         "DF302 DF303 DF304 DF305 DF306 DF307 DF308 DF309 DF310 DF311 "
                         "DF292"),
          11 },
        { 'C',
          { 1042 },
          QStringLiteral("DF488 DF496 DF495 DF494 - DF498 DF499 DF500 DF501 DF502 "
                         "DF503 DF504 DF505 DF506 DF507 DF508 DF509 DF510 DF511 DF512 "
                         "DF491"),
          11 },
        { 'R',
          { 1020 },
          QStringLiteral("DF038 -DF124 DF121 - DF112 DF111 DF113 - DF115 DF114 DF116 "
                         "- DF118 DF117 DF119"),
          3 },
    };
    const Rtcm3TestData::DecodedStream stream(
        mDictionary, Rtcm3TestData::readCapture(QStringLiteral("dropped-packets.rtcm3")));
    constexpr double pi = 3.1415926535898; // the value GPS orbit computations use
    int compared = 0;
    for (System const &system : systems) {
        const QStringList fields = system.fields.split(QLatin1Char(' '));
        // Our broadcasts as RINEX would write them, by satellite and key value.
        QMultiHash<QString, QVector<double>> ours;
        QVector<Message const *> messages;
        for (int number : system.messages)
            messages += stream.ofNumber(number);
        for (Message const *message : std::as_const(messages)) {
            QVector<double> values;
            for (int i = 1; i < fields.size(); ++i) {
                QString name = fields[i];
                const double sign = name.startsWith(QLatin1Char('-')) && name.size() > 1 ? -1 : 1;
                FieldInfo const *field
                    = message->getInfo()->getFieldInfo(name.remove(QLatin1Char('-')));
                const bool semicircles = field
                    && (field->getUnit() == FieldInfo::UnitSemicircle
                        || field->getUnit() == FieldInfo::UnitSemicirclePerSecond);
                values.append(field ? sign * (semicircles ? pi : 1.0)
                                      * field->getValue(message, 0).scaled(field->getScaleFactor())
                                    : qQNaN());
            }
            ours.insert(QStringLiteral("%1%2 %3")
                            .arg(QLatin1Char(system.letter))
                            .arg(value(message, fields[0]).getU64(), 2, 10, QLatin1Char('0'))
                            .arg(values[system.keyIndex], 0, 'g', 12),
                        values);
        }
        for (auto const &record : records) {
            if (record.first.at(0) != QLatin1Char(system.letter))
                continue;
            const QString key = QStringLiteral("%1 %2")
                                    .arg(record.first)
                                    .arg(record.second.value(system.keyIndex), 0, 'g', 12);
            QVERIFY2(ours.contains(key), qPrintable(key));
            // One of our broadcasts with that key has every value of the record.
            QString difference;
            for (QVector<double> const &candidate : ours.values(key)) {
                difference.clear();
                for (int i = 0; i < candidate.size() && difference.isEmpty(); ++i) {
                    const double theirs = record.second.value(i);
                    // RINEX keeps twelve significant digits.
                    if (!qIsNaN(candidate[i])
                        && qAbs(candidate[i] - theirs) > 1e-11 * qAbs(theirs)) {
                        difference = QStringLiteral("%1 value %2 (%3): ours %4, convbin %5")
                                         .arg(key)
                                         .arg(i)
                                         .arg(fields[i + 1])
                                         .arg(candidate[i], 0, 'g', 15)
                                         .arg(theirs, 0, 'g', 15);
                    }
                }
                if (difference.isEmpty())
                    break;
            }
            QVERIFY2(difference.isEmpty(), qPrintable(difference));
            compared += ours.value(key).size();
        }
    }
    QVERIFY(compared > 1000);
}

void tst_Rtcm3Captures::agreesWithConvbin_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QList<int>>("types");
    QTest::addColumn<int>("leapSeconds");

    // GPS-UTC is 18 s in 2018 and since; GLONASS epochs are in Moscow time.
    QTest::newRow("dropped-packets, MSM4 of five systems")
        << QStringLiteral("dropped-packets.rtcm3") << QList<int> { 1074, 1084, 1094, 1114, 1124 }
        << 18;
    QTest::newRow("f9t-interleaved, MSM7 of four systems")
        << QStringLiteral("f9t-interleaved.log") << QList<int> { 1077, 1087, 1097, 1127 } << 18;
    // convbin writes only the BeiDou observations of this early MSM7 stream.
    QTest::newRow("gmsd7-truncated, BeiDou MSM7")
        << QStringLiteral("gmsd7-truncated.rtcm3") << QList<int> { 1127 } << 16;
}

void tst_Rtcm3Captures::agreesWithConvbin()
{
    QFETCH(QString, file);
    QFETCH(QList<int>, types);
    QFETCH(int, leapSeconds);

    const QString convbin = QStandardPaths::findExecutable(QStringLiteral("convbin"));
    if (convbin.isEmpty())
        QSKIP("convbin (Debian package rtklib) is not installed");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString rinex = dir.filePath(QStringLiteral("observations.obs"));
    QProcess process;
    process.start(convbin,
                  { QStringLiteral("-r"), QStringLiteral("rtcm3"), QStringLiteral("-v"),
                    QStringLiteral("3.04"), QStringLiteral("-os"), QStringLiteral("-o"), rinex,
                    Rtcm3TestData::captureDir() + QLatin1Char('/') + file });
    QVERIFY(process.waitForFinished(120000));
    const QHash<QString, double> theirs = readRinexObservations(rinex);
    QVERIFY(!theirs.isEmpty());

    const Rtcm3TestData::DecodedStream stream(mDictionary, Rtcm3TestData::readCapture(file));
    int compared = 0;
    int missing = 0;
    QStringList differences;
    for (int type : std::as_const(types)) {
        for (Message const *message : stream.ofNumber(type)) {
            const QHash<QString, double> ours = msmObservations(message, leapSeconds);
            for (auto it = ours.cbegin(); it != ours.cend(); ++it) {
                if (!theirs.contains(it.key())) {
                    ++missing;
                    continue;
                }
                ++compared;
                // RINEX has three decimals: meters for C, dB-Hz for S.
                if (qAbs(theirs[it.key()] - it.value()) > 0.0015) {
                    differences.append(QStringLiteral("%1: ours %2, convbin %3")
                                           .arg(it.key())
                                           .arg(it.value(), 0, 'f', 4)
                                           .arg(theirs[it.key()], 0, 'f', 3));
                }
            }
        }
    }
    // convbin leaves out a few epochs of the stream (around lost packets, or where systems of
    // one epoch arrive apart); every value it does write must agree.
    QVERIFY(compared > 2000);
    QVERIFY2(missing * 40 < compared, qPrintable(QString::number(missing)));
    QCOMPARE(differences.mid(0, 5).join(QLatin1String("; ")), QString());
}

void tst_Rtcm3Captures::survivesDamagedFrames_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("dropped-packets") << QStringLiteral("dropped-packets.rtcm3");
    QTest::newRow("gmsd7-truncated") << QStringLiteral("gmsd7-truncated.rtcm3");
    QTest::newRow("f9t-interleaved") << QStringLiteral("f9t-interleaved.log");
}

void tst_Rtcm3Captures::survivesDamagedFrames()
{
    QFETCH(QString, file);

    // The first frame of each message number in the capture.
    QMap<int, QByteArray> firstFrames;
    {
        Rtcm3Framer framer(mDictionary.getFormat(), QStringLiteral("Framer"));
        connect(&framer, &Rtcm3Framer::frameFound, [&](const uint8_t *frame, uint length) {
            const int type = (frame[3] << 4) | (frame[4] >> 4);
            if (!firstFrames.contains(type))
                firstFrames.insert(type,
                                   QByteArray(reinterpret_cast<char const *>(frame), int(length)));
        });
        framer.addData(Rtcm3TestData::readCapture(file));
    }
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    int outcomes = 0;
    int errors = 0;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        ++outcomes;
        QVERIFY(readEverything(message) >= 0);
    });
    connect(&decoder, &MessageSource::newUnknownMessage, [&] { ++outcomes; });
    connect(&decoder, &MessageSource::newEvent, [&] { ++outcomes, ++errors; });
    int attempts = 0;
    for (QByteArray const &frame : std::as_const(firstFrames)) {
        const QByteArray payload = frame.mid(3, frame.size() - 6);
        QVector<QByteArray> damaged;
        // Every truncation, and every payload byte set to all ones and to all zeros: counts
        // and masks that claim more than the frame holds.
        for (int length = 0; length < payload.size(); ++length)
            damaged.append(payload.left(length));
        for (int i = 0; i < payload.size(); ++i) {
            for (char fill : { char(0xFF), char(0x00) }) {
                QByteArray changed = payload;
                changed[i] = fill;
                damaged.append(changed);
            }
        }
        for (QByteArray const &bytes : std::as_const(damaged)) {
            // Exactly as much of the frame as there is, so that a sanitizer sees any overrun.
            const QByteArray damagedFrame = Rtcm3TestData::frame(bytes);
            auto *copy = new uint8_t[std::size_t(damagedFrame.size())];
            std::copy(damagedFrame.cbegin(), damagedFrame.cend(), copy);
            decoder.decodeMessage(copy, uint(damagedFrame.size()));
            delete[] copy;
            ++attempts;
        }
    }
    // Each damaged frame ends as one message, one unknown message or one decoder error.
    QCOMPARE(outcomes, attempts);
    QVERIFY(errors > 0);
}

void tst_Rtcm3Captures::keepsFramesAroundGarbage()
{
    const QByteArray capture = Rtcm3TestData::readCapture(QStringLiteral("gmsd7-truncated.rtcm3"));
    QByteArray stream;
    int frames = 0;
    std::mt19937 random(20121014);
    Rtcm3Framer splitter(mDictionary.getFormat(), QStringLiteral("Splitter"));
    connect(&splitter, &Rtcm3Framer::frameFound, [&](const uint8_t *frame, uint length) {
        // Garbage rich in false preambles, some with plausible lengths, before each frame.
        const int garbage = int(random() % 64);
        for (int i = 0; i < garbage; ++i) {
            const unsigned int r = random() % 8;
            stream.append(r == 0 ? char(0xD3) : r == 1 ? char(0x00) : char(random() % 256));
        }
        stream.append(reinterpret_cast<char const *>(frame), int(length));
        ++frames;
    });
    splitter.addData(capture.left(65536));
    QVERIFY(frames > 200);

    const Rtcm3TestData::DecodedStream decoded(mDictionary, stream);
    QCOMPARE(decoded.messages.size() + decoded.unknown.size(), frames);
}

QTEST_GUILESS_MAIN(tst_Rtcm3Captures)
#include "tst_rtcm3captures.moc"
