// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_BENCH_BENCHFIELDINFO_H
#define MESSAGEAPI_BENCH_BENCHFIELDINFO_H

#include "fieldinfo.h"

/// A concrete field descriptor for benchmarks that only walk or render the dictionary: it finds
/// no values in any message.
class BenchFieldInfo : public FieldInfo
{
public:
    using FieldInfo::FieldInfo;

    bool isPresent(Message const *) const override { return false; }
    unsigned int getNumberOfValues(Message const *) const override { return 0; }
    FieldValue getValue(Message const *, unsigned int) const override
    {
        return FieldValue::invalid();
    }
    bool setValue(Message *, unsigned int, FieldValue const &) const override { return false; }
    FieldValue getDefaultValue() const override { return FieldValue(getType()); }
};

#endif // MESSAGEAPI_BENCH_BENCHFIELDINFO_H
