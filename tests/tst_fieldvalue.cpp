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

namespace {

const QString wrongType = QStringLiteral("FieldValue::assertType: wrong type");
const QString tooNarrow
    = QStringLiteral("FieldValue::assertType: field bitsize exceeds request size");
const QString notANumber
    = QStringLiteral("FieldValue::scaled: cannot scale a non-numeric field value");

// Values only compare and store these pointers; they are never looked at.
MessageInfo const *const infoA = reinterpret_cast<MessageInfo const *>(0x10);
MessageInfo const *const infoB = reinterpret_cast<MessageInfo const *>(0x20);

const double quietNaN = std::numeric_limits<double>::quiet_NaN();
const long long int64Min = std::numeric_limits<long long>::min();
const unsigned long long uint64Max = std::numeric_limits<unsigned long long>::max();

FieldValue ofKind(int kind, unsigned int bits)
{
    return FieldValue(FieldType(FieldType::BasisType(kind), bits));
}

/// Runs call and returns the text of the client error it throws, or a null string. An event of
/// another type or with a format gives a text that no expectation matches.
template <typename Call> QString thrownText(Call call)
{
    try {
        call();
    } catch (MessageApiEvent const &event) {
        if (event.getType() != MessageApiEvent::ClientError || event.getFormat() != nullptr)
            return QStringLiteral("unexpected event: ") + event.getMessage();
        return event.getMessage();
    }
    return QString();
}

QString read(FieldValue const &v, QString const &as)
{
    if (as == QLatin1String("ull"))
        return QString::number(v.get<unsigned long long>());
    if (as == QLatin1String("ll"))
        return QString::number(v.get<long long>());
    if (as == QLatin1String("uint"))
        return QString::number(v.get<unsigned int>());
    if (as == QLatin1String("int"))
        return QString::number(v.get<int>());
    if (as == QLatin1String("ushort"))
        return QString::number(v.get<unsigned short>());
    if (as == QLatin1String("short"))
        return QString::number(v.get<short>());
    if (as == QLatin1String("schar"))
        return QString::number(v.get<signed char>());
    if (as == QLatin1String("uchar"))
        return QString::number(v.get<unsigned char>());
    if (as == QLatin1String("double"))
        return QString::number(v.get<double>(), 'g', 17);
    if (as == QLatin1String("float"))
        return QString::number(double(v.get<float>()), 'g', 9);
    if (as == QLatin1String("getChar"))
        return QString::number(int(v.getChar()));
    if (as == QLatin1String("getByte"))
        return QString::number(v.getByte());
    if (as == QLatin1String("getSubMessage"))
        return QString::number(quintptr(v.getSubMessage()), 16);
    return QStringLiteral("no such accessor");
}

} // namespace

class tst_FieldValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typedAccessors_data();
    void typedAccessors();
    void checkRange_data();
    void checkRange();
    void scaled_data();
    void scaled();
    void fromString_data();
    void fromString();
    void order_data();
    void order();
    void hash_data();
    void hash();
    void hashKeysTellTypesApart();
    void subMessageValue_data();
    void subMessageValue();
    void tracesConstructionAndCopyButNotAssignment();

private:
    TestMessage mMessageA { infoA };
    TestMessage mMessageB { infoB };
};

