// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGESOURCEMULTIPLEXER_H
#define MESSAGEAPI_MESSAGESOURCEMULTIPLEXER_H

#include "messageapiframework_export.h"

#include "messagesource.h"

/**
 * Merges several sources into one: everything an added source announces is announced again
 * by the multiplexer, in the same phase. Being a MessageSource itself, a multiplexer can be
 * added to another one.
 *
 * The multiplexer keeps no list of its sources; its state is its Qt connections. Adding a
 * source twice forwards each of its announcements twice.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageSourceMultiplexer : public MessageSource
{
    Q_OBJECT

public:
    /// A multiplexer of no sources yet; name as for any MessageSource.
    MessageSourceMultiplexer(QString name, QObject *parent);
    ~MessageSourceMultiplexer() override;

    /// Announces again, in the same phase, everything the source announces from now on.
    void addSource(MessageSource *source);
    /// Cuts every connection from the source to this multiplexer, whatever the signal.
    void removeSource(MessageSource *source);

private:
    Q_DISABLE_COPY(MessageSourceMultiplexer)
};

#endif // MESSAGEAPI_MESSAGESOURCEMULTIPLEXER_H
