// SPDX-License-Identifier: LGPL-2.1-or-later
#include "formatinfo.h"

#include "messageinfo.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("FORMATINFO", "src/formatinfo")

QVector<FormatInfo const *> FormatInfo::sFormatInfos;
QHash<QString, FormatInfo const *> FormatInfo::sFormatInfoMap;

FormatInfo::FormatInfo(QString name)
    : mName(std::move(name))
{
    MessageApiTracing::allocated(QStringLiteral("FormatInfo"));
    sFormatInfos.append(this);
    // A later format of the same name takes over the name; both stay listed.
    sFormatInfoMap[mName] = this;
}

FormatInfo::~FormatInfo()
{
    MessageApiTracing::deallocated(QStringLiteral("FormatInfo"));
    int const position = sFormatInfos.indexOf(this);
    if (position >= 0)
        sFormatInfos.remove(position);
    // The entry goes whoever it points at: a surviving format of the same name is no longer
    // found by name.
    sFormatInfoMap.remove(mName);
}

FormatInfo const *FormatInfo::getFormatInfo(QString const &name)
{
    return sFormatInfoMap.value(name, nullptr);
}

QVector<FormatInfo const *> FormatInfo::getFormatInfos()
{
    return sFormatInfos;
}

void FormatInfo::setDescriptiveText(QString text)
{
    mDescriptiveText = std::move(text);
}

void FormatInfo::addMessageInfo(MessageInfo const *info)
{
    mMessageInfos.append(info);
    mMessageInfosIncludingSubMessages.append(info);
    mMessageInfoByName[info->getName()] = info;

    // Insertion keeps the list sorted and stable: a new name goes after every equal one.
    QString const name = info->getName();
    auto position = mMessageInfosAlphabetically.begin();
    while (position != mMessageInfosAlphabetically.end() && !(name < (*position)->getName()))
        ++position;
    mMessageInfosAlphabetically.insert(position, info);
}

void FormatInfo::addSubMessageInfo(MessageInfo const *info)
{
    mMessageInfosIncludingSubMessages.append(info);
}

MessageInfo const *FormatInfo::getMessageInfo(QString const &name) const
{
    return mMessageInfoByName.value(name, nullptr);
}

QVector<MessageInfo const *> FormatInfo::getMessageInfos() const
{
    return mMessageInfos;
}

QVector<MessageInfo const *> FormatInfo::getMessageInfosAlfabetically() const
{
    return mMessageInfosAlphabetically;
}

QVector<MessageInfo const *> FormatInfo::getMessageInfosIncludingSubMessages() const
{
    return mMessageInfosIncludingSubMessages;
}

QVector<MessageInfo const *>
FormatInfo::getMessageInfosForDiscriminant(QVector<FieldValue> const &values) const
{
    QVector<MessageInfo const *> result;
    for (MessageInfo const *info : mMessageInfos) {
        QVector<MessageInfo::Discriminant> const &discriminants = info->getDiscriminants();
        if (discriminants.isEmpty() || discriminants.size() != values.size())
            continue;
        // The positions are alternatives: one accepting position is enough.
        bool accepted = false;
        for (int position = 0; position < values.size() && !accepted; ++position) {
            FieldValue const &value = values.at(position);
            for (MessageInfo::DiscriminantValueRange const &range :
                 discriminants.at(position).ranges) {
                if (range.low <= value && value <= range.high) {
                    accepted = true;
                    break;
                }
            }
        }
        if (accepted)
            result.append(info);
    }
    return result;
}

QVector<MessageInfo const *>
FormatInfo::getMessageInfosForDiscriminant(FieldValue const &value) const
{
    return getMessageInfosForDiscriminant(QVector<FieldValue> { value });
}