void tst_FieldValue::typedAccessors_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<QString>("accessor");
    QTest::addColumn<QString>("outcome"); // what is read, or the text thrown

    auto row = [](char const *name, FieldValue const &v, char const *as, QString const &out) {
        QTest::newRow(name) << v << QString::fromLatin1(as) << out;
    };
    // Unsigned: read at any width not below the size, never as signed.
    row("u8 as ull", FieldValue::u(7, 8), "ull", QStringLiteral("7"));
    row("u8 as ushort", FieldValue::u(7, 8), "ushort", QStringLiteral("7"));
    row("u8 as uchar", FieldValue::u(7, 8), "uchar", QStringLiteral("7"));
    row("u8 as int", FieldValue::u(7, 8), "int", wrongType);
    row("u8 as double", FieldValue::u(7, 8), "double", wrongType);
    row("u8 as getChar", FieldValue::u(7, 8), "getChar", wrongType);
    row("u64 as ull", FieldValue::u(uint64Max, 64), "ull", QStringLiteral("18446744073709551615"));
    row("u64 as uint", FieldValue::u(7, 64), "uint", tooNarrow);
    row("u32 as uint", FieldValue::u(4294967295u, 32), "uint", QStringLiteral("4294967295"));
    row("u17 as ushort", FieldValue::u(7, 17), "ushort", tooNarrow);
    row("u100 as ull", FieldValue::u(7, 100), "ull", tooNarrow);
    row("u8 unchecked as uchar", FieldValue::u(300, 8), "uchar", QStringLiteral("44"));
    row("u8 unchecked as uint", FieldValue::u(0x100000005ull, 8), "uint", QStringLiteral("5"));
    // Signed: the sign survives every width.
    row("i8 as schar", FieldValue::i(-1, 8), "schar", QStringLiteral("-1"));
    row("i8 as short", FieldValue::i(-1, 8), "short", QStringLiteral("-1"));
    row("i8 as ll", FieldValue::i(-1, 8), "ll", QStringLiteral("-1"));
    row("i32 as int", FieldValue::i(-2147483648LL, 32), "int", QStringLiteral("-2147483648"));
    row("i8 as uchar", FieldValue::i(1, 8), "uchar", wrongType);
    row("i8 as ull", FieldValue::i(1, 8), "ull", wrongType);
    row("i64 as int", FieldValue::i(-1, 64), "int", tooNarrow);
    row("i16 as schar", FieldValue::i(-1, 16), "schar", tooNarrow);
    // Floats: a single widens, a double never narrows.
    row("f32 as double", FieldValue::f32(0.1f), "double", QStringLiteral("0.10000000149011612"));
    row("f32 as float", FieldValue::f32(-2.25f), "float", QStringLiteral("-2.25"));
    row("f64 as double", FieldValue::f64(0.1), "double", QStringLiteral("0.10000000000000001"));
    row("f64 as float", FieldValue::f64(1.5), "float", tooNarrow);
    row("f32 as ull", FieldValue::f32(1.5f), "ull", wrongType);
    // Characters: both kinds through getChar, only ch as unsigned char.
    row("ch as getChar", FieldValue::ch(char(200)), "getChar", QStringLiteral("-56"));
    row("ch as uchar", FieldValue::ch(char(200)), "uchar", QStringLiteral("200"));
    row("nch as getChar", FieldValue::nch('a'), "getChar", QStringLiteral("97"));
    row("nch as uchar", FieldValue::nch('a'), "uchar", wrongType);
    row("ch as getByte", FieldValue::ch('a'), "getByte", wrongType);
    row("ch as schar", FieldValue::ch('a'), "schar", wrongType);
    row("nch16 as getChar", ofKind(FieldType::NChar, 16), "getChar", tooNarrow);
    // Bytes; the kind is checked before the size.
    row("byte as uchar", FieldValue::byte(0x7f), "uchar", QStringLiteral("127"));
    row("byte as getByte", FieldValue::byte(0xff), "getByte", QStringLiteral("255"));
    row("byte as getChar", FieldValue::byte(0x7f), "getChar", wrongType);
    row("byte as ull", FieldValue::byte(0x7f), "ull", wrongType);
    row("byte16 as uchar", ofKind(FieldType::Byte, 16), "uchar", tooNarrow);
    row("byte16 as getChar", ofKind(FieldType::Byte, 16), "getChar", wrongType);
    // No number at all.
    row("invalid as uchar", FieldValue::invalid(), "uchar", wrongType);
    row("invalid as getSubMessage", FieldValue::invalid(), "getSubMessage", wrongType);
    row("unused kind as ull", ofKind(7, 8), "ull", wrongType);
    row("sub-message as ull", FieldValue(FieldType::subMessage(infoA)), "ull", wrongType);
}

