// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldvalue.h"
#include "messageapievent.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QHash>
#include <QTest>
#include <QVector>

#include <cmath>
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

/// Runs call; returns the text of the client error it throws, or a null string. Any other
/// exception, or an event of another type or with a format, fails the caller's comparison.
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

/// Reads value through the named accessor and renders the result.
QString readAs(FieldValue const &value, QString const &accessor)
{
    if (accessor == QLatin1String("ull"))
        return QString::number(value.get<unsigned long long>());
    if (accessor == QLatin1String("ll"))
        return QString::number(value.get<long long>());
    if (accessor == QLatin1String("uint"))
        return QString::number(value.get<unsigned int>());
    if (accessor == QLatin1String("int"))
        return QString::number(value.get<int>());
    if (accessor == QLatin1String("ushort"))
        return QString::number(value.get<unsigned short>());
    if (accessor == QLatin1String("short"))
        return QString::number(value.get<short>());
    if (accessor == QLatin1String("schar"))
        return QString::number(value.get<signed char>());
    if (accessor == QLatin1String("uchar"))
        return QString::number(value.get<unsigned char>());
    if (accessor == QLatin1String("double"))
        return QString::number(value.get<double>(), 'g', 17);
    if (accessor == QLatin1String("float"))
        return QString::number(double(value.get<float>()), 'g', 9);
    if (accessor == QLatin1String("getU64"))
        return QString::number(value.getU64());
    if (accessor == QLatin1String("getI64"))
        return QString::number(value.getI64());
    if (accessor == QLatin1String("getF64"))
        return QString::number(value.getF64(), 'g', 17);
    if (accessor == QLatin1String("getF32"))
        return QString::number(double(value.getF32()), 'g', 9);
    if (accessor == QLatin1String("getChar"))
        return QString::number(int(value.getChar()));
    if (accessor == QLatin1String("getByte"))
        return QString::number(value.getByte());
    if (accessor == QLatin1String("getSubMessage"))
        return QString::number(quintptr(value.getSubMessage()), 16);
    return QStringLiteral("no such accessor");
}

} // namespace

class tst_FieldValue : public QObject
{
    Q_OBJECT

public:
    tst_FieldValue()
        : mMessageA(infoA)
        , mOtherMessageA(infoA)
        , mMessageB(infoB)
    { }

private Q_SLOTS:
    void namedConstructors_data();
    void namedConstructors();
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
    void hashTellsTypesApartByEquality();
    void subMessageValue_data();
    void subMessageValue();
    void tracesConstructionAndCopyButNotAssignment();
    void carriedByQVariant();

private:
    TestMessage mMessageA;
    TestMessage mOtherMessageA;
    TestMessage mMessageB;
};

void tst_FieldValue::namedConstructors_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<TypeFactory>("type");

    QTest::newRow("default") << FieldValue() << TypeFactory(FieldType::invalid);
    QTest::newRow("invalid") << FieldValue::invalid() << TypeFactory(FieldType::invalid);
    QTest::newRow("from a type") << FieldValue(FieldType::u(12))
                                 << TypeFactory([] { return FieldType::u(12); });
    QTest::newRow("u") << FieldValue::u(1, 3) << TypeFactory([] { return FieldType::u(3); });
    QTest::newRow("i") << FieldValue::i(-1, 5) << TypeFactory([] { return FieldType::i(5); });
    QTest::newRow("f32") << FieldValue::f32(1.0f) << TypeFactory(FieldType::f32);
    QTest::newRow("f64") << FieldValue::f64(1.0) << TypeFactory(FieldType::f64);
    QTest::newRow("ch") << FieldValue::ch('a') << TypeFactory(FieldType::ch);
    QTest::newRow("nch") << FieldValue::nch('a') << TypeFactory(FieldType::nch);
    QTest::newRow("byte") << FieldValue::byte(1) << TypeFactory(FieldType::byte);
}

void tst_FieldValue::namedConstructors()
{
    QFETCH(FieldValue, value);
    QFETCH(TypeFactory, type);

    QVERIFY(value.getType() == type());
    QCOMPARE(value.isValid(), type().getBasisType() != FieldType::Invalid);
}

