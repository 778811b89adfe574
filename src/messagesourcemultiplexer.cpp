// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagesourcemultiplexer.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("MESSAGESOURCEMULTIPLEXER", "src/messagesourcemultiplexer")

MessageSourceMultiplexer::MessageSourceMultiplexer(QString name, QObject *parent)
    : MessageSource(std::move(name), parent)
{
    MessageApiTracing::allocated(QStringLiteral("MessageSourceMultiplexer"));
}

MessageSourceMultiplexer::~MessageSourceMultiplexer()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageSourceMultiplexer"));
}

void MessageSourceMultiplexer::addSource(MessageSource *source)
{
    // Signal to signal: the announcement reaches our listeners within the source's emission,
    // so the phases of one message stay in the order in which the source emits them.
    connect(source, &MessageSource::newMessage, this, &MessageSource::newMessage);
    connect(source, &MessageSource::newMessageEarly, this, &MessageSource::newMessageEarly);
    connect(source, &MessageSource::newMessageLate, this, &MessageSource::newMessageLate);
    connect(source, &MessageSource::newUnknownMessage, this, &MessageSource::newUnknownMessage);
    connect(source, &MessageSource::newEvent, this, &MessageSource::newEvent);
}

void MessageSourceMultiplexer::removeSource(MessageSource *source)
{
    disconnect(source, nullptr, this, nullptr);
}