void tst_FieldValue::typedAccessors()
{
    QFETCH(FieldValue, value);
    QFETCH(QString, accessor);
    QFETCH(QString, outcome);

    QString result;
    const QString thrown = thrownText([&] { result = read(value, accessor); });
    QCOMPARE(thrown.isNull() ? result : thrown, outcome);
}

void tst_FieldValue::checkRange_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<bool>("inRange");

    QTest::newRow("u8 255") << FieldValue::u(255, 8) << true;
    QTest::newRow("u8 256") << FieldValue::u(256, 8) << false;
    QTest::newRow("u0 0") << FieldValue::u(0, 0) << true;
    QTest::newRow("u0 1") << FieldValue::u(1, 0) << false;
    QTest::newRow("u1 1") << FieldValue::u(1, 1) << true;
    QTest::newRow("u63 2^63-1") << FieldValue::u((1ull << 63) - 1, 63) << true;
    QTest::newRow("u63 2^63") << FieldValue::u(1ull << 63, 63) << false;
    QTest::newRow("u64 maximum") << FieldValue::u(uint64Max, 64) << true;
    QTest::newRow("u100 maximum") << FieldValue::u(uint64Max, 100) << true;
    QTest::newRow("i8 -128") << FieldValue::i(-128, 8) << true;
    QTest::newRow("i8 127") << FieldValue::i(127, 8) << true;
    QTest::newRow("i8 -129") << FieldValue::i(-129, 8) << false;
    QTest::newRow("i8 128") << FieldValue::i(128, 8) << false;
    QTest::newRow("i0 0") << FieldValue::i(0, 0) << false;
    QTest::newRow("i1 -1") << FieldValue::i(-1, 1) << true;
    QTest::newRow("i1 1") << FieldValue::i(1, 1) << false;
    QTest::newRow("i63 -2^62") << FieldValue::i(-(1LL << 62), 63) << true;
    QTest::newRow("i63 2^62") << FieldValue::i(1LL << 62, 63) << false;
    QTest::newRow("i63 64-bit minimum") << FieldValue::i(int64Min, 63) << false;
    QTest::newRow("i64 minimum") << FieldValue::i(int64Min, 64) << true;
    QTest::newRow("i200 minimum") << FieldValue::i(int64Min, 200) << true;
    QTest::newRow("f64 NaN") << FieldValue::f64(quietNaN) << true;
    QTest::newRow("invalid") << FieldValue::invalid() << true;
}

void tst_FieldValue::checkRange()
{
    QFETCH(FieldValue, value);
    QFETCH(bool, inRange);

    QCOMPARE(value.checkRange(), inRange);
}

void tst_FieldValue::scaled_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<double>("result");
    QTest::addColumn<QString>("thrown");

    const QString none;
    QTest::newRow("u8") << FieldValue::u(3, 8) << 1.5 << none;
    QTest::newRow("u64 from 2^63")
        << FieldValue::u(1ull << 63, 64) << 4611686018427387904.0 << none;
    QTest::newRow("i8") << FieldValue::i(-4, 8) << -2.0 << none;
    QTest::newRow("f32 as single") << FieldValue::f32(0.1f) << double(0.1f) / 2 << none;
    QTest::newRow("f64") << FieldValue::f64(-2.5) << -1.25 << none;
    QTest::newRow("u100") << FieldValue::u(1, 100) << 0.0 << tooNarrow;
    QTest::newRow("ch") << FieldValue::ch('x') << 0.0 << notANumber;
    QTest::newRow("nch") << FieldValue::nch('x') << 0.0 << notANumber;
    QTest::newRow("byte") << FieldValue::byte(1) << 0.0 << notANumber;
    QTest::newRow("sub-message") << FieldValue(FieldType::subMessage(infoA)) << 0.0 << notANumber;
    QTest::newRow("invalid") << FieldValue::invalid() << 0.0 << notANumber;
    QTest::newRow("unused kind 7") << ofKind(7, 8) << 0.0 << none;
    QTest::newRow("unused kind 254") << ofKind(254, 8) << 0.0 << none;
}

