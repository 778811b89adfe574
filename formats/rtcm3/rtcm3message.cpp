// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3message.h"

#include "auxiliary/rtcm3bitreader.h"
#include "messageinfo.h"
#include "rtcm3fieldinfo.h"

#include <utility>

namespace {

constexpr int headerBytes = 3;
constexpr int crcBytes = 3;

int countBits(quint64 value)
{
    int count = 0;
    for (; value != 0; value &= value - 1)
        ++count;
    return count;
}

/// The 1-based position, counted from the most significant of width bits, of the n-th
/// (0-based) set bit of mask; 0 when the mask has fewer set bits.
quint64 positionOfSetBit(quint64 mask, unsigned int width, quint64 n)
{
    for (unsigned int position = 0; position < width; ++position) {
        if ((mask >> (width - 1 - position)) & 1) {
            if (n == 0)
                return position + 1;
            --n;
        }
    }
    return 0;
}

Rtcm3FieldInfo const *rtcm3Field(FieldInfo const *field)
{
    return static_cast<Rtcm3FieldInfo const *>(field);
}

} // namespace

Rtcm3Message::Rtcm3Message(MessageInfo const *info, QByteArray frame, QVector<Slot> slots)
    : Message(info)
    , mFrame(std::move(frame))
    , mSlots(std::move(slots))
{ }

Rtcm3Message::~Rtcm3Message()
{
    for (Rtcm3Message *record : std::as_const(mSubMessages))
        record->removeReference();
}

Rtcm3Message *Rtcm3Message::decode(MessageInfo const *info, QByteArray const &frame,
                                   QString *problem)
{
    const QVector<FieldInfo const *> fields = info->getFieldInfos();
    QVector<Slot> slots(fields.size());
    const auto payloadBytes = std::size_t(qMax(0, frame.size() - headerBytes - crcBytes));
    const Rtcm3BitReader reader(reinterpret_cast<uint8_t const *>(frame.constData()) + headerBytes,
                                payloadBytes);
    auto valueOf = [&](int index) -> quint64 {
        uint64_t value = 0;
        if (index < 0 || index >= slots.size())
            return 0;
        reader.readUnsigned(slots[index].bitOffset, slots[index].width, &value);
        return value;
    };
    quint64 position = 0;
    for (int i = 0; i < fields.size(); ++i) {
        Rtcm3FieldInfo const *field = rtcm3Field(fields[i]);
        Slot &slot = slots[i];
        slot.count = 1;
        if (field->getCount() == Rtcm3FieldInfo::CountField)
            slot.count = valueOf(field->getCountSource());
        else if (field->getCount() == Rtcm3FieldInfo::MaskBits)
            slot.count = quint64(countBits(valueOf(field->getCountSource())));
        slot.width = field->getBitWidth();
        if (field->hasWidthFromMasks()) {
            const int cells = countBits(valueOf(field->getWidthMask(0)))
                * countBits(valueOf(field->getWidthMask(1)));
            if (cells > 64) {
                *problem = tr("%1 of %2 bits exceeds 64 bits").arg(field->getName()).arg(cells);
                return nullptr;
            }
            slot.width = unsigned(cells);
        }
        if (!field->takesBits())
            continue;
        slot.bitOffset = position;
        const quint64 bits = slot.count * slot.width;
        if (!reader.contains(position, bits)) {
            *problem = slot.count == 1
                ? tr("%1 (%2 bits at bit %3) overruns the payload of %4 bits")
                      .arg(field->getName())
                      .arg(bits)
                      .arg(position)
                      .arg(payloadBytes * 8)
                : tr("%1 (%2 values of %3 bits at bit %4) overruns the payload of %5 bits")
                      .arg(field->getName())
                      .arg(slot.count)
                      .arg(slot.width)
                      .arg(position)
                      .arg(payloadBytes * 8);
            return nullptr;
        }
        position += bits;
    }
    return new Rtcm3Message(info, frame, std::move(slots));
}

uint8_t const *Rtcm3Message::getPayload() const
{
    return reinterpret_cast<uint8_t const *>(mFrame.constData()) + headerBytes;
}

uint8_t const *Rtcm3Message::getRawRepresentation() const
{
    return reinterpret_cast<uint8_t const *>(mFrame.constData());
}

Rtcm3Message::Slot const *Rtcm3Message::getSlot(Rtcm3FieldInfo const *field) const
{
    const int index = field->getIndexInMessageInfo(getInfo());
    return index >= 0 && index < mSlots.size() && field->occursIn(getInfo()) ? &mSlots[index]
                                                                             : nullptr;
}

