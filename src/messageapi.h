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

    /// Allows confidential values to be shown, for the rest of the process.
    static void enableConfidentialInformationDisplay();
    /// Whether confidential values may be shown.
    static bool confidentialInformationDisplayEnabled();

    /// The switch itself (false at first).
    static bool sConfidentialInformationDisplayEnabled;
};

#endif // MESSAGEAPI_MESSAGEAPI_H
