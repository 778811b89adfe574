// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagesource.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("MESSAGESOURCE", "src/messagesource")

MessageSource::MessageSource(QString name, QObject *parent)
    : QObject(parent)
    , mName(std::move(name))
{
    MessageApiTracing::allocated(QStringLiteral("MessageSource"));
}

MessageSource::~MessageSource()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageSource"));
}

void MessageSource::reportEvent(MessageApiEvent event)
{
    Q_EMIT newEvent(event);
}

void MessageSource::reportConnectionOpenedEvent()
{
    reportEvent(MessageApiEvent(MessageApiEvent::ConnectionOpened,
                                tr("%1 connection opened").arg(mName), nullptr));
}

void MessageSource::reportConnectionClosedEvent()
{
    reportEvent(MessageApiEvent(MessageApiEvent::ConnectionClosed,
                                tr("%1 connection closed").arg(mName), nullptr));
}

void MessageSource::reportCRCErrorEvent(const FormatInfo *format)
{
    reportEvent(MessageApiEvent(MessageApiEvent::CrcError,
                                tr("%1 CRC error").arg(format->getName()), format));
}