void tst_FieldValue::scaled()
{
    QFETCH(FieldValue, value);
    QFETCH(double, result);
    QFETCH(QString, thrown);

    double got = 0.0;
    QCOMPARE(thrownText([&] { got = value.scaled(0.5); }), thrown);
    QCOMPARE(got, result);
}

void tst_FieldValue::fromString_data()
{
    QTest::addColumn<TypeFactory>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<FieldValue>("expected");

    const FieldValue bad = FieldValue::invalid();
    const auto u8 = TypeFactory([] { return FieldType::u(8); });
    const auto i8 = TypeFactory([] { return FieldType::i(8); });
    const auto u264 = TypeFactory([] { return FieldType(FieldType::UnsignedInteger, 264); });
    const auto f16 = TypeFactory([] { return FieldType(FieldType::Float, 16); });
    const auto ch = TypeFactory(FieldType::ch);
    const auto byte = TypeFactory(FieldType::byte);
    auto row = [](char const *name, TypeFactory type, QString const &text, FieldValue const &v) {
        QTest::newRow(name) << type << text << v;
    };

    row("u8 255", u8, QStringLiteral("255"), FieldValue::u(255, 8));
    row("u8 256", u8, QStringLiteral("256"), bad);
    row("u8 -1", u8, QStringLiteral("-1"), bad);
    row("u8 empty", u8, QString(), bad);
    row("u8 0x10", u8, QStringLiteral("0x10"), bad);
    row("u8 12abc", u8, QStringLiteral("12abc"), bad);
    row(
        "u64 maximum", [] { return FieldType::u(64); }, QStringLiteral("18446744073709551615"),
        FieldValue::u(uint64Max, 64));
    row(
        "u64 overflow", [] { return FieldType::u(64); }, QStringLiteral("18446744073709551616"),
        bad);
    row("u264 takes the low 8 bits of the size", u264, QStringLiteral("255"),
        FieldValue::u(255, 8));
    row("i8 -128", i8, QStringLiteral("-128"), FieldValue::i(-128, 8));
    row("i8 -129", i8, QStringLiteral("-129"), bad);
    row("i8 128", i8, QStringLiteral("128"), bad);
    row("i8 1.0", i8, QStringLiteral("1.0"), bad);
    row(
        "i64 minimum", [] { return FieldType::i(64); }, QStringLiteral("-9223372036854775808"),
        FieldValue::i(int64Min, 64));
    row("f32", FieldType::f32, QStringLiteral("1.5"), FieldValue::f32(1.5f));
    row("f32 overflow", FieldType::f32, QStringLiteral("1e300"), bad);
    row("f64", FieldType::f64, QStringLiteral("-1e300"), FieldValue::f64(-1e300));
    row("f64 decimal comma", FieldType::f64, QStringLiteral("1,5"), bad);
    row("f16", f16, QStringLiteral("1.0"), bad);
    row("ch", ch, QStringLiteral("a"), FieldValue::ch('a'));
    row("nch stays nch", FieldType::nch, QStringLiteral("a"), FieldValue::nch('a'));
    row("ch Latin-1", ch, QString(QChar(0xe9)), FieldValue::ch(char(0xe9)));
    row("ch beyond Latin-1 is ?", ch, QString(QChar(0x20ac)), FieldValue::ch('?'));
    row("ch two", ch, QStringLiteral("ab"), bad);
    row("ch empty", ch, QString(), bad);
    row("byte 0x1f", byte, QStringLiteral("0x1f"), FieldValue::byte(31));
    row("byte 0xFF", byte, QStringLiteral("0xFF"), FieldValue::byte(255));
    row("byte 0X1f", byte, QStringLiteral("0X1f"), bad);
    row("byte 1f", byte, QStringLiteral("1f"), bad);
    row("byte 0x1", byte, QStringLiteral("0x1"), bad);
    row("byte 0x123", byte, QStringLiteral("0x123"), bad);
    row("byte 1x1f", byte, QStringLiteral("1x1f"), bad);
    row("byte 0xzz, parse failure ignored", byte, QStringLiteral("0xzz"), FieldValue::byte(0));
    row(
        "sub-message", [] { return FieldType::subMessage(infoA); }, QStringLiteral("x"), bad);
    row("invalid", FieldType::invalid, QStringLiteral("1"), bad);
    row(
        "unused kind", [] { return FieldType(FieldType::BasisType(7), 8); }, QStringLiteral("1"),
        bad);
}