void tst_FieldValue::typedAccessors_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<QString>("accessor");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("error");

    const QString none;
    auto row = [&](char const *name, FieldValue const &value, char const *accessor,
                   QString const &result, QString const &error) {
        QTest::newRow(name) << value << QString::fromLatin1(accessor) << result << error;
    };

    // Unsigned: any width up to the requested one, never as signed.
    row("u8 as ull", FieldValue::u(7, 8), "ull", QStringLiteral("7"), none);
    row("u8 as getU64", FieldValue::u(7, 8), "getU64", QStringLiteral("7"), none);
    row("u8 as uint", FieldValue::u(7, 8), "uint", QStringLiteral("7"), none);
    row("u8 as ushort", FieldValue::u(7, 8), "ushort", QStringLiteral("7"), none);
    row("u8 as uchar", FieldValue::u(7, 8), "uchar", QStringLiteral("7"), none);
    row("u8 as int", FieldValue::u(7, 8), "int", none, wrongType);
    row("u8 as ll", FieldValue::u(7, 8), "ll", none, wrongType);
    row("u8 as schar", FieldValue::u(7, 8), "schar", none, wrongType);
    row("u8 as double", FieldValue::u(7, 8), "double", none, wrongType);
    row("u8 as getChar", FieldValue::u(7, 8), "getChar", none, wrongType);
    row("u8 as getByte", FieldValue::u(7, 8), "getByte", none, wrongType);
    row("u64 as ull, all bits", FieldValue::u(uint64Max, 64), "ull",
        QStringLiteral("18446744073709551615"), none);
    row("u64 as uint", FieldValue::u(7, 64), "uint", none, tooNarrow);
    row("u32 as uint", FieldValue::u(4294967295u, 32), "uint", QStringLiteral("4294967295"), none);
    row("u33 as uint", FieldValue::u(7, 33), "uint", none, tooNarrow);
    row("u17 as ushort", FieldValue::u(7, 17), "ushort", none, tooNarrow);
    row("u9 as uchar", FieldValue::u(7, 9), "uchar", none, tooNarrow);
    row("u100 as ull", FieldValue::u(7, 100), "ull", none, tooNarrow);
    row("u8 out of range as uchar: low 8 bits", FieldValue::u(300, 8), "uchar",
        QStringLiteral("44"), none);
    row("u8 out of range as uint: low 32 bits", FieldValue::u(0x100000005ull, 8), "uint",
        QStringLiteral("5"), none);

    // Signed: sign kept at every width.
    row("i8 -1 as schar", FieldValue::i(-1, 8), "schar", QStringLiteral("-1"), none);
    row("i8 -1 as short", FieldValue::i(-1, 8), "short", QStringLiteral("-1"), none);
    row("i8 -1 as int", FieldValue::i(-1, 8), "int", QStringLiteral("-1"), none);
    row("i8 -1 as ll", FieldValue::i(-1, 8), "ll", QStringLiteral("-1"), none);
    row("i8 -1 as getI64", FieldValue::i(-1, 8), "getI64", QStringLiteral("-1"), none);
    row("i8 as uchar", FieldValue::i(1, 8), "uchar", none, wrongType);
    row("i8 as ull", FieldValue::i(1, 8), "ull", none, wrongType);
    row("i64 minimum as ll", FieldValue::i(int64Min, 64), "ll",
        QStringLiteral("-9223372036854775808"), none);
    row("i64 as int", FieldValue::i(-1, 64), "int", none, tooNarrow);
    row("i16 as schar", FieldValue::i(-1, 16), "schar", none, tooNarrow);
    row("i32 minimum as int", FieldValue::i(-2147483648LL, 32), "int",
        QStringLiteral("-2147483648"), none);

    // Floats: a single widens, a double never narrows.
    row("f32 as double", FieldValue::f32(1.5f), "double", QStringLiteral("1.5"), none);
    row("f32 as getF64", FieldValue::f32(0.1f), "getF64", QStringLiteral("0.10000000149011612"),
        none);
    row("f32 as float", FieldValue::f32(-2.25f), "float", QStringLiteral("-2.25"), none);
    row("f32 as getF32", FieldValue::f32(0.1f), "getF32", QStringLiteral("0.100000001"), none);
    row("f64 as double", FieldValue::f64(0.1), "double", QStringLiteral("0.10000000000000001"),
        none);
    row("f64 as float", FieldValue::f64(1.5), "float", none, tooNarrow);
    row("f64 as getF32", FieldValue::f64(1.5), "getF32", none, tooNarrow);
    row("f32 as ull", FieldValue::f32(1.5f), "ull", none, wrongType);
    row("f64 as ll", FieldValue::f64(1.5), "ll", none, wrongType);

    // Characters: the two kinds read alike through getChar, but only ch as unsigned char.
    row("ch as getChar", FieldValue::ch('a'), "getChar", QStringLiteral("97"), none);
    row("ch as uchar", FieldValue::ch('a'), "uchar", QStringLiteral("97"), none);
    row("ch 200 as uchar", FieldValue::ch(char(200)), "uchar", QStringLiteral("200"), none);
    row("ch 200 as getChar", FieldValue::ch(char(200)), "getChar", QStringLiteral("-56"), none);
    row("nch as getChar", FieldValue::nch('a'), "getChar", QStringLiteral("97"), none);
    row("nch as uchar", FieldValue::nch('a'), "uchar", none, wrongType);
    row("ch as getByte", FieldValue::ch('a'), "getByte", none, wrongType);
    row("ch as schar", FieldValue::ch('a'), "schar", none, wrongType);
    row("ch of 16 bits as getChar", ofKind(FieldType::Char, 16), "getChar", none, tooNarrow);
    row("nch of 16 bits as getChar", ofKind(FieldType::NChar, 16), "getChar", none, tooNarrow);

    // Bytes.
    row("byte as uchar", FieldValue::byte(0x7f), "uchar", QStringLiteral("127"), none);
    row("byte 255 as uchar", FieldValue::byte(0xff), "uchar", QStringLiteral("255"), none);
    row("byte as getByte", FieldValue::byte(0x7f), "getByte", QStringLiteral("127"), none);
    row("byte as getChar", FieldValue::byte(0x7f), "getChar", none, wrongType);
    row("byte as ull", FieldValue::byte(0x7f), "ull", none, wrongType);
    row("byte of 16 bits as uchar", ofKind(FieldType::Byte, 16), "uchar", none, tooNarrow);
    // The kind is checked before the size.
    row("byte of 16 bits as getChar", ofKind(FieldType::Byte, 16), "getChar", none, wrongType);

    // No number at all.
    row("invalid as ull", FieldValue::invalid(), "ull", none, wrongType);
    row("invalid as uchar", FieldValue::invalid(), "uchar", none, wrongType);
    row("invalid as getChar", FieldValue::invalid(), "getChar", none, wrongType);
    row("invalid as getSubMessage", FieldValue::invalid(), "getSubMessage", none, wrongType);
    row("unused kind as ull", ofKind(7, 8), "ull", none, wrongType);
    row("u8 as getSubMessage", FieldValue::u(0, 8), "getSubMessage", none, wrongType);
    row("sub-message as ull", FieldValue(FieldType::subMessage(infoA)), "ull", none, wrongType);
    row("sub-message as getSubMessage", FieldValue(FieldType::subMessage(infoA)), "getSubMessage",
        QStringLiteral("0"), none);
}

