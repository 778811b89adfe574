// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3MESSAGE_H
#define MESSAGEAPI_RTCM3_RTCM3MESSAGE_H

#include "messageapirtcm3_export.h"

#include "message.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QVector>

#include <typeinfo>

class Rtcm3FieldInfo;

/**
 * A decoded RTCM 3 message: it keeps its own copy of the whole frame (preamble, length,
 * payload, CRC; the raw representation) and, per field of its message type, where the field's
 * values lie in the payload. Values are read from the frame by Rtcm3FieldInfo when asked for.
 *
 * The records of its group fields are sub-messages, made on first request, in the order of the
 * message type's group fields and then of the records; each has this message as parent and
 * shares its frame. The message owns them.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Message final : public Message
{
    Q_DECLARE_TR_FUNCTIONS(Rtcm3Message)

public:
    /// Where the values of one field lie.
    struct Slot
    {
        quint16 bitOffset = 0; ///< in the payload (at most 8184 bits)
        quint16 count = 0; ///< number of values (records for a group)
        quint16 width = 0; ///< bits of one value or record
        union {
            quint16 value = 0; ///< a virtual field's value
            quint16 firstSubMessage; ///< a group's first record among the sub-messages
        };
    };

    /// The message as an RTCM 3 message; null when it is another kind of message.
    static Rtcm3Message const *cast(Message const *message)
    {
        return message && typeid(*message) == typeid(Rtcm3Message)
            ? static_cast<Rtcm3Message const *>(message)
            : nullptr;
    }

    /**
     * Lays the message type out over the frame. Returns null when the payload is too short for
     * the layout or a count or mask asks for more bits than the payload holds; problem then
     * says what did not fit. The caller owns the new message (reference count 0).
     */
    static Rtcm3Message *decode(MessageInfo const *info, QByteArray const &frame, QString *problem);
    ~Rtcm3Message() override;

    /// The records of the group fields.
    ///@{
    QVector<Message const *> getSubMessages() const override;
    QVector<Message *> getSubMessages() override;
    ///@}
    unsigned int getRawSize() const override { return unsigned(mFrame.size()); }

    /// The whole frame.
    QByteArray const &getFrame() const { return mFrame; }
    /// The payload: the frame without its 3 header and 3 CRC bytes.
    uint8_t const *getPayload() const;
    /// Bytes of the payload.
    unsigned int getPayloadSize() const { return unsigned(mFrame.size() - 6); }
    /// Where the field lies in this message; null when the message type has no such field.
    Slot const *getSlot(Rtcm3FieldInfo const *field) const;
    /// Record index of a group field.
    Message const *getRecord(Rtcm3FieldInfo const *field, unsigned int index) const;

protected:
    uint8_t const *getRawRepresentation() const override;

private:
    Rtcm3Message(MessageInfo const *info, QByteArray frame, QVector<Slot> slots);
    void makeSubMessages() const;
    quint64 readUnsigned(Slot const &slot) const;

    QByteArray mFrame;
    QVector<Slot> mSlots;
    mutable QVector<Rtcm3Message *> mSubMessages;
    mutable bool mHasSubMessages = false;
};

#endif // MESSAGEAPI_RTCM3_RTCM3MESSAGE_H
