// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldvalue.h"

#include "floatrepresentation.h"
#include "message.h"
#include "messageapievent.h"

#include "auxiliary/tracing.h"

#include <QByteArray>
#include <QLatin1Char>
#include <QLocale>
#include <QObject>

#include <cstring>

MSGAPI_SOURCE_FILE("FIELDVALUE", "src/fieldvalue")

namespace {

[[noreturn]] void throwClientError(QString text)
{
    throw MessageApiEvent(MessageApiEvent::ClientError, std::move(text), nullptr);
}

bool isCharacter(FieldType::BasisType kind)
{
    return kind == FieldType::Char || kind == FieldType::NChar;
}

// A single lives in the low half of the payload, a double in all of it.
float storedSingle(uint64_t payload)
{
    const auto bits = static_cast<uint32_t>(payload);
    float v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

double storedDouble(uint64_t payload)
{
    double v;
    std::memcpy(&v, &payload, sizeof v);
    return v;
}

// Integers and characters in hexadecimal: lower-case digits, no prefix, padded with "0" to two
// characters and never cut. Written directly rather than padding QString::number()'s text,
// which would cost a second string.
QString hexadecimal(quint64 magnitude, bool negative)
{
    char16_t digits[18];
    int first = int(sizeof digits / sizeof digits[0]);
    do {
        digits[--first] = u"0123456789abcdef"[magnitude & 0xf];
        magnitude >>= 4;
    } while (magnitude != 0);
    // A minus sign and the magnitude for a negative number, not its two's complement (which is
    // what Qt 5's conversion would give).
    if (negative)
        digits[--first] = u'-';
    if (first == int(sizeof digits / sizeof digits[0]) - 1)
        digits[--first] = u'0';
    return QString(reinterpret_cast<QChar const *>(digits + first),
                   int(sizeof digits / sizeof digits[0]) - first);
}

QString unsignedHex(quint64 v)
{
    return hexadecimal(v, false);
}

QString signedHex(qint64 v)
{
    return v >= 0 ? hexadecimal(quint64(v), false) : hexadecimal(0 - static_cast<quint64>(v), true);
}

} // namespace

FieldValue::FieldValue()
    : mType(FieldType::invalid())
    , mPayload(0)
{
    MessageApiTracing::allocated(QStringLiteral("FieldValue"));
}

FieldValue FieldValue::f32(float v)
{
    FieldValue value(FieldType::f32());
    uint32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    value.mPayload = bits;
    return value;
}

FieldValue FieldValue::f64(double v)
{
    FieldValue value(FieldType::f64());
    std::memcpy(&value.mPayload, &v, sizeof value.mPayload);
    return value;
}

FieldValue FieldValue::ch(char c)
{
    FieldValue value(FieldType::ch());
    value.mPayload = static_cast<unsigned char>(c);
    return value;
}

FieldValue FieldValue::nch(char c)
{
    FieldValue value(FieldType::nch());
    value.mPayload = static_cast<unsigned char>(c);
    return value;
}

FieldValue FieldValue::byte(unsigned char b)
{
    FieldValue value(FieldType::byte());
    value.mPayload = b;
    return value;
}

FieldValue FieldValue::subMessage(Message const *m)
{
    FieldValue value(FieldType::subMessage(m->getInfo()));
    value.mPayload = reinterpret_cast<quintptr>(m);
    return value;
}

FieldValue FieldValue::subMessage(Message *m)
{
    return subMessage(static_cast<Message const *>(m));
}

FieldValue FieldValue::invalid()
{
    return FieldValue(FieldType::invalid());
}

template <>
FieldValue FieldValue::value<Message const *>(FieldType const &type, Message const *const &m)
{
    if (type.getBasisType() == FieldType::SubMessage && m
        && type.getSubMessageInfo() == m->getInfo())
        return subMessage(m);
    return invalid();
}

bool FieldValue::checkRange() const
{
    const unsigned int n = mType.getBitSize();
    switch (mType.getBasisType()) {
    case FieldType::UnsignedInteger:
        if (n > 63)
            return true;
        return mPayload < (uint64_t(1) << n);
    case FieldType::SignedInteger: {
        if (n > 63)
            return true;
        if (n == 0)
            return false;
        const auto v = static_cast<int64_t>(mPayload);
        const int64_t limit = int64_t(1) << (n - 1);
        return v >= -limit && v < limit;
    }
    default:
        return true;
    }
}

void FieldValue::assertType(FieldType::BasisType requested, unsigned int requestedBits) const
{
    const FieldType::BasisType kind = mType.getBasisType();
    if (kind != requested && !(isCharacter(kind) && isCharacter(requested)))
        throwClientError(QStringLiteral("FieldValue::assertType: wrong type"));
    if (requestedBits < mType.getBitSize())
        throwClientError(
            QStringLiteral("FieldValue::assertType: field bitsize exceeds request size"));
}

template <> unsigned long long FieldValue::get<unsigned long long>() const
{
    assertType(FieldType::UnsignedInteger, 64);
    return mPayload;
}

template <> long long FieldValue::get<long long>() const
{
    assertType(FieldType::SignedInteger, 64);
    return static_cast<long long>(mPayload);
}

template <> unsigned int FieldValue::get<unsigned int>() const
{
    assertType(FieldType::UnsignedInteger, 32);
    return static_cast<unsigned int>(mPayload);
}

template <> int FieldValue::get<int>() const
{
    assertType(FieldType::SignedInteger, 32);
    return static_cast<int>(static_cast<uint32_t>(mPayload));
}

template <> unsigned short FieldValue::get<unsigned short>() const
{
    assertType(FieldType::UnsignedInteger, 16);
    return static_cast<unsigned short>(mPayload);
}

template <> short FieldValue::get<short>() const
{
    assertType(FieldType::SignedInteger, 16);
    return static_cast<short>(static_cast<uint16_t>(mPayload));
}

template <> signed char FieldValue::get<signed char>() const
{
    assertType(FieldType::SignedInteger, 8);
    return static_cast<signed char>(static_cast<uint8_t>(mPayload));
}

template <> unsigned char FieldValue::get<unsigned char>() const
{
    // Bytes and plain characters may be read as unsigned char; the second character kind is
    // left to getChar() on purpose and falls through to the unsigned check, which refuses it.
    switch (mType.getBasisType()) {
    case FieldType::Byte:
        return getByte();
    case FieldType::Char:
        return static_cast<unsigned char>(getChar());
    default:
        assertType(FieldType::UnsignedInteger, 8);
        return static_cast<unsigned char>(mPayload);
    }
}

template <> double FieldValue::get<double>() const
{
    assertType(FieldType::Float, 64);
    return mType.getBitSize() == 64 ? storedDouble(mPayload) : storedSingle(mPayload);
}

template <> float FieldValue::get<float>() const
{
    assertType(FieldType::Float, 32);
    if (mType.getBitSize() == 64)
        return static_cast<float>(storedDouble(mPayload));
    return storedSingle(mPayload);
}

char FieldValue::getChar() const
{
    assertType(FieldType::Char, 8);
    return static_cast<char>(static_cast<uint8_t>(mPayload));
}

unsigned char FieldValue::getByte() const
{
    assertType(FieldType::Byte, 8);
    return static_cast<unsigned char>(mPayload);
}

Message const *FieldValue::getSubMessage() const
{
    assertType(FieldType::SubMessage, 0);
    return reinterpret_cast<Message const *>(static_cast<quintptr>(mPayload));
}

double FieldValue::scaled(double factor) const
{
    switch (mType.getBasisType()) {
    case FieldType::UnsignedInteger:
        return static_cast<double>(get<unsigned long long>()) * factor;
    case FieldType::SignedInteger:
        return static_cast<double>(get<long long>()) * factor;
    case FieldType::Float:
        // Read without the size check: any size other than 64 holds a single.
        if (mType.getBitSize() == 64)
            return storedDouble(mPayload) * factor;
        return static_cast<double>(storedSingle(mPayload)) * factor;
    case FieldType::Char:
    case FieldType::NChar:
    case FieldType::Byte:
    case FieldType::SubMessage:
    case FieldType::Invalid:
        throwClientError(
            QStringLiteral("FieldValue::scaled: cannot scale a non-numeric field value"));
    }
    // An unused kind value is not a client's mistake but unknown data: it scales to nothing.
    return 0.0;
}

FieldValue FieldValue::fromString(FieldType const &type, QString text)
{
    // Integer types take the low 8 bits of the size, the width the named constructors carry.
    const auto bits = static_cast<unsigned char>(type.getBitSize() & 0xff);
    bool ok = false;
    switch (type.getBasisType()) {
    case FieldType::UnsignedInteger: {
        const qulonglong v = text.toULongLong(&ok, 10);
        if (!ok)
            return FieldValue();
        const FieldValue value = u(v, bits);
        return value.checkRange() ? value : invalid();
    }
    case FieldType::SignedInteger: {
        const qlonglong v = text.toLongLong(&ok, 10);
        if (!ok)
            return FieldValue();
        const FieldValue value = i(v, bits);
        return value.checkRange() ? value : invalid();
    }
    case FieldType::Float:
        if (type.getBitSize() == 32) {
            const float v = text.toFloat(&ok);
            return ok ? f32(v) : FieldValue();
        }
        if (type.getBitSize() == 64) {
            const double v = text.toDouble(&ok);
            return ok ? f64(v) : FieldValue();
        }
        return FieldValue();
    case FieldType::Char:
    case FieldType::NChar: {
        const QByteArray latin1 = text.toLatin1();
        if (latin1.size() != 1)
            return FieldValue();
        return type.getBasisType() == FieldType::Char ? ch(latin1.at(0)) : nch(latin1.at(0));
    }
    case FieldType::Byte: {
        if (text.size() != 4 || text.at(0) != QLatin1Char('0') || text.at(1) != QLatin1Char('x'))
            return FieldValue();
        // The parse result is not checked: two digits that do not parse give the byte 0.
        const unsigned int v = text.mid(2).toUInt(&ok, 16);
        if (v > 255)
            return FieldValue();
        return byte(static_cast<unsigned char>(v));
    }
    default:
        return FieldValue();
    }
}

QString FieldValue::toString(bool withType, signed char precision, RepresentationMode mode,
                             bool localized) const
{
    // Takes the default locale of the first call, whatever the value, and keeps it.
    static const QLocale locale;

    QString result;
    switch (mType.getBasisType()) {
    case FieldType::UnsignedInteger: {
        const auto v = static_cast<qulonglong>(mPayload);
        if (mode == Hexadecimal)
            result = unsignedHex(v);
        else if (mode != Decimal && localized)
            result = locale.toString(v);
        else
            result = QString::number(v);
        break;
    }
    case FieldType::SignedInteger: {
        const auto v = static_cast<qlonglong>(mPayload);
        if (mode == Hexadecimal)
            result = signedHex(v);
        else if (mode != Decimal && localized)
            result = locale.toString(v);
        else
            result = QString::number(v);
        break;
    }
    case FieldType::Float: {
        const int p = precision == -1 ? 6 : precision;
        if (mType.getBitSize() == 32)
            result = FloatRepresentation::getString(getF32(), 'f', p, localized);
        else
            result = FloatRepresentation::getString(getF64(), 'f', p, localized);
        break;
    }
    case FieldType::Char:
    case FieldType::NChar: {
        // The code reads as a signed 8-bit number, so 255 shows as "-1".
        const int code = static_cast<signed char>(static_cast<uint8_t>(mPayload));
        if (mode == Hexadecimal)
            result = signedHex(code);
        else if (mode == Decimal)
            result = QString::number(code);
        else
            result = QString(QChar::fromLatin1(static_cast<char>(code)));
        break;
    }
    case FieldType::Byte: {
        const auto b = static_cast<unsigned int>(static_cast<uint8_t>(mPayload));
        result = mode == Decimal ? QString::number(b) : unsignedHex(b);
        break;
    }
    case FieldType::SubMessage:
        result = QString::number(static_cast<quintptr>(mPayload), 16);
        break;
    case FieldType::Invalid:
        result = QObject::tr("Invalid");
        break;
    }

    // An unused kind counts as valid and, its short code being empty, gets " ()".
    if (withType && isValid())
        result += QStringLiteral(" (%1)").arg(mType.toShortString());
    return result;
}

bool operator==(FieldValue const &a, FieldValue const &b)
{
    if (a.mType != b.mType)
        return false;
    switch (a.mType.getBasisType()) {
    case FieldType::UnsignedInteger:
    case FieldType::SignedInteger:
    case FieldType::SubMessage:
        return a.mPayload == b.mPayload;
    case FieldType::Float:
        return a.getF64() == b.getF64();
    case FieldType::Char:
    case FieldType::NChar:
    case FieldType::Byte:
        return static_cast<uint8_t>(a.mPayload) == static_cast<uint8_t>(b.mPayload);
    case FieldType::Invalid:
        return true;
    }
    return false;
}

bool operator<(FieldValue const &a, FieldValue const &b)
{
    if (a.mType != b.mType)
        return false;
    switch (a.mType.getBasisType()) {
    case FieldType::UnsignedInteger:
        return a.mPayload < b.mPayload;
    case FieldType::SignedInteger:
        return static_cast<int64_t>(a.mPayload) < static_cast<int64_t>(b.mPayload);
    case FieldType::Float:
        return a.getF64() < b.getF64();
    case FieldType::Char:
    case FieldType::NChar:
        // Characters order as signed 8-bit numbers: codes from 128 up sort first.
        return static_cast<signed char>(static_cast<uint8_t>(a.mPayload))
            < static_cast<signed char>(static_cast<uint8_t>(b.mPayload));
    case FieldType::Byte:
        return static_cast<uint8_t>(a.mPayload) < static_cast<uint8_t>(b.mPayload);
    default:
        return false;
    }
}

bool operator<=(FieldValue const &a, FieldValue const &b)
{
    return a < b || a == b;
}

uint qHash(FieldValue const &v)
{
    const uint64_t p = v.mPayload;
    return static_cast<uint>(p ^ (p >> 31));
}
