// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_TESTMESSAGE_H
#define MESSAGEAPI_TESTS_TESTMESSAGE_H

#include "message.h"

#include <QByteArray>
#include <QVector>

/**
 * A concrete Message for tests: holds raw bytes and an optional list of sub-messages, and
 * tells a watcher when it is destroyed.
 */
class TestMessage : public Message
{
public:
    explicit TestMessage(MessageInfo const *info, QByteArray raw = QByteArray());
    ~TestMessage() override;

    unsigned int getRawSize() const override;
    QByteArray getRaw() const { return mRaw; }
    void setRaw(QByteArray raw) { mRaw = raw; }

    /// Sub-messages returned by both getSubMessages() overloads (not owned).
    void setSubMessages(QVector<Message *> subMessages) { mSubMessages = subMessages; }
    QVector<Message const *> getSubMessages() const override;
    QVector<Message *> getSubMessages() override;

    /// *flag becomes true when this message is destroyed.
    void setDestructionFlag(bool *flag) { mDestructionFlag = flag; }

protected:
    uint8_t const *getRawRepresentation() const override;

private:
    QByteArray mRaw;
    QVector<Message *> mSubMessages;
    bool *mDestructionFlag = nullptr;
};

#endif // MESSAGEAPI_TESTS_TESTMESSAGE_H
