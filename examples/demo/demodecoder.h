// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMODECODER_H
#define MESSAGEAPI_DEMO_DEMODECODER_H

#include "abstractdecoder.h"

#include <QSet>

class DemoDictionary;

/**
 * Decodes demonstration blocks (layout in DemoDictionary) into DemoMessage objects.
 *
 * The block number is looked up among the format's discriminants. A known block becomes a
 * message that is announced early, then normal, then late, and released afterwards (a listener
 * that keeps it takes a reference). A block whose number matches no message type is announced
 * with newUnknownMessage(format, "Block <number>") and reported as an "Unknown Message" event;
 * a block too short for its header or for one of its fields is reported as a "Decoder Error"
 * event and not announced.
 *
 * The decoder's code for a message type is its block number. Every type is enabled at first; a
 * disabled type is checked but not announced. The dictionary must outlive the decoder.
 */
class DemoDecoder : public AbstractDecoder
{
    Q_OBJECT

public:
    DemoDecoder(DemoDictionary const *dictionary, QString name, QObject *parent = nullptr);
    ~DemoDecoder() override;

    using AbstractDecoder::decodeMessage;
    /// Returns the number of bytes decoded (the whole block), or -1 for a malformed block.
    int32_t decodeMessage(const uint8_t *buffer, uint maxlength) override;
    FormatInfo const *getFormatInfo() const override;
    /// Blocks are decoded whole, so there is no partial state to drop.
    void reset() override { }
    void enableMessageCode(int32_t code) override { mDisabledCodes.remove(code); }
    void disableMessageCode(int32_t code) override { mDisabledCodes.insert(code); }
    bool isEnabledMessageCode(int32_t code) const override
    {
        return !mDisabledCodes.contains(code);
    }

private:
    Q_DISABLE_COPY(DemoDecoder)

    void reportDecoderError(QString const &text);

    DemoDictionary const *mDictionary;
    QSet<int32_t> mDisabledCodes;
};

#endif // MESSAGEAPI_DEMO_DEMODECODER_H
