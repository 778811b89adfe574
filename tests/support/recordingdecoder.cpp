// SPDX-License-Identifier: LGPL-2.1-or-later
#include "recordingdecoder.h"

int32_t RecordingDecoder::decodeMessage(const uint8_t *buffer, uint maxlength)
{
    decodeCalls.append(
        { buffer, maxlength, QByteArray(reinterpret_cast<char const *>(buffer), int(maxlength)) });
    return int32_t(maxlength);
}

bool RecordingDecoder::isEnabledMessageCode(int32_t code) const
{
    queriedCodes.append(code);
    return enabledCodes.contains(code);
}
