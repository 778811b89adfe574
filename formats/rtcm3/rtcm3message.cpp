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
            slot.count = quint16(valueOf(field->getCountSource()));
        else if (field->getCount() == Rtcm3FieldInfo::MaskBits)
            slot.count = quint16(countBits(valueOf(field->getCountSource())));
        slot.width = quint16(field->getBitWidth());
        if (field->hasWidthFromMasks()) {
            const int cells = countBits(valueOf(field->getWidthMask(0)))
                * countBits(valueOf(field->getWidthMask(1)));
            if (cells > 64) {
                *problem = tr("%1 of %2 bits exceeds 64 bits").arg(field->getName()).arg(cells);
                return nullptr;
            }
            slot.width = quint16(cells);
        }
        if (!field->takesBits())
            continue;
        slot.bitOffset = quint16(position);
        const quint64 bits = quint64(slot.count) * slot.width;
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
    const int index = field->getHomeInfo() == getInfo() ? field->getHomeIndex()
        : field->occursIn(getInfo())                    ? field->getIndexInMessageInfo(getInfo())
                                                        : -1;
    return index >= 0 && index < mSlots.size() ? &mSlots[index] : nullptr;
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
    // The 1-based positions of the set bits of each mask, read once for all records.
    QVector<QVector<quint8>> setBits(mSlots.size());
    QVector<bool> maskRead(mSlots.size(), false);
    auto positions = [&](int index) -> QVector<quint8> const & {
        static const QVector<quint8> none;
        if (index < 0 || index >= mSlots.size())
            return none;
        if (!maskRead[index]) {
            maskRead[index] = true;
            const quint64 mask = readUnsigned(mSlots[index]);
            const unsigned int width = mSlots[index].width;
            for (unsigned int position = 0; position < width; ++position) {
                if ((mask >> (width - 1 - position)) & 1)
                    setBits[index].append(quint8(position + 1));
            }
        }
        return setBits[index];
    };
    for (int i = 0; i < fields.size() && i < mSlots.size(); ++i) {
        Rtcm3FieldInfo const *field = rtcm3Field(fields[i]);
        if (!field->isGroup())
            continue;
        Slot &slot = const_cast<Slot &>(mSlots[i]);
        slot.firstSubMessage = quint16(mSubMessages.size());
        MessageInfo const *recordInfo = field->getType().getSubMessageInfo();
        const QVector<FieldInfo const *> recordFields = recordInfo->getFieldInfos();
        mSubMessages.reserve(mSubMessages.size() + slot.count);
        for (quint16 record = 0; record < slot.count; ++record) {
            QVector<Slot> slots(recordFields.size());
            quint32 before = 0; // bits of the record's fields before this one
            for (int f = 0; f < recordFields.size(); ++f) {
                Rtcm3FieldInfo const *recordField = rtcm3Field(recordFields[f]);
                Slot &own = slots[f];
                own.count = 1;
                own.width = quint16(recordField->getBitWidth());
                switch (recordField->getEncoding()) {
                case Rtcm3FieldInfo::MaskPosition:
                    own.value = positions(recordField->getMaskSource(0)).value(record);
                    continue;
                case Rtcm3FieldInfo::CellSatellite:
                case Rtcm3FieldInfo::CellSignal: {
                    // Cell mask bits run signal by signal within satellite by satellite.
                    const int signalCount = positions(recordField->getMaskSource(1)).size();
                    const int cell = positions(recordField->getMaskSource(2)).value(record);
                    if (cell == 0 || signalCount == 0)
                        continue;
                    own.value = recordField->getEncoding() == Rtcm3FieldInfo::CellSatellite
                        ? positions(recordField->getMaskSource(0)).value((cell - 1) / signalCount)
                        : positions(recordField->getMaskSource(1)).value((cell - 1) % signalCount);
                    continue;
                }
                default:
                    break;
                }
                own.bitOffset
                    = quint16(field->isColumnMajor()
                                  ? slot.bitOffset + slot.count * before + record * own.width
                                  : slot.bitOffset + record * slot.width + before);
                before += own.width;
            }
            auto *message = new Rtcm3Message(recordInfo, mFrame, std::move(slots));
            message->setParentMessage(const_cast<Rtcm3Message *>(this));
            message->addReference();
            mSubMessages.append(message);
        }
    }
}
