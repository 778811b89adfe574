// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageinfo.h"

#include "fieldinfo.h"

#include "auxiliary/discriminantindex.h"
#include "auxiliary/tracing.h"

#include <utility>

MSGAPI_SOURCE_FILE("MESSAGEINFO", "src/messageinfo")

MessageInfo::MessageInfo(QString name)
    : mName(std::move(name))
    , mFormatInfo(nullptr)
    , mIsMain(true)
    , mDiscriminantsExposed(false)
{
    MessageApiTracing::allocated(QStringLiteral("MessageInfo"));
}

MessageInfo::~MessageInfo()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageInfo"));
    // Formats that still list this message type must not keep an index of its ranges.
    DiscriminantIndex::noteDiscriminantsChanged();
    // removeMessageInfo shrinks the field's list, not ours, but iterate a copy all the same.
    QVector<FieldInfo *> const fields = mFieldInfos;
    for (FieldInfo *field : fields)
        field->removeMessageInfo(this);

    // Key and discriminant fields may have left the field list; they still know us.
    for (FieldInfo const *field : std::as_const(mKeyFieldInfos))
        field->releasedBy(this);
    for (Discriminant const &discriminant : std::as_const(mDiscriminants)) {
        if (discriminant.fieldInfo)
            discriminant.fieldInfo->releasedBy(this);
    }
    for (FieldInfo *field : std::as_const(mReferringFieldInfos))
        field->subMessageInfoDestroyed();
}

void MessageInfo::setShortDescriptiveText(QString text)
{
    mShortDescriptiveText = std::move(text);
}

void MessageInfo::setDescriptiveText(QString text)
{
    mDescriptiveText = std::move(text);
}

void MessageInfo::setFormatInfo(FormatInfo const *format)
{
    mFormatInfo = format;
}

void MessageInfo::setIsMain(bool isMain)
{
    mIsMain = isMain;
}

void MessageInfo::addFieldInfo(FieldInfo *field, int index, bool isKey)
{
    mFieldInfos.append(field);
    mConstFieldInfos.append(field);
    mFieldNames += field->getName();
    mFieldNameEnds.append(int(mFieldNames.size()));
    mFieldInfoByName[field->getName()] = field;
    field->addMessageInfo(this, index);
    if (isKey) {
        mKeyFieldInfos.append(field);
        field->heldBy(this);
    }
}

void MessageInfo::removeFieldInfo(FieldInfo *field)
{
    field->removeMessageInfo(this);

    int const position = mFieldInfos.indexOf(field);
    if (position < 0)
        MSGAPI_ASSERT_REPORT("removeFieldInfo",
                             "MessageInfo::removeFieldInfo: Trying to remove a non-member");
    if (mConstFieldInfos.indexOf(field) != position)
        MSGAPI_ASSERT_REPORT("removeFieldInfo",
                             "MessageInfo::removeFieldInfo: vectors not consistent");
    if (position >= 0) {
        mFieldInfos.remove(position);
        mConstFieldInfos.remove(position);
        // Cut the name out of the sequence and move the later ends back by its length: a
        // message type losing all its fields costs one pass over the names per field, not a
        // rebuild of the sequence.
        int const start = position == 0 ? 0 : mFieldNameEnds.at(position - 1);
        int const length = mFieldNameEnds.at(position) - start;
        mFieldNames.remove(start, length);
        mFieldNameEnds.remove(position);
        for (int i = position; i < mFieldNameEnds.size(); ++i)
            mFieldNameEnds[i] -= length;
    }
    // By name, whoever the entry points at; key fields are deliberately kept.
    mFieldInfoByName.remove(field->getName());
}

FieldInfo const *MessageInfo::getFieldInfo(QString const &name) const
{
    return mFieldInfoByName.value(name, nullptr);
}

QVector<FieldInfo *> MessageInfo::getFieldInfos()
{
    return mFieldInfos;
}

QVector<FieldInfo const *> MessageInfo::getFieldInfos() const
{
    return mConstFieldInfos;
}

QVector<FieldInfo const *> MessageInfo::getKeyFieldInfos() const
{
    return mKeyFieldInfos;
}

void MessageInfo::addReferringFieldInfo(FieldInfo *field)
{
    mReferringFieldInfos.append(field);
    mConstReferringFieldInfos.append(field);
}

void MessageInfo::removeReferringFieldInfo(FieldInfo *field)
{
    int const position = mReferringFieldInfos.indexOf(field);
    if (position < 0)
        MSGAPI_ASSERT_REPORT(
            "removeReferringFieldInfo",
            "MessageInfo::removeReferringFieldInfo: Trying to remove a non-member");
    if (mConstReferringFieldInfos.indexOf(field) != position)
        MSGAPI_ASSERT_REPORT("removeReferringFieldInfo",
                             "MessageInfo::removeReferringFieldInfo: vectors not consistent");
    if (position < 0)
        return;
    mReferringFieldInfos.remove(position);
    mConstReferringFieldInfos.remove(position);
}

QVector<FieldInfo *> MessageInfo::getReferringFieldInfos()
{
    return mReferringFieldInfos;
}

QVector<FieldInfo const *> MessageInfo::getReferringFieldInfos() const
{
    return mConstReferringFieldInfos;
}

MessageInfo::Discriminant &MessageInfo::getDiscriminant(FieldInfo const *field)
{
    Discriminant &discriminant = discriminantFor(field);
    if (!mDiscriminantsExposed) {
        // From now on the ranges may change unseen: the lookup checks them directly.
        mDiscriminantsExposed = true;
        DiscriminantIndex::noteDiscriminantsChanged();
    }
    return discriminant;
}

MessageInfo::Discriminant &MessageInfo::discriminantFor(FieldInfo const *field)
{
    for (Discriminant &discriminant : mDiscriminants) {
        if (discriminant.fieldInfo == field)
            return discriminant;
    }
    Discriminant discriminant;
    discriminant.fieldInfo = field;
    mDiscriminants.append(discriminant);
    if (field)
        field->heldBy(this);
    return mDiscriminants.last();
}

QVector<MessageInfo::Discriminant> const &MessageInfo::getDiscriminants() const
{
    return mDiscriminants;
}

void MessageInfo::addDiscriminantValueRange(FieldInfo const *field, FieldValue const &low,
                                            FieldValue const &high)
{
    discriminantFor(field).ranges.append(DiscriminantValueRange { low, high });
    DiscriminantIndex::noteDiscriminantsChanged();
}

void MessageInfo::addDiscriminantValue(FieldInfo const *field, FieldValue const &value)
{
    addDiscriminantValueRange(field, value, value);
}

void MessageInfo::fieldInfoDestroyed(FieldInfo const *field)
{
    mKeyFieldInfos.removeAll(field);
    for (Discriminant &discriminant : mDiscriminants) {
        if (discriminant.fieldInfo == field)
            discriminant.fieldInfo = nullptr;
    }
}
