// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldvalue.h"
#include "floatrepresentation.h"
#include "testmessage.h"

#include <QLocale>
#include <QTest>

#include <limits>

namespace {

FieldValue ofKind(int kind, unsigned int bits)
{
    return FieldValue(FieldType(FieldType::BasisType(kind), bits));
}

constexpr auto natural = FieldValue::Natural;
constexpr auto hexadecimal = FieldValue::Hexadecimal;
constexpr auto decimal = FieldValue::Decimal;

} // namespace

class tst_FieldValueToString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void initialFloatSettings();
    void cleanup();
    void render_data();
    void render();
    void subMessageShowsItsAddress();
    void floatOverride_data();
    void floatOverride();
    void useDefaultKeepsTheStoredSettings();
    void getString_data();
    void getString();
    void localeIsTakenOnceAndKept();
};

void tst_FieldValueToString::initTestCase()
{
    // The library builds its locales on first use and keeps them, so the default locale must be
    // set before this executable renders anything.
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

void tst_FieldValueToString::initialFloatSettings()
{
    QCOMPARE(FloatRepresentation::format, 'f');
    QCOMPARE(FloatRepresentation::floatPrecision, 6);
    QCOMPARE(FloatRepresentation::doublePrecision, 6);
    QCOMPARE(FloatRepresentation::overrideDefault, false);
}

void tst_FieldValueToString::cleanup()
{
    FloatRepresentation::override('f', 6, 6);
    FloatRepresentation::useDefault();
}

void tst_FieldValueToString::render_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<bool>("withType");
    QTest::addColumn<int>("precision");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("localized");
    QTest::addColumn<QString>("text");

    auto row = [](char const *name, FieldValue const &value, bool withType, int precision, int mode,
                  bool localized, char const *text) {
        QTest::newRow(name) << value << withType << precision << mode << localized
                            << QString::fromUtf8(text);
    };

    const FieldValue million = FieldValue::u(1234567, 32);
    row("u natural", million, false, -1, natural, false, "1234567");
    row("u natural localized", million, false, -1, natural, true, "1,234,567");
    row("u decimal never grouped", million, false, -1, decimal, true, "1234567");
    row("u hexadecimal not localized", million, false, -1, hexadecimal, true, "12d687");
    row("u other mode is natural", million, false, -1, 7, true, "1,234,567");
    row("u hexadecimal ff", FieldValue::u(255, 8), false, -1, hexadecimal, false, "ff");
    row("u hexadecimal padded", FieldValue::u(5, 8), false, -1, hexadecimal, false, "05");
    row("u hexadecimal not cut", FieldValue::u(4096, 16), false, -1, hexadecimal, false, "1000");
    row("u64 maximum localized", FieldValue::u(std::numeric_limits<quint64>::max(), 64), false, -1,
        natural, true, "18,446,744,073,709,551,615");
    row("u with type", FieldValue::u(12, 8), true, -1, natural, false, "12 (u8)");

    row("i natural", FieldValue::i(-1234, 16), false, -1, natural, false, "-1234");
    row("i natural localized", FieldValue::i(-1234, 16), false, -1, natural, true, "-1,234");
    row("i decimal", FieldValue::i(-1234, 16), false, -1, decimal, true, "-1234");
    row("i hexadecimal -1", FieldValue::i(-1, 8), false, -1, hexadecimal, false, "-1");
    row("i hexadecimal padded", FieldValue::i(10, 8), false, -1, hexadecimal, false, "0a");
    row("i hexadecimal minimum", FieldValue::i(std::numeric_limits<qint64>::min(), 64), false, -1,
        hexadecimal, false, "-8000000000000000");
    row("i with type", FieldValue::i(-1, 8), true, -1, hexadecimal, false, "-1 (i8)");

    row("ch natural", FieldValue::ch('A'), false, -1, natural, false, "A");
    row("ch hexadecimal", FieldValue::ch('A'), false, -1, hexadecimal, false, "41");
    row("ch decimal", FieldValue::ch('A'), false, -1, decimal, false, "65");
    row("ch padded", FieldValue::ch('\n'), false, -1, hexadecimal, false, "0a");
    row("ch 255 hexadecimal is signed", FieldValue::ch(char(255)), false, -1, hexadecimal, false,
        "-1");
    row("ch 128 hexadecimal", FieldValue::ch(char(128)), false, -1, hexadecimal, false, "-80");
    row("ch Latin-1", FieldValue::ch(char(0xe9)), false, -1, natural, false, "\xc3\xa9");
    row("ch with type", FieldValue::ch('A'), true, -1, natural, false, "A (c8)");
    row("nch like ch", FieldValue::nch('A'), true, -1, decimal, false, "65 (c8)");

    row("byte natural", FieldValue::byte(10), false, -1, natural, false, "0a");
    row("byte natural not localized", FieldValue::byte(255), false, -1, natural, true, "ff");
    row("byte decimal", FieldValue::byte(255), false, -1, decimal, false, "255");
    row("byte with type", FieldValue::byte(10), true, -1, natural, false, "0a (b8)");

    row("f64 default precision", FieldValue::f64(3.5), false, -1, natural, false, "3.500000");
    row("f64 precision 2", FieldValue::f64(3.5), false, 2, natural, false, "3.50");
    row("f64 precision 0", FieldValue::f64(2.75), false, 0, natural, false, "3");
    row("f64 hexadecimal does not apply", FieldValue::f64(3.5), false, -1, hexadecimal, false,
        "3.500000");
    row("f64 decimal does not apply", FieldValue::f64(3.5), false, 1, decimal, false, "3.5");
    row("f64 localized", FieldValue::f64(1234.5), false, 1, natural, true, "1,234.5");
    row("f64 with type", FieldValue::f64(3.5), true, -1, natural, false, "3.500000 (f64)");
    row("f32 read as single", FieldValue::f32(0.1f), false, 9, natural, false, "0.100000001");
    row("f32 with type", FieldValue::f32(-0.5f), true, 2, natural, false, "-0.50 (f32)");

    for (int mode : { 0, 1, 2 }) {
        const QByteArray name = "invalid, mode " + QByteArray::number(mode);
        row(name.constData(), FieldValue::invalid(), false, -1, mode, false, "Invalid");
    }
    row("invalid without suffix", FieldValue::invalid(), true, -1, natural, false, "Invalid");
    row("unused kind is empty", ofKind(7, 8), false, -1, hexadecimal, false, "");
    row("unused kind gets an empty suffix", ofKind(200, 8), true, -1, natural, false, " ()");
}

