// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGEAPIEVENT_H
#define MESSAGEAPI_MESSAGEAPIEVENT_H

#include "messageapiframework_export.h"

#include <QCoreApplication>
#include <QMetaType>
#include <QString>

#include <cstdint>

class FormatInfo;

/**
 * An event of the message flow (a connection change, a CRC error, an unknown message, an
 * error), and at the same time the object that the library throws, by value, when a client
 * misuses it: such events have type ClientError and a text that names the failing function.
 *
 * A plain copyable value. The format is not owned and may be null.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageApiEvent
{
    Q_DECLARE_TR_FUNCTIONS(MessageApiEvent)

public:
    /// The numeric values are part of the interface: counts and signals carry them.
    enum Type : int32_t {
        ConnectionOpened = 0,
        ConnectionClosed = 1,
        CrcError = 2,
        UnknownMessage = 3,
        DecoderError = 4,
        ApplicationError = 5,
        ClientError = 6
    };

    /// An empty event of type ConnectionOpened; only for Qt's meta-type system.
    MessageApiEvent();
    /// An event of the type with its text and the format it concerns (may be null).
    MessageApiEvent(Type type, QString message, FormatInfo const *format);
    /// Copies type, text and format, and reports to the allocation tracer.
    MessageApiEvent(MessageApiEvent const &other);
    /// Takes the text over instead of sharing it, and reports like every constructor. The
    /// moved-from event keeps its type and format; its text is left empty.
    MessageApiEvent(MessageApiEvent &&other);
    ~MessageApiEvent();
    /// Copies type, text and format.
    MessageApiEvent &operator=(MessageApiEvent const &other) = default;

    /// What kind of event it is.
    Type getType() const { return mType; }
    /// The text that says what happened.
    QString getMessage() const { return mMessage; }
    /// The format the event concerns, or null.
    FormatInfo const *getFormat() const { return mFormat; }

    /// True for the types CrcError to ClientError; false for the others and unknown values.
    bool isError() const;
    /// "Connection Opened" … "Client Error"; a null string for a value outside 0 to 6.
    static QString getTypeString(Type type);
    /// getTypeString() of this event's type.
    QString getTypeString() const;

    /// Puts "[Event discarded in future:] " in front of the text, every time it is called.
    void addNotificationOfFutureDiscarding();

private:
    Type mType;
    QString mMessage;
    FormatInfo const *mFormat;
};

Q_DECLARE_METATYPE(MessageApiEvent)

#endif // MESSAGEAPI_MESSAGEAPIEVENT_H
