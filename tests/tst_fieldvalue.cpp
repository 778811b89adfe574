// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldvalue.h"
#include "messageapievent.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QHash>
#include <QTest>

#include <limits>

using TypeFactory = FieldType (*)();
Q_DECLARE_METATYPE(TypeFactory)
#define TYPE(expr) TypeFactory([] { return expr; })
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

FieldValue ofKind(int kind, unsigned int bits)
{
    return FieldValue(FieldType(FieldType::BasisType(kind), bits));
}

} // namespace

class tst_FieldValue : public QObject
{
    Q_OBJECT

    TestMessage mMessageA { infoA };
    TestMessage mMessageB { infoB };

private Q_SLOTS:
    void reads_data()
    {
        QTest::addColumn<FieldValue>("value");
        // "accessor=outcome" items: what is read (the hash in hexadecimal), or the client error
        // thrown: W "wrong type", N "too narrow", S "cannot scale".
        QTest::addColumn<QString>("reads");
        auto row = [](char const *name, FieldValue const &v, char const *reads) {
            QTest::newRow(name) << v << QString::fromLatin1(reads);
        };
        // Unsigned: any width not below the size, never as signed; the payload is not checked.
        row("u8", FieldValue::u(300, 8), "uchar=44 ushort=300 ull=300 scaled=600 int=W double=W");
        row("u17", FieldValue::u(0x100000005ull, 17), "uint=5 ushort=N schar=W char=W hash=7");
        row("u64", FieldValue::u(uint64Max, 64),
            "ull=18446744073709551615 scaled=3.6893488147419103e+19 uint=N ll=W hash=0");
        row("u100", FieldValue::u(7, 100), "ull=N scaled=N");
        // Signed: the sign survives every width.
        row("i8", FieldValue::i(-1, 8), "schar=-1 short=-1 int=-1 ll=-1 scaled=-2 uchar=W ull=W");
        row("i32", FieldValue::i(-2147483648LL, 32), "int=-2147483648 short=N hash=7fffffff");
        row("i64", FieldValue::i(-1, 64), "ll=-1 int=N");
        // Floats: a single widens, a double never narrows.
        row("f32", FieldValue::f32(0.1f),
            "double=0.10000000149011612 float=0.100000001 scaled=0.20000000298023224 ull=W "
            "hash=3dcccccd");
        row("f64", FieldValue::f64(0.1),
            "double=0.10000000000000001 scaled=0.20000000000000001 float=N hash=e6eaaaa9");
        // Characters: both kinds through getChar, only ch as unsigned char.
        row("ch", FieldValue::ch(char(200)), "char=-56 uchar=200 byte=W schar=W scaled=S hash=c8");
        row("nch", FieldValue::nch('a'), "char=97 uchar=W");
        row("nch16", ofKind(FieldType::NChar, 16), "char=N");
        // Bytes; the kind is checked before the size.
        row("byte", FieldValue::byte(0xff), "uchar=255 byte=255 char=W ull=W scaled=S");
        row("byte16", ofKind(FieldType::Byte, 16), "uchar=N char=W");
        // No number at all; an unused kind scales to 0 without complaint.
        row("invalid", FieldValue::invalid(), "sub=W uchar=W scaled=S");
        row("sub-message", FieldValue(FieldType::subMessage(infoA)), "ull=W scaled=S hash=0");
        row("unused kind", ofKind(7, 8), "ull=W scaled=0");
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
            QVERIFY2(read, qPrintable(accessor));
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
        // The widest value that fits, and the first that does not (none where every value fits).
        QTest::addColumn<FieldValue>("fits");
        QTest::addColumn<FieldValue>("tooWide");
        const FieldValue none;
        QTest::newRow("u0") << FieldValue::u(0, 0) << FieldValue::u(1, 0);
        QTest::newRow("u1") << FieldValue::u(1, 1) << FieldValue::u(2, 1);
        QTest::newRow("u8") << FieldValue::u(255, 8) << FieldValue::u(256, 8);
        QTest::newRow("u63") << FieldValue::u((1ull << 63) - 1, 63)
                             << FieldValue::u(1ull << 63, 63);
        QTest::newRow("u64") << FieldValue::u(uint64Max, 64) << none;
        QTest::newRow("u100") << FieldValue::u(uint64Max, 100) << none;
        QTest::newRow("i0: nothing fits") << none << FieldValue::i(0, 0);
        QTest::newRow("i1") << FieldValue::i(-1, 1) << FieldValue::i(1, 1);
        QTest::newRow("i8 top") << FieldValue::i(127, 8) << FieldValue::i(128, 8);
        QTest::newRow("i8 bottom") << FieldValue::i(-128, 8) << FieldValue::i(-129, 8);
        QTest::newRow("i63 top") << FieldValue::i((1LL << 62) - 1, 63)
                                 << FieldValue::i(1LL << 62, 63);
        QTest::newRow("i63 bottom")
            << FieldValue::i(-(1LL << 62), 63) << FieldValue::i(int64Min, 63);
        QTest::newRow("i64") << FieldValue::i(int64Min, 64) << none;
        QTest::newRow("i200") << FieldValue::i(int64Min, 200) << none;
        QTest::newRow("not an integer") << FieldValue::ch(char(200)) << none;
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
        QTest::addColumn<TypeFactory>("type");
        QTest::addColumn<QString>("texts"); // '|'-separated, each parsing to the expected value
        QTest::addColumn<FieldValue>("expected");
        const FieldValue bad = FieldValue::invalid();
        const auto ch = TypeFactory(FieldType::ch), byte = TypeFactory(FieldType::byte);
        auto row = [](char const *name, TypeFactory type, char const *texts, FieldValue const &v) {
            QTest::newRow(name) << type << QString::fromUtf8(texts) << v;
        };
        row("u8 refused", TYPE(FieldType::u(8)), "-1||0x10|12abc|1.0", bad);
        row("u64 overflow", TYPE(FieldType::u(64)), "18446744073709551616", bad);
        row("u264 is u8", TYPE(FieldType(FieldType::UnsignedInteger, 264)), "255",
            FieldValue::u(255, 8));
        row("i8 refused", TYPE(FieldType::i(8)), "1.0|0x10|", bad);
        row("f32", FieldType::f32, "1.5", FieldValue::f32(1.5f));
        row("f32 refused", FieldType::f32, "1e300|1,5|", bad);
        row("f64", FieldType::f64, "-1e300", FieldValue::f64(-1e300));
        row("f16", TYPE(FieldType(FieldType::Float, 16)), "1.0", bad);
        row("ch", ch, "a", FieldValue::ch('a'));
        row("nch", FieldType::nch, "a", FieldValue::nch('a'));
        row("ch Latin-1", ch, "\xc3\xa9", FieldValue::ch(char(0xe9)));
        row("ch beyond Latin-1", ch, "\xe2\x82\xac", FieldValue::ch('?'));
        row("ch refused", ch, "ab|", bad);
        row("byte", byte, "0x1f", FieldValue::byte(31));
        row("byte upper-case digits", byte, "0xFF", FieldValue::byte(255));
        row("byte 0xzz, parse failure ignored", byte, "0xzz", FieldValue::byte(0));
        row("byte refused", byte, "0X1f|1f|0x1|0x123|1x1f", bad);
        row("sub-message", TYPE(FieldType::subMessage(infoA)), "x", bad);
        row("invalid", FieldType::invalid, "1", bad);
        row("unused kind", TYPE(FieldType(FieldType::BasisType(7), 8)), "1", bad);
    }

