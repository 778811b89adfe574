// SPDX-License-Identifier: LGPL-2.1-or-later
#include "recordingdecoder.h"

bool RecordingDecoder::isEnabledMessageCode(int32_t code) const
{
    queriedCodes.append(code);
    return enabledCodes.contains(code);
}