Message const *Rtcm3Message::getRecord(Rtcm3FieldInfo const *field, unsigned int index) const
{
    Slot const *slot = getSlot(field);
    if (!slot || index >= slot->count)
        return nullptr;
    makeSubMessages();
    return mSubMessages.value(slot->firstSubMessage + int(index));
}

QVector<Message const *> Rtcm3Message::getSubMessages() const
{
    makeSubMessages();
    QVector<Message const *> records;
    records.reserve(mSubMessages.size());
    for (Rtcm3Message *record : std::as_const(mSubMessages))
        records.append(record);
    return records;
}

QVector<Message *> Rtcm3Message::getSubMessages()
{
    makeSubMessages();
    QVector<Message *> records;
    records.reserve(mSubMessages.size());
    for (Rtcm3Message *record : std::as_const(mSubMessages))
        records.append(record);
    return records;
}

quint64 Rtcm3Message::readUnsigned(Slot const &slot) const
{
    const Rtcm3BitReader reader(getPayload(), getPayloadSize());
    uint64_t value = 0;
    reader.readUnsigned(slot.bitOffset, slot.width, &value);
    return value;
}

void Rtcm3Message::makeSubMessages() const
{
    if (mHasSubMessages)
        return;
    mHasSubMessages = true;
    const QVector<FieldInfo const *> fields = getInfo()->getFieldInfos();
    for (int i = 0; i < fields.size() && i < mSlots.size(); ++i) {
        Rtcm3FieldInfo const *field = rtcm3Field(fields[i]);
        if (!field->isGroup())
            continue;
        Slot &slot = const_cast<Slot &>(mSlots[i]);
        slot.firstSubMessage = mSubMessages.size();
        for (quint64 record = 0; record < slot.count; ++record) {
            auto *message = new Rtcm3Message(field->getType().getSubMessageInfo(), mFrame,
                                             recordSlots(field, slot, record));
            message->setParentMessage(const_cast<Rtcm3Message *>(this));
            message->addReference();
            mSubMessages.append(message);
        }
    }
}

QVector<Rtcm3Message::Slot> Rtcm3Message::recordSlots(Rtcm3FieldInfo const *group, Slot const &slot,
                                                      quint64 record) const
{
    const QVector<FieldInfo const *> fields = group->getType().getSubMessageInfo()->getFieldInfos();
    QVector<Slot> slots(fields.size());
    auto maskValue = [this](int index) {
        return index >= 0 && index < mSlots.size() ? readUnsigned(mSlots[index]) : 0;
    };
    auto maskWidth = [this](int index) {
        return index >= 0 && index < mSlots.size() ? mSlots[index].width : 0u;
    };
    quint64 before = 0; // bits of the record's fields before this one
    for (int i = 0; i < fields.size(); ++i) {
        Rtcm3FieldInfo const *field = rtcm3Field(fields[i]);
        Slot &own = slots[i];
        own.count = 1;
        own.width = field->getBitWidth();
        switch (field->getEncoding()) {
        case Rtcm3FieldInfo::MaskPosition: {
            const int mask = field->getMaskSource(0);
            own.value = positionOfSetBit(maskValue(mask), maskWidth(mask), record);
            continue;
        }
        case Rtcm3FieldInfo::CellSatellite:
        case Rtcm3FieldInfo::CellSignal: {
            // Cell mask bits run signal by signal within satellite by satellite.
            const int satellites = field->getMaskSource(0);
            const int signalMask = field->getMaskSource(1);
            const int cells = field->getMaskSource(2);
            const quint64 signalCount = quint64(countBits(maskValue(signalMask)));
            const quint64 cell = positionOfSetBit(maskValue(cells), maskWidth(cells), record);
            if (cell == 0 || signalCount == 0)
                continue;
            own.value = field->getEncoding() == Rtcm3FieldInfo::CellSatellite
                ? positionOfSetBit(maskValue(satellites), maskWidth(satellites),
                                   (cell - 1) / signalCount)
                : positionOfSetBit(maskValue(signalMask), maskWidth(signalMask),
                                   (cell - 1) % signalCount);
            continue;
        }
        default:
            break;
        }
        own.bitOffset = group->isColumnMajor()
            ? slot.bitOffset + slot.count * before + record * own.width
            : slot.bitOffset + record * slot.width + before;
        before += own.width;
    }
    return slots;
}
