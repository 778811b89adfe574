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
    MessageApiEvent(Type type, QString message, FormatInfo const *format);
    MessageApiEvent(MessageApiEvent const &other);
    /// Takes the text over instead of sharing it, and reports like every constructor. The
    /// moved-from event keeps its type and format; its text is left empty.
    MessageApiEvent(MessageApiEvent &&other);
    ~MessageApiEvent();
    MessageApiEvent &operator=(MessageApiEvent const &other) = default;

    Type getType() const { return mType; }
    QString getMessage() const { return mMessage; }
    FormatInfo const *getFormat() const { return mFormat; }

    /// True for the types CrcError to ClientError; false for the others and unknown values.
    bool isError() const;
    /// "Connection Opened" … "Client Error"; a null string for a value outside 0 to 6.
    static QString getTypeString(Type type);
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
