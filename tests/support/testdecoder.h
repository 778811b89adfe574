// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_TESTDECODER_H
#define MESSAGEAPI_TESTS_TESTDECODER_H

#include "abstractdecoder.h"

#include <QByteArray>
#include <QSet>

#include <cstdint>

/**
 * A small concrete decoder for tests and examples. It reads blocks of this layout:
 *
 *   byte     0        1        2        3        4 ... 4+n-1
 *          +--------+--------+--------+--------+-------------+
 *          |  sync  | message number  | length |   payload   |
 *          |  0x24  | u16, low first  |   n    |   n bytes   |
 *          +--------+--------+--------+--------+-------------+
 *
 * The message number is looked up among the format's discriminants as an unsigned value of
 * numberBits bits, the size of the format's message-number field
 * (FormatInfo::getMessageInfosForDiscriminant; the first match wins). A known block
 * becomes a TestMessage holding the whole block, announced early, then normal, then late, and
 * released afterwards (listeners that keep it take a reference). A block whose number matches
 * no message type is announced with newUnknownMessage(format, number as decimal text). A
 * malformed block (short, without the sync byte, or with a payload beyond its end) is reported
 * as a "Decoder Error" event of the format.
 *
 * Codes: each message type of the format is numbered by its position in
 * FormatInfo::getMessageInfos(). All are enabled at first; a disabled type is decoded but not
 * announced. The format must outlive the decoder.
 */
class TestDecoder : public AbstractDecoder
{
    Q_OBJECT

public:
    static constexpr uint8_t syncByte = 0x24;
    static constexpr int headerSize = 4;

    explicit TestDecoder(FormatInfo const *format, QString name = QStringLiteral("Test decoder"),
                         unsigned char numberBits = 16, QObject *parent = nullptr);

    /// A well-formed block with that message number and payload (at most 255 bytes).
    static QByteArray makeBlock(quint16 number, QByteArray const &payload = QByteArray());

    using AbstractDecoder::decodeMessage;
    /// Decodes the block at the buffer. Returns the block's size (header and payload), or -1
    /// when the bytes do not hold a well-formed block.
    int32_t decodeMessage(const uint8_t *buffer, uint maxlength) override;
    FormatInfo const *getFormatInfo() const override { return mFormat; }
    /// Blocks are decoded whole, so there is no partial state to drop.
    void reset() override { }
    void enableMessageCode(int32_t code) override { mDisabledCodes.remove(code); }
    void disableMessageCode(int32_t code) override { mDisabledCodes.insert(code); }
    bool isEnabledMessageCode(int32_t code) const override;

private:
    FormatInfo const *mFormat;
    unsigned char mNumberBits;
    QSet<int32_t> mDisabledCodes;
};

#endif // MESSAGEAPI_TESTS_TESTDECODER_H
