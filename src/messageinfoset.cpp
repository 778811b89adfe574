// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageinfoset.h"

#include "auxiliary/tracing.h"
#include "pathexpression.h"

#include <QTimer>

MSGAPI_SOURCE_FILE("MESSAGEINFOSET", "src/messageinfoset")

bool mCurrentlyCart = false;

namespace {
constexpr int flipIntervalMs = 2000;
}

MessageInfoSet::MessageInfoSet(QObject *parent)
    : QObject(parent)
    , mCurrentlyCartesian(false)
{
    MessageApiTracing::allocated(QStringLiteral("MessageInfoSet"));
}

MessageInfoSet::~MessageInfoSet()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageInfoSet"));
}

void MessageInfoSet::addMessageInfo(MessageInfo const *info)
{
    if (mMessageInfos.contains(info))
        return;
    mMessageInfos.insert(info);
    Q_EMIT changed();
}

void MessageInfoSet::removeMessageInfo(MessageInfo const *info)
{
    if (mMessageInfos.remove(info))
        Q_EMIT changed();
}

void MessageInfoSet::setContents(QSet<MessageInfo const *> contents)
{
    if (contents == mMessageInfos)
        return;
    mMessageInfos = std::move(contents);
    Q_EMIT changed();
}

void MessageInfoSet::clear()
{
    if (mMessageInfos.isEmpty())
        return;
    mMessageInfos.clear();
    Q_EMIT changed();
}

void MessageInfoSet::startFlipping()
{
    mCurrentlyCartesian = true;
    auto *timer = new QTimer(this);
    timer->setInterval(flipIntervalMs);
    timer->setSingleShot(false);
    connect(timer, &QTimer::timeout, this, &MessageInfoSet::flip);
    timer->start();
}

void MessageInfoSet::flip()
{
    mCurrentlyCartesian = !mCurrentlyCartesian;
    PathExpression expression;
    expression.setMessagePart(mCurrentlyCartesian ? QStringLiteral("*Cart*")
                                                  : QStringLiteral("*Geod*"));
    QVector<MessageInfo const *> const matches = expression.getMatchingMessageInfos();
    setContents(QSet<MessageInfo const *>(matches.cbegin(), matches.cend()));
}
