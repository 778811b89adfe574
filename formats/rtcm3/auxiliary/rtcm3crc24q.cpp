// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3crc24q.h"

#include <array>

namespace {

constexpr uint32_t generator = 0x1864CFB;

constexpr std::array<uint32_t, 256> makeTable()
{
    std::array<uint32_t, 256> table {};
    for (uint32_t byte = 0; byte < 256; ++byte) {
        uint32_t crc = byte << 16;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x800000) ? ((crc << 1) ^ generator) : (crc << 1);
        table[byte] = crc & 0xFFFFFF;
    }
    return table;
}

constexpr std::array<uint32_t, 256> table = makeTable();

} // namespace

uint32_t rtcm3Crc24q(uint8_t const *data, std::size_t length)
{
    uint32_t crc = 0;
    for (std::size_t i = 0; i < length; ++i)
        crc = ((crc << 8) & 0xFFFFFF) ^ table[((crc >> 16) ^ data[i]) & 0xFF];
    return crc;
}
