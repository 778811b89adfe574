// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMOSTREAMPARSER_H
#define MESSAGEAPI_DEMO_DEMOSTREAMPARSER_H

#include <QByteArray>
#include <QObject>

#include <cstdint>

/**
 * Finds the frames of demonstration blocks in a byte stream that arrives in pieces of any size.
 * Every frame carries one block (layout in DemoDictionary); all values are little-endian:
 *
 *   +------+------+-----------------+---- ... ----+-----------------+
 *   | 0xA5 | 0x5A | length (u16)    |    block    |  CRC (u16)      |
 *   +------+------+-----------------+---- ... ----+-----------------+
 *      sync bytes    bytes of block   length bytes  over length and block
 *
 * The CRC is CRC-16/CCITT-FALSE (polynomial 0x1021, initial value 0xFFFF, no reflection, no
 * final xor) over the two length bytes and the block.
 *
 * For each frame with a matching CRC the parser copies the block to the start of its block
 * buffer, whose address never changes, and emits vexa(number, length) with the block's number
 * (its first two bytes) and length. A frame whose CRC does not match is dropped whole and
 * crcErrorVexa() emitted: the length is trusted because a search for sync bytes inside a
 * damaged frame would find false ones among its payload. Bytes outside frames, and sync bytes
 * followed by a length above maxBlockSize, are skipped one by one until the next sync.
 *
 * Listeners must not feed the parser from inside its signals.
 */
class DemoStreamParser : public QObject
{
    Q_OBJECT

public:
    static constexpr uint8_t syncByte1 = 0xA5;
    static constexpr uint8_t syncByte2 = 0x5A;
    /// Sync bytes and length.
    static constexpr int frameHeaderSize = 4;
    static constexpr int crcSize = 2;
    static constexpr int maxBlockSize = 1024;

    explicit DemoStreamParser(QObject *parent = nullptr);
    ~DemoStreamParser() override;

    /// The start of the block buffer, where the latest complete block lies during vexa().
    char const *buffer() const { return mBlockBuffer.constData(); }

    static quint16 crc16(char const *data, int size);

    int getBlockCount() const { return mBlockCount; }
    int getCrcErrorCount() const { return mCrcErrorCount; }
    int getSkippedByteCount() const { return mSkippedByteCount; }

public Q_SLOTS:
    /// Takes the next piece of the stream and signals every frame completed by it.
    void processBytes(QByteArray const &bytes);

Q_SIGNALS:
    void vexa(unsigned int number, unsigned int length);
    void crcErrorVexa();

private:
    Q_DISABLE_COPY(DemoStreamParser)

    QByteArray mPending;
    QByteArray mBlockBuffer;
    int mBlockCount = 0;
    int mCrcErrorCount = 0;
    int mSkippedByteCount = 0;
};

#endif // MESSAGEAPI_DEMO_DEMOSTREAMPARSER_H
