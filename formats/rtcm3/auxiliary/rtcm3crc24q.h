// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3CRC24Q_H
#define MESSAGEAPI_RTCM3_RTCM3CRC24Q_H

#include <cstddef>
#include <cstdint>

/**
 * CRC-24Q (generator 0x1864CFB, initial value 0, no reflection, no final XOR), the check value
 * that closes every RTCM 3 frame. Computed eight bytes per step with eight 256-entry tables.
 */
uint32_t rtcm3Crc24q(uint8_t const *data, std::size_t length);

#endif // MESSAGEAPI_RTCM3_RTCM3CRC24Q_H
