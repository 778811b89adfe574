// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FIELDVALUE_H
#define MESSAGEAPI_FIELDVALUE_H

#include "fieldtype.h"
#include "messageapiframework_export.h"

#include <QMetaType>
#include <QString>

#include <cstdint>

class FieldValue;
class Message;

/// Equal when the types are equal and the values are; NaN equals nothing, invalid equals invalid.
MESSAGEAPIFRAMEWORK_EXPORT bool operator==(FieldValue const &a, FieldValue const &b);
/// A partial order: values of different types are never ordered against each other.
MESSAGEAPIFRAMEWORK_EXPORT bool operator<(FieldValue const &a, FieldValue const &b);
/// a < b, or else a == b.
MESSAGEAPIFRAMEWORK_EXPORT bool operator<=(FieldValue const &a, FieldValue const &b);
/// Hash of the 64 payload bits; the type does not enter it.
MESSAGEAPIFRAMEWORK_EXPORT uint qHash(FieldValue const &v);

/**
 * One typed value of a message field: a FieldType and 64 bits of storage.
 *
 * The typed accessors are strict: a value is read only as the native type that matches its
 * kind and is wide enough for its bit size; every mismatch throws a MessageApiEvent of type
 * ClientError ("FieldValue::assertType: wrong type" or "FieldValue::assertType: field bitsize
 * exceeds request size"). Unused payload bytes are zero, so equal values hash equally.
 *
 * A sub-message value points at a Message it does not own and must not outlive.
 */
class MESSAGEAPIFRAMEWORK_EXPORT FieldValue
{
public:
    /// How toString() renders integers, characters and bytes.
    enum RepresentationMode : int32_t {
        Natural = 0, ///< the kind's own rendering
        Hexadecimal = 1, ///< lower-case hexadecimal, at least two digits
        Decimal = 2 ///< plain decimal, never grouped
    };

    /// An invalid value.
    FieldValue();
    /// A value of the given type with all payload bits zero.
    explicit FieldValue(FieldType const &type);
    /// Copies type and payload.
    FieldValue(FieldValue const &other);
    ~FieldValue();
    /// Copies type and payload; reports nothing to the allocation tracer.
    FieldValue &operator=(FieldValue const &other);

    /// An unsigned or signed integer of the size; v is not checked against bits, checkRange()
    /// is the check.
    ///@{
    static FieldValue u(unsigned long long v, unsigned char bits);
    static FieldValue i(long long v, unsigned char bits);
    ///@}
    /// Values of the other kinds: floats, characters, bytes.
    ///@{
    static FieldValue f32(float v);
    static FieldValue f64(double v);
    static FieldValue ch(char c);
    static FieldValue nch(char c);
    static FieldValue byte(unsigned char b);
    ///@}
    /// m must not be null: its message type becomes the value's sub-message type.
    ///@{
    static FieldValue subMessage(Message const *m);
    static FieldValue subMessage(Message *m);
    ///@}
    /// A value of no type: what a field gives for a value it does not have.
    static FieldValue invalid();

    /**
     * Builds a value of a field type from a native value. Only the Message const* member is
     * defined: it gives subMessage(m) when the type is a sub-message type of exactly m's message
     * type and m is not null, and an invalid value otherwise. Never throws.
     */
    template <typename T> static FieldValue value(FieldType const &type, T const &v);

    /// The kind and size of the value.
    FieldType const &getType() const { return mType; }
    /// Whether the value has a type: false for invalid().
    bool isValid() const { return mType.getBasisType() != FieldType::Invalid; }
    /// Whether the value fits its bit size (integers only; other kinds always fit).
    bool checkRange() const;
    /// Throws unless the value may be read as the requested kind and size.
    void assertType(FieldType::BasisType requested, unsigned int requestedBits) const;

    /// Strict typed read; defined for unsigned long long, long long, unsigned int, int,
    /// unsigned short, short, signed char, unsigned char, double and float.
    template <typename T> T get() const;

    /// get() of the widest types, for readability.
    ///@{
    unsigned long long getU64() const;
    long long getI64() const;
    double getF64() const;
    float getF32() const;
    ///@}
    /// The character of a Char or NChar value.
    char getChar() const;
    /// The byte of a Byte value.
    unsigned char getByte() const;
    /// The message of a sub-message value.
    Message const *getSubMessage() const;

