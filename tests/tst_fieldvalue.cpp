// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldtype.h"
#include "fieldvalue.h"
#include "floatrepresentation.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QHash>
#include <QLocale>
#include <QTest>

#include <limits>

#define READ(...) [](FieldValue const &v) { return QString::number(__VA_ARGS__); }

namespace {

// Values only compare and store these pointers; they are never looked at.
MessageInfo const *const infoA = reinterpret_cast<MessageInfo const *>(0x10);
MessageInfo const *const infoB = reinterpret_cast<MessageInfo const *>(0x20);

const double quietNaN = std::numeric_limits<double>::quiet_NaN();
const long long int64Min = std::numeric_limits<long long>::min();
const unsigned long long uint64Max = std::numeric_limits<unsigned long long>::max();

// Every typed read, by the short name that the reads table uses.
const QHash<QByteArray, QString (*)(FieldValue const &)> readers {
    { "ull", READ(v.get<unsigned long long>()) },
    { "ll", READ(v.get<long long>()) },
    { "uint", READ(v.get<unsigned int>()) },
    { "int", READ(v.get<int>()) },
    { "ushort", READ(v.get<unsigned short>()) },
    { "short", READ(v.get<short>()) },
    { "schar", READ(v.get<signed char>()) },
    { "uchar", READ(v.get<unsigned char>()) },
    { "double", READ(v.get<double>(), 'g', 17) },
    { "float", READ(double(v.get<float>()), 'g', 9) },
    { "char", READ(int(v.getChar())) },
    { "byte", READ(v.getByte()) },
    { "sub", READ(quintptr(v.getSubMessage()), 16) },
    { "scaled", READ(v.scaled(2.0), 'g', 17) },
    { "hash", READ(qHash(v), 16) },
};

} // namespace

