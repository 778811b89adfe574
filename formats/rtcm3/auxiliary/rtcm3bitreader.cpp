// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3bitreader.h"

bool Rtcm3BitReader::readByBytes(std::size_t position, unsigned int width, uint64_t *value) const
{
    uint64_t result = 0;
    std::size_t bit = position;
    unsigned int left = width;
    // Whole bytes where the field is byte-aligned, single bits at its ragged ends.
    while (left > 0) {
        const unsigned int inByte = 8 - unsigned(bit % 8);
        const uint8_t byte = mData[bit / 8];
        if (inByte <= left) {
            result = (result << inByte) | (byte & ((1u << inByte) - 1));
            bit += inByte;
            left -= inByte;
        } else {
            result = (result << left) | ((byte >> (inByte - left)) & ((1u << left) - 1));
            bit += left;
            left = 0;
        }
    }
    *value = result;
    return true;
}
