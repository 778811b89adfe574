// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "childprocess.h"
#include "fieldinfo.h"
#include "testfieldinfo.h"
#include "warningcapture.h"

#include <QTest>

#include <cstdio>

using Unit = FieldInfo::Unit;

class tst_FieldInfoUnits : public QObject
{
    Q_OBJECT

public:
    static void runChildScenario(QString const &scenario);

private Q_SLOTS:
    void initTestCase();
    void table_data();
    void table();
    void tableHoldsExactlyTheFixedRows();
    void fillingHappensOnce();
    void wrongTableSizeIsReported();
    void knownIdentifiers_data();
    void knownIdentifiers();
    void unknownTextAddsRowButKeepsUnit();
    void unknownTexts_data();
    void unknownTexts();
    void unknownUnitValue_data();
    void unknownUnitValue();
};

void tst_FieldInfoUnits::runChildScenario(QString const &scenario)
{
    if (scenario == QLatin1String("strayRowBeforeFilling")) {
        AssertCapture capture;
        // A row the fixed table does not have, present before the first filling.
        FieldInfo::sUnitToUnitDataMap.insert(Unit(99), FieldInfo::UnitData());
        FieldInfo::ensureExplicitUnits();
        for (AssertCapture::Report const &report : capture.reports())
            std::fprintf(stderr, "report|%s|%s\n", report.function.constData(),
                         report.text.constData());
    }
}

void tst_FieldInfoUnits::initTestCase()
{
    FieldInfo::ensureExplicitUnits();
}