class tst_FieldValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The library keeps the default locale of its first rendering.
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
        row("u8 zero", V::u(0, 8), "0", "0", "00", "0", "0 (u8)");
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
        QCOMPARE(value.toString(false, -1, FieldValue::Natural, true), texts.at(1));
        QCOMPARE(value.toString(false, -1, FieldValue::RepresentationMode(7), true), texts.at(1));
        QCOMPARE(value.toString(false, -1, FieldValue::Hexadecimal, true), texts.at(2));
        QCOMPARE(value.toString(false, -1, FieldValue::Decimal, true), texts.at(3));
        QCOMPARE(value.toString(true, -1, FieldValue::Natural, false), texts.at(4));
    }

    void floatRepresentation()
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

        // Off again: the caller's format and precision, the stored settings kept.
        FloatRepresentation::useDefault();
        QCOMPARE(FieldValue::f64(3.5).toString(false, 2), QStringLiteral("3.50"));
        QCOMPARE(FloatRepresentation::format, 'e');
        QCOMPARE(FloatRepresentation::floatPrecision, 3);
        QCOMPARE(FloatRepresentation::doublePrecision, 3);

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
            QCOMPARE(FieldValue::u(1234567, 32).toString(false, -1, FieldValue::Natural, true),
                     QStringLiteral("1,234,567"));
            QCOMPARE(FieldValue::f64(1234.5).toString(false, 1, FieldValue::Natural, true),
                     QStringLiteral("1,234.5"));
            QCOMPARE(FieldValue::f32(1234.5f).toString(false, 1, FieldValue::Natural, true),
                     QStringLiteral("1,234.5"));
        }
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    }

    void kindsSizesAndTexts()
    {
        QStringList texts; // kind, size, short text ("null" for a null one), long text
        for (FieldType const &type :
             { FieldType::u(8), FieldType(FieldType::UnsignedInteger, 1000), FieldType::i(16),
               FieldType::f64(), FieldType::ch(), FieldType::nch(), FieldType::byte(),
               FieldType::invalid(), FieldType::subMessage(nullptr),
               FieldType(FieldType::BasisType(7), 8) }) {
            QString const shortText = type.toShortString();
            texts << QStringLiteral("%1 %2 %3|%4")
                         .arg(int(type.getBasisType()))
                         .arg(type.getBitSize())
                         .arg(shortText.isNull() ? QStringLiteral("null") : shortText,
                              type.toString());
        }
        QCOMPARE(texts,
                 QStringList({ QStringLiteral("0 8 u8|Unsigned integer on 8 bits"),
                               QStringLiteral("0 1000 u1000|Unsigned integer on 1000 bits"),
                               QStringLiteral("1 16 i16|Signed integer on 16 bits"),
                               QStringLiteral("2 64 f64|IEEE float on 64 bits"),
                               QStringLiteral("3 8 c8|Character on 8 bits"),
                               QStringLiteral("4 8 c8|Character on 8 bits"),
                               QStringLiteral("5 8 b8|Byte on 8 bits"),
                               QStringLiteral("255 0 Invalid|Invalid"),
                               QStringLiteral("6 0 |Message of type "),
                               QStringLiteral("7 8 null|Unknown type") }));
    }

    void subMessages()
    {
        // The texts name the message type; "%1" in a name is not filled a second time.
        for (QString const &name : { QStringLiteral("PvtCartesian"), QStringLiteral("A%1") }) {
            const MessageInfo info(name);
            const FieldType type = FieldType::subMessage(&info);
            QCOMPARE(type.toShortString(), name);
            QCOMPARE(type.toString(), QStringLiteral("Message of type ") + name);

            // A value shows the message's address, even in decimal mode, and the name.
            TestMessage message(&info);
            const QString address = QString::number(reinterpret_cast<quintptr>(&message), 16);
            QCOMPARE(FieldValue::subMessage(&message).toString(true, -1, FieldValue::Decimal, true),
                     address + QStringLiteral(" (") + name + QLatin1Char(')'));
        }

        // Only a message of exactly the field's message type makes a value.
        const TestMessage messageA(infoA), messageB(infoB), other(infoA);
        const FieldType ofA = FieldType::subMessage(infoA);
        Message const *a = &messageA, *b = &messageB, *none = nullptr;
        QVERIFY(!FieldValue::value(ofA, b).isValid() && !FieldValue::value(ofA, none).isValid());
        QVERIFY(!FieldValue::value(FieldType::u(64), a).isValid());
        QVERIFY(!FieldValue::value(FieldType::subMessage(nullptr), a).isValid());
        const FieldValue value = FieldValue::value(ofA, a);
        QVERIFY(value.getType() == ofA && value.getSubMessage() == a);
        QVERIFY(value == FieldValue::subMessage(&messageA));
        QVERIFY(!(value == FieldValue::subMessage(&other)));
    }

    void reads_data()
    {
        using V = FieldValue;
        QTest::addColumn<FieldValue>("value");
        // "accessor=outcome" items: what is read (the hash in hexadecimal), or the client error
        // thrown: W "wrong type", N "too narrow", S "cannot scale".
        QTest::addColumn<QString>("reads");
        auto row = [](char const *name, V const &v, char const *reads) {
            QTest::newRow(name) << v << QString::fromLatin1(reads);
        };
        // Unsigned: any width not below the size, never as signed; the payload is not checked.
        row("u8", V::u(300, 8), "uchar=44 ushort=300 ull=300 scaled=600 int=W double=W");
        row("u17", V::u(0x100000005ull, 17), "uint=5 ushort=N schar=W char=W hash=7");
        row("u64", V::u(uint64Max, 64),
            "ull=18446744073709551615 scaled=3.6893488147419103e+19 uint=N ll=W hash=0");
        row("u100", V::u(7, 100), "ull=N scaled=N");
        // Signed: the sign survives every width.
        row("i8", V::i(-1, 8), "schar=-1 short=-1 int=-1 ll=-1 scaled=-2 uchar=W ull=W");
        row("i32", V::i(-2147483648LL, 32), "int=-2147483648 short=N hash=7fffffff");
        // Floats: a single widens, a double never narrows.
        row("f32", V::f32(0.1f),
            "double=0.10000000149011612 float=0.100000001 scaled=0.20000000298023224 ull=W "
            "hash=3dcccccd");
        row("f64", V::f64(0.1),
            "double=0.10000000000000001 scaled=0.20000000000000001 float=N hash=e6eaaaa9");
        // Characters: both kinds through getChar, only ch as unsigned char.
        row("ch", V::ch(char(200)), "char=-56 uchar=200 byte=W schar=W scaled=S hash=c8");
        row("nch", V::nch('a'), "char=97 uchar=W");
        row("nch16", V(FieldType(FieldType::NChar, 16)), "char=N");
        // Bytes; the kind is checked before the size.
        row("byte", V::byte(0xff), "uchar=255 byte=255 char=W ull=W scaled=S");
        row("byte16", V(FieldType(FieldType::Byte, 16)), "uchar=N char=W");
        // No number at all; an unused kind scales to 0 without complaint.
        row("invalid", V::invalid(), "sub=W uchar=W scaled=S");
        row("sub-message", V(FieldType::subMessage(infoA)), "ull=W scaled=S hash=0");
        row("unused kind", V(FieldType(FieldType::BasisType(7), 8)), "ull=W scaled=0");
    }

    void reads()
    {
        QFETCH(FieldValue, value);
        QFETCH(QString, reads);
        const QStringList thrownTexts {
            QStringLiteral("FieldValue::assertType: wrong type"),
            QStringLiteral("FieldValue::assertType: field bitsize exceeds request size"),
            QStringLiteral("FieldValue::scaled: cannot scale a non-numeric field value")
        };
        for (QString const &expected : reads.split(QLatin1Char(' '))) {
            const QString accessor = expected.section(QLatin1Char('='), 0, 0);
            const auto read = readers.value(accessor.toLatin1());
            QString result;
            try {
                result = read(value);
            } catch (MessageApiEvent const &event) {
                QCOMPARE(event.getType(), MessageApiEvent::ClientError);
                QVERIFY(event.getFormat() == nullptr);
                const int known = thrownTexts.indexOf(event.getMessage());
                result = known < 0 ? event.getMessage() : QString(QLatin1Char("WNS"[known]));
            }
            QCOMPARE(accessor + QLatin1Char('=') + result, expected);
        }
    }

    void checkRange_data()
    {
        using V = FieldValue;
        // The widest value that fits, and the first that does not (none where every value fits).
        QTest::addColumn<FieldValue>("fits");
        QTest::addColumn<FieldValue>("tooWide");
        const V none;
        QTest::newRow("u0") << V::u(0, 0) << V::u(1, 0);
        QTest::newRow("u1") << V::u(1, 1) << V::u(2, 1);
        QTest::newRow("u8") << V::u(255, 8) << V::u(256, 8);
        QTest::newRow("u63") << V::u((1ull << 63) - 1, 63) << V::u(1ull << 63, 63);
        QTest::newRow("u64") << V::u(uint64Max, 64) << none;
        QTest::newRow("u100") << V::u(uint64Max, 100) << none;
        QTest::newRow("i0: nothing fits") << none << V::i(0, 0);
        QTest::newRow("i1") << V::i(-1, 1) << V::i(1, 1);
        QTest::newRow("i8 top") << V::i(127, 8) << V::i(128, 8);
        QTest::newRow("i8 bottom") << V::i(-128, 8) << V::i(-129, 8);
        QTest::newRow("i63 top") << V::i((1LL << 62) - 1, 63) << V::i(1LL << 62, 63);
        QTest::newRow("i63 bottom") << V::i(-(1LL << 62), 63) << V::i(int64Min, 63);
        QTest::newRow("i64") << V::i(int64Min, 64) << none;
        QTest::newRow("i200") << V::i(int64Min, 200) << none;
        QTest::newRow("not an integer") << V::ch(char(200)) << none;
    }

    void checkRange()
    {
        QFETCH(FieldValue, fits);
        QFETCH(FieldValue, tooWide);
        QVERIFY(fits.checkRange());
        QVERIFY(!tooWide.isValid() || !tooWide.checkRange());
        // Parsing applies the same check to the decimal text of an integer.
        if (fits.getType().getBasisType() <= FieldType::SignedInteger)
            QVERIFY(FieldValue::fromString(fits.getType(), fits.toString()) == fits);
        if (tooWide.isValid())
            QVERIFY(!FieldValue::fromString(tooWide.getType(), tooWide.toString()).isValid());
    }

    void fromString_data()
    {
        using V = FieldValue;
        QTest::addColumn<FieldValue>("ofType"); // a value of the type to parse
        QTest::addColumn<QString>("texts"); // '|'-separated, each parsing to the expected value
        QTest::addColumn<FieldValue>("expected");
        const V bad = V::invalid();
        auto row = [](char const *name, FieldType const &type, char const *texts, V const &v) {
            QTest::newRow(name) << V(type) << QString::fromUtf8(texts) << v;
        };
        row("u8 refused", FieldType::u(8), "-1||0x10|12abc|1.0|18446744073709551616", bad);
        row("u264 is u8", FieldType(FieldType::UnsignedInteger, 264), "255", V::u(255, 8));
        row("i8 refused", FieldType::i(8), "1.0|0x10|", bad);
        row("f32", FieldType::f32(), "1.5", V::f32(1.5f));
        row("f32 refused", FieldType::f32(), "1e300|1,5|", bad);
        row("f64", FieldType::f64(), "-1e300", V::f64(-1e300));
        row("f16", FieldType(FieldType::Float, 16), "1.0", bad);
        row("ch", FieldType::ch(), "a", V::ch('a'));
        row("nch", FieldType::nch(), "a", V::nch('a'));
        row("ch Latin-1", FieldType::ch(), "\xc3\xa9", V::ch(char(0xe9)));
        row("ch beyond Latin-1", FieldType::ch(), "\xe2\x82\xac", V::ch('?'));
        row("ch refused", FieldType::ch(), "ab|", bad);
        row("byte", FieldType::byte(), "0x1f", V::byte(31));
        row("byte upper-case digits", FieldType::byte(), "0xFF", V::byte(255));
        row("byte 0xzz, parse failure ignored", FieldType::byte(), "0xzz", V::byte(0));
        row("byte refused", FieldType::byte(), "0X1f|1f|0x1|0x123|1x1f", bad);
        row("sub-message", FieldType::subMessage(infoA), "x", bad);
        row("invalid", FieldType::invalid(), "1", bad);
        row("unused kind", FieldType(FieldType::BasisType(7), 8), "1", bad);
    }

    void fromString()
    {
        QFETCH(FieldValue, ofType);
        QFETCH(QString, texts);
        QFETCH(FieldValue, expected);
        for (QString const &text : texts.split(QLatin1Char('|'))) {
            const FieldValue parsed = FieldValue::fromString(ofType.getType(), text);
            QVERIFY2(parsed.getType() == expected.getType() && parsed == expected,
                     qPrintable(text));
        }
    }

    void order_data()
    {
        using V = FieldValue;
        QTest::addColumn<FieldValue>("a");
        QTest::addColumn<FieldValue>("b");
        QTest::addColumn<int>("order"); // -1 a before b, 0 equal, 1 b before a, 2 not ordered
        auto row = [](char const *name, V const &a, V const &b, int order) {
            QTest::newRow(name) << a << b << order;
        };
        row("u8", V::u(1, 8), V::u(2, 8), -1);
        row("u8, u16 1, 2", V::u(1, 8), V::u(2, 16), 2);
        row("u8, u16 1, 1", V::u(1, 8), V::u(1, 16), 2);
        row("u64 unsigned", V::u(1, 64), V::u(1ull << 63, 64), -1);
        row("i64 signed", V::i(-1, 64), V::i(1, 64), -1);
        row("f64", V::f64(-1.5), V::f64(0.5), -1);
        row("f64 -0, 0", V::f64(-0.0), V::f64(0.0), 0);
        row("f64 NaN, NaN", V::f64(quietNaN), V::f64(quietNaN), 2);
        row("f64 1, NaN", V::f64(1.0), V::f64(quietNaN), 2);
        row("f32, f64", V::f32(1.5f), V::f64(1.5), 2);
        row("ch signed", V::ch(char(200)), V::ch('A'), -1);
        row("nch signed", V::nch(char(200)), V::nch('A'), -1);
        row("ch, nch", V::ch('A'), V::nch('A'), 2);
        row("f32 built two ways", V::f32(0.0f), V(FieldType(FieldType::Float, 32)), 0);
        row("sub-message built two ways", V(FieldType::subMessage(infoA)), V(FieldType(infoA)), 0);
        row("sub-messages of two types", V(FieldType(infoA)), V(FieldType(infoB)), 2);
        row("byte unsigned", V::byte(200), V::byte(65), 1);
        row("invalid, default", V::invalid(), FieldValue(), 0);
        row("invalid, u8", V::invalid(), V::u(0, 8), 2);
        row("invalid of two sizes", V::invalid(), V(FieldType(FieldType::Invalid, 8)), 2);
        const V unused(FieldType(FieldType::BasisType(7), 8));
        row("unused kind", unused, unused, 2);
    }

    void order()
    {
        QFETCH(FieldValue, a);
        QFETCH(FieldValue, b);
        QFETCH(int, order);
        QCOMPARE(a < b, order == -1);
        QCOMPARE(b < a, order == 1);
        QCOMPARE(a == b, order == 0);
        QCOMPARE(b == a, order == 0);
        QCOMPARE(a <= b, order == -1 || order == 0);
        QCOMPARE(b <= a, order == 1 || order == 0);
        if (order == 0) {
            QCOMPARE(qHash(a), qHash(b));
            QCOMPARE((QHash<FieldValue, int> { { a, 1 } }).value(b), 1);
        }
    }

    void tracesConstructionAndCopyButNotAssignment()
    {
        TracerRecorder recorder;
        {
            FieldValue value(FieldType::u(8)); // the type is built, copied in and dropped
            const FieldValue copy(value);
            value = copy;
            const FieldValue none; // of the invalid type
            const FieldType ofA(infoA);
        }
        QCOMPARE(recorder.events().join(QLatin1Char(' ')),
                 QStringLiteral("+FieldType +FieldType +FieldValue -FieldType +FieldType "
                                "+FieldValue +FieldType +FieldValue +FieldType -FieldType "
                                "-FieldValue -FieldType -FieldValue -FieldType -FieldValue "
                                "-FieldType"));
    }

    void integerFactoriesReportAsBuiltFromTheirType()
    {
        QStringList viaType;
        QStringList viaFactory;
        {
            TracerRecorder recorder;
            {
                const FieldValue u(FieldType::u(8));
                const FieldValue i(FieldType::i(16));
            }
            viaType = recorder.events();
        }
        {
            TracerRecorder recorder;
            {
                const FieldValue u = FieldValue::u(200, 8);
                const FieldValue i = FieldValue::i(-300, 16);
            }
            viaFactory = recorder.events();
        }
        QCOMPARE(viaFactory, viaType);
    }
};

QTEST_GUILESS_MAIN(tst_FieldValue)
#include "tst_fieldvalue.moc"
