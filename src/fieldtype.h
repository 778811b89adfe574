// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FIELDTYPE_H
#define MESSAGEAPI_FIELDTYPE_H

#include "auxiliary/allocationtracing.h"
#include "messageapiframework_export.h"

#include <QString>

#include <cstdint>

class MessageInfo;

/**
 * What kind of value a message field holds: a basic kind with a size in bits, or a sub-message
 * of a given message type. A small value type, copied freely and compared by value.
 *
 * No combination of kind and size is refused: an unsigned integer of 100 bits is a valid type
 * (values treat integer sizes above 63 as unbounded).
 */
class MESSAGEAPIFRAMEWORK_EXPORT FieldType
{
public:
    /// The numeric values are part of the interface; 7 to 254 are unused.
    enum BasisType : int32_t {
        UnsignedInteger = 0, ///< 1 to 64 bits
        SignedInteger = 1, ///< two's complement, 1 to 64 bits
        Float = 2, ///< IEEE, 32 or 64 bits
        Char = 3, ///< an 8-bit character
        NChar = 4, ///< a second 8-bit character kind, shown and compared like Char
        Byte = 5, ///< a raw 8-bit byte, shown in hexadecimal
        SubMessage = 6, ///< an embedded message of a given message type
        Invalid = 255 ///< no type: the type of an invalid value
    };

    /// A type of the kind and size; nothing is checked.
    FieldType(BasisType type, unsigned int bitSize);
    /// A sub-message type of the given message type (null is kept as given); bit size 0.
    explicit FieldType(MessageInfo const *info);
    /// Copies kind, size and sub-message type.
    ///@{
    FieldType(FieldType const &other);
    FieldType &operator=(FieldType const &other) = default;
    ///@}
    ~FieldType();

    /// The types of the kinds: unsigned and signed integers of a size, floats of 32 and 64
    /// bits, 8-bit characters and bytes, no type, a sub-message of a message type.
    ///@{
    static FieldType u(unsigned char bits);
    static FieldType i(unsigned char bits);
    static FieldType f32();
    static FieldType f64();
    static FieldType ch();
    static FieldType nch();
    static FieldType byte();
    static FieldType invalid();
    static FieldType subMessage(MessageInfo const *info);
    ///@}

    /// The kind of value.
    BasisType getBasisType() const { return mBasisType; }
    /// Size in bits; 0 for SubMessage and Invalid.
    unsigned int getBitSize() const { return mBitSize; }
    /// The message type of a sub-message; null for every other kind.
    MessageInfo const *getSubMessageInfo() const { return mSubMessageInfo; }

    /// Equal when kind, bit size and sub-message type all agree.
    ///@{
    bool operator==(FieldType const &other) const;
    bool operator!=(FieldType const &other) const;
    ///@}

    /// Long description, e.g. "Unsigned integer on 8 bits"; "Unknown type" for an unused kind.
    QString toString() const;
    /// Short code, e.g. "u8", "c8", the message name for a sub-message; empty for an unused kind.
    QString toShortString() const;

private:
    friend class FieldValue;
    /// A type built inside a value whose constructor reports for it.
    enum Untraced { untraced };
    FieldType(BasisType type, unsigned int bitSize, Untraced)
        : mBasisType(type)
        , mBitSize(bitSize)
        , mSubMessageInfo(nullptr)
    { }

    BasisType mBasisType;
    uint32_t mBitSize;
    MessageInfo const *mSubMessageInfo;
};

// Types are built and dropped for every value read from a message, so these stay inline.

inline FieldType::FieldType(BasisType type, unsigned int bitSize)
    : mBasisType(type)
    , mBitSize(bitSize)
    , mSubMessageInfo(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("FieldType"));
}

inline FieldType::FieldType(MessageInfo const *info)
    : mBasisType(SubMessage)
    , mBitSize(0)
    , mSubMessageInfo(info)
{
    MessageApiTracing::allocated(QStringLiteral("FieldType"));
}

inline FieldType::FieldType(FieldType const &other)
    : mBasisType(other.mBasisType)
    , mBitSize(other.mBitSize)
    , mSubMessageInfo(other.mSubMessageInfo)
{
    MessageApiTracing::allocated(QStringLiteral("FieldType"));
}

inline FieldType::~FieldType()
{
    MessageApiTracing::deallocated(QStringLiteral("FieldType"));
}

inline FieldType FieldType::u(unsigned char bits)
{
    return FieldType(UnsignedInteger, bits);
}

inline FieldType FieldType::i(unsigned char bits)
{
    return FieldType(SignedInteger, bits);
}

inline FieldType FieldType::subMessage(MessageInfo const *info)
{
    return FieldType(info);
}

#endif // MESSAGEAPI_FIELDTYPE_H