    /// The value as a number times factor; throws for characters, bytes, sub-messages and
    /// invalid values, and gives 0.0 for an unused kind.
    double scaled(double factor) const;

    /// Parses text as a value of the type; an invalid value on any failure, never throws.
    static FieldValue fromString(FieldType const &type, QString text);

    /**
     * The value as text. precision: digits after the decimal point for floats (-1: 6).
     * localized: the default locale's grouping and decimal separator. withType: append the
     * short type code in parentheses, e.g. "12 (u8)".
     */
    QString toString(bool withType = false, signed char precision = -1,
                     RepresentationMode mode = Natural, bool localized = false) const;

private:
    friend class DictionaryAccess;

    /// An integer value built as FieldValue(FieldType(kind, bits)) from a temporary type, with
    /// the same reports in the same order, but one test of the tracer for all of them.
    FieldValue(FieldType::BasisType kind, unsigned char bits, uint64_t payload);

    friend bool operator==(FieldValue const &a, FieldValue const &b);
    friend bool operator<(FieldValue const &a, FieldValue const &b);
    friend uint qHash(FieldValue const &v);

    FieldType mType;
    uint64_t mPayload;
};

/// @cond
// The specializations that the library defines, declared for the compiler only.
template <>
FieldValue FieldValue::value<Message const *>(FieldType const &type, Message const *const &m);

template <> unsigned long long FieldValue::get<unsigned long long>() const;
template <> long long FieldValue::get<long long>() const;
template <> unsigned int FieldValue::get<unsigned int>() const;
template <> int FieldValue::get<int>() const;
template <> unsigned short FieldValue::get<unsigned short>() const;
template <> short FieldValue::get<short>() const;
template <> signed char FieldValue::get<signed char>() const;
template <> unsigned char FieldValue::get<unsigned char>() const;
template <> double FieldValue::get<double>() const;
template <> float FieldValue::get<float>() const;
/// @endcond

// Values are built and dropped for every value read from a message, so these stay inline.

inline FieldValue::FieldValue(FieldType const &type)
    : mType(type)
    , mPayload(0)
{
    MessageApiTracing::allocated(QStringLiteral("FieldValue"));
}

inline FieldValue::FieldValue(FieldValue const &other)
    : mType(other.mType)
    , mPayload(other.mPayload)
{
    MessageApiTracing::allocated(QStringLiteral("FieldValue"));
}

inline FieldValue::~FieldValue()
{
    MessageApiTracing::deallocated(QStringLiteral("FieldValue"));
}

inline FieldValue &FieldValue::operator=(FieldValue const &other)
{
    mType = other.mType;
    mPayload = other.mPayload;
    return *this;
}

inline FieldValue::FieldValue(FieldType::BasisType kind, unsigned char bits, uint64_t payload)
    : mType(kind, bits, FieldType::untraced)
    , mPayload(payload)
{
    if (MemLeakTracer::mayCount()) {
        MessageApiTracing::allocated(QStringLiteral("FieldType")); // the temporary type
        MessageApiTracing::allocated(QStringLiteral("FieldType")); // its copy in the value
        MessageApiTracing::allocated(QStringLiteral("FieldValue"));
        MessageApiTracing::deallocated(QStringLiteral("FieldType")); // the temporary dropped
    }
}

inline FieldValue FieldValue::u(unsigned long long v, unsigned char bits)
{
    return FieldValue(FieldType::UnsignedInteger, bits, v);
}

inline FieldValue FieldValue::i(long long v, unsigned char bits)
{
    return FieldValue(FieldType::SignedInteger, bits, static_cast<uint64_t>(v));
}

inline unsigned long long FieldValue::getU64() const
{
    return get<unsigned long long>();
}

inline long long FieldValue::getI64() const
{
    return get<long long>();
}

inline double FieldValue::getF64() const
{
    return get<double>();
}

inline float FieldValue::getF32() const
{
    return get<float>();
}

Q_DECLARE_METATYPE(FieldValue)

#endif // MESSAGEAPI_FIELDVALUE_H
