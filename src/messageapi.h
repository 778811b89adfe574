// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGEAPI_H
#define MESSAGEAPI_MESSAGEAPI_H

#include "messageapiframework_export.h"

/**
 * Process-wide display switch for confidential field values. The library never reads it;
 * applications consult it before they show a field marked confidential. Once enabled it
 * stays enabled for the life of the process.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageApi
{
public:
    MessageApi() = delete;

    static void enableConfidentialInformationDisplay();
    static bool confidentialInformationDisplayEnabled();

    static bool sConfidentialInformationDisplayEnabled;
};

#endif // MESSAGEAPI_MESSAGEAPI_H
