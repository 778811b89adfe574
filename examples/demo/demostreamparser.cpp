// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demostreamparser.h"

#include <cstring>

DemoStreamParser::DemoStreamParser(QObject *parent)
    : QObject(parent)
    , mBlockBuffer(maxBlockSize, '\0')
{ }

DemoStreamParser::~DemoStreamParser() = default;

quint16 DemoStreamParser::crc16(char const *data, int size)
{
    quint16 crc = 0xFFFF;
    for (int i = 0; i < size; ++i) {
        crc ^= quint16(quint8(data[i]) << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000) ? quint16((crc << 1) ^ 0x1021) : quint16(crc << 1);
    }
    return crc;
}

void DemoStreamParser::processBytes(QByteArray const &bytes)
{
    mPending.append(bytes);
    auto const *data = reinterpret_cast<uint8_t const *>(mPending.constData());
    const int size = mPending.size();

    int pos = 0;
    while (pos < size) {
        if (data[pos] != syncByte1 || (pos + 1 < size && data[pos + 1] != syncByte2)) {
            ++pos;
            ++mSkippedByteCount;
            continue;
        }
        if (pos + frameHeaderSize > size)
            break; // the rest of the header is still to come
        const int length = data[pos + 2] | (data[pos + 3] << 8);
        if (length > maxBlockSize) {
            // Not a frame after all: the sync bytes were part of something else.
            ++pos;
            ++mSkippedByteCount;
            continue;
        }
        const int frameSize = frameHeaderSize + length + crcSize;
        if (pos + frameSize > size)
            break;

        char const *lengthAndBlock = mPending.constData() + pos + 2;
        const quint16 crc = quint16(data[pos + frameSize - 2] | (data[pos + frameSize - 1] << 8));
        if (crc16(lengthAndBlock, 2 + length) != crc) {
            ++mCrcErrorCount;
            pos += frameSize;
            Q_EMIT crcErrorVexa();
            continue;
        }
        std::memcpy(mBlockBuffer.data(), lengthAndBlock + 2, size_t(length));
        const unsigned int number
            = length >= 2 ? unsigned(data[pos + 4] | (data[pos + 5] << 8)) : 0u;
        ++mBlockCount;
        pos += frameSize;
        Q_EMIT vexa(number, unsigned(length));
    }
    mPending.remove(0, pos);
}