void tst_FieldValue::typedAccessors()
{
    QFETCH(FieldValue, value);
    QFETCH(QString, accessor);
    QFETCH(QString, result);
    QFETCH(QString, error);

    QString read;
    QCOMPARE(thrownText([&] { read = readAs(value, accessor); }), error);
    QCOMPARE(read, result);
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
    QTest::newRow("u1 2") << FieldValue::u(2, 1) << false;
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
    QTest::newRow("i1 0") << FieldValue::i(0, 1) << true;
    QTest::newRow("i1 1") << FieldValue::i(1, 1) << false;
    QTest::newRow("i63 -2^62") << FieldValue::i(-(1LL << 62), 63) << true;
    QTest::newRow("i63 -2^62-1") << FieldValue::i(-(1LL << 62) - 1, 63) << false;
    QTest::newRow("i63 2^62-1") << FieldValue::i((1LL << 62) - 1, 63) << true;
    QTest::newRow("i63 2^62") << FieldValue::i(1LL << 62, 63) << false;
    QTest::newRow("i63 minimum of 64 bits") << FieldValue::i(int64Min, 63) << false;
    QTest::newRow("i64 minimum") << FieldValue::i(int64Min, 64) << true;
    QTest::newRow("i200 minimum") << FieldValue::i(int64Min, 200) << true;

    QTest::newRow("f64 NaN") << FieldValue::f64(quietNaN) << true;
    QTest::newRow("ch") << FieldValue::ch('x') << true;
    QTest::newRow("invalid") << FieldValue::invalid() << true;
    QTest::newRow("unused kind") << ofKind(7, 3) << true;
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
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("result");
    QTest::addColumn<QString>("error");

    const QString none;
    QTest::newRow("u8") << FieldValue::u(3, 8) << 0.5 << 1.5 << none;
    QTest::newRow("u64 from 2^63 stays positive")
        << FieldValue::u(1ull << 63, 64) << 1.0 << 9223372036854775808.0 << none;
    QTest::newRow("i8 negative") << FieldValue::i(-4, 8) << 0.25 << -1.0 << none;
    QTest::newRow("f32") << FieldValue::f32(1.5f) << 2.0 << 3.0 << none;
    QTest::newRow("f32 keeps single precision")
        << FieldValue::f32(0.1f) << 1.0 << double(0.1f) << none;
    QTest::newRow("f64") << FieldValue::f64(-2.5) << 2.0 << -5.0 << none;
    QTest::newRow("u100 is too wide to read") << FieldValue::u(1, 100) << 1.0 << 0.0 << tooNarrow;
    QTest::newRow("ch") << FieldValue::ch('x') << 2.0 << 0.0 << notANumber;
    QTest::newRow("nch") << FieldValue::nch('x') << 2.0 << 0.0 << notANumber;
    QTest::newRow("byte") << FieldValue::byte(1) << 2.0 << 0.0 << notANumber;
    QTest::newRow("sub-message") << FieldValue(FieldType::subMessage(infoA)) << 2.0 << 0.0
                                 << notANumber;
    QTest::newRow("invalid") << FieldValue::invalid() << 2.0 << 0.0 << notANumber;
    QTest::newRow("unused kind 7 gives 0") << ofKind(7, 8) << 2.0 << 0.0 << none;
    QTest::newRow("unused kind 254 gives 0") << ofKind(254, 8) << 2.0 << 0.0 << none;
}