void tst_FieldValueToString::render()
{
    QFETCH(FieldValue, value);
    QFETCH(bool, withType);
    QFETCH(int, precision);
    QFETCH(int, mode);
    QFETCH(bool, localized);
    QFETCH(QString, text);

    QCOMPARE(value.toString(withType, static_cast<signed char>(precision),
                            static_cast<FieldValue::RepresentationMode>(mode), localized),
             text);
}

void tst_FieldValueToString::subMessageShowsItsAddress()
{
    TestMessage message(reinterpret_cast<MessageInfo const *>(0x10));
    const FieldValue value = FieldValue::subMessage(&message);
    const QString address = QString::number(reinterpret_cast<quintptr>(&message), 16);
    QCOMPARE(value.toString(false, -1, natural, true), address);
    QCOMPARE(value.toString(false, -1, hexadecimal, false), address);
    QCOMPARE(value.toString(false, -1, decimal, false), address);
}

void tst_FieldValueToString::floatOverride_data()
{
    QTest::addColumn<bool>("override");
    QTest::addColumn<char>("format");
    QTest::addColumn<int>("floatPrecision");
    QTest::addColumn<int>("doublePrecision");
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("text");

    QTest::newRow("off: caller's precision")
        << false << 'e' << 3 << 3 << FieldValue::f64(3.5) << 2 << QStringLiteral("3.50");
    QTest::newRow("stored double precision wins")
        << true << 'e' << -1 << 3 << FieldValue::f64(3.5) << 2 << QStringLiteral("3.500e+00");
    QTest::newRow("-1 keeps the caller's precision")
        << true << 'f' << -1 << -1 << FieldValue::f64(3.5) << 2 << QStringLiteral("3.50");
    QTest::newRow("single takes the float precision")
        << true << 'e' << 1 << 4 << FieldValue::f32(3.5f) << 2 << QStringLiteral("3.5e+00");
    QTest::newRow("single keeps the caller's when -1")
        << true << 'e' << -1 << 4 << FieldValue::f32(3.5f) << 2 << QStringLiteral("3.50e+00");
    QTest::newRow("g format") << true << 'g' << 6 << 6 << FieldValue::f64(1234567.0) << -1
                              << QStringLiteral("1.23457e+06");
    QTest::newRow("integers untouched")
        << true << 'e' << 3 << 3 << FieldValue::u(3, 8) << 2 << QStringLiteral("3");
}

