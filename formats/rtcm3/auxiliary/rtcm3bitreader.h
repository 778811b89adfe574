// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3BITREADER_H
#define MESSAGEAPI_RTCM3_RTCM3BITREADER_H

#include <QtEndian>

#include <cstddef>
#include <cstdint>
#include <cstring>

/**
 * Reads bit fields, most significant bit first, out of a block of bytes whose size it knows.
 * Positions count bits from the first bit of the block. Every read is checked against the
 * block: a field that does not lie wholly inside it is refused (the read functions return
 * false and leave the result untouched), so a corrupted count or mask cannot lead to a read
 * past the end.
 *
 *   byte      0                 1
 *   bit   0 1 2 3 4 5 6 7 | 8 9 10 ...      a field of width w at position p takes bits
 *         MSB         LSB                   p .. p+w-1, the first of them its most significant
 */
class Rtcm3BitReader
{
public:
    /// slackBytes: bytes after the block that may be loaded (their bits are never used), so
    /// that fields near its end take the fast load too.
    Rtcm3BitReader(uint8_t const *data, std::size_t sizeBytes, std::size_t slackBytes = 0)
        : mData(data)
        , mSizeBits(sizeBytes * 8)
        , mLoadableBytes(sizeBytes + slackBytes)
    { }

    std::size_t getSizeBits() const { return mSizeBits; }
    /// Whether width bits from position lie inside the block (width 0 always does).
    bool contains(std::size_t position, std::size_t width) const
    {
        return position <= mSizeBits && width <= mSizeBits - position;
    }

    /// An unsigned field of 0 to 64 bits.
    bool readUnsigned(std::size_t position, unsigned int width, uint64_t *value) const
    {
        if (width > 64 || !contains(position, width))
            return false;
        if (width == 0) {
            *value = 0;
            return true;
        }
        // One big-endian load of the eight bytes from the field's first; near the end of the
        // block only the bytes that it holds (or may load) are loaded, the rest taken as zero.
        const std::size_t byte = position / 8;
        const unsigned int skip = unsigned(position % 8);
        quint64 word = 0; // Qt 5 swaps quint64, not every 64-bit type
        if (skip + width > 64) {
            // Nine bytes, all inside the block: the ninth gives the last bits (skip >= 1).
            std::memcpy(&word, mData + byte, 8);
            const uint64_t bits
                = qFromBigEndian(word) << skip | uint64_t(mData[byte + 8]) >> (8 - skip);
            *value = bits >> (64 - width);
            return true;
        }
        if (byte + 8 <= mLoadableBytes)
            std::memcpy(&word, mData + byte, 8);
        else
            std::memcpy(&word, mData + byte, mSizeBits / 8 - byte);
        *value = (qFromBigEndian(word) << skip) >> (64 - width);
        return true;
    }
    /// A two's-complement field of 1 to 64 bits, sign-extended.
    bool readSigned(std::size_t position, unsigned int width, int64_t *value) const
    {
        uint64_t raw = 0;
        if (width == 0 || !readUnsigned(position, width, &raw))
            return false;
        const unsigned int unused = 64 - width;
        *value = static_cast<int64_t>(raw << unused) >> unused;
        return true;
    }
    /// A sign-magnitude field of 1 to 64 bits: the first bit is the sign, the others the
    /// magnitude. A negative zero reads as 0.
    bool readSignMagnitude(std::size_t position, unsigned int width, int64_t *value) const
    {
        uint64_t raw = 0;
        if (width == 0 || !readUnsigned(position, width, &raw))
            return false;
        const uint64_t magnitude
            = width == 64 ? raw & ~(uint64_t(1) << 63) : raw & ((uint64_t(1) << (width - 1)) - 1);
        const bool negative = (raw >> (width - 1)) & 1;
        *value = negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
        return true;
    }

private:
    uint8_t const *mData;
    std::size_t mSizeBits;
    std::size_t mLoadableBytes;
};

#endif // MESSAGEAPI_RTCM3_RTCM3BITREADER_H
