// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_TESTFIELDINFO_H
#define MESSAGEAPI_TESTS_TESTFIELDINFO_H

#include "fieldinfo.h"

/**
 * A concrete FieldInfo for tests: reads and writes its values in a TestMessage (and finds none
 * in any other Message). Its default value is a zero value of its type.
 */
class TestFieldInfo : public FieldInfo
{
public:
    TestFieldInfo(QString name, FieldType const &type)
        : FieldInfo(std::move(name), type)
    { }

    /// Present when the message holds values for this field.
    bool isPresent(Message const *message) const override;
    unsigned int getNumberOfValues(Message const *message) const override;
    /// An invalid value when index is past the field's values.
    FieldValue getValue(Message const *message, unsigned int index) const override;
    /// False unless message is a TestMessage.
    bool setValue(Message *message, unsigned int index, FieldValue const &value) const override;
    FieldValue getDefaultValue() const override { return FieldValue(getType()); }
};

#endif // MESSAGEAPI_TESTS_TESTFIELDINFO_H
