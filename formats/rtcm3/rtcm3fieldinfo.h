// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3FIELDINFO_H
#define MESSAGEAPI_RTCM3_RTCM3FIELDINFO_H

#include "messageapirtcm3_export.h"

#include "fieldinfo.h"

class Rtcm3Message;

/**
 * A data field of an RTCM 3 message type: one generic class for every field, described by the
 * row of a layout table (Rtcm3Dictionary builds them) and read from the frame that an
 * Rtcm3Message holds, most significant bit first.
 *
 * A field has one value, or as many as an earlier field of the same message says (a count, or
 * the number of bits set in a mask), each of the same width; the cell mask of MSM has as many
 * bits as the satellite mask times the signal mask has set bits. A group field holds the
 * repeated records of the message as sub-messages of its own message type, stored record after
 * record or, as in MSM, field after field. Virtual fields (SatelliteId, SignalId) take no bits:
 * they give the place of a record in the masks of the enclosing message, counted from 1.
 *
 * Where a field sits in a message is worked out when the message is decoded; its values are
 * read from the frame only when asked for. Decoded messages are read-only: setValue() refuses.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3FieldInfo : public FieldInfo
{
public:
    /// How the bits of a value are read.
    enum Encoding : int {
        Unsigned,
        TwosComplement,
        SignMagnitude, ///< first bit the sign, read into a signed value
        Character, ///< 8-bit characters of a text
        Group, ///< records of a sub-message type
        MaskPosition, ///< virtual: position of the record's set bit in a mask
        CellSatellite, ///< virtual: satellite of an MSM cell
        CellSignal ///< virtual: signal of an MSM cell
    };

    /// Where the number of values comes from.
    enum Count : int {
        SingleValue,
        CountField, ///< the value of the source field
        MaskBits ///< the number of bits set in the source field
    };

    /// bits: width of one value (ignored for groups, whose records take the width of their
    /// fields). For Group, pass the sub-message type.
    Rtcm3FieldInfo(QString name, Encoding encoding, unsigned int bits,
                   MessageInfo const *group = nullptr);
    ~Rtcm3FieldInfo() override;

    bool isPresent(Message const *message) const override;
    unsigned int getNumberOfValues(Message const *message) const override;
    /// An invalid value for a message that does not hold the field or an index beyond it.
    FieldValue getValue(Message const *message, unsigned int index) const override;
    /// Always false: decoded messages are not written.
    bool setValue(Message *message, unsigned int index, FieldValue const &value) const override;
    FieldValue getDefaultValue() const override;

    /// How the bits of a value are read.
    Encoding getEncoding() const { return mEncoding; }
    /// Bits of one value; for a group, bits of one record.
    unsigned int getBitWidth() const { return mBits; }
    /// Whether the field holds records of a sub-message type.
    bool isGroup() const { return mEncoding == Group; }
    /// Virtual fields take no bits.
    bool takesBits() const { return mEncoding <= Group; }

    /// Where the number of values comes from.
    Count getCount() const { return mCount; }
    /// Index of the count source in the message type; -1 for a single value.
    int getCountSource() const { return mCountSource; }
    /// Takes the number of values from the field at sourceIndex of the message type.
    void setCount(Count count, int sourceIndex);
    /// The width is the product of the set bits of two earlier fields (the MSM cell mask).
    void setWidthFromMasks(int firstMaskIndex, int secondMaskIndex);
    /// Whether the width comes from masks, and the index of mask 0 or 1 (-1 when it does not).
    ///@{
    bool hasWidthFromMasks() const { return mWidthMasks[0] >= 0; }
    int getWidthMask(int which) const { return mWidthMasks[which]; }
    ///@}
    /// Records of a group lie field after field instead of record after record.
    ///@{
    void setColumnMajor(bool columnMajor) { mColumnMajor = columnMajor; }
    bool isColumnMajor() const { return mColumnMajor; }
    ///@}
    /// For virtual fields: the fields of the enclosing message type that give the value
    /// (a mask; or the satellite, signal and cell masks of MSM).
    ///@{
    void setMaskSources(int first, int second = -1, int third = -1);
    int getMaskSource(int which) const { return mMaskSources[which]; }
    ///@}
    /// The message type the dictionary laid this field out in, and its index there: a message
    /// of that type finds the field's values without a search. Other message types that the
    /// field is added to are found through the message type.
    ///@{
    void setHome(MessageInfo const *info, int index);
    MessageInfo const *getHomeInfo() const { return mHomeInfo; }
    int getHomeIndex() const { return mHomeIndex; }
    ///@}
    /// A field of the records of a group: offset is the bits of the record's fields before
    /// it. Its one value per record is read from the Rtcm3Record of its home message type.
    ///@{
    void setRecordOffset(unsigned int offset);
    bool isInRecord() const { return mRecordOffset >= 0; }
    unsigned int getRecordOffset() const { return unsigned(mRecordOffset); }
    ///@}

private:
    /// The value at position of the message's payload, width bits wide.
    FieldValue readValue(Rtcm3Message const *message, unsigned int position,
                         unsigned int width) const;

    Encoding mEncoding;
    unsigned int mBits;
    Count mCount = SingleValue;
    int mCountSource = -1;
    int mWidthMasks[2] = { -1, -1 };
    int mMaskSources[3] = { -1, -1, -1 };
    bool mColumnMajor = false;
    MessageInfo const *mHomeInfo = nullptr;
    int mHomeIndex = -1;
    int mRecordOffset = -1;
    unsigned char mValueBits; // the bit size of the values' type
};

#endif // MESSAGEAPI_RTCM3_RTCM3FIELDINFO_H
