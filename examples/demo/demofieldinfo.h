// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMOFIELDINFO_H
#define MESSAGEAPI_DEMO_DEMOFIELDINFO_H

#include "fieldinfo.h"

#include <QByteArray>

/**
 * A field of a demonstration block: a little-endian integer (8 to 64 bits) or IEEE float at a
 * fixed byte offset of the block.
 *
 * A repeated field has one value per record: value i lies at offset + i * recordSize, and the
 * number of records is the value of a count field of the same block. Values are read from and
 * written to DemoMessage objects; any other Message holds none.
 */
class DemoFieldInfo : public FieldInfo
{
public:
    /// A single value at the offset.
    DemoFieldInfo(QString name, FieldType const &type, int offset);
    /// One value per record, as many as countField holds.
    DemoFieldInfo(QString name, FieldType const &type, int offset, int recordSize,
                  DemoFieldInfo const *countField);
    ~DemoFieldInfo() override;

    bool isPresent(Message const *message) const override;
    unsigned int getNumberOfValues(Message const *message) const override;
    /// An invalid value when the value lies outside the message's block.
    FieldValue getValue(Message const *message, unsigned int index) const override;
    /// False unless the value has the field's type and lies inside the message's block.
    bool setValue(Message *message, unsigned int index, FieldValue const &value) const override;
    /// Zero of the field's type.
    FieldValue getDefaultValue() const override;

    int getOffset() const { return mOffset; }
    /// Bytes of one value.
    int getByteSize() const { return int(getType().getBitSize() / 8); }
    DemoFieldInfo const *getCountField() const { return mCountField; }
    /// The first byte after the field's last value in a block with that many records.
    int getEndOffset(int records) const;
    /// Whether every value of the field lies inside the block.
    bool fitsIn(QByteArray const &block) const;

private:
    /// The number of values the block declares (1 for a single value, 0 when its count field
    /// lies outside the block).
    int valueCount(QByteArray const &block) const;
    int valueOffset(unsigned int index) const { return mOffset + int(index) * mRecordSize; }

    int mOffset;
    int mRecordSize;
    DemoFieldInfo const *mCountField;
};

#endif // MESSAGEAPI_DEMO_DEMOFIELDINFO_H
