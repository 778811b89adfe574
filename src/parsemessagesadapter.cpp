// SPDX-License-Identifier: LGPL-2.1-or-later
#include "parsemessagesadapter.h"

#include "abstractdecoder.h"
#include "auxiliary/tracing.h"
#include "formatinfo.h"

MSGAPI_SOURCE_FILE("PARSEMESSAGESADAPTER", "src/parsemessagesadapter")

namespace {

// The other side is an application object of unknown class, so only a string-based connection
// can reach it; a typo in its signal would otherwise fail without a word.
void connectOrWarn(QObject *sender, char const *signal, QObject *receiver, char const *method,
                   char const *senderRole)
{
    if (!QObject::connect(sender, signal, receiver, method)) {
        // SIGNAL() puts a code character in front of the signature.
        qWarning("ParseMessagesAdapter: cannot connect to %s of the %s", signal + 1, senderRole);
    }
}

} // namespace

ParseMessagesAdapter::ParseMessagesAdapter(QObject *parser, QObject *connection, char const *buffer,
                                           AbstractDecoder *decoder)
    : QObject(parser)
    , mBuffer(buffer)
    , mDecoder(decoder)
{
    MessageApiTracing::allocated(QStringLiteral("ParseMessagesAdapter"));

    connectOrWarn(parser, SIGNAL(vexa(unsigned int, unsigned int)), this,
                  SLOT(processVexa(unsigned int, unsigned int)), "parser");
    connectOrWarn(parser, SIGNAL(crcErrorVexa()), this, SLOT(reportCRCError()), "parser");
    if (connection) {
        connectOrWarn(connection, SIGNAL(connected()), decoder, SLOT(reportConnectionOpenedEvent()),
                      "connection");
        connectOrWarn(connection, SIGNAL(connectionClosed()), decoder,
                      SLOT(reportConnectionClosedEvent()), "connection");
    }
}

ParseMessagesAdapter::~ParseMessagesAdapter()
{
    MessageApiTracing::deallocated(QStringLiteral("ParseMessagesAdapter"));
}

void ParseMessagesAdapter::processVexa(uint id, uint length)
{
    Q_UNUSED(id)
    mDecoder->decodeMessage(reinterpret_cast<uint8_t const *>(mBuffer), length);
}

void ParseMessagesAdapter::reportCRCError()
{
    // The format registry does not change once set up, so one look-up serves the process.
    static FormatInfo const *const vexaFormat = FormatInfo::getFormatInfo(QStringLiteral("VEXA"));
    mDecoder->reportCRCErrorEvent(vexaFormat);
}
