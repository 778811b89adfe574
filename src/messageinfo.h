// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGEINFO_H
#define MESSAGEAPI_MESSAGEINFO_H

#include "fieldvalue.h"
#include "messageapiframework_export.h"

#include <QHash>
#include <QString>
#include <QVector>

class FieldInfo;
class FormatInfo;

/**
 * One message type of a format: its fields, key fields, the fields of other messages that
 * embed it, and the discriminants that tell it apart from other message types by values of a
 * common header.
 *
 * Descriptors link by plain pointers in both directions and never own one another: the
 * destructor only unlinks its fields, key fields, discriminant fields and referring fields
 * (whose type then names no message type). Whoever created a descriptor deletes it; the format
 * is not told, so a format's message types are destroyed together with the format.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageInfo
{
public:
    /// A closed range of discriminant values; a single value has low == high.
    struct DiscriminantValueRange
    {
        FieldValue low; ///< the smallest value accepted
        FieldValue high; ///< the largest value accepted
    };

    /// The accepted values of one header field, at one position of the discriminant lookup.
    struct Discriminant
    {
        FieldInfo const *fieldInfo = nullptr; ///< the header field; null once it is destroyed
        QVector<DiscriminantValueRange> ranges; ///< the accepted values
    };

    /// Not registered anywhere: the creator adds it to its format and sets the format itself.
    explicit MessageInfo(QString name);
    virtual ~MessageInfo();

    /// The name, unique within the format: path expressions and look-ups use it ("1077").
    QString getName() const { return mName; }
    /// A title that tools show beside the name ("GPS MSM7").
    ///@{
    QString getShortDescriptiveText() const { return mShortDescriptiveText; }
    void setShortDescriptiveText(QString text);
    ///@}
    /// A sentence or more that tools show as help.
    ///@{
    QString getDescriptiveText() const { return mDescriptiveText; }
    void setDescriptiveText(QString text);
    ///@}

    /// The format of the message type; null until set. Setting it does not add the message
    /// type to the format.
    ///@{
    FormatInfo const *getFormatInfo() const { return mFormatInfo; }
    void setFormatInfo(FormatInfo const *format);
    ///@}
    /// Whether this is a main message type (true unless set otherwise).
    ///@{
    bool isMain() const { return mIsMain; }
    void setIsMain(bool isMain);
    ///@}

    /**
     * Appends a field. index is the position the field reports for this message
     * (FieldInfo::getIndexInMessageInfo); it need not be the position in this message's list.
     */
    void addFieldInfo(FieldInfo *field, int index, bool isKey = false);
    /// Removes a field; a removed key field stays among the key fields until the field is
    /// destroyed.
    void removeFieldInfo(FieldInfo *field);
    /// The field of that name (the latest added), or null.
    FieldInfo const *getFieldInfo(QString const &name) const;
    /// The fields in order of addition.
    ///@{
    QVector<FieldInfo *> getFieldInfos();
    QVector<FieldInfo const *> getFieldInfos() const;
    ///@}
    /// The fields added as keys, in order of addition.
    QVector<FieldInfo const *> getKeyFieldInfos() const;

    /// Fields of other messages whose type is this message as a sub-message.
    ///@{
    void addReferringFieldInfo(FieldInfo *field);
    void removeReferringFieldInfo(FieldInfo *field);
    QVector<FieldInfo *> getReferringFieldInfos();
    QVector<FieldInfo const *> getReferringFieldInfos() const;
    ///@}

    /**
     * The discriminant of the field, created empty as the next position when new. When the
     * field is destroyed, the discriminant keeps its position and ranges with a null field.
     *
     * The reference may change the ranges at any later time, unseen by the formats' discriminant
     * lookup, so from the first call on that lookup checks this message type range by range;
     * read through getDiscriminants() and add through addDiscriminantValueRange() to keep it
     * indexed.
     */
    Discriminant &getDiscriminant(FieldInfo const *field);
    /// The discriminants in the order of their positions.
    QVector<Discriminant> const &getDiscriminants() const;
    /// Appends a range (not checked) to the field's discriminant.
    void addDiscriminantValueRange(FieldInfo const *field, FieldValue const &low,
                                   FieldValue const &high);
    /// Appends the single value to the field's discriminant.
    void addDiscriminantValue(FieldInfo const *field, FieldValue const &value);

private:
    friend class FieldInfo;
    friend class DictionaryAccess;
    friend class DictionaryTestAccess;

    MessageInfo(MessageInfo const &) = delete;
    MessageInfo &operator=(MessageInfo const &) = delete;

    /// Drops a destroyed field from the key fields and from the discriminants (whose positions
    /// stay), so that no pointer to it is left behind.
    void fieldInfoDestroyed(FieldInfo const *field);
    /// getDiscriminant() without handing the reference out.
    Discriminant &discriminantFor(FieldInfo const *field);

    QString mName;
    QString mShortDescriptiveText;
    QString mDescriptiveText;
    QVector<FieldInfo *> mFieldInfos;
    QVector<FieldInfo const *> mConstFieldInfos;
    // The names of mConstFieldInfos one after the other, and where each ends: walks that match
    // every field name read them in one sequence instead of visiting every field.
    QString mFieldNames;
    QVector<int> mFieldNameEnds;
    QHash<QString, FieldInfo const *> mFieldInfoByName;
    QVector<FieldInfo const *> mKeyFieldInfos;
    FormatInfo const *mFormatInfo;
    bool mIsMain;
    QVector<FieldInfo *> mReferringFieldInfos;
    QVector<FieldInfo const *> mConstReferringFieldInfos;
    QVector<Discriminant> mDiscriminants;
    /// A reference to a discriminant was handed out: its ranges may change without notice.
    bool mDiscriminantsExposed;
};

#endif // MESSAGEAPI_MESSAGEINFO_H
