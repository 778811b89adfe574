// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagedump.h"

#include <fieldinfo.h>
#include <formatinfo.h>
#include <message.h>
#include <messageinfo.h>

MessageDump::MessageDump(QString const &expression, Mode mode, QStringList hexFields)
    : mExpression(expression)
    , mMode(mode)
{
    for (QString const &name : hexFields)
        mHexFields.insert(name.trimmed().toUpper());
    mExpression.setConsiderSubMessages(true);
    QVector<MessageInfo const *> messages;
    mExpression.getMatchingTuples(nullptr, &messages, nullptr, true);
    for (MessageInfo const *info : qAsConst(messages))
        mMatchingMessages.insert(info);
    if (mMatchingMessages.isEmpty())
        mError
            = tr("bad --dump expression %1: it matches no field of the dictionary").arg(expression);
}

QVector<Message const *> MessageDump::getShownMessages(Message const *message) const
{
    if (mMatchingMessages.contains(message->getInfo()))
        return { message };
    QVector<Message const *> shown;
    for (Message const *subMessage : message->getSubMessages())
        shown += getShownMessages(subMessage);
    return shown;
}

QVector<FieldInfo const *> MessageDump::getShownFields(Message const *message) const
{
    QVector<FieldInfo const *> fields;
    for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
        if (field->getType().getBasisType() != FieldType::SubMessage
            && mExpression.matchesName(field->getName(), mExpression.getFieldPart())
            && field->getNumberOfValues(message) > 0)
            fields.append(field);
    }
    return fields;
}

QString MessageDump::getText(Message const *message, QDateTime const &time) const
{
    QString text;
    for (Message const *shown : getShownMessages(message)) {
        MessageInfo const *info = shown->getInfo();
        text += info->getFormatInfo()->getName() + QLatin1Char(' ') + info->getName()
            + QLatin1Char(' ') + (time.isValid() ? time.toString(Qt::ISODate) : QStringLiteral("-"))
            + QLatin1Char(' ') + info->getShortDescriptiveText() + QLatin1Char('\n');
        appendText(text, shown, 1);
    }
    return text;
}

void MessageDump::appendText(QString &text, Message const *message, int depth) const
{
    const QString indent(depth * 2, QLatin1Char(' '));
    for (FieldInfo const *field : getShownFields(message))
        text += indent + field->getName() + QLatin1Char(' ') + field->getShortDescriptiveText()
            + QLatin1String(": ")
            + valueText(field, message, mMode, mHexFields.contains(field->getName().toUpper()))
            + QLatin1Char('\n');
    const QVector<Message const *> subMessages = message->getSubMessages();
    for (int index = 0; index < subMessages.size(); ++index) {
        // A sub-message none of whose fields is shown is left out, heading and all.
        QString subText;
        appendText(subText, subMessages[index], depth + 1);
        if (!subText.isEmpty())
            text += indent + subMessages[index]->getInfo()->getName()
                + QStringLiteral(" [%1]\n").arg(index + 1) + subText;
    }
}

QString MessageDump::valueText(FieldInfo const *field, Message const *message, Mode mode,
                               bool hexadecimal)
{
    if (field->isStringField())
        return QLatin1Char('"') + field->getValueString(message) + QLatin1Char('"');
    QStringList values;
    const unsigned int count = field->getNumberOfValues(message);
    for (unsigned int index = 0; index < count; ++index) {
        const FieldValue value = field->getValue(message, index);
        if (hexadecimal)
            values.append(QLatin1String("0x") + value.toString(false, -1, FieldValue::Hexadecimal));
        else if (mode == Raw)
            values.append(field->getRawString(value));
        else
            values.append(field->getInterpretedString(value, true));
    }
    return values.join(QLatin1Char(' '));
}
