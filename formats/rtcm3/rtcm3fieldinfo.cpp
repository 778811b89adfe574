// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3fieldinfo.h"

#include "auxiliary/rtcm3bitreader.h"
#include "messageinfo.h"
#include "rtcm3message.h"

#include <utility>

namespace {

FieldType typeOf(Rtcm3FieldInfo::Encoding encoding, unsigned int bits, MessageInfo const *group)
{
    switch (encoding) {
    case Rtcm3FieldInfo::TwosComplement:
    case Rtcm3FieldInfo::SignMagnitude:
        return FieldType::i(static_cast<unsigned char>(bits));
    case Rtcm3FieldInfo::Character:
        return FieldType::ch();
    case Rtcm3FieldInfo::Group:
        return FieldType::subMessage(group);
    default:
        return FieldType::u(static_cast<unsigned char>(bits));
    }
}

} // namespace

Rtcm3FieldInfo::Rtcm3FieldInfo(QString name, Encoding encoding, unsigned int bits,
                               MessageInfo const *group)
    : FieldInfo(std::move(name), typeOf(encoding, bits, group))
    , mEncoding(encoding)
    , mBits(bits)
{
    setIsRepeated(encoding == Character || encoding == Group);
    setVirtual(!takesBits());
}

Rtcm3FieldInfo::~Rtcm3FieldInfo() = default;

void Rtcm3FieldInfo::setCount(Count count, int sourceIndex)
{
    mCount = count;
    mCountSource = sourceIndex;
    setIsRepeated(count != SingleValue || isRepeated());
}

void Rtcm3FieldInfo::setWidthFromMasks(int firstMaskIndex, int secondMaskIndex)
{
    mWidthMasks[0] = firstMaskIndex;
    mWidthMasks[1] = secondMaskIndex;
}

void Rtcm3FieldInfo::setMaskSources(int first, int second, int third)
{
    mMaskSources[0] = first;
    mMaskSources[1] = second;
    mMaskSources[2] = third;
}

void Rtcm3FieldInfo::setHome(MessageInfo const *info, int index)
{
    mHomeInfo = info;
    mHomeIndex = index;
}

bool Rtcm3FieldInfo::isPresent(Message const *message) const
{
    return getNumberOfValues(message) > 0;
}

unsigned int Rtcm3FieldInfo::getNumberOfValues(Message const *message) const
{
    Rtcm3Message const *rtcm = Rtcm3Message::cast(message);
    Rtcm3Message::Slot const *slot = rtcm ? rtcm->getSlot(this) : nullptr;
    return slot ? unsigned(slot->count) : 0u;
}

FieldValue Rtcm3FieldInfo::getValue(Message const *message, unsigned int index) const
{
    Rtcm3Message const *rtcm = Rtcm3Message::cast(message);
    Rtcm3Message::Slot const *slot = rtcm ? rtcm->getSlot(this) : nullptr;
    if (!slot || index >= slot->count)
        return FieldValue::invalid();
    const auto bits = static_cast<unsigned char>(getType().getBitSize());
    if (!takesBits())
        return FieldValue::u(slot->value, bits);
    if (mEncoding == Group) {
        Message const *record = rtcm->getRecord(this, index);
        return record ? FieldValue::subMessage(record) : FieldValue::invalid();
    }
    // The slot was checked against the payload when the message was decoded; the reader
    // checks again, so that nothing is ever read past the frame.
    const Rtcm3BitReader reader(rtcm->getPayload(), rtcm->getPayloadSize());
    const quint64 position = slot->bitOffset + quint64(index) * slot->width;
    uint64_t raw = 0;
    int64_t number = 0;
    switch (mEncoding) {
    case TwosComplement:
        return reader.readSigned(position, slot->width, &number) ? FieldValue::i(number, bits)
                                                                 : FieldValue::invalid();
    case SignMagnitude:
        return reader.readSignMagnitude(position, slot->width, &number)
            ? FieldValue::i(number, bits)
            : FieldValue::invalid();
    case Character:
        return reader.readUnsigned(position, 8, &raw) ? FieldValue::ch(char(raw))
                                                      : FieldValue::invalid();
    default:
        return reader.readUnsigned(position, slot->width, &raw) ? FieldValue::u(raw, bits)
                                                                : FieldValue::invalid();
    }
}

bool Rtcm3FieldInfo::setValue(Message *, unsigned int, FieldValue const &) const
{
    return false;
}

FieldValue Rtcm3FieldInfo::getDefaultValue() const
{
    return mEncoding == Group ? FieldValue::invalid() : FieldValue(getType());
}
