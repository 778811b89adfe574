// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testmessage.h"

void TestMessage::setValues(FieldInfo const *field, QVector<FieldValue> values)
{
    mValues.insert(field, values);
}

void TestMessage::setValue(FieldInfo const *field, unsigned int index, FieldValue const &value)
{
    QVector<FieldValue> &values = mValues[field];
    while (unsigned(values.size()) <= index)
        values.append(FieldValue::invalid());
    values[int(index)] = value;
}
