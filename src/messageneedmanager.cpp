// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageneedmanager.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("MESSAGENEEDMANAGER", "src/messageneedmanager")

MessageNeedManager::MessageNeedManager()
    : QObject(nullptr)
    , mSignalPending(false)
{
    MessageApiTracing::allocated(QStringLiteral("MessageNeedManager"));
}

MessageNeedManager::~MessageNeedManager()
{
    // A need that outlives its manager would later count into a dead object; stop right here.
    if (!getMessagesNeeded().isEmpty())
        qFatal("%s",
               "MessageNeedManager::~MessageNeedManager: not all needs have been withdrawn "
               "before destruction.");
    MessageApiTracing::deallocated(QStringLiteral("MessageNeedManager"));
}

QList<MessageInfo const *> MessageNeedManager::getMessagesNeeded() const
{
    // getIterator() may have left entries at 0; they are not needed.
    QList<MessageInfo const *> needed;
    for (auto it = mCounts.constBegin(); it != mCounts.constEnd(); ++it) {
        if (it.value() > 0)
            needed.append(it.key());
    }
    return needed;
}

MessageNeedManager *MessageNeedManager::getCurrentInstance()
{
    static MessageNeedManager instance;
    return &instance;
}

void MessageNeedManager::increment(MessageInfo const *info, bool postponeSignal)
{
    const Counts::iterator it = getIterator(info);
    if (++it.value() == 1)
        mSignalPending = true;
    if (!postponeSignal)
        emitPendingSignal();
}

void MessageNeedManager::decrement(MessageInfo const *info, bool postponeSignal)
{
    const Counts::iterator it = getIterator(info);
    if (it.value() == 0)
        qFatal("%s", "MessageNeedManager::decrement: counter goes below 0.");
    if (it.value() == 1) {
        mCounts.erase(it);
        mSignalPending = true;
    } else {
        --it.value();
    }
    if (!postponeSignal)
        emitPendingSignal();
}

void MessageNeedManager::emitPendingSignal()
{
    if (!mSignalPending)
        return;
    mSignalPending = false;
    Q_EMIT messageSetChanged();
}

MessageNeedManager::Counts::iterator MessageNeedManager::getIterator(MessageInfo const *info)
{
    Counts::iterator it = mCounts.find(info);
    if (it == mCounts.end())
        it = mCounts.insert(info, 0);
    return it;
}
