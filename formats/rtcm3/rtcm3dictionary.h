// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3DICTIONARY_H
#define MESSAGEAPI_RTCM3_RTCM3DICTIONARY_H

#include "messageapirtcm3_export.h"

#include <QString>
#include <QVector>

class FormatInfo;
class MessageInfo;
class Rtcm3FieldInfo;

/**
 * The dictionary of RTCM 3: the format "RTCM3", one message type per message number, named by
 * the number ("1005"), with the standard's title as short descriptive text and a sentence as
 * descriptive text, and its data fields as Rtcm3FieldInfo objects named by data field number
 * ("DF025"), each with its label, unit, scale factor, precision, do-not-use value and
 * symbolic values. Built in the constructor from the layout tables, deleted in the destructor.
 *
 * Every message type starts with DF002, the 12-bit message number, which is its discriminant:
 * getMessageInfosForDiscriminant(FieldValue::u(1005, 12)) finds 1005. Repeated records (the
 * entries of 1013 and 1230) are sub-message types, listed by
 * getMessageInfosIncludingSubMessages() and named after their message ("1013 message").
 *
 * The format enters the process-wide registry, so only one dictionary may live at a time, and
 * it must outlive every framer, decoder, message and statistics object that points into it.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Dictionary
{
public:
    Rtcm3Dictionary();
    ~Rtcm3Dictionary();
    Rtcm3Dictionary(Rtcm3Dictionary const &) = delete;
    Rtcm3Dictionary &operator=(Rtcm3Dictionary const &) = delete;

    /// The format "RTCM3".
    FormatInfo const *getFormat() const { return mFormat; }
    /// The message type of that number, or null.
    MessageInfo const *getMessageInfo(int number) const;
    /// The message number of a top-level message type (its discriminant value); -1 for others.
    static int getNumber(MessageInfo const *info);

private:
    MessageInfo *addMessageInfo(QString const &name, QString const &title,
                                QString const &description);

    FormatInfo *mFormat = nullptr;
    QVector<MessageInfo *> mMessageInfos;
    QVector<Rtcm3FieldInfo *> mFieldInfos;
};

#endif // MESSAGEAPI_RTCM3_RTCM3DICTIONARY_H
