// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGSCAN_MESSAGEDUMP_H
#define MSGSCAN_MESSAGEDUMP_H

#include <pathexpression.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QSet>
#include <QStringList>
#include <QVector>

class FieldInfo;
class Message;
class MessageInfo;

/**
 * What --dump shows: the messages whose type matches a path expression ("RTCM3:1005:*"), each
 * with the fields that match its field part, and the same fields of its sub-messages.
 *
 * A message type that does not match itself may still have matching sub-message types ("RTCM3:
 * 1077 satellite:*"); those sub-messages are then shown on their own. Sub-message fields are
 * not shown as values: their messages follow, indented.
 */
class MessageDump
{
    Q_DECLARE_TR_FUNCTIONS(MessageDump)

public:
    /// How values are written: as a reader sees them, with units, or as the raw numbers.
    enum Mode { Interpreted, Raw };

    /// hexFields are the names of fields written in hexadecimal, whatever the mode.
    MessageDump(QString const &expression, Mode mode = Interpreted, QStringList hexFields = {});

    /// Empty, or why the expression cannot be used (a usage error).
    QString getError() const { return mError; }
    /// The shown messages: the message itself when its type matches, else its shown
    /// sub-messages, in order.
    QVector<Message const *> getShownMessages(Message const *message) const;
    /// The shown fields of a message of a matching type or inside one, in dictionary order.
    QVector<FieldInfo const *> getShownFields(Message const *message) const;

    /// The message and its sub-messages as indented lines; time is the stream time or null.
    QString getText(Message const *message, QDateTime const &time) const;

    /// The field's values in the message as text, separated by spaces; a text field as a
    /// quoted string.
    static QString valueText(FieldInfo const *field, Message const *message, Mode mode,
                             bool hexadecimal = false);

private:
    void appendText(QString &text, Message const *message, int depth) const;

    PathExpression mExpression;
    Mode mMode;
    QSet<QString> mHexFields;
    QSet<MessageInfo const *> mMatchingMessages;
    QString mError;
};

#endif // MSGSCAN_MESSAGEDUMP_H