void tst_FieldInfoUnits::table_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<int>("selectedUnit");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("singular");
    QTest::addColumn<QString>("plural");

    auto row = [](int unit, int selectedUnit, QString identifier, QString symbol, QString singular,
                  QString plural) {
        QTest::addRow("%d %s", unit, qPrintable(identifier))
            << unit << selectedUnit << identifier << symbol << singular << plural;
    };
    // selectedUnit is what setUnit(identifier) gives: 52 shares its identifier with 24, which
    // comes first.
    // clang-format off
    row(0, 0, QString(), QString(), QString(), QString());
    row(1, 1, QStringLiteral("meter"), QStringLiteral("m"), QStringLiteral("meter"), QStringLiteral("meter"));
    row(2, 2, QStringLiteral("kilometer"), QStringLiteral("km"), QStringLiteral("kilometer"), QStringLiteral("kilometer"));
    row(3, 3, QStringLiteral("decimeter"), QStringLiteral("dm"), QStringLiteral("decimeter"), QStringLiteral("decimeter"));
    row(4, 4, QStringLiteral("millimeter"), QStringLiteral("mm"), QStringLiteral("millimeter"), QStringLiteral("millimeter"));
    row(5, 5, QStringLiteral("second"), QStringLiteral("s"), QStringLiteral("second"), QStringLiteral("seconds"));
    row(6, 6, QStringLiteral("microsecond"), QStringLiteral("µs"), QStringLiteral("microsecond"), QStringLiteral("microseconds"));
    row(7, 7, QStringLiteral("nanosecond"), QStringLiteral("ns"), QStringLiteral("nanosecond"), QStringLiteral("nanoseconds"));
    row(8, 8, QStringLiteral("meterpersecond"), QStringLiteral("m/s"), QStringLiteral("meter/second"), QStringLiteral("meter/second"));
    row(9, 9, QStringLiteral("millimeterpersecond"), QStringLiteral("mm/s"), QStringLiteral("millimeter/second"), QStringLiteral("millimeter/second"));
    row(10, 10, QStringLiteral("kilometerpersecond"), QStringLiteral("km/s"), QStringLiteral("kilometer/second"), QStringLiteral("kilometer/second"));
    row(11, 11, QStringLiteral("week"), QStringLiteral("w"), QStringLiteral("week"), QStringLiteral("weeks"));
    row(12, 12, QStringLiteral("hertz"), QStringLiteral("Hz"), QStringLiteral("hertz"), QStringLiteral("hertz"));
    row(13, 13, QStringLiteral("kilohertz"), QStringLiteral("kHz"), QStringLiteral("kilohertz"), QStringLiteral("kilohertz"));
    row(14, 14, QStringLiteral("radian"), QStringLiteral("rad"), QStringLiteral("radian"), QStringLiteral("radians"));
    row(15, 15, QStringLiteral("degree"), QStringLiteral("°"), QStringLiteral("degree"), QStringLiteral("degrees"));
    row(16, 16, QStringLiteral("chip"), QStringLiteral("chip"), QStringLiteral("chip"), QStringLiteral("chips"));
    row(17, 17, QStringLiteral("cycle"), QStringLiteral("cyc"), QStringLiteral("cycle"), QStringLiteral("cycles"));
    row(18, 18, QStringLiteral("celsius"), QStringLiteral("°C"), QStringLiteral("°C"), QStringLiteral("°C"));
    row(19, 19, QStringLiteral("semicircle"), QStringLiteral("semi-circle"), QStringLiteral("semi-circle"), QStringLiteral("semi-circles"));
    row(20, 20, QStringLiteral("degreepersecond"), QStringLiteral("°/s"), QStringLiteral("degree per second"), QStringLiteral("degrees per second"));
    row(21, 21, QStringLiteral("semicirclepersecond"), QStringLiteral("semi-circle/s"), QStringLiteral("semi-circle per second"), QStringLiteral("semi-circles per second"));
    row(22, 22, QStringLiteral("semicirclepersecondsquared"), QStringLiteral("semi-circle/s²"), QStringLiteral("semi-circle per second squared"), QStringLiteral("semi-circles per second squared"));
    row(23, 23, QStringLiteral("secondpersecond"), QStringLiteral("s/s"), QStringLiteral("second per second"), QStringLiteral("seconds per second"));
    row(24, 24, QStringLiteral("secondpersecondsquared"), QStringLiteral("s/s²"), QStringLiteral("second per square second"), QStringLiteral("seconds per square second"));
    row(25, 25, QStringLiteral("metersqrt"), QStringLiteral("m**1/2"), QStringLiteral("meter**1/2"), QStringLiteral("meter**1/2"));
    row(26, 26, QStringLiteral("meterpersecondsquared"), QStringLiteral("m/s²"), QStringLiteral("meter/second²"), QStringLiteral("meter/second²"));
    row(27, 27, QStringLiteral("kilometerpersecondsquared"), QStringLiteral("km/s²"), QStringLiteral("kilometer/second²"), QStringLiteral("kilometer/second²"));
    row(28, 28, QStringLiteral("metersquared"), QStringLiteral("m²"), QStringLiteral("meter²"), QStringLiteral("meter²"));
    row(29, 29, QStringLiteral("degreesquared"), QStringLiteral("deg²"), QStringLiteral("degree²"), QStringLiteral("degree²"));
    row(30, 30, QStringLiteral("metersquaredpersecondsquared"), QStringLiteral("m²/s²"), QStringLiteral("meter²/second²"), QStringLiteral("meter²/second²"));
    row(31, 31, QStringLiteral("baud"), QStringLiteral("Bd"), QStringLiteral("baud"), QStringLiteral("bauds"));
    row(32, 32, QStringLiteral("byte"), QStringLiteral("b"), QStringLiteral("byte"), QStringLiteral("bytes"));
    row(33, 33, QStringLiteral("megabyte"), QStringLiteral("Mb"), QStringLiteral("megabyte"), QStringLiteral("megabytes"));
    row(34, 34, QStringLiteral("kilobytepersecond"), QStringLiteral("kbyte/s"), QStringLiteral("kilobyte/second"), QStringLiteral("kilobyte/second"));
    row(35, 35, QStringLiteral("day"), QStringLiteral("d"), QStringLiteral("day"), QStringLiteral("days"));
    row(36, 36, QStringLiteral("decibel"), QStringLiteral("dB"), QStringLiteral("decibel"), QStringLiteral("decibels"));
    row(37, 37, QStringLiteral("decibelhertz"), QStringLiteral("dB-Hz"), QStringLiteral("decibel-hertz"), QStringLiteral("decibel-hertz"));
    row(38, 38, QStringLiteral("decibelm"), QStringLiteral("dBm"), QStringLiteral("dBm"), QStringLiteral("dBm"));
    row(39, 39, QStringLiteral("hertzsquaredpercyclesquared"), QStringLiteral("Hz²/cycle²"), QStringLiteral("hertz²/cycle²"), QStringLiteral("hertz²/cycle²"));
    row(40, 40, QStringLiteral("hertzperhertz"), QStringLiteral("Hz/Hz"), QStringLiteral("Hertz/Hertz"), QStringLiteral("Hertz/Hertz"));
    row(41, 41, QStringLiteral("hour"), QStringLiteral("h"), QStringLiteral("hour"), QStringLiteral("hours"));
    row(42, 42, QStringLiteral("message"), QStringLiteral("msg"), QStringLiteral("message"), QStringLiteral("messages"));
    row(43, 43, QStringLiteral("metercyclesquared"), QStringLiteral("m cycle²"), QStringLiteral("meter cycle²"), QStringLiteral("meter cycle²"));
    row(44, 44, QStringLiteral("millisecond"), QStringLiteral("ms"), QStringLiteral("millisecond"), QStringLiteral("milliseconds"));
    row(45, 45, QStringLiteral("minute"), QStringLiteral("min."), QStringLiteral("minute"), QStringLiteral("minutes"));
    row(46, 46, QStringLiteral("month"), QStringLiteral("month"), QStringLiteral("month"), QStringLiteral("months"));
    row(47, 47, QStringLiteral("percent"), QStringLiteral("%"), QStringLiteral("percent"), QStringLiteral("percent"));
    row(48, 48, QStringLiteral("ppm"), QStringLiteral("ppm"), QStringLiteral("ppm"), QStringLiteral("ppm"));
    row(49, 49, QStringLiteral("secondpermsd"), QStringLiteral("s/msd"), QStringLiteral("second/msd"), QStringLiteral("second/msd"));
    row(50, 50, QStringLiteral("secondperorbitperiod"), QStringLiteral("s/orbit-period"), QStringLiteral("second/orbit-period"), QStringLiteral("second/orbit-period"));
    row(51, 51, QStringLiteral("secondperorbitperiodsquared"), QStringLiteral("second/orbit-period²"), QStringLiteral("second/orbit-period²"), QStringLiteral("second/orbit-period²"));
    row(52, 24, QStringLiteral("secondpersecondsquared"), QStringLiteral("s/s²"), QStringLiteral("second/second²"), QStringLiteral("second/second²"));
    row(53, 53, QStringLiteral("secondpersemicircle"), QStringLiteral("s/semi-circle"), QStringLiteral("second/semi-circle"), QStringLiteral("second/semi-circle"));
    row(54, 54, QStringLiteral("secondpersemicirclecubed"), QStringLiteral("s/semi-circle³"), QStringLiteral("second/semi-circle³"), QStringLiteral("second/semi-circle³"));
    row(55, 55, QStringLiteral("secondpersemicirclesquared"), QStringLiteral("s²/semi-circle²"), QStringLiteral("second/semi-circle²"), QStringLiteral("second/semi-circle²"));
    row(56, 56, QStringLiteral("wattpermetersquaredhetz"), QStringLiteral("w/m²Hz"), QStringLiteral("watt/meter² hertz"), QStringLiteral("watt/meter² hertz"));
    row(57, 57, QStringLiteral("wattpermetersquaredhetzperdegree"), QStringLiteral("W/m²Hz/deg"), QStringLiteral("watt/meter²hertz/degree"), QStringLiteral("watt/meter²hertz/degree"));
    row(58, 58, QStringLiteral("wattpermetersquaredhetzperdegreesquared"), QStringLiteral("W/m²Hz/deg²"), QStringLiteral("watt/meter²hertz/degree²"), QStringLiteral("watt/meter²hertz/degree²"));
    row(59, 59, QStringLiteral("milliampere"), QStringLiteral("mA"), QStringLiteral("milliampere"), QStringLiteral("milliampere"));
    row(60, 60, QStringLiteral("millivolt"), QStringLiteral("mV"), QStringLiteral("millivolt"), QStringLiteral("millivolt"));
    row(61, 61, QStringLiteral("year"), QStringLiteral("Y"), QStringLiteral("year"), QStringLiteral("years"));
    row(62, 62, QStringLiteral("milligauss"), QStringLiteral("mG"), QStringLiteral("milligauss"), QStringLiteral("milligauss"));
    // clang-format on
}

