// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "childprocess.h"
#include "fieldinfo.h"
#include "testfieldinfo.h"
#include "warningcapture.h"

#include <QTest>

#include <cstdio>

using Unit = FieldInfo::Unit;

namespace {

struct UnitRow
{
    int unit;
    char const *identifier, *symbol, *singular, *plural;
    int picked = -1; // what setUnit(identifier) selects when not the row itself
};

// clang-format off
UnitRow const units[] = {
    {0, "", "", "", ""},
    {1, "meter", "m", "meter", "meter"},
    {2, "kilometer", "km", "kilometer", "kilometer"},
    {3, "decimeter", "dm", "decimeter", "decimeter"},
    {4, "millimeter", "mm", "millimeter", "millimeter"},
    {5, "second", "s", "second", "seconds"},
    {6, "microsecond", "µs", "microsecond", "microseconds"},
    {7, "nanosecond", "ns", "nanosecond", "nanoseconds"},
    {8, "meterpersecond", "m/s", "meter/second", "meter/second"},
    {9, "millimeterpersecond", "mm/s", "millimeter/second", "millimeter/second"},
    {10, "kilometerpersecond", "km/s", "kilometer/second", "kilometer/second"},
    {11, "week", "w", "week", "weeks"},
    {12, "hertz", "Hz", "hertz", "hertz"},
    {13, "kilohertz", "kHz", "kilohertz", "kilohertz"},
    {14, "radian", "rad", "radian", "radians"},
    {15, "degree", "°", "degree", "degrees"},
    {16, "chip", "chip", "chip", "chips"},
    {17, "cycle", "cyc", "cycle", "cycles"},
    {18, "celsius", "°C", "°C", "°C"},
    {19, "semicircle", "semi-circle", "semi-circle", "semi-circles"},
    {20, "degreepersecond", "°/s", "degree per second", "degrees per second"},
    {21, "semicirclepersecond", "semi-circle/s", "semi-circle per second", "semi-circles per second"},
    {22, "semicirclepersecondsquared", "semi-circle/s²", "semi-circle per second squared", "semi-circles per second squared"},
    {23, "secondpersecond", "s/s", "second per second", "seconds per second"},
    {24, "secondpersecondsquared", "s/s²", "second per square second", "seconds per square second"},
    {25, "metersqrt", "m**1/2", "meter**1/2", "meter**1/2"},
    {26, "meterpersecondsquared", "m/s²", "meter/second²", "meter/second²"},
    {27, "kilometerpersecondsquared", "km/s²", "kilometer/second²", "kilometer/second²"},
    {28, "metersquared", "m²", "meter²", "meter²"},
    {29, "degreesquared", "deg²", "degree²", "degree²"},
    {30, "metersquaredpersecondsquared", "m²/s²", "meter²/second²", "meter²/second²"},
    {31, "baud", "Bd", "baud", "bauds"},
    {32, "byte", "b", "byte", "bytes"},
    {33, "megabyte", "Mb", "megabyte", "megabytes"},
    {34, "kilobytepersecond", "kbyte/s", "kilobyte/second", "kilobyte/second"},
    {35, "day", "d", "day", "days"},
    {36, "decibel", "dB", "decibel", "decibels"},
    {37, "decibelhertz", "dB-Hz", "decibel-hertz", "decibel-hertz"},
    {38, "decibelm", "dBm", "dBm", "dBm"},
    {39, "hertzsquaredpercyclesquared", "Hz²/cycle²", "hertz²/cycle²", "hertz²/cycle²"},
    {40, "hertzperhertz", "Hz/Hz", "Hertz/Hertz", "Hertz/Hertz"},
    {41, "hour", "h", "hour", "hours"},
    {42, "message", "msg", "message", "messages"},
    {43, "metercyclesquared", "m cycle²", "meter cycle²", "meter cycle²"},
    {44, "millisecond", "ms", "millisecond", "milliseconds"},
    {45, "minute", "min.", "minute", "minutes"},
    {46, "month", "month", "month", "months"},
    {47, "percent", "%", "percent", "percent"},
    {48, "ppm", "ppm", "ppm", "ppm"},
    {49, "secondpermsd", "s/msd", "second/msd", "second/msd"},
    {50, "secondperorbitperiod", "s/orbit-period", "second/orbit-period", "second/orbit-period"},
    {51, "secondperorbitperiodsquared", "second/orbit-period²", "second/orbit-period²", "second/orbit-period²"},
    {52, "secondpersecondsquared", "s/s²", "second/second²", "second/second²", 24},
    {53, "secondpersemicircle", "s/semi-circle", "second/semi-circle", "second/semi-circle"},
    {54, "secondpersemicirclecubed", "s/semi-circle³", "second/semi-circle³", "second/semi-circle³"},
    {55, "secondpersemicirclesquared", "s²/semi-circle²", "second/semi-circle²", "second/semi-circle²"},
    {56, "wattpermetersquaredhetz", "w/m²Hz", "watt/meter² hertz", "watt/meter² hertz"},
    {57, "wattpermetersquaredhetzperdegree", "W/m²Hz/deg", "watt/meter²hertz/degree", "watt/meter²hertz/degree"},
    {58, "wattpermetersquaredhetzperdegreesquared", "W/m²Hz/deg²", "watt/meter²hertz/degree²", "watt/meter²hertz/degree²"},
    {59, "milliampere", "mA", "milliampere", "milliampere"},
    {60, "millivolt", "mV", "millivolt", "millivolt"},
    {61, "year", "Y", "year", "years"},
    {62, "milligauss", "mG", "milligauss", "milligauss"},
};
// clang-format on

QString const secondWarning = QStringLiteral(
    "FieldInfo::Unit enum needs a new value for it, which must also be included by "
    "ensureExplicitUnits(). ");

} // namespace

