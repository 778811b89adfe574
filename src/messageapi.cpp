// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageapi.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("MESSAGEAPI", "src/messageapi")

bool MessageApi::sConfidentialInformationDisplayEnabled = false;

void MessageApi::enableConfidentialInformationDisplay()
{
    sConfidentialInformationDisplayEnabled = true;
}

bool MessageApi::confidentialInformationDisplayEnabled()
{
    return sConfidentialInformationDisplayEnabled;
}
