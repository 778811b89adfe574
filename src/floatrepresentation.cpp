// SPDX-License-Identifier: LGPL-2.1-or-later
#include "floatrepresentation.h"

#include "auxiliary/tracing.h"

#include <QLocale>

MSGAPI_SOURCE_FILE("FLOATREPRESENTATION", "src/floatrepresentation")

char FloatRepresentation::format = 'f';
int FloatRepresentation::floatPrecision = 6;
int FloatRepresentation::doublePrecision = 6;
bool FloatRepresentation::overrideDefault = false;

void FloatRepresentation::override(char format, int floatPrecision, int doublePrecision)
{
    FloatRepresentation::format = format;
    FloatRepresentation::floatPrecision = floatPrecision;
    FloatRepresentation::doublePrecision = doublePrecision;
    overrideDefault = true;
}

void FloatRepresentation::useDefault()
{
    overrideDefault = false;
}

QString FloatRepresentation::getString(double value, char format, int precision, bool localized)
{
    if (overrideDefault) {
        format = FloatRepresentation::format;
        if (doublePrecision != -1)
            precision = doublePrecision;
    }
    if (localized) {
        // Takes the default locale of the first localized call and keeps it.
        static const QLocale locale;
        return locale.toString(value, format, precision);
    }
    return QString::number(value, format, precision);
}

QString FloatRepresentation::getString(float value, char format, int precision, bool localized)
{
    if (overrideDefault) {
        format = FloatRepresentation::format;
        if (floatPrecision != -1)
            precision = floatPrecision;
    }
    if (localized) {
        // A locale of its own, separate from the double overload's.
        static const QLocale locale;
        return locale.toString(double(value), format, precision);
    }
    return QString::number(double(value), format, precision);
}
