// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "fieldinfo.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3fieldinfo.h"

#include <QDate>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>

/// The broadcast ephemerides 1019, 1020, 1042, 1044, 1045 and 1046: how their values read,
/// and their orbits and clocks against the RINEX navigation files that convbin writes.
class tst_Rtcm3Ephemerides : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void values_data();
    void values();
    void agreesWithConvbin_data();
    void agreesWithConvbin();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

/// The bits of the message type's first fields; of all of them by default.
int bitsOf(MessageInfo const *info, int fields = -1)
{
    int bits = 0;
    for (FieldInfo const *field : info->getFieldInfos().mid(0, fields))
        bits += int(static_cast<Rtcm3FieldInfo const *>(field)->getBitWidth());
    return bits;
}

/// "G05 432000": satellite and toe (GLONASS: tb in seconds of the UTC day); Galileo adds the
/// data sources, which tell F/NAV from I/NAV. values start with the epoch in seconds of week.
QString keyOf(QString const &satellite, QVector<double> const &values)
{
    const bool glonass = satellite.startsWith(QLatin1Char('R'));
    QString key
        = QStringLiteral("%1 %2").arg(satellite).arg(qRound64(values.value(glonass ? 0 : 12)));
    if (satellite.startsWith(QLatin1Char('E')))
        key += QLatin1Char(' ') + QString::number(values.value(21));
    return key;
}

/// RINEX 3 navigation records: the epoch in seconds of the week (of the day for GLONASS, whose
/// messages hold no date but NT), then the record's values in their order.
QHash<QString, QVector<double>> readRinexNavigation(QString const &path)
{
    QHash<QString, QVector<double>> records;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return records;
    QString satellite;
    QVector<double> values;
    bool header = true;
    while (!file.atEnd()) {
        const QString line = QString::fromLatin1(file.readLine()).remove(QLatin1Char('\n'));
        if (header || line.isEmpty()) {
            header = header && !line.mid(60).startsWith(QLatin1String("END OF HEADER"));
            continue;
        }
        if (line.at(0) != QLatin1Char(' ')) {
            if (!satellite.isEmpty())
                records.insert(keyOf(satellite, values), values);
            satellite = line.left(3);
            const QVector<int> t
                = { line.mid(4, 4).toInt(),  line.mid(9, 2).toInt(),  line.mid(12, 2).toInt(),
                    line.mid(15, 2).toInt(), line.mid(18, 2).toInt(), line.mid(21, 2).toInt() };
            const int day = satellite.startsWith(QLatin1Char('R'))
                ? 0
                : QDate(t[0], t[1], t[2]).dayOfWeek() % 7;
            values = { double(day * 86400 + t[3] * 3600 + t[4] * 60 + t[5]) };
        }
        for (int column = values.size() == 1 ? 23 : 4; column + 19 <= line.size(); column += 19)
            values.append(
                line.mid(column, 19).replace(QLatin1Char('D'), QLatin1Char('E')).toDouble());
    }
    if (!satellite.isEmpty())
        records.insert(keyOf(satellite, values), values);
    return records;
}

/// A factor: a number, "pi", a data field scaled to its unit, "tk" (DF107 in seconds of the
/// day) or "sisa" (DF291 in meters: steps of 1, 2, 4 and 16 cm).
double factorValue(Message const *message, QString const &factor)
{
    if (factor == QLatin1String("pi"))
        return 3.14159265358979323846;
    if (factor == QLatin1String("tk")) {
        const quint64 tk = Rtcm3TestData::value(message, QStringLiteral("DF107")).getU64();
        return double((tk >> 7) * 3600 + ((tk >> 1) & 63) * 60 + (tk & 1) * 30);
    }
    if (factor == QLatin1String("sisa")) {
        const double n = double(Rtcm3TestData::value(message, QStringLiteral("DF291")).getU64());
        return n < 50 ? n * 0.01
            : n < 75  ? 0.5 + (n - 50) * 0.02
            : n < 100 ? 1.0 + (n - 75) * 0.04
                      : 2.0 + (n - 100) * 0.16;
    }
    FieldInfo const *field = message->getInfo()->getFieldInfo(factor);
    return field ? field->getValue(message, 0).scaled(field->getScaleFactor()) : factor.toDouble();
}