class tst_FieldInfoUnits : public QObject
{
    Q_OBJECT

public:
    static void runChildScenario(QString const &scenario);

private Q_SLOTS:
    void initTestCase();
    void table_data();
    void table();
    void wrongTableSizeIsReported();
    void unknownText_data();
    void unknownText();
    void unknownUnitValue();
};

void tst_FieldInfoUnits::runChildScenario(QString const &scenario)
{
    if (scenario != QLatin1String("strayRowBeforeFilling"))
        return;
    AssertCapture capture;
    FieldInfo::sUnitToUnitDataMap.insert(Unit(99), FieldInfo::UnitData());
    FieldInfo::ensureExplicitUnits();
    for (AssertCapture::Report const &report : capture.reports())
        std::fprintf(stderr, "report|%s|%s\n", report.function.constData(),
                     report.text.constData());
}

void tst_FieldInfoUnits::initTestCase()
{
    AssertCapture capture;
    FieldInfo::ensureExplicitUnits();
    QCOMPARE(FieldInfo::sUnitToUnitDataMap.size(), 63);
    QCOMPARE(capture.count(), 0);

    // Filled once: a second call leaves a changed row alone.
    FieldInfo::sUnitToUnitDataMap[FieldInfo::UnitMeter].symbol = QStringLiteral("changed");
    FieldInfo::ensureExplicitUnits();
    QCOMPARE(FieldInfo::unitToString(FieldInfo::UnitMeter, true), QStringLiteral("changed"));
    FieldInfo::sUnitToUnitDataMap[FieldInfo::UnitMeter].symbol = QStringLiteral("m");
}

void tst_FieldInfoUnits::table_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(sizeof(units) / sizeof(units[0])); ++row)
        QTest::addRow("%d %s", units[row].unit, units[row].identifier) << row;
}

void tst_FieldInfoUnits::table()
{
    QFETCH(int, row);
    UnitRow const &expected = units[row];
    auto const text = [](char const *utf8) { return QString::fromUtf8(utf8); };
    Unit const unit = Unit(expected.unit);

    QVERIFY(FieldInfo::sUnitToUnitDataMap.contains(unit));
    FieldInfo::UnitData const data = FieldInfo::sUnitToUnitDataMap.value(unit);
    QCOMPARE(data.unit, unit);
    QCOMPARE(data.symbolAfterValue, unit != FieldInfo::NoUnit);
    QCOMPARE(
        QStringList({ data.identifier, data.symbol, data.singularText, data.pluralText,
                      FieldInfo::unitToString(unit, true), FieldInfo::unitToString(unit, false) }),
        QStringList({ text(expected.identifier), text(expected.symbol), text(expected.singular),
                      text(expected.plural), text(expected.symbol), text(expected.singular) }));

    // setUnit replaces an earlier unit; the empty identifier clears it.
    WarningCapture warnings;
    TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));
    field.setUnit(QStringLiteral("second"));
    field.setUnit(text(expected.identifier));
    QCOMPARE(int(field.getUnit()), expected.picked < 0 ? expected.unit : expected.picked);
    QCOMPARE(field.hasUnit(), expected.unit != 0);
    QCOMPARE(field.getUnitString(true), text(expected.symbol));
    QCOMPARE(warnings.warnings(), QStringList());
}