void tst_FieldValueToString::floatOverride()
{
    QFETCH(bool, override);
    QFETCH(char, format);
    QFETCH(int, floatPrecision);
    QFETCH(int, doublePrecision);
    QFETCH(FieldValue, value);
    QFETCH(int, precision);
    QFETCH(QString, text);

    if (override)
        FloatRepresentation::override(format, floatPrecision, doublePrecision);
    QCOMPARE(FloatRepresentation::overrideDefault, override);
    QCOMPARE(value.toString(false, static_cast<signed char>(precision), natural, false), text);
}

void tst_FieldValueToString::useDefaultKeepsTheStoredSettings()
{
    FloatRepresentation::override('e', 2, 3);
    QCOMPARE(FieldValue::f64(3.5).toString(false, 1), QStringLiteral("3.500e+00"));

    FloatRepresentation::useDefault();
    QCOMPARE(FloatRepresentation::overrideDefault, false);
    QCOMPARE(FloatRepresentation::format, 'e');
    QCOMPARE(FloatRepresentation::floatPrecision, 2);
    QCOMPARE(FloatRepresentation::doublePrecision, 3);
    QCOMPARE(FieldValue::f64(3.5).toString(false, 1), QStringLiteral("3.5"));

    FloatRepresentation::override('f', -1, 0);
    QCOMPARE(FieldValue::f64(3.3).toString(false, 1), QStringLiteral("3"));
    QCOMPARE(FieldValue::f32(3.3f).toString(false, 1), QStringLiteral("3.3"));
}

void tst_FieldValueToString::getString_data()
{
    QTest::addColumn<bool>("single");
    QTest::addColumn<double>("value");
    QTest::addColumn<char>("format");
    QTest::addColumn<int>("precision");
    QTest::addColumn<bool>("localized");
    QTest::addColumn<QString>("text");

    QTest::newRow("double e") << false << 1234.5 << 'e' << 2 << false << QStringLiteral("1.23e+03");
    QTest::newRow("double f plain")
        << false << 1234567.25 << 'f' << 2 << false << QStringLiteral("1234567.25");
    QTest::newRow("double f localized")
        << false << 1234567.25 << 'f' << 2 << true << QStringLiteral("1,234,567.25");
    QTest::newRow("double g localized")
        << false << 0.5 << 'g' << 3 << true << QStringLiteral("0.5");
    QTest::newRow("float widened, not rounded to double")
        << true << double(0.1f) << 'f' << 10 << false << QStringLiteral("0.1000000015");
    QTest::newRow("float localized")
        << true << 1234.5 << 'f' << 1 << true << QStringLiteral("1,234.5");
    QTest::newRow("float e") << true << 1234.5 << 'e' << 1 << false << QStringLiteral("1.2e+03");
}

void tst_FieldValueToString::getString()
{
    QFETCH(bool, single);
    QFETCH(double, value);
    QFETCH(char, format);
    QFETCH(int, precision);
    QFETCH(bool, localized);
    QFETCH(QString, text);

    const QString got = single
        ? FloatRepresentation::getString(float(value), format, precision, localized)
        : FloatRepresentation::getString(value, format, precision, localized);
    QCOMPARE(got, text);
}

void tst_FieldValueToString::localeIsTakenOnceAndKept()
{
    // Make sure every locale in use has been built under the English default.
    const FieldValue count = FieldValue::u(1234567, 32);
    QCOMPARE(count.toString(false, -1, natural, true), QStringLiteral("1,234,567"));
    QCOMPARE(FieldValue::f64(1234.5).toString(false, 1, natural, true), QStringLiteral("1,234.5"));
    QCOMPARE(FieldValue::f32(1234.5f).toString(false, 1, natural, true), QStringLiteral("1,234.5"));

    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(count.toString(false, -1, natural, true), QStringLiteral("1,234,567"));
    QCOMPARE(FieldValue::f64(1234.5).toString(false, 1, natural, true), QStringLiteral("1,234.5"));
    QCOMPARE(FieldValue::f32(1234.5f).toString(false, 1, natural, true), QStringLiteral("1,234.5"));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

QTEST_GUILESS_MAIN(tst_FieldValueToString)
#include "tst_fieldvaluetostring.moc"
