// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_PARSEMESSAGESADAPTER_H
#define MESSAGEAPI_PARSEMESSAGESADAPTER_H

#include "messageapiframework_export.h"

#include <QObject>

class AbstractDecoder;

/**
 * Ties an application's stream parser and its connection object to a decoder.
 *
 * The parser must offer the signals vexa(unsigned int, unsigned int) (block number, length),
 * emitted when a complete block lies at the start of its buffer, and crcErrorVexa(); the
 * connection object connected() and connectionClosed(). Blocks are decoded straight from the
 * parser's buffer; a CRC error becomes a CRC event of the "VEXA" format, and the connection
 * signals become the decoder's connection events (so their texts carry the decoder's name).
 *
 * The adapter is a child of the parser and dies with it. A signal that the parser or the
 * connection object lacks is reported as a warning and left unconnected; a null connection
 * object is allowed and gives no connection events.
 */
class MESSAGEAPIFRAMEWORK_EXPORT ParseMessagesAdapter : public QObject
{
    Q_OBJECT

public:
    /// buffer is the start of the parser's buffer; neither it nor the decoder is owned.
    ParseMessagesAdapter(QObject *parser, QObject *connection, char const *buffer,
                         AbstractDecoder *decoder);
    ~ParseMessagesAdapter() override;

private Q_SLOTS:
    /// Decodes length bytes at the buffer; the block number is not needed.
    void processVexa(uint id, uint length);
    /// Needs the "VEXA" format registered before the first CRC error: it is looked up once.
    void reportCRCError();

private:
    Q_DISABLE_COPY(ParseMessagesAdapter)

    char const *mBuffer;
    AbstractDecoder *mDecoder;
};

#endif // MESSAGEAPI_PARSEMESSAGESADAPTER_H
