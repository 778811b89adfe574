// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demofieldinfo.h"

#include "demomessage.h"

#include <cstring>
#include <utility>

namespace {

DemoMessage const *asDemoMessage(Message const *message)
{
    return dynamic_cast<DemoMessage const *>(message);
}

quint64 readLittleEndian(QByteArray const &block, int offset, int size)
{
    quint64 bits = 0;
    for (int i = size - 1; i >= 0; --i)
        bits = (bits << 8) | quint8(block.at(offset + i));
    return bits;
}

void writeLittleEndian(QByteArray &block, int offset, int size, quint64 bits)
{
    for (int i = 0; i < size; ++i, bits >>= 8)
        block[offset + i] = char(bits & 0xFF);
}

} // namespace

DemoFieldInfo::DemoFieldInfo(QString name, FieldType const &type, int offset)
    : DemoFieldInfo(std::move(name), type, offset, 0, nullptr)
{ }

DemoFieldInfo::DemoFieldInfo(QString name, FieldType const &type, int offset, int recordSize,
                             DemoFieldInfo const *countField)
    : FieldInfo(std::move(name), type)
    , mOffset(offset)
    , mRecordSize(recordSize)
    , mCountField(countField)
{
    setIsRepeated(countField != nullptr);
}

DemoFieldInfo::~DemoFieldInfo() = default;

int DemoFieldInfo::valueCount(QByteArray const &block) const
{
    if (!mCountField)
        return 1;
    if (!mCountField->fitsIn(block))
        return 0;
    return int(readLittleEndian(block, mCountField->mOffset, mCountField->getByteSize()));
}

int DemoFieldInfo::getEndOffset(int records) const
{
    if (!mCountField)
        return mOffset + getByteSize();
    return records > 0 ? valueOffset(unsigned(records - 1)) + getByteSize() : 0;
}

bool DemoFieldInfo::fitsIn(QByteArray const &block) const
{
    return getEndOffset(valueCount(block)) <= block.size();
}

bool DemoFieldInfo::isPresent(Message const *message) const
{
    return getNumberOfValues(message) > 0;
}

unsigned int DemoFieldInfo::getNumberOfValues(Message const *message) const
{
    DemoMessage const *demo = asDemoMessage(message);
    if (!demo)
        return 0;
    // All values or none: a block cut short inside the field holds none of them.
    const int count = valueCount(demo->getBlock());
    return getEndOffset(count) <= demo->getBlock().size() ? unsigned(count) : 0u;
}

FieldValue DemoFieldInfo::getValue(Message const *message, unsigned int index) const
{
    DemoMessage const *demo = asDemoMessage(message);
    if (!demo || index >= getNumberOfValues(message))
        return FieldValue::invalid();

    const unsigned char bits = static_cast<unsigned char>(getType().getBitSize());
    const quint64 raw = readLittleEndian(demo->getBlock(), valueOffset(index), getByteSize());
    switch (getType().getBasisType()) {
    case FieldType::UnsignedInteger:
        return FieldValue::u(raw, bits);
    case FieldType::SignedInteger: {
        // Sign-extend from the field's width.
        const int unused = 64 - bits;
        return FieldValue::i(static_cast<long long>(raw << unused) >> unused, bits);
    }
    case FieldType::Float:
        if (bits == 32) {
            const auto raw32 = quint32(raw);
            float value;
            std::memcpy(&value, &raw32, sizeof value);
            return FieldValue::f32(value);
        } else {
            double value;
            std::memcpy(&value, &raw, sizeof value);
            return FieldValue::f64(value);
        }
    default:
        return FieldValue::invalid();
    }
}

bool DemoFieldInfo::setValue(Message *message, unsigned int index, FieldValue const &value) const
{
    auto *demo = dynamic_cast<DemoMessage *>(message);
    if (!demo || value.getType() != getType()
        || valueOffset(index) + getByteSize() > demo->getBlock().size())
        return false;

    quint64 raw = 0;
    switch (getType().getBasisType()) {
    case FieldType::UnsignedInteger:
        raw = value.getU64();
        break;
    case FieldType::SignedInteger:
        raw = quint64(value.getI64());
        break;
    case FieldType::Float:
        if (getType().getBitSize() == 32) {
            const float single = value.getF32();
            quint32 raw32;
            std::memcpy(&raw32, &single, sizeof raw32);
            raw = raw32;
        } else {
            const double number = value.getF64();
            std::memcpy(&raw, &number, sizeof raw);
        }
        break;
    default:
        return false;
    }
    writeLittleEndian(demo->block(), valueOffset(index), getByteSize(), raw);
    return true;
}

FieldValue DemoFieldInfo::getDefaultValue() const
{
    return FieldValue(getType());
}