void tst_FieldInfoUnits::wrongTableSizeIsReported()
{
    ChildProcess::Result const result = ChildProcess::run(QStringLiteral("strayRowBeforeFilling"));
    QCOMPARE(result.exitCode, ChildProcess::ScenarioReturned);
    QCOMPARE(result.errorLines().filter(QStringLiteral("report|")),
             QStringList(QStringLiteral(
                 "report|ensureExplicitUnits|Units missing in ensureExplicitUnits()")));
}

void tst_FieldInfoUnits::unknownText_data()
{
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("fieldName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("firstWarning");

    QTest::newRow("symbol") << QString() << QStringLiteral("Height") << QStringLiteral("m")
                            << QStringLiteral("Field  \"Height\"  has unknown unit  \"m\" . ");
    QTest::newRow("long name, earlier unit kept")
        << QStringLiteral("second") << QStringLiteral("Speed") << QStringLiteral("meter/second")
        << QStringLiteral("Field  \"Speed\"  has unknown unit  \"meter/second\" . ");
    QTest::newRow("other case") << QString() << QStringLiteral("X") << QStringLiteral("Meter")
                                << QStringLiteral("Field  \"X\"  has unknown unit  \"Meter\" . ");
    QTest::newRow("blanks, quotes written as they are")
        << QString() << QStringLiteral("T\"1\"") << QStringLiteral(" meter ")
        << QStringLiteral("Field  \"T\"1\"\"  has unknown unit  \" meter \" . ");
}

void tst_FieldInfoUnits::unknownText()
{
    QFETCH(QString, previous);
    QFETCH(QString, fieldName);
    QFETCH(QString, text);
    QFETCH(QString, firstWarning);

    TestFieldInfo field(fieldName, FieldType::u(8));
    field.setUnit(previous);
    Unit const before = field.getUnit();
    int added = 63; // the first run-time value, unless an earlier row took it
    while (FieldInfo::sUnitToUnitDataMap.contains(Unit(added)))
        ++added;

    WarningCapture warnings;
    field.setUnit(text);
    QCOMPARE(warnings.warnings(), QStringList({ firstWarning, secondWarning }));
    QCOMPARE(field.getUnit(), before);
    FieldInfo::UnitData const data = FieldInfo::sUnitToUnitDataMap.value(Unit(added));
    QCOMPARE(int(data.unit), added);
    QCOMPARE(QStringList({ data.identifier, data.symbol, data.singularText, data.pluralText }),
             QStringList({ text, text, text, text }));
    QVERIFY(data.symbolAfterValue);

    // From now on the text is known, on this field and any other.
    warnings.clear();
    TestFieldInfo other(QStringLiteral("Other"), FieldType::u(8));
    field.setUnit(text);
    other.setUnit(text);
    QCOMPARE(int(field.getUnit()), added);
    QCOMPARE(int(other.getUnit()), added);
    QCOMPARE(field.getUnitString(false), text);
    QCOMPARE(warnings.warnings(), QStringList());
}

void tst_FieldInfoUnits::unknownUnitValue()
{
    WarningCapture warnings;
    QCOMPARE(FieldInfo::unitToString(Unit(1000), true), QStringLiteral("unknown unit"));
    QCOMPARE(FieldInfo::unitToString(Unit(-3), false), QStringLiteral("unknown unit"));
    QCOMPARE(warnings.warnings(),
             QStringList({ QStringLiteral("Unknown unit enum value 1000"),
                           QStringLiteral("Unknown unit enum value -3") }));
    QVERIFY(!FieldInfo::sUnitToUnitDataMap.contains(Unit(1000)));
}

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_FieldInfoUnits)

#include "tst_fieldinfounits.moc"
