// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testmessage.h"

TestMessage::TestMessage(MessageInfo const *info, QByteArray raw)
    : Message(info)
    , mRaw(raw)
{ }

TestMessage::~TestMessage()
{
    if (mDestructionFlag)
        *mDestructionFlag = true;
}

unsigned int TestMessage::getRawSize() const
{
    return unsigned(mRaw.size());
}

QVector<Message const *> TestMessage::getSubMessages() const
{
    QVector<Message const *> result;
    for (Message *sub : mSubMessages)
        result.append(sub);
    return result;
}

QVector<Message *> TestMessage::getSubMessages()
{
    return mSubMessages;
}

uint8_t const *TestMessage::getRawRepresentation() const
{
    return reinterpret_cast<uint8_t const *>(mRaw.constData());
}

void TestMessage::setValues(FieldInfo const *field, QVector<FieldValue> values)
{
    mValues.insert(field, values);
}

QVector<FieldValue> TestMessage::getValues(FieldInfo const *field) const
{
    return mValues.value(field);
}

bool TestMessage::hasValues(FieldInfo const *field) const
{
    return mValues.contains(field);
}

void TestMessage::setValue(FieldInfo const *field, unsigned int index, FieldValue const &value)
{
    QVector<FieldValue> &values = mValues[field];
    while (unsigned(values.size()) <= index)
        values.append(FieldValue::invalid());
    values[int(index)] = value;
}
