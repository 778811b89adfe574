// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3fieldinfo.h"

#include "auxiliary/rtcm3bitreader.h"
#include "messageinfo.h"
#include "rtcm3message.h"
#include "rtcm3record.h"

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
    , mValueBits(static_cast<unsigned char>(getType().getBitSize()))
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

void Rtcm3FieldInfo::setRecordOffset(unsigned int offset)
{
    mRecordOffset = int(offset);
}

bool Rtcm3FieldInfo::isPresent(Message const *message) const
{
    return getNumberOfValues(message) > 0;
}

unsigned int Rtcm3FieldInfo::getNumberOfValues(Message const *message) const
{
    if (isInRecord()) {
        Rtcm3Record const *record = Rtcm3Record::cast(message);
        return record && record->getInfo() == mHomeInfo ? 1u : 0u;
    }
    Rtcm3Message const *rtcm = Rtcm3Message::cast(message);
    Rtcm3Message::Place place;
    return rtcm && rtcm->locate(this, &place) ? place.count : 0u;
}

// Inline: it is the tail of getValue(), kept apart for its length.
inline FieldValue Rtcm3FieldInfo::readValue(Rtcm3Message const *message, unsigned int position,
                                            unsigned int width) const
{
    // The place was checked against the payload when the message was decoded; the reader
    // checks again, so that nothing is ever read past the frame.
    const Rtcm3BitReader reader(message->getPayload(), message->getPayloadSize(),
                                Rtcm3Message::loadableBytesAfterPayload);
    uint64_t raw = 0;
    int64_t number = 0;
    switch (mEncoding) {
    case TwosComplement:
        return reader.readSigned(position, width, &number) ? FieldValue::i(number, mValueBits)
                                                           : FieldValue::invalid();
    case SignMagnitude:
        return reader.readSignMagnitude(position, width, &number)
            ? FieldValue::i(number, mValueBits)
            : FieldValue::invalid();
    case Character:
        return reader.readUnsigned(position, 8, &raw) ? FieldValue::ch(char(raw))
                                                      : FieldValue::invalid();
    default:
        return reader.readUnsigned(position, width, &raw) ? FieldValue::u(raw, mValueBits)
                                                          : FieldValue::invalid();
    }
}

FieldValue Rtcm3FieldInfo::getValue(Message const *message, unsigned int index) const
{
    Rtcm3Message const *rtcm = nullptr;
    unsigned int position = 0;
    unsigned int width = mBits;
    if (isInRecord()) {
        Rtcm3Record const *record = Rtcm3Record::cast(message);
        if (!record || record->getInfo() != mHomeInfo || index != 0)
            return FieldValue::invalid();
        if (!takesBits())
            return FieldValue::u(record->getMaskPosition(mEncoding == CellSignal ? 1 : 0),
                                 mValueBits);
        rtcm = record->getMessage();
        position = record->getBitPosition(unsigned(mRecordOffset), mBits);
    } else {
        rtcm = Rtcm3Message::cast(message);
        Rtcm3Message::Place place;
        if (!rtcm || !rtcm->locate(this, &place) || index >= place.count)
            return FieldValue::invalid();
        if (!takesBits())
            return FieldValue::u(0, mValueBits);
        if (mEncoding == Group) {
            Message const *record = rtcm->getRecord(place, index);
            return record ? FieldValue::subMessage(record) : FieldValue::invalid();
        }
        position = place.bitOffset + index * place.width;
        width = place.width;
    }
    return readValue(rtcm, position, width);
}

bool Rtcm3FieldInfo::setValue(Message *, unsigned int, FieldValue const &) const
{
    return false;
}

FieldValue Rtcm3FieldInfo::getDefaultValue() const
{
    return mEncoding == Group ? FieldValue::invalid() : FieldValue(getType());
}
