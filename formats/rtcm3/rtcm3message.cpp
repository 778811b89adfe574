// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3message.h"

#include "auxiliary/rtcm3bitreader.h"
#include "messageinfo.h"
#include "rtcm3record.h"

#include <QVarLengthArray>
#include <QtAlgorithms>

#include <cstring>
#include <new>

namespace {

int countBits(quint64 value)
{
    return int(qPopulationCount(value));
}

/// The 1-based positions of the set bits of a mask of width bits, first bit first.
QVarLengthArray<quint8, 64> setBitPositions(quint64 mask, unsigned int width)
{
    QVarLengthArray<quint8, 64> positions;
    if (width == 0 || width > 64)
        return positions;
    // Set bits only, first bit first: the first bit of the mask is bit 63 after the shift.
    for (quint64 bits = mask << (64 - width); bits != 0;) {
        const unsigned int position = unsigned(qCountLeadingZeroBits(bits)) + 1;
        positions.append(quint8(position));
        bits &= ~(quint64(1) << (64 - position));
    }
    return positions;
}

Rtcm3FieldInfo const *rtcm3Field(FieldInfo const *field)
{
    return static_cast<Rtcm3FieldInfo const *>(field);
}

} // namespace

Rtcm3Message::Rtcm3Message(MessageInfo const *info, unsigned int slotCount, unsigned int frameSize)
    : Message(info)
    , mSlotCount(quint16(slotCount))
    , mFrameSize(quint16(frameSize))
{ }

Rtcm3Message::~Rtcm3Message()
{
    // The message holds the one reference of each record: dropping it runs the record's
    // destructor, unless a caller still holds one, whose record then dies with the block.
    for (quint16 i = 0; i < mRecordCount; ++i)
        mRecords[i].removeReference();
    ::operator delete(mRecords);
}

void *Rtcm3Message::operator new(std::size_t size, std::size_t trailing)
{
    return ::operator new(size + trailing);
}

void Rtcm3Message::operator delete(void *memory)
{
    ::operator delete(memory);
}

void Rtcm3Message::operator delete(void *memory, std::size_t)
{
    ::operator delete(memory);
}

Rtcm3Message *Rtcm3Message::decode(MessageInfo const *info, uint8_t const *frame,
                                   unsigned int length, QString *problem)
{
    const QVector<FieldInfo const *> fields = info->getFieldInfos();
    QVarLengthArray<Slot, 64> layout(fields.size());
    const std::size_t payloadBytes
        = length > headerBytes + crcBytes ? length - headerBytes - crcBytes : 0;
    const Rtcm3BitReader reader(frame + headerBytes, payloadBytes);
    // The single value of an earlier field: a count or a mask.
    auto valueOf = [&](int index) -> quint64 {
        uint64_t value = 0;
        if (index < 0 || index >= layout.size())
            return 0;
        const unsigned int width = rtcm3Field(fields[index])->hasWidthFromMasks()
            ? layout[index].size
            : rtcm3Field(fields[index])->getBitWidth();
        reader.readUnsigned(layout[index].bitOffset, width, &value);
        return value;
    };
    quint64 position = 0;
    for (int i = 0; i < fields.size(); ++i) {
        Rtcm3FieldInfo const *field = rtcm3Field(fields[i]);
        Slot &slot = layout[i];
        slot.bitOffset = quint16(position);
        quint64 count = 1;
        quint64 width = field->getBitWidth();
        if (field->getCount() == Rtcm3FieldInfo::CountField)
            count = valueOf(field->getCountSource());
        else if (field->getCount() == Rtcm3FieldInfo::MaskBits)
            count = quint64(countBits(valueOf(field->getCountSource())));
        if (field->hasWidthFromMasks()) {
            width = quint64(countBits(valueOf(field->getWidthMask(0))))
                * quint64(countBits(valueOf(field->getWidthMask(1))));
            if (width > 64) {
                *problem = tr("%1 of %2 bits exceeds 64 bits").arg(field->getName()).arg(width);
                return nullptr;
            }
        }
        slot.size = quint16(field->hasWidthFromMasks() ? width : count);
        if (!field->takesBits())
            continue;
        const quint64 bits = count * width;
        if (!reader.contains(position, bits)) {
            *problem = count == 1
                ? tr("%1 (%2 bits at bit %3) overruns the payload of %4 bits")
                      .arg(field->getName())
                      .arg(bits)
                      .arg(position)
                      .arg(payloadBytes * 8)
                : tr("%1 (%2 values of %3 bits at bit %4) overruns the payload of %5 bits")
                      .arg(field->getName())
                      .arg(count)
                      .arg(width)
                      .arg(position)
                      .arg(payloadBytes * 8);
            return nullptr;
        }
        position += bits;
    }
    const std::size_t slotBytes = std::size_t(layout.size()) * sizeof(Slot);
    constexpr std::size_t padding = loadableBytesAfterPayload - crcBytes;
    auto *message
        = new (slotBytes + length + padding) Rtcm3Message(info, unsigned(layout.size()), length);
    std::memcpy(message->slotTable(), layout.constData(), slotBytes);
    auto *bytes = reinterpret_cast<uint8_t *>(message->slotTable() + layout.size());
    std::memcpy(bytes, frame, length);
    std::memset(bytes + length, 0, padding);
    return message;
}

