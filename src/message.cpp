// SPDX-License-Identifier: LGPL-2.1-or-later
#include "message.h"

#include "auxiliary/tracing.h"

#include <QObject>

MSGAPI_SOURCE_FILE("MESSAGE", "src/message")

// Initialised when the library is loaded, in this order.
QString Message::fieldSeparator = QStringLiteral(",");
QString Message::doNotUseString = QObject::tr("N/A");
bool Message::useDoNotUseString = true;

QVector<Message const *> Message::getSubMessages() const
{
    return QVector<Message const *>();
}

QVector<Message *> Message::getSubMessages()
{
    return QVector<Message *>();
}

uint8_t const *Message::getRawRepresentationOf(Message const *other) const
{
    return other->getRawRepresentation();
}