    void fromString()
    {
        QFETCH(TypeFactory, type);
        QFETCH(QString, texts);
        QFETCH(FieldValue, expected);
        for (QString const &text : texts.split(QLatin1Char('|'))) {
            const FieldValue parsed = FieldValue::fromString(type(), text);
            QVERIFY2(parsed.getType() == expected.getType() && parsed == expected,
                     qPrintable(text));
        }
    }

    void order_data()
    {
        QTest::addColumn<FieldValue>("a");
        QTest::addColumn<FieldValue>("b");
        QTest::addColumn<int>("order"); // -1 a before b, 0 equal, 1 b before a, 2 not ordered
        auto row = [](char const *name, FieldValue const &a, FieldValue const &b, int order) {
            QTest::newRow(name) << a << b << order;
        };
        row("u8", FieldValue::u(1, 8), FieldValue::u(2, 8), -1);
        row("u8, u16 1, 2", FieldValue::u(1, 8), FieldValue::u(2, 16), 2);
        row("u8, u16 1, 1", FieldValue::u(1, 8), FieldValue::u(1, 16), 2);
        row("u64 unsigned", FieldValue::u(1, 64), FieldValue::u(1ull << 63, 64), -1);
        row("i64 signed", FieldValue::i(-1, 64), FieldValue::i(1, 64), -1);
        row("f64", FieldValue::f64(-1.5), FieldValue::f64(0.5), -1);
        row("f64 -0, 0", FieldValue::f64(-0.0), FieldValue::f64(0.0), 0);
        row("f64 NaN, NaN", FieldValue::f64(quietNaN), FieldValue::f64(quietNaN), 2);
        row("f64 1, NaN", FieldValue::f64(1.0), FieldValue::f64(quietNaN), 2);
        row("f32, f64", FieldValue::f32(1.5f), FieldValue::f64(1.5), 2);
        row("ch signed", FieldValue::ch(char(200)), FieldValue::ch('A'), -1);
        row("nch signed", FieldValue::nch(char(200)), FieldValue::nch('A'), -1);
        row("ch, nch", FieldValue::ch('A'), FieldValue::nch('A'), 2);
        row("byte unsigned", FieldValue::byte(200), FieldValue::byte(65), 1);
        row("invalid, default", FieldValue::invalid(), FieldValue(), 0);
        row("invalid, u8", FieldValue::invalid(), FieldValue::u(0, 8), 2);
        row("unused kind", ofKind(7, 8), ofKind(7, 8), 2);
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

    void subMessageValue()
    {
        auto wrap
            = [](FieldType const &type, Message const *m) { return FieldValue::value(type, m); };
        const FieldType ofA = FieldType::subMessage(infoA);
        QVERIFY(!wrap(ofA, &mMessageB).isValid());
        QVERIFY(!wrap(ofA, nullptr).isValid());
        QVERIFY(!wrap(FieldType::u(64), &mMessageA).isValid());
        QVERIFY(!wrap(FieldType::subMessage(nullptr), &mMessageA).isValid());

        const FieldValue value = wrap(ofA, &mMessageA);
        QVERIFY(value.getType() == ofA);
        QCOMPARE(value.getSubMessage(), &mMessageA);
        QVERIFY(value == FieldValue::subMessage(&mMessageA));
        const TestMessage other(infoA);
        QVERIFY(!(value == FieldValue::subMessage(&other)));
    }

    void tracesConstructionAndCopyButNotAssignment()
    {
        TracerRecorder recorder;
        {
            FieldValue value(FieldType::u(8)); // the type is built, copied in and dropped
            const FieldValue copy(value);
            value = copy;
        }
        QCOMPARE(recorder.events().join(QLatin1Char(' ')),
                 QStringLiteral("+FieldType +FieldType +FieldValue -FieldType +FieldType "
                                "+FieldValue -FieldValue -FieldType -FieldValue -FieldType"));
    }
};

QTEST_GUILESS_MAIN(tst_FieldValue)
#include "tst_fieldvalue.moc"
