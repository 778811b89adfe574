// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3RECORD_H
#define MESSAGEAPI_RTCM3_RTCM3RECORD_H

#include "messageapirtcm3_export.h"

#include "message.h"
#include "rtcm3message.h"

#include <cstddef>
#include <typeinfo>

/**
 * One record of a group field of an Rtcm3Message: a satellite or a cell of MSM, an announced
 * message of 1013, an observation of a legacy message. Its message type is the group's record
 * type; its parent is the message, whose frame it reads and with which it dies.
 *
 * The record knows where it lies in its group, so that a record field finds its value from its
 * offset within a record alone, and it keeps the places in the message's masks that its
 * virtual fields (satellite, signal) give.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Record final : public Message
{
public:
    /// The message as an RTCM 3 record; null when it is another kind of message.
    static Rtcm3Record const *cast(Message const *message)
    {
        return message && typeid(*message) == typeid(Rtcm3Record)
            ? static_cast<Rtcm3Record const *>(message)
            : nullptr;
    }

    /// The message that holds the record.
    Rtcm3Message const *getMessage() const
    {
        return static_cast<Rtcm3Message const *>(getParentMessage());
    }
    /// Index of the record in its group, from 0.
    unsigned int getIndex() const { return mIndex; }
    /// The raw representation is the frame of the message.
    unsigned int getRawSize() const override { return getMessage()->getRawSize(); }

    /// Bit position in the payload of the record's field that follows offset bits of the
    /// record's other fields and is width bits wide.
    unsigned int getBitPosition(unsigned int offset, unsigned int width) const
    {
        return mColumnMajor ? mGroupOffset + unsigned(mGroupCount) * offset + mIndex * width
                            : mGroupOffset + unsigned(mIndex) * mRecordWidth + offset;
    }
    /// The position, counted from 1, of the record's set bit in a mask of its message: the
    /// satellite (which 0) or the signal (which 1); 0 when the masks hold none.
    unsigned int getMaskPosition(int which) const { return mMaskPositions[which]; }

    /// Records are built in the block of their message, which frees the memory.
    ///@{
    static void *operator new(std::size_t, void *place) { return place; }
    static void operator delete(void *) { }
    static void operator delete(void *, void *) { }
    ///@}

protected:
    uint8_t const *getRawRepresentation() const override;

private:
    friend class Rtcm3Message;

    /// A record of the group at groupOffset (count records of recordWidth bits).
    Rtcm3Record(MessageInfo const *info, Rtcm3Message *message, unsigned int groupOffset,
                unsigned int count, unsigned int recordWidth, bool columnMajor, unsigned int index)
        : Message(info)
        , mGroupOffset(quint16(groupOffset))
        , mGroupCount(quint16(count))
        , mRecordWidth(quint16(recordWidth))
        , mIndex(quint16(index))
        , mColumnMajor(columnMajor)
    {
        setParentMessage(message);
    }

    quint16 mGroupOffset;
    quint16 mGroupCount;
    quint16 mRecordWidth;
    quint16 mIndex;
    bool mColumnMajor;
    quint8 mMaskPositions[2] = { 0, 0 };
};

#endif // MESSAGEAPI_RTCM3_RTCM3RECORD_H