void tst_FieldInfoUnits::table()
{
    QFETCH(int, unit);
    QFETCH(int, selectedUnit);
    QFETCH(QString, identifier);
    QFETCH(QString, symbol);
    QFETCH(QString, singular);
    QFETCH(QString, plural);

    QVERIFY(FieldInfo::sUnitToUnitDataMap.contains(Unit(unit)));
    FieldInfo::UnitData const data = FieldInfo::sUnitToUnitDataMap.value(Unit(unit));
    QCOMPARE(int(data.unit), unit);
    QCOMPARE(data.identifier, identifier);
    QCOMPARE(data.symbol, symbol);
    QCOMPARE(data.singularText, singular);
    QCOMPARE(data.pluralText, plural);
    QCOMPARE(data.symbolAfterValue, unit != 0);

    QCOMPARE(FieldInfo::unitToString(Unit(unit), true), symbol);
    QCOMPARE(FieldInfo::unitToString(Unit(unit), false), singular);

    TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));
    field.setUnit(identifier);
    QCOMPARE(int(field.getUnit()), selectedUnit);
    QCOMPARE(field.hasUnit(), selectedUnit != 0);
    QCOMPARE(field.getUnitString(true), FieldInfo::unitToString(Unit(selectedUnit), true));
    QCOMPARE(field.getUnitString(false), FieldInfo::unitToString(Unit(selectedUnit), false));
}

