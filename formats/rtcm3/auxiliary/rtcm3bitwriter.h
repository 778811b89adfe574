// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3BITWRITER_H
#define MESSAGEAPI_RTCM3_RTCM3BITWRITER_H

#include <QByteArray>

#include <cstdint>

/**
 * Appends bit fields, most significant bit first, to a block of bytes: the counterpart of
 * Rtcm3BitReader. The last byte is padded with zero bits.
 *
 * The write functions take the value as it is; whether it fits its width is for the caller to
 * check first with the fits functions, which know the three encodings.
 */
class Rtcm3BitWriter
{
public:
    /// Bits written so far.
    std::size_t getSizeBits() const { return mSizeBits; }
    /// The bytes written, the last one padded with zero bits.
    QByteArray const &getBytes() const { return mBytes; }

    /// The low width bits (0 to 64) of value.
    void writeUnsigned(uint64_t value, unsigned int width);
    /// Two's complement in width bits (1 to 64).
    void writeSigned(int64_t value, unsigned int width) { writeUnsigned(uint64_t(value), width); }
    /// The sign in the first bit, the magnitude in the other width - 1 (width 2 to 64).
    void writeSignMagnitude(int64_t value, unsigned int width);

    static bool fitsUnsigned(uint64_t value, unsigned int width);
    static bool fitsSigned(int64_t value, unsigned int width);
    /// The magnitude must fit width - 1 bits, so the smallest two's-complement value never does.
    static bool fitsSignMagnitude(int64_t value, unsigned int width);

private:
    QByteArray mBytes;
    std::size_t mSizeBits = 0;
};

#endif // MESSAGEAPI_RTCM3_RTCM3BITWRITER_H
