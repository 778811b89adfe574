// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageneedmanageradapter.h"

#include "auxiliary/tracing.h"
#include "formatinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "messageneedmanager.h"
#include "pathexpression.h"

MSGAPI_SOURCE_FILE("MESSAGENEEDMANAGERADAPTER", "src/messageneedmanageradapter")

namespace {

// The block number sits in the low 13 bits of the block id; the upper 3 bits are a revision.
constexpr unsigned short messageNumberMask = 0x1FFF;

bool isCorrectionFormat(QString const &formatName)
{
    return formatName == QLatin1String("RTCM2") || formatName == QLatin1String("RTCM3")
        || formatName == QLatin1String("CMR");
}

QString formatNameOf(MessageInfo const *info)
{
    FormatInfo const *format = info->getFormatInfo();
    return format ? format->getName() : QString();
}

// The lower end of the first range of the first discriminant, which holds the 16-bit block id.
bool getMessageNumber(MessageInfo const *info, unsigned short *number)
{
    QVector<MessageInfo::Discriminant> const &discriminants = info->getDiscriminants();
    if (discriminants.isEmpty() || discriminants.first().ranges.isEmpty())
        return false;
    try {
        *number
            = discriminants.first().ranges.first().low.get<unsigned short>() & messageNumberMask;
    } catch (MessageApiEvent const &) {
        return false;
    }
    return true;
}

} // namespace

MessageNeedManagerAdapter::MessageNeedManagerAdapter(MessageNeedManager *manager)
    : QObject(manager)
    , mManager(manager)
    , mDiffCorrInInfo(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("MessageNeedManagerAdapter"));
    try {
        mDiffCorrInInfo = PathExpression::getUniqueMessageInfo(QStringLiteral("VEXA:DiffCorrIn"));
    } catch (MessageApiEvent const &) {
        qWarning("MessageNeedManagerAdapter::MessageNeedManagerAdapter: VEXA DiffCorrIn message "
                 "info not available!");
    }
    connect(mManager, &MessageNeedManager::messageSetChanged, this,
            &MessageNeedManagerAdapter::processMessageSetChange);
    processMessageSetChange();
}

MessageNeedManagerAdapter::~MessageNeedManagerAdapter()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageNeedManagerAdapter"));
}

void MessageNeedManagerAdapter::processMessageSetChange()
{
    mRequiredMessages.clear();
    bool diffCorrInAdded = false;
    QList<MessageInfo const *> const needed = mManager->getMessagesNeeded();
    for (MessageInfo const *info : needed) {
        // The receiver takes corrections of every format through its one input message.
        if (!diffCorrInAdded && isCorrectionFormat(formatNameOf(info)))
            info = mDiffCorrInInfo;
        if (!info || formatNameOf(info) != QLatin1String("VEXA"))
            continue;
        if (!info->isMain())
            continue;
        if (info == mDiffCorrInInfo && diffCorrInAdded)
            continue;

        unsigned short number = 0;
        if (!getMessageNumber(info, &number)) {
            qWarning("MessageNeedManagerAdapter::processMessageSetChange: %s has no message "
                     "number",
                     qPrintable(info->getName()));
            continue;
        }
        mRequiredMessages.append(number);
        if (info == mDiffCorrInInfo)
            diffCorrInAdded = true;
    }
    Q_EMIT requiredMessagesChanged();
}
