// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageapievent.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("MESSAGEAPIEVENT", "src/messageapievent")

MessageApiEvent::MessageApiEvent()
    : MessageApiEvent(ConnectionOpened, QString(), nullptr)
{ }

MessageApiEvent::MessageApiEvent(Type type, QString message, FormatInfo const *format)
    : mType(type)
    , mMessage(std::move(message))
    , mFormat(format)
{
    MessageApiTracing::allocated(QStringLiteral("MessageApiEvent"));
}

MessageApiEvent::MessageApiEvent(MessageApiEvent const &other)
    : mType(other.mType)
    , mMessage(other.mMessage)
    , mFormat(other.mFormat)
{
    MessageApiTracing::allocated(QStringLiteral("MessageApiEvent"));
}

MessageApiEvent::MessageApiEvent(MessageApiEvent &&other)
    : mType(other.mType)
    , mMessage(std::move(other.mMessage))
    , mFormat(other.mFormat)
{
    MessageApiTracing::allocated(QStringLiteral("MessageApiEvent"));
}

MessageApiEvent::~MessageApiEvent()
{
    MessageApiTracing::deallocated(QStringLiteral("MessageApiEvent"));
}

bool MessageApiEvent::isError() const
{
    return mType >= CrcError && mType <= ClientError;
}

QString MessageApiEvent::getTypeString(Type type)
{
    switch (type) {
    case ConnectionOpened:
        return tr("Connection Opened");
    case ConnectionClosed:
        return tr("Connection Closed");
    case CrcError:
        return tr("CRC Error");
    case UnknownMessage:
        return tr("Unknown Message");
    case DecoderError:
        return tr("Decoder Error");
    case ApplicationError:
        return tr("Application Error");
    case ClientError:
        return tr("Client Error");
    }
    // A value outside the enumeration is carried unchanged and has no text.
    return QString();
}

QString MessageApiEvent::getTypeString() const
{
    return getTypeString(mType);
}

void MessageApiEvent::addNotificationOfFutureDiscarding()
{
    mMessage.insert(0, tr("[Event discarded in future:] "));
}
