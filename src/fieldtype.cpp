// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldtype.h"

#include "messageinfo.h"

#include "auxiliary/tracing.h"

#include <QObject>

MSGAPI_SOURCE_FILE("FIELDTYPE", "src/fieldtype")

namespace {

// A sub-message type may be built without a message type; it then has no name to show.
QString nameOf(MessageInfo const *info)
{
    return info ? info->getName() : QString();
}

} // namespace

// The fixed types are built once, on first use, and handed out as copies.
FieldType FieldType::f32()
{
    static const FieldType type(Float, 32);
    return type;
}

FieldType FieldType::f64()
{
    static const FieldType type(Float, 64);
    return type;
}

FieldType FieldType::ch()
{
    static const FieldType type(Char, 8);
    return type;
}

FieldType FieldType::nch()
{
    static const FieldType type(NChar, 8);
    return type;
}

FieldType FieldType::byte()
{
    static const FieldType type(Byte, 8);
    return type;
}

FieldType FieldType::invalid()
{
    static const FieldType type(Invalid, 0);
    return type;
}

bool FieldType::operator==(FieldType const &other) const
{
    return mBasisType == other.mBasisType && mBitSize == other.mBitSize
        && mSubMessageInfo == other.mSubMessageInfo;
}

bool FieldType::operator!=(FieldType const &other) const
{
    return !(*this == other);
}

QString FieldType::toString() const
{
    switch (mBasisType) {
    case UnsignedInteger:
        return QObject::tr("Unsigned integer on %1 bits").arg(mBitSize);
    case SignedInteger:
        return QObject::tr("Signed integer on %1 bits").arg(mBitSize);
    case Float:
        return QObject::tr("IEEE float on %1 bits").arg(mBitSize);
    case Char:
    case NChar:
        // The two character kinds are deliberately shown alike.
        return QObject::tr("Character on %1 bits").arg(mBitSize);
    case Byte:
        return QObject::tr("Byte on %1 bits").arg(mBitSize);
    case SubMessage:
        return QObject::tr("Message of type %1").arg(nameOf(mSubMessageInfo));
    case Invalid:
        return QObject::tr("Invalid");
    }
    return QObject::tr("Unknown type");
}

QString FieldType::toShortString() const
{
    switch (mBasisType) {
    case UnsignedInteger:
        return QObject::tr("u%1").arg(mBitSize);
    case SignedInteger:
        return QObject::tr("i%1").arg(mBitSize);
    case Float:
        return QObject::tr("f%1").arg(mBitSize);
    case Char:
    case NChar:
        return QObject::tr("c%1").arg(mBitSize);
    case Byte:
        return QObject::tr("b%1").arg(mBitSize);
    case SubMessage:
        return QObject::tr("%1").arg(nameOf(mSubMessageInfo));
    case Invalid:
        return QObject::tr("Invalid");
    }
    // Unlike the long text, the short code of an unused kind is empty: callers append it as a
    // suffix and show nothing for a kind they cannot name.
    return QString();
}
