// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3MESSAGE_H
#define MESSAGEAPI_RTCM3_RTCM3MESSAGE_H

#include "messageapirtcm3_export.h"

#include "message.h"
#include "rtcm3fieldinfo.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QVector>

#include <cstddef>
#include <typeinfo>

class Rtcm3Record;

/**
 * A decoded RTCM 3 message: its own copy of the whole frame (preamble, length, payload, CRC;
 * the raw representation) and, per field of its message type, where the field's values lie in
 * the payload. Values are read from the frame by Rtcm3FieldInfo when asked for.
 *
 * The message, the places of its fields and the frame lie in one block of memory, with
 * padding after the frame. The records
 * of its group fields (Rtcm3Record) are made together on first request, in the order of the
 * message type's group fields and then of the records; each has this message as parent and
 * lives as long as it: keep a reference to the message, not to a record.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Message final : public Message
{
    Q_DECLARE_TR_FUNCTIONS(Rtcm3Message)

public:
    /// Where the values of a field lie in the payload.
    struct Place
    {
        unsigned int bitOffset; ///< of the first value
        unsigned int count; ///< number of values (records for a group)
        unsigned int width; ///< bits of one value or record
    };

    /// The message as an RTCM 3 message; null when it is another kind of message.
    static Rtcm3Message const *cast(Message const *message)
    {
        return message && typeid(*message) == typeid(Rtcm3Message)
            ? static_cast<Rtcm3Message const *>(message)
            : nullptr;
    }

    /**
     * Lays the message type out over the frame of length bytes, which it copies. Returns null
     * when the payload is too short for the layout or a count or mask asks for more bits than
     * the payload holds; problem then says what did not fit. The caller owns the new message
     * (reference count 0).
     */
    static Rtcm3Message *decode(MessageInfo const *info, uint8_t const *frame, unsigned int length,
                                QString *problem);
    ~Rtcm3Message() override;

    /// The records of the group fields.
    ///@{
    QVector<Message const *> getSubMessages() const override;
    QVector<Message *> getSubMessages() override;
    ///@}
    unsigned int getRawSize() const override { return mFrameSize; }

    /// A copy of the whole frame.
    QByteArray getFrame() const;
    /// The payload: the frame without its 3 header and 3 CRC bytes.
    uint8_t const *getPayload() const { return frameBytes() + headerBytes; }
    /// Bytes of the payload.
    unsigned int getPayloadSize() const { return mFrameSize - headerBytes - crcBytes; }
    /// Bytes after the payload that may be read: the CRC and padding, so that a field at the
    /// end of the payload is loaded in eight bytes at once like any other.
    static constexpr unsigned int loadableBytesAfterPayload = 3 + 8;

    /// Where the field lies in this message; false when the message type has no such field.
    bool locate(Rtcm3FieldInfo const *field, Place *place) const
    {
        const int index
            = field->getHomeInfo() == getInfo() ? field->getHomeIndex() : indexOf(field);
        if (index < 0 || index >= mSlotCount)
            return false;
        Slot const &slot = slotTable()[index];
        place->bitOffset = slot.bitOffset;
        // A field whose width comes from masks has one value; its slot keeps the width.
        const bool widthFromMasks = field->hasWidthFromMasks();
        place->count = widthFromMasks ? 1u : slot.size;
        place->width = widthFromMasks ? slot.size : field->getBitWidth();
        return true;
    }
    /// Record index of a group field; null when there is no such record.
    Rtcm3Record const *getRecord(Rtcm3FieldInfo const *field, unsigned int index) const;
    /// Record index of the group that lies at group (as locate() gives it).
    Rtcm3Record const *getRecord(Place const &group, unsigned int index) const;

    /// The message, its slots and its frame are allocated as one block.
    ///@{
    static void *operator new(std::size_t size, std::size_t trailing);
    static void operator delete(void *memory);
    static void operator delete(void *memory, std::size_t trailing);
    ///@}

protected:
    uint8_t const *getRawRepresentation() const override { return frameBytes(); }

private:
    static constexpr unsigned int headerBytes = 3;
    static constexpr unsigned int crcBytes = 3;

    /// Where the values of one field lie: 4 bytes, so that the block stays small.
    struct Slot
    {
        quint16 bitOffset; ///< in the payload (at most 8184 bits)
        quint16 size; ///< the number of values, or the width of a field with masks for width
    };

    Rtcm3Message(MessageInfo const *info, unsigned int slotCount, unsigned int frameSize);
    Slot *slotTable() { return reinterpret_cast<Slot *>(this + 1); }
    Slot const *slotTable() const { return reinterpret_cast<Slot const *>(this + 1); }
    uint8_t const *frameBytes() const
    {
        return reinterpret_cast<uint8_t const *>(slotTable() + mSlotCount);
    }
    /// Index of a field that the dictionary laid out in another message type; -1 when the
    /// field does not occur in this one.
    int indexOf(Rtcm3FieldInfo const *field) const;
    void makeRecords() const;

    mutable Rtcm3Record *mRecords = nullptr;
    mutable quint16 mRecordCount = 0;
    mutable bool mHasRecords = false;
    quint16 mSlotCount;
    quint16 mFrameSize;
};

#endif // MESSAGEAPI_RTCM3_RTCM3MESSAGE_H
