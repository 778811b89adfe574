// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DOCS_TINYDECODER_H
#define MESSAGEAPI_DOCS_TINYDECODER_H

#include <abstractdecoder.h>

#include <QSet>

class TinyDictionary;

/**
 * Decodes whole TINY blocks into TinyMessage objects and announces them in the three phases.
 * A block of a type the dictionary does not know is announced as an unknown message, a block
 * too short for its type as a "Decoder Error" event. The decoder's code of a message type is
 * its type byte.
 */
class TinyDecoder : public AbstractDecoder
{
    Q_OBJECT

public:
    /// The dictionary must outlive the decoder.
    TinyDecoder(TinyDictionary const *dictionary, QString name, QObject *parent = nullptr);

    using AbstractDecoder::decodeMessage;
    /// Returns the block's length, or -1 when the block was reported as an error.
    int32_t decodeMessage(const uint8_t *buffer, uint maxlength) override;
    FormatInfo const *getFormatInfo() const override;
    /// Blocks are decoded whole: there is no partial state.
    void reset() override { }
    void enableMessageCode(int32_t code) override { mDisabledCodes.remove(code); }
    void disableMessageCode(int32_t code) override { mDisabledCodes.insert(code); }
    bool isEnabledMessageCode(int32_t code) const override
    {
        return !mDisabledCodes.contains(code);
    }

private:
    TinyDictionary const *mDictionary;
    QSet<int32_t> mDisabledCodes;
};

#endif // MESSAGEAPI_DOCS_TINYDECODER_H