void tst_FieldValue::fromString()
{
    QFETCH(TypeFactory, type);
    QFETCH(QString, text);
    QFETCH(FieldValue, expected);

    FieldValue parsed;
    QCOMPARE(thrownText([&] { parsed = FieldValue::fromString(type(), text); }), QString());
    QVERIFY(parsed.getType() == expected.getType());
    QVERIFY(parsed == expected);
}

void tst_FieldValue::order_data()
{
    QTest::addColumn<FieldValue>("a");
    QTest::addColumn<FieldValue>("b");
    QTest::addColumn<bool>("less");
    QTest::addColumn<bool>("equal");

    auto row = [](char const *name, FieldValue const &a, FieldValue const &b, bool less,
                  bool equal) { QTest::newRow(name) << a << b << less << equal; };
    row("u8 1, 2", FieldValue::u(1, 8), FieldValue::u(2, 8), true, false);
    row("u8 2, 1", FieldValue::u(2, 8), FieldValue::u(1, 8), false, false);
    row("u8 equal", FieldValue::u(5, 8), FieldValue::u(5, 8), false, true);
    row("u8, u16 1, 2", FieldValue::u(1, 8), FieldValue::u(2, 16), false, false);
    row("u8, u16 1, 1", FieldValue::u(1, 8), FieldValue::u(1, 16), false, false);
    row("u64 unsigned", FieldValue::u(1, 64), FieldValue::u(1ull << 63, 64), true, false);
    row("i64 signed", FieldValue::i(-1, 64), FieldValue::i(1, 64), true, false);
    row("f64", FieldValue::f64(-1.5), FieldValue::f64(0.5), true, false);
    row("f64 -0, 0", FieldValue::f64(-0.0), FieldValue::f64(0.0), false, true);
    row("f64 NaN, NaN", FieldValue::f64(quietNaN), FieldValue::f64(quietNaN), false, false);
    row("f64 1, NaN", FieldValue::f64(1.0), FieldValue::f64(quietNaN), false, false);
    row("f32, f64", FieldValue::f32(1.5f), FieldValue::f64(1.5), false, false);
    row("ch 200, A: signed", FieldValue::ch(char(200)), FieldValue::ch('A'), true, false);
    row("nch 200, A: signed", FieldValue::nch(char(200)), FieldValue::nch('A'), true, false);
    row("ch, nch", FieldValue::ch('A'), FieldValue::nch('A'), false, false);
    row("byte 200, 65: unsigned", FieldValue::byte(200), FieldValue::byte(65), false, false);
    row("byte equal", FieldValue::byte(65), FieldValue::byte(65), false, true);
    row("invalid, invalid", FieldValue::invalid(), FieldValue(), false, true);
    row("invalid, u8", FieldValue::invalid(), FieldValue::u(0, 8), false, false);
    row("unused kind", ofKind(7, 8), ofKind(7, 8), false, false);
}

void tst_FieldValue::order()
{
    QFETCH(FieldValue, a);
    QFETCH(FieldValue, b);
    QFETCH(bool, less);
    QFETCH(bool, equal);

    QCOMPARE(a < b, less);
    QCOMPARE(a == b, equal);
    QCOMPARE(b == a, equal);
    QCOMPARE(a <= b, less || equal);
}

void tst_FieldValue::hash_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<uint>("hash");

    QTest::newRow("u8 5") << FieldValue::u(5, 8) << 5u;
    QTest::newRow("bit 31 onto bit 0") << FieldValue::u(0x80000000u, 32) << 0x80000001u;
    QTest::newRow("bit 32 onto bit 1") << FieldValue::u(1ull << 32, 64) << 2u;
    QTest::newRow("all ones") << FieldValue::i(-1, 8) << 0u;
    QTest::newRow("f32, high half zero") << FieldValue::f32(1.5f) << 0x3fc00000u;
    QTest::newRow("f64 1.0") << FieldValue::f64(1.0) << 0x7fe00000u;
    QTest::newRow("ch 200, not sign-extended") << FieldValue::ch(char(200)) << 200u;
    QTest::newRow("nch") << FieldValue::nch('a') << 0x61u;
    QTest::newRow("byte") << FieldValue::byte(0xff) << 0xffu;
    QTest::newRow("invalid") << FieldValue::invalid() << 0u;
    QTest::newRow("default") << FieldValue() << 0u;
    QTest::newRow("from a type") << FieldValue(FieldType::f64()) << 0u;
}

