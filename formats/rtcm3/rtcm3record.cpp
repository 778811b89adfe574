// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3record.h"

uint8_t const *Rtcm3Record::getRawRepresentation() const
{
    return getRawRepresentationOf(getMessage());
}
