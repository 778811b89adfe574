// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demodecoder.h"

#include "demodictionary.h"
#include "demofieldinfo.h"
#include "demomessage.h"
#include "formatinfo.h"
#include "messageinfo.h"

#include <utility>

DemoDecoder::DemoDecoder(DemoDictionary const *dictionary, QString name, QObject *parent)
    : AbstractDecoder(std::move(name), parent)
    , mDictionary(dictionary)
{
    for (MessageInfo const *info : dictionary->getFormat()->getMessageInfos())
        setMessageEnum(info, DemoDictionary::getNumber(info));
}

DemoDecoder::~DemoDecoder() = default;

FormatInfo const *DemoDecoder::getFormatInfo() const
{
    return mDictionary->getFormat();
}

int32_t DemoDecoder::decodeMessage(const uint8_t *buffer, uint maxlength)
{
    if (maxlength < uint(DemoDictionary::headerSize)) {
        reportDecoderError(
            tr("%1: block of %2 bytes is shorter than its header").arg(getName()).arg(maxlength));
        return -1;
    }
    // Checked in place; copied only once it is known to be a message.
    const QByteArray block
        = QByteArray::fromRawData(reinterpret_cast<char const *>(buffer), int(maxlength));
    const quint16 number = quint16(buffer[0] | (buffer[1] << 8));

    const QVector<MessageInfo const *> matches
        = getFormatInfo()->getMessageInfosForDiscriminant(FieldValue::u(number, 16));
    if (matches.isEmpty()) {
        Q_EMIT newUnknownMessage(getFormatInfo(), tr("Block %1").arg(number));
        reportEvent(MessageApiEvent(MessageApiEvent::UnknownMessage,
                                    tr("%1: unknown block number %2").arg(getName()).arg(number),
                                    getFormatInfo()));
        return int32_t(maxlength);
    }

    MessageInfo const *info = matches.first();
    for (FieldInfo const *field : info->getFieldInfos()) {
        if (!static_cast<DemoFieldInfo const *>(field)->fitsIn(block)) {
            reportDecoderError(tr("%1: field %2 does not fit in the %3 block of %4 bytes")
                                   .arg(getName(), field->getName(), info->getName())
                                   .arg(maxlength));
            return -1;
        }
    }
    if (!isEnabledMessage(info))
        return int32_t(maxlength);

    auto *message = new DemoMessage(info, QByteArray(block.constData(), block.size()));
    // Our own reference keeps the message alive through all three phases.
    message->addReference();
    Q_EMIT newMessageEarly(message);
    Q_EMIT newMessage(message);
    Q_EMIT newMessageLate(message);
    message->removeReference();
    return int32_t(maxlength);
}

void DemoDecoder::reportDecoderError(QString const &text)
{
    reportEvent(MessageApiEvent(MessageApiEvent::DecoderError, text, getFormatInfo()));
}
