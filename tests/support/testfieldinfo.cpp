// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testfieldinfo.h"

#include "testmessage.h"

TestFieldInfo::TestFieldInfo(QString name, FieldType const &type)
    : FieldInfo(std::move(name), type)
    , mDefaultValue(type)
{ }

TestFieldInfo::~TestFieldInfo() = default;

namespace {
TestMessage const *asTestMessage(Message const *message)
{
    return dynamic_cast<TestMessage const *>(message);
}
} // namespace

bool TestFieldInfo::isPresent(Message const *message) const
{
    TestMessage const *testMessage = asTestMessage(message);
    return testMessage && testMessage->hasValues(this);
}

unsigned int TestFieldInfo::getNumberOfValues(Message const *message) const
{
    TestMessage const *testMessage = asTestMessage(message);
    return testMessage ? unsigned(testMessage->getValues(this).size()) : 0u;
}

FieldValue TestFieldInfo::getValue(Message const *message, unsigned int index) const
{
    TestMessage const *testMessage = asTestMessage(message);
    if (!testMessage)
        return FieldValue::invalid();
    QVector<FieldValue> const values = testMessage->getValues(this);
    return index < unsigned(values.size()) ? values.at(int(index)) : FieldValue::invalid();
}

bool TestFieldInfo::setValue(Message *message, unsigned int index, FieldValue const &value) const
{
    auto *testMessage = dynamic_cast<TestMessage *>(message);
    if (!testMessage)
        return false;
    testMessage->setValue(this, index, value);
    return true;
}

FieldValue TestFieldInfo::getDefaultValue() const
{
    return mDefaultValue;
}
