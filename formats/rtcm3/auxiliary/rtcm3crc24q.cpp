// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3crc24q.h"

#include <array>

namespace {

// The CRC is kept in the upper 24 bits of a 32-bit register, so that eight bytes at a time can
// be folded in with eight table lookups ("slicing by eight") instead of one dependent lookup per
// byte.
constexpr uint32_t generator = 0x864CFB00;

using Tables = std::array<std::array<uint32_t, 256>, 8>;

constexpr Tables makeTables()
{
    Tables tables {};
    for (uint32_t byte = 0; byte < 256; ++byte) {
        uint32_t crc = byte << 24;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x80000000u) ? ((crc << 1) ^ generator) : (crc << 1);
        tables[0][byte] = crc;
    }
    // tables[k][b]: the register after b followed by k zero bytes.
    for (std::size_t k = 1; k < 8; ++k) {
        for (uint32_t byte = 0; byte < 256; ++byte) {
            const uint32_t previous = tables[k - 1][byte];
            tables[k][byte] = (previous << 8) ^ tables[0][previous >> 24];
        }
    }
    return tables;
}

constexpr Tables tables = makeTables();

inline uint32_t bigEndian32(uint8_t const *data)
{
    return uint32_t(data[0]) << 24 | uint32_t(data[1]) << 16 | uint32_t(data[2]) << 8 | data[3];
}

} // namespace

uint32_t rtcm3Crc24q(uint8_t const *data, std::size_t length)
{
    uint32_t crc = 0;
    for (; length >= 8; data += 8, length -= 8) {
        const uint32_t high = crc ^ bigEndian32(data);
        const uint32_t low = bigEndian32(data + 4);
        crc = tables[7][high >> 24] ^ tables[6][(high >> 16) & 0xFF] ^ tables[5][(high >> 8) & 0xFF]
            ^ tables[4][high & 0xFF] ^ tables[3][low >> 24] ^ tables[2][(low >> 16) & 0xFF]
            ^ tables[1][(low >> 8) & 0xFF] ^ tables[0][low & 0xFF];
    }
    for (; length > 0; ++data, --length)
        crc = (crc << 8) ^ tables[0][(crc >> 24) ^ *data];
    return crc >> 8;
}
