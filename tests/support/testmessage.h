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
 * A concrete Message for tests: holds raw bytes and the values of its fields (read and written
 * by TestFieldInfo); it has no sub-messages.
 */
class TestMessage : public Message
{
public:
    explicit TestMessage(MessageInfo const *info, QByteArray raw = QByteArray())
        : Message(info)
        , mRaw(raw)
    { }

    unsigned int getRawSize() const override { return unsigned(mRaw.size()); }
    QByteArray getRaw() const { return mRaw; }

    /// The values of a field, replacing earlier ones; a field with values is present.
    void setValues(FieldInfo const *field, QVector<FieldValue> values)
    {
        mValues.insert(field, values);
    }
    /// The values of a field, empty when it has none.
    QVector<FieldValue> getValues(FieldInfo const *field) const { return mValues.value(field); }
    bool hasValues(FieldInfo const *field) const { return mValues.contains(field); }
    /// Sets value number index, growing the field's values with invalid values as needed.
    void setValue(FieldInfo const *field, unsigned int index, FieldValue const &value)
    {
        QVector<FieldValue> &values = mValues[field];
        while (unsigned(values.size()) <= index)
            values.append(FieldValue::invalid());
        values[int(index)] = value;
    }

protected:
    uint8_t const *getRawRepresentation() const override
    {
        return reinterpret_cast<uint8_t const *>(mRaw.constData());
    }

private:
    QByteArray mRaw;
    QHash<FieldInfo const *, QVector<FieldValue>> mValues;
};

#endif // MESSAGEAPI_TESTS_TESTMESSAGE_H
