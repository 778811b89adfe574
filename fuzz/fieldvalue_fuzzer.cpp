// SPDX-License-Identifier: LGPL-2.1-or-later
// Parses text of any code units as a value of any field type, renders what it gives in every
// mode, and checks that the plain rendering of an integer, character or byte parses back to
// the same value.
//
// Input: kind, bit size, text encoding, rendering precision, then the text.
#include "auxiliary/fuzzenvironment.h"
#include "auxiliary/fuzzinput.h"

#include "fieldtype.h"
#include "fieldvalue.h"

#include <QLocale>

#include <cstdio>
#include <cstdlib>

namespace {

/// The plain text that fromString() reads back as value; null when it reads none.
QString parsableText(FieldValue const &value)
{
    switch (value.getType().getBasisType()) {
    case FieldType::UnsignedInteger:
    case FieldType::SignedInteger:
        return value.toString(false, -1, FieldValue::Decimal, false);
    case FieldType::Char:
    case FieldType::NChar:
        return value.toString(false, -1, FieldValue::Natural, false);
    case FieldType::Byte:
        return QLatin1String("0x") + value.toString(false, -1, FieldValue::Hexadecimal, false);
    default:
        return {};
    }
}

void checkRoundTrip(FieldValue const &value)
{
    const QString text = parsableText(value);
    if (text.isNull())
        return;
    const FieldValue back = FieldValue::fromString(value.getType(), text);
    if (!(back == value)) {
        std::fprintf(stderr, "%s (%s) parses back as %s\n", qPrintable(text),
                     qPrintable(value.getType().toShortString()), qPrintable(back.toString(true)));
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzEnvironment::setUp();
    // A locale whose grouping and decimal separators differ from the plain ones, taken by the
    // renderers at their first use.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size)
{
    FuzzInput input(data, size);
    const uint8_t kind = input.takeByte();
    const uint8_t bits = input.takeByte();
    const uint8_t encoding = input.takeByte();
    const auto precision = static_cast<signed char>(input.takeByte());
    const QString text = input.takeText(encoding);

    // Kinds 0 to 6 as they are, 7 the invalid type, the rest of the byte kinds no type has.
    const FieldType::BasisType basis
        = kind == 7 ? FieldType::Invalid : static_cast<FieldType::BasisType>(kind);
    const FieldType type
        = basis == FieldType::SubMessage ? FieldType::subMessage(nullptr) : FieldType(basis, bits);
    const FieldValue value = FieldValue::fromString(type, text);
    for (int mode = 0; mode < 4; ++mode) {
        for (int flags = 0; flags < 4; ++flags) {
            value.toString(flags & 1, precision, static_cast<FieldValue::RepresentationMode>(mode),
                           flags & 2);
        }
    }
    if (value.isValid())
        checkRoundTrip(value);
    return 0;
}
