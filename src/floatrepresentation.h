// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FLOATREPRESENTATION_H
#define MESSAGEAPI_FLOATREPRESENTATION_H

#include "messageapiframework_export.h"

#include <QString>

/**
 * The process-wide setting through which every floating-point number of the library is
 * formatted. While the override is on, its format letter replaces the caller's, and its
 * precisions replace the caller's unless they are -1. Meant to be set once at start-up; read
 * and written without locking.
 */
class MESSAGEAPIFRAMEWORK_EXPORT FloatRepresentation
{
public:
    FloatRepresentation() = delete;

    /// Stores the three settings and turns the override on.
    static void override(char format, int floatPrecision, int doublePrecision);
    /// Turns the override off; the stored settings are kept.
    static void useDefault();

    /// Formats one number: through the default locale of the first localized call when
    /// localized, else plainly ("." and no grouping).
    ///@{
    static QString getString(double value, char format, int precision, bool localized);
    static QString getString(float value, char format, int precision, bool localized);
    ///@}

    static char format; ///< 'f', 'e' or 'g'; initially 'f'
    static int floatPrecision; ///< for single precision; -1 keeps the caller's; initially 6
    static int doublePrecision; ///< for double precision; -1 keeps the caller's; initially 6
    static bool overrideDefault; ///< initially false
};

#endif // MESSAGEAPI_FLOATREPRESENTATION_H