void tst_FieldValue::scaled()
{
    QFETCH(FieldValue, value);
    QFETCH(double, factor);
    QFETCH(double, result);
    QFETCH(QString, error);

    double got = 0.0;
    QCOMPARE(thrownText([&] { got = value.scaled(factor); }), error);
    QCOMPARE(got, result);
}

void tst_FieldValue::fromString_data()
{
    QTest::addColumn<TypeFactory>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<FieldValue>("expected");

    const FieldValue invalid = FieldValue::invalid();
    const auto u8 = TypeFactory([] { return FieldType::u(8); });
    const auto u64 = TypeFactory([] { return FieldType::u(64); });
    const auto i8 = TypeFactory([] { return FieldType::i(8); });
    const auto i64 = TypeFactory([] { return FieldType::i(64); });
    const auto f32 = TypeFactory(FieldType::f32);
    const auto f64 = TypeFactory(FieldType::f64);
    const auto ch = TypeFactory(FieldType::ch);
    const auto nch = TypeFactory(FieldType::nch);
    const auto byte = TypeFactory(FieldType::byte);

    QTest::newRow("u8 255") << u8 << QStringLiteral("255") << FieldValue::u(255, 8);
    QTest::newRow("u8 0") << u8 << QStringLiteral("0") << FieldValue::u(0, 8);
    QTest::newRow("u8 256 out of range") << u8 << QStringLiteral("256") << invalid;
    QTest::newRow("u8 negative") << u8 << QStringLiteral("-1") << invalid;
    QTest::newRow("u8 empty") << u8 << QString() << invalid;
    QTest::newRow("u8 hexadecimal") << u8 << QStringLiteral("0x10") << invalid;
    QTest::newRow("u8 trailing letters") << u8 << QStringLiteral("12abc") << invalid;
    QTest::newRow("u64 maximum") << u64 << QStringLiteral("18446744073709551615")
                                 << FieldValue::u(uint64Max, 64);
    QTest::newRow("u64 overflow") << u64 << QStringLiteral("18446744073709551616") << invalid;
    QTest::newRow("u100 unbounded")
        << TypeFactory([] { return FieldType(FieldType::UnsignedInteger, 100); })
        << QStringLiteral("5") << FieldValue::u(5, 100);
    QTest::newRow("u264 keeps the low 8 bits of the size")
        << TypeFactory([] { return FieldType(FieldType::UnsignedInteger, 264); })
        << QStringLiteral("255") << FieldValue::u(255, 8);

    QTest::newRow("i8 -128") << i8 << QStringLiteral("-128") << FieldValue::i(-128, 8);
    QTest::newRow("i8 127") << i8 << QStringLiteral("127") << FieldValue::i(127, 8);
    QTest::newRow("i8 -129 out of range") << i8 << QStringLiteral("-129") << invalid;
    QTest::newRow("i8 128 out of range") << i8 << QStringLiteral("128") << invalid;
    QTest::newRow("i8 decimal point") << i8 << QStringLiteral("1.0") << invalid;
    QTest::newRow("i64 minimum") << i64 << QStringLiteral("-9223372036854775808")
                                 << FieldValue::i(int64Min, 64);
    QTest::newRow("i64 below minimum") << i64 << QStringLiteral("-9223372036854775809") << invalid;

    QTest::newRow("f32") << f32 << QStringLiteral("1.5") << FieldValue::f32(1.5f);
    QTest::newRow("f32 overflow") << f32 << QStringLiteral("1e300") << invalid;
    QTest::newRow("f32 text") << f32 << QStringLiteral("abc") << invalid;
    QTest::newRow("f64") << f64 << QStringLiteral("-1e300") << FieldValue::f64(-1e300);
    QTest::newRow("f64 decimal comma") << f64 << QStringLiteral("1,5") << invalid;
    QTest::newRow("float of 16 bits") << TypeFactory([] { return FieldType(FieldType::Float, 16); })
                                      << QStringLiteral("1.0") << invalid;

    QTest::newRow("ch") << ch << QStringLiteral("a") << FieldValue::ch('a');
    QTest::newRow("nch stays nch") << nch << QStringLiteral("a") << FieldValue::nch('a');
    QTest::newRow("ch Latin-1") << ch << QString(QChar(0xe9)) << FieldValue::ch(char(0xe9));
    QTest::newRow("ch beyond Latin-1 becomes ?")
        << ch << QString(QChar(0x20ac)) << FieldValue::ch('?');
    QTest::newRow("ch two characters") << ch << QStringLiteral("ab") << invalid;
    QTest::newRow("ch empty") << ch << QString() << invalid;

    QTest::newRow("byte 0x1f") << byte << QStringLiteral("0x1f") << FieldValue::byte(31);
    QTest::newRow("byte upper-case digits")
        << byte << QStringLiteral("0xFF") << FieldValue::byte(255);
    QTest::newRow("byte 0x00") << byte << QStringLiteral("0x00") << FieldValue::byte(0);
    QTest::newRow("byte upper-case X") << byte << QStringLiteral("0X1f") << invalid;
    QTest::newRow("byte without prefix") << byte << QStringLiteral("1f") << invalid;
    QTest::newRow("byte one digit") << byte << QStringLiteral("0x1") << invalid;
    QTest::newRow("byte three digits") << byte << QStringLiteral("0x123") << invalid;
    QTest::newRow("byte other first character") << byte << QStringLiteral("1x1f") << invalid;
    QTest::newRow("byte unparsed digits give 0")
        << byte << QStringLiteral("0xzz") << FieldValue::byte(0);

    QTest::newRow("sub-message") << TypeFactory([] { return FieldType::subMessage(infoA); })
                                 << QStringLiteral("x") << invalid;
    QTest::newRow("invalid type") << TypeFactory(FieldType::invalid) << QStringLiteral("1")
                                  << invalid;
    QTest::newRow("unused kind") << TypeFactory([] {
        return FieldType(FieldType::BasisType(7), 8);
    }) << QStringLiteral("1") << invalid;
}