QByteArray Rtcm3Message::getFrame() const
{
    return QByteArray(reinterpret_cast<char const *>(frameBytes()), int(mFrameSize));
}

int Rtcm3Message::indexOf(Rtcm3FieldInfo const *field) const
{
    return field->occursIn(getInfo()) ? field->getIndexInMessageInfo(getInfo()) : -1;
}

Rtcm3Record const *Rtcm3Message::getRecord(Rtcm3FieldInfo const *field, unsigned int index) const
{
    Place place {};
    return field->isGroup() && locate(field, &place) ? getRecord(place, index) : nullptr;
}

Rtcm3Record const *Rtcm3Message::getRecord(Place const &group, unsigned int index) const
{
    if (index >= group.count)
        return nullptr;
    makeRecords();
    // Records lie group after group, each group at its own bit offset: hop over whole groups
    // to the first record of this one.
    unsigned int first = 0;
    while (first < mRecordCount && mRecords[first].mGroupOffset != group.bitOffset)
        first += mRecords[first].mGroupCount;
    return first + index < mRecordCount ? &mRecords[first + index] : nullptr;
}

QVector<Message const *> Rtcm3Message::getSubMessages() const
{
    makeRecords();
    QVector<Message const *> records;
    records.reserve(mRecordCount);
    for (quint16 i = 0; i < mRecordCount; ++i)
        records.append(&mRecords[i]);
    return records;
}

QVector<Message *> Rtcm3Message::getSubMessages()
{
    makeRecords();
    QVector<Message *> records;
    records.reserve(mRecordCount);
    for (quint16 i = 0; i < mRecordCount; ++i)
        records.append(&mRecords[i]);
    return records;
}

void Rtcm3Message::makeRecords() const
{
    if (mHasRecords)
        return;
    mHasRecords = true;
    const QVector<FieldInfo const *> fields = getInfo()->getFieldInfos();
    unsigned int total = 0;
    for (int i = 0; i < fields.size(); ++i) {
        if (rtcm3Field(fields[i])->isGroup())
            total += slotTable()[i].size;
    }
    if (total == 0)
        return;
    mRecords = static_cast<Rtcm3Record *>(::operator new(total * sizeof(Rtcm3Record)));
    auto *self = const_cast<Rtcm3Message *>(this);
    const Rtcm3BitReader reader(getPayload(), getPayloadSize(), loadableBytesAfterPayload);
    for (int i = 0; i < fields.size(); ++i) {
        Rtcm3FieldInfo const *group = rtcm3Field(fields[i]);
        if (!group->isGroup())
            continue;
        const Slot slot = slotTable()[i];
        MessageInfo const *recordInfo = group->getType().getSubMessageInfo();
        // The masks that the record type's virtual fields name, read once for all records.
        // A satellite (or a signal of 1230) names one mask; the satellite of a cell names the
        // satellite, signal and cell masks, which its signal shares.
        Rtcm3FieldInfo const *satellite = nullptr;
        for (FieldInfo const *recordField : recordInfo->getFieldInfos()) {
            const Rtcm3FieldInfo::Encoding encoding = rtcm3Field(recordField)->getEncoding();
            if (encoding == Rtcm3FieldInfo::MaskPosition
                || encoding == Rtcm3FieldInfo::CellSatellite)
                satellite = rtcm3Field(recordField);
        }
        auto positionsOf = [&](Rtcm3FieldInfo const *virtualField, int which) {
            const int index = virtualField ? virtualField->getMaskSource(which) : -1;
            Place place {};
            uint64_t mask = 0;
            if (index < 0 || index >= mSlotCount || !locate(rtcm3Field(fields[index]), &place)
                || !reader.readUnsigned(place.bitOffset, place.width, &mask))
                return QVarLengthArray<quint8, 64>();
            return setBitPositions(mask, place.width);
        };
        const bool cells = satellite && satellite->getEncoding() == Rtcm3FieldInfo::CellSatellite;
        const QVarLengthArray<quint8, 64> first = positionsOf(satellite, 0);
        const QVarLengthArray<quint8, 64> second
            = cells ? positionsOf(satellite, 1) : QVarLengthArray<quint8, 64>();
        const QVarLengthArray<quint8, 64> cellPositions
            = cells ? positionsOf(satellite, 2) : QVarLengthArray<quint8, 64>();
        for (quint16 index = 0; index < slot.size; ++index) {
            auto *record = new (&mRecords[mRecordCount])
                Rtcm3Record(recordInfo, self, slot.bitOffset, slot.size, group->getBitWidth(),
                            group->isColumnMajor(), index);
            ++mRecordCount;
            record->addReference();
            if (!cells) {
                record->mMaskPositions[0] = first.value(index);
                continue;
            }
            // Cell mask bits run signal by signal within satellite by satellite.
            const int cell = cellPositions.value(index);
            if (cell == 0 || second.isEmpty())
                continue;
            record->mMaskPositions[0] = first.value((cell - 1) / second.size());
            record->mMaskPositions[1] = second.value((cell - 1) % second.size());
        }
    }
}