/// The value in [0, modulus); unchanged when modulus is 0.
double modulo(double value, double modulus)
{
    return modulus > 0.0 ? std::fmod(std::fmod(value, modulus) + modulus, modulus) : value;
}

/// Terms joined by '+', each a product of factors joined by '*'; "%n" at the end: modulo n.
/// "." is a value not compared (NaN).
double evaluate(Message const *message, QString const &expression)
{
    if (expression == QLatin1String("."))
        return std::nan("");
    double sum = 0.0;
    const QString terms = expression.section(QLatin1Char('%'), 0, 0);
    for (QString const &term : terms.split(QLatin1Char('+'))) {
        double product = 1.0;
        for (QString const &factor : term.split(QLatin1Char('*')))
            product *= factorValue(message, factor);
        sum += product;
    }
    return modulo(sum, expression.section(QLatin1Char('%'), 1).toDouble());
}

} // namespace

void tst_Rtcm3Ephemerides::initTestCase()
{
    // Values are rendered in the default locale: the C locale does not group digits.
    QLocale::setDefault(QLocale::c());
}

void tst_Rtcm3Ephemerides::values_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("bits");
    QTest::addColumn<QString>("interpreted");

    QTest::newRow("1020 x position, sign-magnitude") << 1020 << "DF112"
                                                     << "100000000000000110000000000"
                                                     << "-1.5000 km";
    QTest::newRow("1020 velocity, negative zero") << 1020 << "DF117"
                                                  << "100000000000000000000000"
                                                  << "0.0000000 km/s";
    QTest::newRow("1020 tb in quarters of an hour") << 1020 << "DF110"
                                                    << "0001011"
                                                    << "165 min.";
    QTest::newRow("1020 NT not available") << 1020 << "DF129"
                                           << "00000000000"
                                           << "N/A";
    QTest::newRow("1019 code on L2") << 1019 << "DF078"
                                     << "10"
                                     << "C/A code";
    QTest::newRow("1019 mean anomaly") << 1019 << "DF088"
                                       << "01000000000000000000000000000000"
                                       << "0.5000000000 semi-circle";
    QTest::newRow("1042 group delay") << 1042 << "DF513"
                                      << "1111111011"
                                      << "-0.5 ns";
    QTest::newRow("1045 SISA not available") << 1045 << "DF291"
                                             << "11111111"
                                             << "N/A";
    QTest::newRow("1046 E1-B signal in test") << 1046 << "DF287"
                                              << "11"
                                              << "signal component currently in test";
}

void tst_Rtcm3Ephemerides::values()
{
    QFETCH(int, number);
    QFETCH(QString, field);
    QFETCH(QString, bits);
    QFETCH(QString, interpreted);

    // Every field zero but the message number and this one.
    MessageInfo const *info = mDictionary.getMessageInfo(number);
    QString payload = QString::number(number, 2).rightJustified(12, QLatin1Char('0'))
        + QString(bitsOf(info) - 12, QLatin1Char('0'));
    FieldInfo const *fieldInfo = info->getFieldInfo(field);
    const int offset = bitsOf(info, fieldInfo->getIndexInMessageInfo(info));
    QCOMPARE(bits.size(), int(static_cast<Rtcm3FieldInfo const *>(fieldInfo)->getBitWidth()));
    payload.replace(offset, bits.size(), bits);
    Rtcm3Decoder decoder(&mDictionary, QStringLiteral("Decoder"));
    QString text;
    connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
        text = fieldInfo->getInterpretedString(fieldInfo->getValue(message, 0), true);
    });
    decoder.decodeMessage(Rtcm3TestData::frameFromBits(payload));
    QCOMPARE(text, interpreted);
}

