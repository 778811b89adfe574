// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_DICTIONARYACCESS_H
#define MESSAGEAPI_AUXILIARY_DICTIONARYACCESS_H

// Internal helper of the library's own walks over the dictionary. Not installed.

#include "fieldvalue.h"
#include "formatinfo.h"
#include "messageinfo.h"

#include <QString>
#include <QStringView>
#include <QVector>

#include <cstdint>

/// The names of a list of descriptors, kept one after the other in one string.
class NameSequence
{
public:
    NameSequence(QString const &names, QVector<int> const &ends)
        : mNames(names)
        , mEnds(ends)
    { }

    int size() const { return int(mEnds.size()); }
    QStringView at(int index) const
    {
        int const start = index == 0 ? 0 : mEnds.at(index - 1);
        return QStringView(mNames).mid(start, mEnds.at(index) - start);
    }

private:
    QString const &mNames;
    QVector<int> const &mEnds;
};

/**
 * Read access for the library's own walks and indexes over the dictionary: lists and names that
 * the descriptors otherwise hand out as copies, and state that has no public reader. The lists
 * and names stay valid while the dictionary is not changed.
 */
class DictionaryAccess
{
public:
    static QString const &name(FormatInfo const *format) { return format->mName; }
    static QVector<MessageInfo const *> const &messages(FormatInfo const *format,
                                                        bool includingSubMessages)
    {
        return includingSubMessages ? format->mMessageInfosIncludingSubMessages
                                    : format->mMessageInfos;
    }
    /// The names of messages(format, includingSubMessages), in the same order.
    static NameSequence messageNames(FormatInfo const *format, bool includingSubMessages)
    {
        return includingSubMessages
            ? NameSequence(format->mAllMessageNames, format->mAllMessageNameEnds)
            : NameSequence(format->mMessageNames, format->mMessageNameEnds);
    }
    static QVector<FieldInfo const *> const &fields(MessageInfo const *message)
    {
        return message->mConstFieldInfos;
    }
    /// The names of fields(message), in the same order.
    static NameSequence fieldNames(MessageInfo const *message)
    {
        return NameSequence(message->mFieldNames, message->mFieldNameEnds);
    }
    /// Whether a reference that can change the message type's discriminants was handed out.
    static bool discriminantsExposed(MessageInfo const *message)
    {
        return message->mDiscriminantsExposed;
    }
    /// The 64 bits of a value, read without the typed accessors' checks.
    static uint64_t payload(FieldValue const &value) { return value.mPayload; }
};

#endif // MESSAGEAPI_AUXILIARY_DICTIONARYACCESS_H
