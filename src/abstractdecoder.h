// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_ABSTRACTDECODER_H
#define MESSAGEAPI_ABSTRACTDECODER_H

#include "messageapiframework_export.h"

#include "messagesource.h"

#include <QByteArray>
#include <QHash>

#include <cstdint>

class MessageInfo;

/**
 * The base of every decoder: a MessageSource that turns blocks of bytes into messages and
 * announces them through its signals.
 *
 * Each decoder numbers its message types in its own way; it enters those codes with
 * setMessageEnum(), and enableMessage(), disableMessage() and isEnabledMessage() translate a
 * message type into its code for the virtual operations. A type without a code (or with a
 * negative one) is never enabled or disabled and reads as not enabled.
 *
 * A concrete decoder that overrides decodeMessage(const uint8_t*, uint) hides the QByteArray
 * overload; bring it back with `using AbstractDecoder::decodeMessage;`.
 */
class MESSAGEAPIFRAMEWORK_EXPORT AbstractDecoder : public MessageSource
{
    Q_OBJECT

public:
    /// name identifies the decoder in event texts.
    AbstractDecoder(QString name, QObject *parent);
    ~AbstractDecoder() override;

    // The virtual operations are declared first and in this order on purpose: concrete decoders
    // built against the library rely on this table layout.
public Q_SLOTS:
    /// Decodes the bytes at buffer (at most maxlength of them) and announces what they hold.
    /// The meaning of the result is the concrete decoder's.
    virtual int32_t decodeMessage(const uint8_t *buffer, uint maxlength) = 0;

public:
    /// The format whose blocks this decoder decodes.
    virtual FormatInfo const *getFormatInfo() const = 0;
    /// Drops any partly decoded state, as after a break in the stream.
    virtual void reset() = 0;
    /// Switches decoding of the message type with the decoder's code on or off, or tells
    /// whether it is on.
    ///@{
    virtual void enableMessageCode(int32_t code) = 0;
    virtual void disableMessageCode(int32_t code) = 0;
    virtual bool isEnabledMessageCode(int32_t code) const = 0;
    ///@}

    /// Enters or replaces the decoder's code for the message type.
    void setMessageEnum(MessageInfo const *info, int code);
    /// The code entered for the message type, or -1 when there is none.
    int getMessageEnum(MessageInfo const *info) const;

    /// The operations on codes for a message type, through its code (see setMessageEnum()).
    ///@{
    void enableMessage(MessageInfo const *info);
    void disableMessage(MessageInfo const *info);
    bool isEnabledMessage(MessageInfo const *info) const;
    ///@}

public Q_SLOTS:
    /// Decodes the whole array through decodeMessage(const uint8_t*, uint) and returns its result.
    int32_t decodeMessage(QByteArray buffer);

private:
    Q_DISABLE_COPY(AbstractDecoder)

    QHash<MessageInfo const *, int32_t> mMessageCodes;
};

#endif // MESSAGEAPI_ABSTRACTDECODER_H