void tst_Rtcm3Ephemerides::agreesWithConvbin_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QString>("satellite");
    QTest::addColumn<QString>("record");

    // Per value of a RINEX record (after the epoch in seconds of week) what our fields give:
    // semi-circles become radians, GLONASS tb and tk turn from Moscow time to UTC (only the
    // time of day), BeiDou group delays from ns to s, Galileo weeks to GPS weeks, and the
    // Galileo health packs the signals' status bits as RINEX defines. "." is not compared:
    // what convbin takes from elsewhere (URA in meters, spares). bits: the length of the
    // standard's table, which real frames fill to the byte.
    auto keplerian = [](int first) {
        QString text = QStringLiteral("%1 pi*%2 pi*%3 %4 %5 %6 %7 %8 %9 pi*%10 %11 pi*%12 %13 "
                                      "pi*%14 pi*%15");
        for (int i = 0; i < 15; ++i)
            text = text.arg(QStringLiteral("DF%1").arg(first + i, 3, 10, QLatin1Char('0')));
        return text;
    };
    const QString gps = QStringLiteral("DF081 DF084 DF083 DF082 DF071 ") + keplerian(86)
        + QStringLiteral(" pi*DF079 DF078 DF076%1024 DF103 . DF102 DF101 DF085");
    const QString glonass = QStringLiteral(
        "60*DF110+-10800%86400 -1*DF124 DF121 tk+-10800%86400 DF112 DF111 DF113 DF108 DF115 "
        "DF114 DF116 DF040+-7 DF118 DF117 DF119 DF126");
    // Data sources 258: F/NAV, clock for E5a/E1; 517: I/NAV, clock for E5b/E1.
    const QString galileo = QStringLiteral("DF293 DF296 DF295 DF294 DF290 ") + keplerian(297)
        + QStringLiteral(" pi*DF292 %1 DF289+1024 . sisa %2 DF312 %3");
    const QString dropped = QStringLiteral("dropped-packets.rtcm3");
    const QString gmsd7 = QStringLiteral("gmsd7-truncated.rtcm3");

    QTest::newRow("dropped-packets, GPS") << dropped << 1019 << 488 << "G DF009" << gps;
    QTest::newRow("dropped-packets, GLONASS") << dropped << 1020 << 360 << "R DF038" << glonass;
    QTest::newRow("dropped-packets, BeiDou")
        << dropped << 1042 << 511 << "C DF488"
        << QStringLiteral("DF493 DF496 DF495 DF494 DF492 ") + keplerian(498)
            + QStringLiteral(" pi*DF491 . DF489 . . DF515 1e-9*DF513 1e-9*DF514 . DF497");
    QTest::newRow("dropped-packets, QZSS") << dropped << 1044 << 485 << "J DF429"
                                           << QStringLiteral("DF430 DF433 DF432 DF431 DF434 ")
            + keplerian(435) + QStringLiteral(" pi*DF450 DF451 DF452%1024 . . DF454 DF455 DF456");
    QTest::newRow("dropped-packets, Galileo F/NAV")
        << dropped << 1045 << 496 << "E DF252"
        << galileo.arg(QStringLiteral("258"), QStringLiteral("16*DF314+8*DF315"),
                       QStringLiteral("0"));
    QTest::newRow("dropped-packets, Galileo I/NAV")
        << dropped << 1046 << 504 << "E DF252"
        << galileo.arg(QStringLiteral("517"), QStringLiteral("128*DF316+64*DF317+2*DF287+DF288"),
                       QStringLiteral("DF313"));
    QTest::newRow("gmsd7-truncated, GPS") << gmsd7 << 1019 << 488 << "G DF009" << gps;
    QTest::newRow("gmsd7-truncated, GLONASS") << gmsd7 << 1020 << 360 << "R DF038" << glonass;
}

