// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGE_H
#define MESSAGEAPI_MESSAGE_H

#include "auxiliary/referencecountedobject.h"
#include "messageapiframework_export.h"

#include <QString>
#include <QVector>

#include <cstdint>

class MessageInfo;

/**
 * One decoded message: the abstract base of the concrete messages that decoders build.
 *
 * A message knows its type (never changed), may sit inside an enclosing message and may contain
 * sub-messages. Field values are not stored here: a FieldInfo extracts them from a concrete
 * message. Messages are shared through the reference count of ReferenceCountedObject.
 */
class MESSAGEAPIFRAMEWORK_EXPORT Message : public ReferenceCountedObject
{
public:
    /// A message of the type, with no parent; its reference count is 0.
    explicit Message(MessageInfo const *info);
    ~Message() override;

    /// The message type.
    MessageInfo const *getInfo() const { return mInfo; }
    /// The enclosing message of a sub-message, or null.
    ///@{
    Message *getParentMessage() { return mParentMessage; }
    Message const *getParentMessage() const { return mParentMessage; }
    ///@}
    /// Stores the enclosing message; no reference count changes.
    void setParentMessage(Message *parent) { mParentMessage = parent; }

    /// The sub-messages; empty unless a concrete message with sub-messages overrides both.
    ///@{
    virtual QVector<Message const *> getSubMessages() const;
    virtual QVector<Message *> getSubMessages();
    ///@}
    /// Number of bytes at the raw representation.
    virtual unsigned int getRawSize() const = 0;

    /// The raw representation of another message, of whatever concrete class.
    uint8_t const *getRawRepresentationOf(Message const *other) const;

    /// Separator between field texts when a message is written on one line (",").
    static QString fieldSeparator;
    /// Shown instead of a field's do-not-use value ("N/A", translated when the library loads).
    static QString doNotUseString;
    /// Whether doNotUseString replaces do-not-use values (true).
    static bool useDoNotUseString;

protected:
    /// The message's raw bytes; the library passes the pointer on without reading it.
    virtual uint8_t const *getRawRepresentation() const = 0;

private:
    Message(Message const &) = delete;
    Message &operator=(Message const &) = delete;

    MessageInfo const *mInfo;
    Message *mParentMessage;
};

// Decoders build and drop many messages (one per record of a message), so these stay inline.

inline Message::Message(MessageInfo const *info)
    : mInfo(info)
    , mParentMessage(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("Message"));
}

inline Message::~Message()
{
    MessageApiTracing::deallocated(QStringLiteral("Message"));
}

#endif // MESSAGEAPI_MESSAGE_H
