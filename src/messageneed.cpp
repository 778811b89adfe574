// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageneed.h"

#include "auxiliary/tracing.h"
#include "messageneedmanager.h"

#include <utility>

MSGAPI_SOURCE_FILE("MESSAGENEED", "src/messageneed")

MessageNeed::MessageNeed(MessageNeedManager *manager)
    : mManager(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("MessageNeed"));
    setManager(manager ? manager : MessageNeedManager::getCurrentInstance());
}

MessageNeed::MessageNeed(MessageNeed const &other)
    : mManager(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("MessageNeed"));
    *this = other;
}

MessageNeed &MessageNeed::operator=(MessageNeed const &other)
{
    // No self-assignment guard on purpose: assigning a need to itself withdraws its needs.
    clearMessagesNeeded(false);
    setManager(other.getManager());
    setMessagesNeeded(other.getMessagesNeeded());
    return *this;
}

MessageNeed::~MessageNeed()
{
    clearMessagesNeeded(false);
    MessageApiTracing::deallocated(QStringLiteral("MessageNeed"));
}

void MessageNeed::setManager(MessageNeedManager *manager)
{
    // The needs move: withdrawn from the old manager (if any), registered with the new one.
    const QVector<MessageInfo const *> needs = mMessagesNeeded;
    clearMessagesNeeded(false);
    mManager = manager;
    setMessagesNeeded(needs);
}

void MessageNeed::addMessageNeeded(MessageInfo const *info)
{
    if (mManager)
        mManager->increment(info, false);
    mMessagesNeeded.append(info);
}

void MessageNeed::removeMessageNeeded(MessageInfo const *info)
{
    if (mManager)
        mManager->decrement(info, false);
    const int index = mMessagesNeeded.indexOf(info);
    if (index < 0)
        qFatal("%s", "MessageNeed::removeMessageNeeded: removing non-registered message");
    mMessagesNeeded.remove(index);
}

void MessageNeed::setMessageNeeded(MessageInfo const *info)
{
    if (mMessagesNeeded.size() == 1 && mMessagesNeeded.constFirst() == info)
        return;
    // The signal of the add also carries the change of the clearing.
    clearMessagesNeeded(true);
    if (info)
        addMessageNeeded(info);
}

void MessageNeed::setMessagesNeeded(QVector<MessageInfo const *> infos)
{
    clearMessagesNeeded(true);
    mMessagesNeeded = std::move(infos);
    if (!mManager)
        return;
    for (MessageInfo const *info : std::as_const(mMessagesNeeded))
        mManager->increment(info, true);
    mManager->emitPendingSignal();
}

void MessageNeed::clearMessagesNeeded(bool postponeSignal)
{
    if (mManager) {
        for (MessageInfo const *info : std::as_const(mMessagesNeeded))
            mManager->decrement(info, true);
    }
    mMessagesNeeded.clear();
    if (mManager && !postponeSignal)
        mManager->emitPendingSignal();
}