void tst_Rtcm3Ephemerides::agreesWithConvbin()
{
    QFETCH(QString, file);
    QFETCH(int, number);
    QFETCH(int, bits);
    QFETCH(QString, satellite);
    QFETCH(QString, record);

    QCOMPARE(bitsOf(mDictionary.getMessageInfo(number)), bits);
    RTCM3_REQUIRE_CAPTURES();
    const QString convbin = QStandardPaths::findExecutable(QStringLiteral("convbin"));
    if (convbin.isEmpty())
        QSKIP("convbin (Debian package rtklib) is not installed");
    // Weeks in RTCM 3 are modulo 1024 and the like, so convbin needs the stream's date: that of
    // dropped-packets' first 1013 (MJD 58311, 85030 s) and the day in gmsd7's original name
    // (GMSD7_20121014).
    const QStringList date = file == QLatin1String("gmsd7-truncated.rtcm3")
        ? QStringList { QStringLiteral("2012/10/14"), QStringLiteral("00:00:00") }
        : QStringList { QStringLiteral("2018/07/12"), QStringLiteral("23:37:10") };
    QTemporaryDir dir;
    const QString navigation = dir.filePath(QStringLiteral("navigation.nav"));
    QProcess process;
    process.start(convbin,
                  { QStringLiteral("-r"), QStringLiteral("rtcm3"), QStringLiteral("-tr"),
                    date.at(0), date.at(1), QStringLiteral("-d"), dir.path(), QStringLiteral("-n"),
                    navigation, Rtcm3TestData::captureDir() + QLatin1Char('/') + file });
    QVERIFY(process.waitForFinished(120000));
    const QHash<QString, QVector<double>> theirs = readRinexNavigation(navigation);

    // Ours from the first message of each satellite and toe, as convbin keeps the first of
    // each issue of data.
    const QStringList expressions = record.split(QLatin1Char(' '));
    const QString system = satellite.left(1);
    const Rtcm3TestData::DecodedStream stream(mDictionary, Rtcm3TestData::readCapture(file));
    QHash<QString, QVector<double>> ours;
    for (Message const *message : stream.ofNumber(number)) {
        QCOMPARE(int(message->getRawSize()) - 6, (bits + 7) / 8);
        QVector<double> values;
        for (QString const &expression : expressions)
            values.append(evaluate(message, expression));
        const int prn = qRound(evaluate(message, satellite.mid(2)));
        const QString key
            = keyOf(system + QStringLiteral("%1").arg(prn, 2, 10, QLatin1Char('0')), values);
        if (!ours.contains(key))
            ours.insert(key, values);
    }

    QStringList differences;
    for (auto it = theirs.cbegin(); it != theirs.cend(); ++it) {
        if (!it.key().startsWith(system)
            || (system == QLatin1String("E") && !it.key().endsWith(expressions.value(21))))
            continue;
        QVector<double> const mine = ours.value(it.key());
        if (mine.isEmpty())
            differences.append(it.key() + QLatin1String(": not decoded"));
        for (int i = 0; i < mine.size() && i < it.value().size(); ++i) {
            const double modulus = expressions.at(i).section(QLatin1Char('%'), 1).toDouble();
            const double their = modulo(it.value().at(i), modulus);
            // A toe late in the week before the week of transmission, which the message sends:
            // RINEX gives the week of toe.
            const bool toeInWeekBefore = system != QLatin1String("R") && i == 22
                && mine.at(12) >= 302400 && their == modulo(mine.at(i) - 1.0, modulus);
            // RINEX prints 12 significant digits.
            if (std::abs(mine.at(i) - their) > 5e-12 * std::abs(their) && !toeInWeekBefore)
                differences.append(QStringLiteral("%1 value %2 (%3): ours %4, convbin %5")
                                       .arg(it.key())
                                       .arg(i)
                                       .arg(expressions.at(i))
                                       .arg(mine.at(i), 0, 'g', 15)
                                       .arg(their, 0, 'g', 15));
        }
    }
    std::sort(differences.begin(), differences.end());
    QCOMPARE(differences.mid(0, 5).join(QLatin1String("; ")), QString());
    // Every ephemeris that we decode is one that convbin wrote, and the other way round.
    QVERIFY(!ours.isEmpty());
    QCOMPARE(int(std::count_if(theirs.keyBegin(), theirs.keyEnd(),
                               [&](QString const &key) { return ours.contains(key); })),
             ours.size());
}

QTEST_GUILESS_MAIN(tst_Rtcm3Ephemerides)
#include "tst_rtcm3ephemerides.moc"
