// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGESOURCE_H
#define MESSAGEAPI_MESSAGESOURCE_H

#include "messageapiframework_export.h"

// Complete types: pointer-to-member connections to these signals need them.
#include "formatinfo.h"
#include "message.h"
#include "messageapievent.h"

#include <QObject>
#include <QString>

/**
 * A named object that announces decoded messages and events; it decodes nothing itself.
 *
 * Messages come in three phases: listeners that must see a message before the ordinary ones
 * connect to newMessageEarly(), ordinary listeners to newMessage(), and those that must run
 * after them to newMessageLate(). The message belongs to whoever emits it and is valid for the
 * duration of the signal; a listener that keeps it takes a reference.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageSource : public QObject
{
    Q_OBJECT

public:
    /// name identifies the source in event texts ("radio connection opened").
    MessageSource(QString name, QObject *parent);
    ~MessageSource() override;

    /// The name given at construction.
    QString getName() const { return mName; }

public Q_SLOTS:
    /// Emits newEvent() with a copy of the event; every other report goes through here.
    void reportEvent(MessageApiEvent event);
    /// Reports "<name> connection opened" (type ConnectionOpened, no format).
    void reportConnectionOpenedEvent();
    /// Reports "<name> connection closed" (type ConnectionClosed, no format).
    void reportConnectionClosedEvent();
    /// Reports "<format name> CRC error" (type CrcError) for the format, which must not be null.
    void reportCRCErrorEvent(const FormatInfo *format);

Q_SIGNALS:
    /// A decoded message, announced to the three phases in the order early, normal, late.
    ///@{
    void newMessage(const Message *message);
    void newMessageEarly(const Message *message);
    void newMessageLate(const Message *message);
    ///@}
    /// A block of the format that could not be placed; type names what was seen of it.
    void newUnknownMessage(const FormatInfo *format, QString type);
    /// An event: a connection change, a CRC error, a decoder or application error.
    void newEvent(MessageApiEvent event);

private:
    Q_DISABLE_COPY(MessageSource)

    QString const mName;
};

#endif // MESSAGEAPI_MESSAGESOURCE_H
