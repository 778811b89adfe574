// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3DECODER_H
#define MESSAGEAPI_RTCM3_RTCM3DECODER_H

#include "messageapirtcm3_export.h"

#include "abstractdecoder.h"

#include <QSet>
#include <QVector>

class Rtcm3Dictionary;

/**
 * Decodes RTCM 3 frames, as Rtcm3Framer finds them, into Rtcm3Message objects.
 *
 * decodeMessage() takes one whole frame (preamble, length, payload, CRC; the CRC is the
 * framer's business and not checked again). The message number (DF002) is looked up among the
 * format's discriminants. A known message becomes a message with its own copy of the frame
 * that is announced early, then normal, then late, while the decoder holds a reference (a
 * listener that keeps it takes one of its own). A frame of any other number is announced with
 * newUnknownMessage(format, number as text), so that statistics count it. A frame too short
 * for its length, its message number or its layout, or whose counts and masks overrun it, is
 * reported as a "Decoder Error" event that names the message number and the problem; nothing
 * reads past the frame.
 *
 * The decoder's code for a message type is its number. Every type is enabled at first; a
 * disabled type is not decoded. The dictionary must outlive the decoder.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Decoder : public AbstractDecoder
{
    Q_OBJECT

public:
    /// A decoder of the dictionary's format; name identifies it in event texts.
    Rtcm3Decoder(Rtcm3Dictionary const *dictionary, QString name, QObject *parent = nullptr);
    ~Rtcm3Decoder() override;

    using AbstractDecoder::decodeMessage;
    /// Returns the frame's length when it was decoded or skipped (unknown or disabled), -1
    /// when it was reported as a decoder error.
    int32_t decodeMessage(const uint8_t *buffer, uint maxlength) override;
    FormatInfo const *getFormatInfo() const override;
    /// Frames are decoded whole, so there is no partial state to drop.
    void reset() override { }
    /// The code is the message number.
    ///@{
    void enableMessageCode(int32_t code) override { mDisabledCodes.remove(code); }
    void disableMessageCode(int32_t code) override { mDisabledCodes.insert(code); }
    bool isEnabledMessageCode(int32_t code) const override
    {
        return !mDisabledCodes.contains(code);
    }
    ///@}

private:
    Q_DISABLE_COPY(Rtcm3Decoder)

    void reportDecoderError(QString const &text);

    Rtcm3Dictionary const *mDictionary;
    /// The dictionary's message types by number, so that a frame needs no discriminant search;
    /// types added to the format later are found through the format.
    QVector<MessageInfo const *> mByNumber;
    QSet<int32_t> mDisabledCodes;
};

#endif // MESSAGEAPI_RTCM3_RTCM3DECODER_H
