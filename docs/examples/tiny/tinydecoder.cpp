// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tinydecoder.h"

#include "tinydictionary.h"
#include "tinymessage.h"

#include <fieldinfo.h>
#include <messageinfo.h>

TinyDecoder::TinyDecoder(TinyDictionary const *dictionary, QString name, QObject *parent)
    : AbstractDecoder(std::move(name), parent)
    , mDictionary(dictionary)
{
    for (MessageInfo const *info : getFormatInfo()->getMessageInfos()) {
        const FieldValue type = info->getDiscriminants().first().ranges.first().low;
        setMessageEnum(info, int(type.getU64()));
    }
}

FormatInfo const *TinyDecoder::getFormatInfo() const
{
    return mDictionary->getFormat();
}

int32_t TinyDecoder::decodeMessage(const uint8_t *buffer, uint maxlength)
{
    if (maxlength == 0) {
        reportEvent(MessageApiEvent(MessageApiEvent::DecoderError,
                                    tr("%1: empty block").arg(getName()), getFormatInfo()));
        return -1;
    }
    const uint8_t type = buffer[0];
    const QVector<MessageInfo const *> infos
        = getFormatInfo()->getMessageInfosForDiscriminant(FieldValue::u(type, 8));
    if (infos.isEmpty()) {
        Q_EMIT newUnknownMessage(getFormatInfo(), QString::number(type));
        return int32_t(maxlength);
    }
    if (!isEnabledMessageCode(type))
        return int32_t(maxlength);

    // The message keeps its own copy: the caller's buffer is reused for the next block.
    auto *message = new TinyMessage(
        infos.first(), QByteArray(reinterpret_cast<char const *>(buffer), int(maxlength)));
    for (FieldInfo const *field : infos.first()->getFieldInfos()) {
        if (!field->isPresent(message)) {
            reportEvent(MessageApiEvent(MessageApiEvent::DecoderError,
                                        tr("%1: %2 block of %3 bytes has no field %4")
                                            .arg(getName(), infos.first()->getName())
                                            .arg(maxlength)
                                            .arg(field->getName()),
                                        getFormatInfo()));
            delete message;
            return -1;
        }
    }
    // Listeners that keep the message take a reference of their own.
    message->addReference();
    Q_EMIT newMessageEarly(message);
    Q_EMIT newMessage(message);
    Q_EMIT newMessageLate(message);
    message->removeReference();
    return int32_t(maxlength);
}
