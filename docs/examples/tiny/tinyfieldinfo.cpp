// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tinyfieldinfo.h"

#include "tinymessage.h"

#include <utility>

TinyFieldInfo::TinyFieldInfo(QString name, FieldType const &type, int offset)
    : FieldInfo(std::move(name), type)
    , mOffset(offset)
{ }

bool TinyFieldInfo::isPresent(Message const *message) const
{
    // Another format's message holds no TINY fields.
    auto const *tiny = dynamic_cast<TinyMessage const *>(message);
    return tiny && tiny->getBlock().size() >= mOffset + int(getType().getBitSize() / 8);
}

unsigned int TinyFieldInfo::getNumberOfValues(Message const *message) const
{
    return isPresent(message) ? 1 : 0;
}

FieldValue TinyFieldInfo::getValue(Message const *message, unsigned int index) const
{
    if (index != 0 || !isPresent(message))
        return FieldValue::invalid();
    QByteArray const &block = static_cast<TinyMessage const *>(message)->getBlock();
    const unsigned int bits = getType().getBitSize();
    quint64 raw = 0;
    for (unsigned int byte = 0; byte < bits / 8; ++byte)
        raw = (raw << 8) | quint8(block.at(mOffset + int(byte)));
    if (getType().getBasisType() == FieldType::SignedInteger) {
        // Two's complement of the field's width, widened to 64 bits.
        const qint64 value = qint64(raw << (64 - bits)) >> (64 - bits);
        return FieldValue::i(value, static_cast<unsigned char>(bits));
    }
    return FieldValue::u(raw, static_cast<unsigned char>(bits));
}

bool TinyFieldInfo::setValue(Message *, unsigned int, FieldValue const &) const
{
    return false;
}
