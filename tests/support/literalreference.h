// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_LITERALREFERENCE_H
#define MESSAGEAPI_TESTS_LITERALREFERENCE_H

// Name matching and discriminant lookup as their rules literally read, without any of the
// library's shortcuts: the references that tests compare the library with and that benchmarks
// measure it against. Header only, so that the benchmarks need no test library.

#include "auxiliary/qtcompat.h"
#include "fieldvalue.h"
#include "formatinfo.h"
#include "messageinfo.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// One case-insensitive wildcard QRegExp per alternative of the pattern, with ":" read as "*".
inline bool literalMatchesName(QString const &name, QString const &pattern)
{
    QStringList const alternatives = pattern.split(QLatin1Char('|'));
    for (QString alternative : alternatives) {
        alternative.replace(QLatin1Char(':'), QLatin1Char('*'));
        if (QRegExp(alternative, Qt::CaseInsensitive, QRegExp::Wildcard).exactMatch(name))
            return true;
    }
    return false;
}

/// Every message type with as many discriminants as values, every position, every range.
/// Throws what the value comparison throws.
inline QVector<MessageInfo const *> scanForDiscriminant(FormatInfo const &format,
                                                        QVector<FieldValue> const &values)
{
    QVector<MessageInfo const *> result;
    QVector<MessageInfo const *> const messages = format.getMessageInfos();
    for (MessageInfo const *message : messages) {
        QVector<MessageInfo::Discriminant> const &discriminants = message->getDiscriminants();
        if (discriminants.isEmpty() || discriminants.size() != values.size())
            continue;
        bool accepted = false;
        for (int position = 0; position < values.size() && !accepted; ++position) {
            for (MessageInfo::DiscriminantValueRange const &range :
                 discriminants.at(position).ranges) {
                if (range.low <= values.at(position) && values.at(position) <= range.high) {
                    accepted = true;
                    break;
                }
            }
        }
        if (accepted)
            result.append(message);
    }
    return result;
}

#endif // MESSAGEAPI_TESTS_LITERALREFERENCE_H
