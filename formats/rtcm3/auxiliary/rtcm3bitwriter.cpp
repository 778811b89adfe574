// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3bitwriter.h"

void Rtcm3BitWriter::writeUnsigned(uint64_t value, unsigned int width)
{
    for (unsigned int bit = width; bit > 0; --bit) {
        if (mSizeBits % 8 == 0)
            mBytes.append('\0');
        if ((value >> (bit - 1)) & 1) {
            const int at = int(mSizeBits / 8);
            mBytes[at] = char(uint8_t(mBytes.at(at)) | (0x80u >> (mSizeBits % 8)));
        }
        ++mSizeBits;
    }
}

void Rtcm3BitWriter::writeSignMagnitude(int64_t value, unsigned int width)
{
    const uint64_t magnitude = value < 0 ? 0 - uint64_t(value) : uint64_t(value);
    writeUnsigned(value < 0 ? 1 : 0, 1);
    writeUnsigned(magnitude, width - 1);
}

bool Rtcm3BitWriter::fitsUnsigned(uint64_t value, unsigned int width)
{
    return width >= 64 || value >> width == 0;
}

bool Rtcm3BitWriter::fitsSigned(int64_t value, unsigned int width)
{
    if (width == 0)
        return false;
    if (width >= 64)
        return true;
    const int64_t limit = int64_t(1) << (width - 1);
    return value >= -limit && value < limit;
}

bool Rtcm3BitWriter::fitsSignMagnitude(int64_t value, unsigned int width)
{
    if (width == 0 || value == INT64_MIN)
        return false;
    return fitsUnsigned(uint64_t(value < 0 ? -value : value), width - 1);
}
