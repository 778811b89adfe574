// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FORMATINFO_H
#define MESSAGEAPI_FORMATINFO_H

#include "fieldvalue.h"
#include "messageapiframework_export.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <memory>

class DiscriminantIndex;
class MessageInfo;

/**
 * One message format of the dictionary (the receiver's block format, RTCM3, …) with its
 * message types.
 *
 * A format enters the process-wide registry when constructed and leaves it when destroyed. It
 * does not own its message types: whoever created them deletes them, together with the format.
 * A second format of an existing name replaces the first in the name lookup; destroying either
 * of them removes the name from the lookup.
 */
class MESSAGEAPIFRAMEWORK_EXPORT FormatInfo
{
public:
    /// Enters the format into the process-wide registry under name.
    explicit FormatInfo(QString name);
    virtual ~FormatInfo();

    /// The format registered under the name, or null.
    static FormatInfo const *getFormatInfo(QString const &name);
    /// Every live format, in construction order.
    static QVector<FormatInfo const *> getFormatInfos();

    /// The name under which the format is registered ("RTCM3").
    QString getName() const { return mName; }
    /// A sentence or more that tools show as help.
    ///@{
    QString getDescriptiveText() const { return mDescriptiveText; }
    void setDescriptiveText(QString text);
    ///@}

    /// Adds a top-level message type: listed, found by name and by discriminant.
    void addMessageInfo(MessageInfo const *info);
    /// Records a message type that occurs only embedded in other messages: listed only by
    /// getMessageInfosIncludingSubMessages().
    void addSubMessageInfo(MessageInfo const *info);

    /// The top-level message type of that name (the latest added), or null.
    MessageInfo const *getMessageInfo(QString const &name) const;
    /// Top-level message types in order of addition.
    QVector<MessageInfo const *> getMessageInfos() const;
    /// Top-level message types sorted by name, case-sensitively; equal names in order of addition.
    QVector<MessageInfo const *> getMessageInfosAlfabetically() const;
    /// Every message type added, top-level or sub-message, in order of addition.
    QVector<MessageInfo const *> getMessageInfosIncludingSubMessages() const;

    /**
     * The top-level message types whose discriminants accept the header values, in order of
     * addition. A message type takes part when it has as many discriminants as there are values
     * (at least one), and is accepted when the value at any one position lies in one of the
     * ranges of the discriminant at that position.
     */
    QVector<MessageInfo const *>
    getMessageInfosForDiscriminant(QVector<FieldValue> const &values) const;
    /// The message types for a header of one value.
    QVector<MessageInfo const *> getMessageInfosForDiscriminant(FieldValue const &value) const;

    /// Every live format in construction order.
    static QVector<FormatInfo const *> sFormatInfos;
    /// Format name to the latest format constructed under it.
    static QHash<QString, FormatInfo const *> sFormatInfoMap;

private:
    friend class DictionaryAccess;

    FormatInfo(FormatInfo const &) = delete;
    FormatInfo &operator=(FormatInfo const &) = delete;

    QString mName;
    QString mDescriptiveText;
    QVector<MessageInfo const *> mMessageInfos;
    QVector<MessageInfo const *> mMessageInfosAlphabetically;
    QVector<MessageInfo const *> mMessageInfosIncludingSubMessages;
    // The names of mMessageInfos and of mMessageInfosIncludingSubMessages one after the other,
    // and where each ends: walks that match every message name read them in one sequence.
    QString mMessageNames;
    QVector<int> mMessageNameEnds;
    QString mAllMessageNames;
    QVector<int> mAllMessageNameEnds;
    QHash<QString, MessageInfo const *> mMessageInfoByName;
    /// Answers the discriminant lookup without a scan of every message type; kept up to date
    /// by the lookup itself.
    std::unique_ptr<DiscriminantIndex> mDiscriminantIndex;
};

#endif // MESSAGEAPI_FORMATINFO_H
