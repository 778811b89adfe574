// SPDX-License-Identifier: LGPL-2.1-or-later
#include "abstractdecoder.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("ABSTRACTDECODER", "src/abstractdecoder")

AbstractDecoder::AbstractDecoder(QString name, QObject *parent)
    : MessageSource(std::move(name), parent)
{
    MessageApiTracing::allocated(QStringLiteral("AbstractDecoder"));
}

AbstractDecoder::~AbstractDecoder()
{
    MessageApiTracing::deallocated(QStringLiteral("AbstractDecoder"));
}

void AbstractDecoder::setMessageEnum(MessageInfo const *info, int code)
{
    mMessageCodes.insert(info, code);
}

int AbstractDecoder::getMessageEnum(MessageInfo const *info) const
{
    return mMessageCodes.value(info, -1);
}

void AbstractDecoder::enableMessage(MessageInfo const *info)
{
    const int32_t code = getMessageEnum(info);
    if (code >= 0)
        enableMessageCode(code);
}

void AbstractDecoder::disableMessage(MessageInfo const *info)
{
    const int32_t code = getMessageEnum(info);
    if (code >= 0)
        disableMessageCode(code);
}

bool AbstractDecoder::isEnabledMessage(MessageInfo const *info) const
{
    const int32_t code = getMessageEnum(info);
    return code >= 0 && isEnabledMessageCode(code);
}

int32_t AbstractDecoder::decodeMessage(QByteArray buffer)
{
    return decodeMessage(reinterpret_cast<uint8_t const *>(buffer.constData()),
                         uint(buffer.size()));
}
