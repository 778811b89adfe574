// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testdecoder.h"

#include "formatinfo.h"
#include "messageinfo.h"
#include "testmessage.h"

TestDecoder::TestDecoder(FormatInfo const *format, QString name, unsigned char numberBits,
                         QObject *parent)
    : AbstractDecoder(std::move(name), parent)
    , mFormat(format)
    , mNumberBits(numberBits)
{
    const QVector<MessageInfo const *> infos = format->getMessageInfos();
    for (int code = 0; code < infos.size(); ++code)
        setMessageEnum(infos[code], code);
}

QByteArray TestDecoder::makeBlock(quint16 number, QByteArray const &payload)
{
    Q_ASSERT(payload.size() <= 0xFF);
    const char header[headerSize]
        = { char(syncByte), char(number & 0xFF), char(number >> 8), char(payload.size()) };
    return QByteArray(header, headerSize) + payload;
}

int32_t TestDecoder::decodeMessage(const uint8_t *buffer, uint maxlength)
{
    // The length byte is read only once the header is known to be there.
    if (maxlength < uint(headerSize) || buffer[0] != syncByte
        || uint(headerSize) + buffer[3] > maxlength) {
        reportEvent(MessageApiEvent(
            MessageApiEvent::DecoderError,
            tr("%1: malformed block of %2 bytes").arg(getName()).arg(maxlength), mFormat));
        return -1;
    }
    const int32_t blockSize = int32_t(headerSize + buffer[3]);
    const quint16 number = quint16(buffer[1] | (buffer[2] << 8));

    const QVector<MessageInfo const *> matches
        = mFormat->getMessageInfosForDiscriminant(FieldValue::u(number, mNumberBits));
    if (matches.isEmpty()) {
        Q_EMIT newUnknownMessage(mFormat, QString::number(number));
        return blockSize;
    }
    if (!isEnabledMessage(matches.first()))
        return blockSize;

    auto *message = new TestMessage(matches.first(),
                                    QByteArray(reinterpret_cast<char const *>(buffer), blockSize));
    // Our own reference keeps the message alive through all three phases.
    message->addReference();
    Q_EMIT newMessageEarly(message);
    Q_EMIT newMessage(message);
    Q_EMIT newMessageLate(message);
    message->removeReference();
    return blockSize;
}

bool TestDecoder::isEnabledMessageCode(int32_t code) const
{
    return !mDisabledCodes.contains(code);
}
