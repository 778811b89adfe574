// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3decoder.h"

#include "formatinfo.h"
#include "messageinfo.h"
#include "rtcm3dictionary.h"
#include "rtcm3message.h"

#include <utility>

namespace {

constexpr uint frameOverhead = 6; // preamble and length (3 bytes), CRC (3 bytes)

} // namespace

Rtcm3Decoder::Rtcm3Decoder(Rtcm3Dictionary const *dictionary, QString name, QObject *parent)
    : AbstractDecoder(std::move(name), parent)
    , mDictionary(dictionary)
    , mByNumber(4096, nullptr)
{
    for (MessageInfo const *info : dictionary->getFormat()->getMessageInfos()) {
        const int number = Rtcm3Dictionary::getNumber(info);
        setMessageEnum(info, number);
        if (number >= 0 && number < mByNumber.size())
            mByNumber[number] = info;
    }
}

Rtcm3Decoder::~Rtcm3Decoder() = default;

FormatInfo const *Rtcm3Decoder::getFormatInfo() const
{
    return mDictionary->getFormat();
}

int32_t Rtcm3Decoder::decodeMessage(const uint8_t *buffer, uint maxlength)
{
    if (maxlength < frameOverhead) {
        reportDecoderError(tr("%1: frame of %2 bytes is shorter than a frame's header and CRC")
                               .arg(getName())
                               .arg(maxlength));
        return -1;
    }
    const uint length = ((uint(buffer[1]) & 0x03) << 8 | buffer[2]) + frameOverhead;
    if (maxlength < length) {
        reportDecoderError(tr("%1: frame of %2 bytes is shorter than the %3 bytes its header "
                              "declares")
                               .arg(getName())
                               .arg(maxlength)
                               .arg(length));
        return -1;
    }
    if (length < frameOverhead + 2) {
        reportDecoderError(tr("%1: payload of %2 bytes holds no message number")
                               .arg(getName())
                               .arg(length - frameOverhead));
        return -1;
    }
    const int number = int(buffer[3]) << 4 | buffer[4] >> 4;
    MessageInfo const *info = mByNumber.at(number);
    if (!info) {
        const QVector<MessageInfo const *> matches
            = getFormatInfo()->getMessageInfosForDiscriminant(FieldValue::u(quint64(number), 12));
        if (matches.isEmpty()) {
            Q_EMIT newUnknownMessage(getFormatInfo(), QString::number(number));
            return int32_t(length);
        }
        info = matches.first();
    }
    if (!isEnabledMessage(info))
        return int32_t(length);
    QString problem;
    Rtcm3Message *message = Rtcm3Message::decode(info, buffer, length, &problem);
    if (!message) {
        reportDecoderError(tr("%1: message %2: %3").arg(getName()).arg(number).arg(problem));
        return -1;
    }
    // Our own reference keeps the message alive through all three phases.
    message->addReference();
    Q_EMIT newMessageEarly(message);
    Q_EMIT newMessage(message);
    Q_EMIT newMessageLate(message);
    message->removeReference();
    return int32_t(length);
}

void Rtcm3Decoder::reportDecoderError(QString const &text)
{
    reportEvent(MessageApiEvent(MessageApiEvent::DecoderError, text, getFormatInfo()));
}