void tst_FieldInfoUnits::tableHoldsExactlyTheFixedRows()
{
    QCOMPARE(FieldInfo::sUnitToUnitDataMap.size(), 63);
    for (int unit = 0; unit < 63; ++unit)
        QVERIFY2(FieldInfo::sUnitToUnitDataMap.contains(Unit(unit)),
                 qPrintable(QString::number(unit)));
}

void tst_FieldInfoUnits::fillingHappensOnce()
{
    AssertCapture capture;
    FieldInfo::UnitData const original = FieldInfo::sUnitToUnitDataMap.value(FieldInfo::UnitMeter);
    FieldInfo::sUnitToUnitDataMap[FieldInfo::UnitMeter].symbol = QStringLiteral("changed");
    FieldInfo::ensureExplicitUnits();
    QString const symbol = FieldInfo::sUnitToUnitDataMap.value(FieldInfo::UnitMeter).symbol;
    FieldInfo::sUnitToUnitDataMap[FieldInfo::UnitMeter] = original;
    QCOMPARE(symbol, QStringLiteral("changed"));
    QCOMPARE(capture.count(), 0);
}

void tst_FieldInfoUnits::wrongTableSizeIsReported()
{
    ChildProcess::Result const result = ChildProcess::run(QStringLiteral("strayRowBeforeFilling"));
    QVERIFY(result.finished);
    QCOMPARE(result.exitCode, ChildProcess::ScenarioReturned);
    QStringList reports;
    for (QString const &line : result.errorLines()) {
        if (line.startsWith(QLatin1String("report|")))
            reports.append(line);
    }
    QCOMPARE(reports,
             QStringList { QStringLiteral(
                 "report|ensureExplicitUnits|Units missing in ensureExplicitUnits()") });
}

void tst_FieldInfoUnits::knownIdentifiers_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("empty text on a new field") << QString() << QStringLiteral("") << 0;
    QTest::newRow("empty text clears a unit") << QStringLiteral("meter") << QStringLiteral("") << 0;
    QTest::newRow("identifier replaces a unit")
        << QStringLiteral("meter") << QStringLiteral("second") << 5;
    QTest::newRow("shared identifier selects the lower unit")
        << QString() << QStringLiteral("secondpersecondsquared") << 24;
    QTest::newRow("identifier that equals its symbol") << QString() << QStringLiteral("ppm") << 48;
}

void tst_FieldInfoUnits::knownIdentifiers()
{
    QFETCH(QString, before);
    QFETCH(QString, text);
    QFETCH(int, expected);

    WarningCapture warnings;
    TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));
    if (!before.isNull())
        field.setUnit(before);
    field.setUnit(text);
    QCOMPARE(int(field.getUnit()), expected);
    QCOMPARE(field.hasUnit(), expected != 0);
    QCOMPARE(warnings.warnings(), QStringList());
}

