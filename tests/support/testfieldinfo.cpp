// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testfieldinfo.h"

#include "testmessage.h"

bool TestFieldInfo::isPresent(Message const *message) const
{
    auto const *testMessage = dynamic_cast<TestMessage const *>(message);
    return testMessage && testMessage->hasValues(this);
}

unsigned int TestFieldInfo::getNumberOfValues(Message const *message) const
{
    auto const *testMessage = dynamic_cast<TestMessage const *>(message);
    return testMessage ? unsigned(testMessage->getValues(this).size()) : 0u;
}

FieldValue TestFieldInfo::getValue(Message const *message, unsigned int index) const
{
    auto const *testMessage = dynamic_cast<TestMessage const *>(message);
    QVector<FieldValue> const values
        = testMessage ? testMessage->getValues(this) : QVector<FieldValue>();
    return index < unsigned(values.size()) ? values.at(int(index)) : FieldValue::invalid();
}

bool TestFieldInfo::setValue(Message *message, unsigned int index, FieldValue const &value) const
{
    auto *testMessage = dynamic_cast<TestMessage *>(message);
    if (testMessage)
        testMessage->setValue(this, index, value);
    return testMessage != nullptr;
}