void tst_FieldValue::hash()
{
    QFETCH(FieldValue, value);
    QFETCH(uint, hash);

    QCOMPARE(qHash(value), hash);
    QCOMPARE(qHash(FieldValue(value)), hash);
}

void tst_FieldValue::hashKeysTellTypesApart()
{
    QHash<FieldValue, int> keys;
    keys.insert(FieldValue::u(1, 8), 1);
    keys.insert(FieldValue::ch('a'), 2);
    QCOMPARE(keys.value(FieldValue::u(1, 8)), 1);
    QCOMPARE(keys.value(FieldValue::ch('a')), 2);
    QVERIFY(!keys.contains(FieldValue::u(1, 16)));
    QVERIFY(!keys.contains(FieldValue::nch('a')));
}

void tst_FieldValue::subMessageValue_data()
{
    QTest::addColumn<TypeFactory>("type");
    QTest::addColumn<int>("message"); // 0 none, 1 of infoA, 2 of infoB
    QTest::addColumn<bool>("valid");

    const auto ofA = TypeFactory([] { return FieldType::subMessage(infoA); });
    QTest::newRow("matching message type") << ofA << 1 << true;
    QTest::newRow("other message type") << ofA << 2 << false;
    QTest::newRow("no message") << ofA << 0 << false;
    QTest::newRow("u64 type") << TypeFactory([] { return FieldType::u(64); }) << 1 << false;
    QTest::newRow("no message type")
        << TypeFactory([] { return FieldType::subMessage(nullptr); }) << 1 << false;
}

void tst_FieldValue::subMessageValue()
{
    QFETCH(TypeFactory, type);
    QFETCH(int, message);
    QFETCH(bool, valid);

    Message const *const messages[] = { nullptr, &mMessageA, &mMessageB };
    Message const *const m = messages[message];

    FieldValue value;
    QCOMPARE(thrownText([&] { value = FieldValue::value(type(), m); }), QString());
    QCOMPARE(value.isValid(), valid);
    if (valid) {
        QVERIFY(value.getType() == FieldType::subMessage(infoA));
        QCOMPARE(value.getSubMessage(), m);
        QVERIFY(value == FieldValue::subMessage(&mMessageA));
        const TestMessage other(infoA);
        QVERIFY(!(value == FieldValue::subMessage(&other)));
    }
}

void tst_FieldValue::tracesConstructionAndCopyButNotAssignment()
{
    const FieldType type = FieldType::u(8);
    FieldType::invalid(); // its function-local static is built outside the recording

    TracerRecorder recorder;
    {
        FieldValue value(type);
        const FieldValue copy(value);
        const FieldValue invalid;
        QCOMPARE(recorder.events(),
                 QStringList({ QStringLiteral("+FieldType"), QStringLiteral("+FieldValue"),
                               QStringLiteral("+FieldType"), QStringLiteral("+FieldValue"),
                               QStringLiteral("+FieldType"), QStringLiteral("+FieldValue") }));
        recorder.clear();
        value = invalid;
        QCOMPARE(recorder.events(), QStringList());
    }
    QCOMPARE(recorder.events(),
             QStringList({ QStringLiteral("-FieldValue"), QStringLiteral("-FieldType"),
                           QStringLiteral("-FieldValue"), QStringLiteral("-FieldType"),
                           QStringLiteral("-FieldValue"), QStringLiteral("-FieldType") }));
}

QTEST_GUILESS_MAIN(tst_FieldValue)
#include "tst_fieldvalue.moc"
