// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_TESTMESSAGE_H
#define MESSAGEAPI_TESTS_TESTMESSAGE_H

#include "fieldvalue.h"
#include "message.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

class FieldInfo;

/**
 * A concrete Message for tests: holds raw bytes, an optional list of sub-messages and the
 * values of its fields (read and written by TestFieldInfo), and tells a watcher when it is
 * destroyed.
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

    /// The values of a field, replacing earlier ones; a field with values is present.
    void setValues(FieldInfo const *field, QVector<FieldValue> values);
    /// The values of a field, empty when it has none.
    QVector<FieldValue> getValues(FieldInfo const *field) const;
    bool hasValues(FieldInfo const *field) const;
    /// Sets value number index, growing the field's values with invalid values as needed.
    void setValue(FieldInfo const *field, unsigned int index, FieldValue const &value);

    /// *flag becomes true when this message is destroyed.
    void setDestructionFlag(bool *flag) { mDestructionFlag = flag; }

protected:
    uint8_t const *getRawRepresentation() const override;

private:
    QByteArray mRaw;
    QVector<Message *> mSubMessages;
    QHash<FieldInfo const *, QVector<FieldValue>> mValues;
    bool *mDestructionFlag = nullptr;
};

#endif // MESSAGEAPI_TESTS_TESTMESSAGE_H