void tst_FieldInfoUnits::unknownTextAddsRowButKeepsUnit()
{
    // Runs before any other unknown text of this process, so the first free value is 63.
    QCOMPARE(FieldInfo::sUnitToUnitDataMap.size(), 63);

    WarningCapture warnings;
    TestFieldInfo field(QStringLiteral("Height"), FieldType::f64());
    field.setUnit(QStringLiteral("m"));
    QCOMPARE(warnings.warnings(),
             QStringList({ QStringLiteral("Field  \"Height\"  has unknown unit  \"m\" . "),
                           QStringLiteral("FieldInfo::Unit enum needs a new value for it, which "
                                          "must also be included by ensureExplicitUnits(). ") }));
    QCOMPARE(field.getUnit(), FieldInfo::NoUnit);
    QVERIFY(!field.hasUnit());

    FieldInfo::UnitData const row = FieldInfo::sUnitToUnitDataMap.value(Unit(63));
    QCOMPARE(int(row.unit), 63);
    QCOMPARE(row.identifier, QStringLiteral("m"));
    QCOMPARE(row.symbol, QStringLiteral("m"));
    QCOMPARE(row.singularText, QStringLiteral("m"));
    QCOMPARE(row.pluralText, QStringLiteral("m"));
    QVERIFY(row.symbolAfterValue);

    // The second time the text is known, on this field or any other.
    warnings.clear();
    field.setUnit(QStringLiteral("m"));
    TestFieldInfo other(QStringLiteral("Other"), FieldType::u(8));
    other.setUnit(QStringLiteral("m"));
    QCOMPARE(int(field.getUnit()), 63);
    QCOMPARE(int(other.getUnit()), 63);
    QCOMPARE(field.getUnitString(true), QStringLiteral("m"));
    QCOMPARE(FieldInfo::unitToString(Unit(63), true), QStringLiteral("m"));
    QCOMPARE(FieldInfo::unitToString(Unit(63), false), QStringLiteral("m"));
    QCOMPARE(warnings.warnings(), QStringList());
    QCOMPARE(FieldInfo::sUnitToUnitDataMap.size(), 64);
}

void tst_FieldInfoUnits::unknownTexts_data()
{
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("fieldName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("firstWarning");

    QTest::newRow("long name") << QString() << QStringLiteral("Speed")
                               << QStringLiteral("meter/second")
                               << QStringLiteral(
                                      "Field  \"Speed\"  has unknown unit  \"meter/second\" . ");
    QTest::newRow("identifier in other case keeps the unit")
        << QStringLiteral("meter") << QStringLiteral("X") << QStringLiteral("Meter")
        << QStringLiteral("Field  \"X\"  has unknown unit  \"Meter\" . ");
    QTest::newRow("blanks around an identifier")
        << QString() << QStringLiteral("Y") << QStringLiteral(" meter ")
        << QStringLiteral("Field  \"Y\"  has unknown unit  \" meter \" . ");
    QTest::newRow("quotes and non-ASCII are written as they are")
        << QString() << QStringLiteral("T\"1\"") << QStringLiteral("\u00b0F")
        << QStringLiteral("Field  \"T\"1\"\"  has unknown unit  \"\u00b0F\" . ");
}

void tst_FieldInfoUnits::unknownTexts()
{
    QFETCH(QString, previous);
    QFETCH(QString, fieldName);
    QFETCH(QString, text);
    QFETCH(QString, firstWarning);

    TestFieldInfo field(fieldName, FieldType::u(8));
    if (!previous.isNull())
        field.setUnit(previous);
    Unit const unitBefore = field.getUnit();
    int expectedRow = 63;
    while (FieldInfo::sUnitToUnitDataMap.contains(Unit(expectedRow)))
        ++expectedRow;

    WarningCapture warnings;
    field.setUnit(text);
    QCOMPARE(warnings.warnings().size(), 2);
    QCOMPARE(warnings.warnings().at(0), firstWarning);
    QCOMPARE(field.getUnit(), unitBefore);
    QCOMPARE(FieldInfo::sUnitToUnitDataMap.value(Unit(expectedRow)).identifier, text);

    field.setUnit(text);
    QCOMPARE(int(field.getUnit()), expectedRow);
    QCOMPARE(field.getUnitString(false), text);
}

void tst_FieldInfoUnits::unknownUnitValue_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<bool>("abbreviated");
    QTest::addColumn<QString>("warning");

    QTest::newRow("never handed out, symbol")
        << 1000 << true << QStringLiteral("Unknown unit enum value 1000");
    QTest::newRow("never handed out, name")
        << 1000 << false << QStringLiteral("Unknown unit enum value 1000");
    QTest::newRow("negative") << -3 << true << QStringLiteral("Unknown unit enum value -3");
}

void tst_FieldInfoUnits::unknownUnitValue()
{
    QFETCH(int, unit);
    QFETCH(bool, abbreviated);
    QFETCH(QString, warning);

    WarningCapture warnings;
    QCOMPARE(FieldInfo::unitToString(Unit(unit), abbreviated), QStringLiteral("unknown unit"));
    QCOMPARE(warnings.warnings(), QStringList { warning });
    QVERIFY(!FieldInfo::sUnitToUnitDataMap.contains(Unit(unit)));
}

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_FieldInfoUnits)

#include "tst_fieldinfounits.moc"
