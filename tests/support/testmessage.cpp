// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testmessage.h"

TestMessage::TestMessage(MessageInfo const *info, QByteArray raw)
    : Message(info)
    , mRaw(raw)
{
}

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