void tst_FieldValue::fromString()
{
    QFETCH(TypeFactory, type);
    QFETCH(QString, text);
    QFETCH(FieldValue, expected);

    const FieldValue parsed = FieldValue::fromString(type(), text);
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
    row("u8, u16 never ordered", FieldValue::u(1, 8), FieldValue::u(2, 16), false, false);
    row("u8, u16 never equal", FieldValue::u(1, 8), FieldValue::u(1, 16), false, false);
    row("u64 compares unsigned", FieldValue::u(1, 64), FieldValue::u(1ull << 63, 64), true, false);
    row("i64 compares signed", FieldValue::i(-1, 64), FieldValue::i(1, 64), true, false);
    row("u8, i8 never ordered", FieldValue::u(1, 8), FieldValue::i(2, 8), false, false);
    row("f64", FieldValue::f64(-1.5), FieldValue::f64(0.5), true, false);
    row("f64 zero signs equal", FieldValue::f64(-0.0), FieldValue::f64(0.0), false, true);
    row("f64 NaN unequal to itself", FieldValue::f64(quietNaN), FieldValue::f64(quietNaN), false,
        false);
    row("f64 NaN unordered", FieldValue::f64(1.0), FieldValue::f64(quietNaN), false, false);
    row("f32", FieldValue::f32(1.25f), FieldValue::f32(1.5f), true, false);
    row("f32, f64 never equal", FieldValue::f32(1.5f), FieldValue::f64(1.5), false, false);
    row("ch 200 sorts before A", FieldValue::ch(char(200)), FieldValue::ch('A'), true, false);
    row("nch 200 sorts before A", FieldValue::nch(char(200)), FieldValue::nch('A'), true, false);
    row("ch equal", FieldValue::ch('A'), FieldValue::ch('A'), false, true);
    row("ch, nch never equal", FieldValue::ch('A'), FieldValue::nch('A'), false, false);
    row("byte 200 after 65", FieldValue::byte(200), FieldValue::byte(65), false, false);
    row("byte 65 before 200", FieldValue::byte(65), FieldValue::byte(200), true, false);
    row("invalid, invalid", FieldValue::invalid(), FieldValue(), false, true);
    row("invalid, u8", FieldValue::invalid(), FieldValue::u(0, 8), false, false);
    row("unused kind equals nothing", ofKind(7, 8), ofKind(7, 8), false, false);
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
    QTest::newRow("bit 31 folds onto bit 0") << FieldValue::u(0x80000000u, 32) << 0x80000001u;
    QTest::newRow("bit 32 folds onto bit 1") << FieldValue::u(1ull << 32, 64) << 2u;
    QTest::newRow("all ones") << FieldValue::i(-1, 8) << 0u;
    QTest::newRow("f32 high half zero") << FieldValue::f32(1.5f) << 0x3fc00000u;
    QTest::newRow("f64 1.0") << FieldValue::f64(1.0) << 0x7fe00000u;
    QTest::newRow("ch 200 not sign-extended") << FieldValue::ch(char(200)) << 200u;
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

void tst_FieldValue::hashTellsTypesApartByEquality()
{
    QHash<FieldValue, QString> names;
    names.insert(FieldValue::u(1, 8), QStringLiteral("one"));
    names.insert(FieldValue::ch('a'), QStringLiteral("a"));
    QCOMPARE(names.value(FieldValue::u(1, 8)), QStringLiteral("one"));
    QCOMPARE(names.value(FieldValue::ch('a')), QStringLiteral("a"));
    // Same payload, other type: same bucket, not the same key.
    QVERIFY(!names.contains(FieldValue::u(1, 16)));
    QVERIFY(!names.contains(FieldValue::nch('a')));
}

void tst_FieldValue::subMessageValue_data()
{
    QTest::addColumn<TypeFactory>("type");
    QTest::addColumn<int>("message"); // 0 none, 1 mMessageA, 2 mMessageB
    QTest::addColumn<bool>("valid");

    const auto ofA = TypeFactory([] { return FieldType::subMessage(infoA); });
    QTest::newRow("matching message type") << ofA << 1 << true;
    QTest::newRow("other message type") << ofA << 2 << false;
    QTest::newRow("no message") << ofA << 0 << false;
    QTest::newRow("not a sub-message type")
        << TypeFactory([] { return FieldType::u(64); }) << 1 << false;
    QTest::newRow("sub-message type without message type")
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
    if (!valid)
        return;
    QVERIFY(value == FieldValue::subMessage(m));
    QVERIFY(value.getType() == FieldType::subMessage(m->getInfo()));
    QCOMPARE(value.getSubMessage(), m);
}

void tst_FieldValue::tracesConstructionAndCopyButNotAssignment()
{
    const FieldType type = FieldType::u(8);
    FieldType::invalid(); // the function-local static is built outside the recording

    TracerRecorder recorder;
    {
        FieldValue value(type);
        FieldValue copy(value);
        QCOMPARE(recorder.events(),
                 QStringList({ QStringLiteral("+FieldType"), QStringLiteral("+FieldValue"),
                               QStringLiteral("+FieldType"), QStringLiteral("+FieldValue") }));
        recorder.clear();
        copy = FieldValue::u(1, 8);
        QCOMPARE(recorder.eventsOf(QStringLiteral("FieldValue")),
                 QStringList({ QStringLiteral("+FieldValue"), QStringLiteral("-FieldValue") }));
        QVERIFY(copy == FieldValue::u(1, 8));
        recorder.clear();
        const FieldValue invalid;
        QCOMPARE(recorder.events(),
                 QStringList({ QStringLiteral("+FieldType"), QStringLiteral("+FieldValue") }));
        recorder.clear();
    }
    QCOMPARE(recorder.events(),
             QStringList({ QStringLiteral("-FieldValue"), QStringLiteral("-FieldType"),
                           QStringLiteral("-FieldValue"), QStringLiteral("-FieldType"),
                           QStringLiteral("-FieldValue"), QStringLiteral("-FieldType") }));

    // Each value and its type are released as often as they were made.
    recorder.clear();
    {
        const QVector<FieldValue> values = { FieldValue::u(1, 8), FieldValue::byte(2),
                                             FieldValue::f64(3.0), FieldValue::invalid() };
        const QVector<FieldValue> copies = values;
        Q_UNUSED(copies);
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("FieldValue")).count(QStringLiteral("+FieldValue")),
             recorder.eventsOf(QStringLiteral("FieldValue")).count(QStringLiteral("-FieldValue")));
    QCOMPARE(recorder.eventsOf(QStringLiteral("FieldType")).count(QStringLiteral("+FieldType")),
             recorder.eventsOf(QStringLiteral("FieldType")).count(QStringLiteral("-FieldType")));
}

void tst_FieldValue::carriedByQVariant()
{
    const QVariant variant = QVariant::fromValue(FieldValue::i(-3, 16));
    QVERIFY(variant.value<FieldValue>() == FieldValue::i(-3, 16));
    QVERIFY(variant.value<FieldValue>().getType() == FieldType::i(16));
}

QTEST_GUILESS_MAIN(tst_FieldValue)
#include "tst_fieldvalue.moc"
