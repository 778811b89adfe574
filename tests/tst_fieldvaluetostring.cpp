// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldvalue.h"
#include "floatrepresentation.h"

#include <QLocale>
#include <QTest>

#include <limits>

namespace {

QString localized(FieldValue const &value, int precision)
{
    return value.toString(false, static_cast<signed char>(precision), FieldValue::Natural, true);
}

} // namespace

class tst_FieldValueToString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(FloatRepresentation::format, 'f');
        QCOMPARE(FloatRepresentation::floatPrecision, 6);
        QCOMPARE(FloatRepresentation::doublePrecision, 6);
        QCOMPARE(FloatRepresentation::overrideDefault, false);
        // The library builds its locales on first use and keeps them, so the default locale
        // must be set before this executable renders anything.
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    }

    void cleanup() { FloatRepresentation::useDefault(); }

    void render_data()
    {
        using V = FieldValue;
        // Texts: plain, localized, hexadecimal, decimal, with type. Hexadecimal and decimal are
        // asked for localized, to show that they never are.
        QTest::addColumn<FieldValue>("value");
        QTest::addColumn<QStringList>("texts");
        auto row = [](char const *name, V const &value, char const *plain, char const *localized,
                      char const *hex, char const *dec, char const *typed) {
            QStringList texts;
            for (char const *text : { plain, localized, hex, dec, typed })
                texts << QString::fromUtf8(text);
            QTest::newRow(name) << value << texts;
        };
        const char *max = "18446744073709551615", *min = "-9223372036854775808";
        row("u32", V::u(1234567, 32), "1234567", "1,234,567", "12d687", "1234567", "1234567 (u32)");
        row("u8", V::u(5, 8), "5", "5", "05", "5", "5 (u8)");
        row("u64", V::u(std::numeric_limits<quint64>::max(), 64), max, "18,446,744,073,709,551,615",
            "ffffffffffffffff", max, "18446744073709551615 (u64)");
        row("i16", V::i(-1234, 16), "-1234", "-1,234", "-4d2", "-1234", "-1234 (i16)");
        row("i8 -1", V::i(-1, 8), "-1", "-1", "-1", "-1", "-1 (i8)");
        row("i8 10", V::i(10, 8), "10", "10", "0a", "10", "10 (i8)");
        row("i64", V::i(std::numeric_limits<qint64>::min(), 64), min, "-9,223,372,036,854,775,808",
            "-8000000000000000", min, "-9223372036854775808 (i64)");
        row("ch", V::ch('A'), "A", "A", "41", "65", "A (c8)");
        row("nch 255 signed", V::nch(char(255)), "\xc3\xbf", "\xc3\xbf", "-1", "-1",
            "\xc3\xbf (c8)");
        row("byte 10", V::byte(10), "0a", "0a", "0a", "10", "0a (b8)");
        row("byte 255", V::byte(255), "ff", "ff", "ff", "255", "ff (b8)");
        row("f64", V::f64(1234.5), "1234.500000", "1,234.500000", "1,234.500000", "1,234.500000",
            "1234.500000 (f64)");
        row("f32", V::f32(2.0f), "2.000000", "2.000000", "2.000000", "2.000000", "2.000000 (f32)");
        row("invalid", V::invalid(), "Invalid", "Invalid", "Invalid", "Invalid", "Invalid");
        row("unused kind", V(FieldType(FieldType::BasisType(7), 8)), "", "", "", "", " ()");
    }

    void render()
    {
        QFETCH(FieldValue, value);
        QFETCH(QStringList, texts);
        QCOMPARE(value.toString(false, -1, FieldValue::Natural, false), texts.at(0));
        QCOMPARE(localized(value, -1), texts.at(1));
        QCOMPARE(value.toString(false, -1, FieldValue::RepresentationMode(7), true), texts.at(1));
        QCOMPARE(value.toString(false, -1, FieldValue::Hexadecimal, true), texts.at(2));
        QCOMPARE(value.toString(false, -1, FieldValue::Decimal, true), texts.at(3));
        QCOMPARE(value.toString(true, -1, FieldValue::Natural, false), texts.at(4));
    }

    void floatOverride()
    {
        auto render = [](char format, int floatPrecision, int doublePrecision, FieldValue v) {
            FloatRepresentation::override(format, floatPrecision, doublePrecision);
            return v.toString(false, 2);
        };
        // The stored precision wins over the caller's unless it is -1; the format always wins.
        QCOMPARE(render('e', -1, 3, FieldValue::f64(3.5)), QStringLiteral("3.500e+00"));
        QCOMPARE(render('f', 1, -1, FieldValue::f64(3.5)), QStringLiteral("3.50"));
        QCOMPARE(render('e', 1, 4, FieldValue::f32(3.5f)), QStringLiteral("3.5e+00"));
        QCOMPARE(render('e', -1, 0, FieldValue::f32(3.5f)), QStringLiteral("3.50e+00"));
        QCOMPARE(render('e', 3, 3, FieldValue::u(3, 8)), QStringLiteral("3"));
        QVERIFY(FloatRepresentation::overrideDefault);

        // Off again: the caller's format and precision, the stored settings kept.
        FloatRepresentation::useDefault();
        QVERIFY(!FloatRepresentation::overrideDefault);
        QCOMPARE(FieldValue::f64(3.5).toString(false, 2), QStringLiteral("3.50"));
        QCOMPARE(FloatRepresentation::format, 'e');
        QCOMPARE(FloatRepresentation::floatPrecision, 3);
        QCOMPARE(FloatRepresentation::doublePrecision, 3);
    }

    void getString()
    {
        // A single is widened, not rounded to the nearest double of its decimal text.
        QCOMPARE(FloatRepresentation::getString(0.1f, 'f', 10, false),
                 QStringLiteral("0.1000000015"));
        QCOMPARE(FloatRepresentation::getString(1234.5f, 'g', 5, true), QStringLiteral("1,234.5"));
    }

    void localeIsTakenOnceAndKept()
    {
        // The first pass makes sure every locale in use is built under the English default.
        for (QLocale::Language language : { QLocale::English, QLocale::German }) {
            QLocale::setDefault(QLocale(language));
            QCOMPARE(localized(FieldValue::u(1234567, 32), -1), QStringLiteral("1,234,567"));
            QCOMPARE(localized(FieldValue::f64(1234.5), 1), QStringLiteral("1,234.5"));
            QCOMPARE(localized(FieldValue::f32(1234.5f), 1), QStringLiteral("1,234.5"));
        }
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    }
};

QTEST_GUILESS_MAIN(tst_FieldValueToString)
#include "tst_fieldvaluetostring.moc"
