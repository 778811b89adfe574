// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "auxiliary/rtcm3crc24q.h"
#include "fieldinfo.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3framer.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace Rtcm3TestData {

QString captureDir()
{
    const QDir dir(QStringLiteral(RTCM3_CAPTURE_DIR));
    return dir.exists(QStringLiteral("SOURCES.md")) ? dir.absolutePath() : QString();
}

QByteArray readCapture(QString const &fileName)
{
    QFile file(captureDir() + QLatin1Char('/') + fileName);
    if (captureDir().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QString bits(qint64 value, int width)
{
    QString text;
    for (int bit = width - 1; bit >= 0; --bit)
        text.append(bit < 64 && (quint64(value) >> bit) & 1 ? QLatin1Char('1') : QLatin1Char('0'));
    return text;
}

QByteArray run(QString const &program, QStringList const &arguments, QString const &input)
{
    QProcess process;
    if (!input.isEmpty())
        process.setStandardInputFile(input);
    process.start(program, arguments);
    process.waitForFinished(120000);
    return process.readAllStandardOutput();
}

QByteArray frame(QByteArray const &payload)
{
    QByteArray result;
    result.append(char(0xD3));
    result.append(char((payload.size() >> 8) & 0x03));
    result.append(char(payload.size() & 0xFF));
    result.append(payload);
    const uint32_t crc
        = rtcm3Crc24q(reinterpret_cast<uint8_t const *>(result.constData()), size_t(result.size()));
    result.append(char(crc >> 16));
    result.append(char(crc >> 8));
    result.append(char(crc));
    return result;
}

QByteArray frameFromBits(QString const &bits)
{
    QByteArray payload;
    int count = 0;
    for (QChar c : bits) {
        if (c != QLatin1Char('0') && c != QLatin1Char('1'))
            continue;
        if (count % 8 == 0)
            payload.append('\0');
        if (c == QLatin1Char('1'))
            payload[count / 8] = char(payload.at(count / 8) | (0x80 >> (count % 8)));
        ++count;
    }
    return frame(payload);
}

DecodedStream::DecodedStream(Rtcm3Dictionary const &dictionary, QByteArray const &input)
{
    Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&dictionary, QStringLiteral("Decoder"));
    QObject::connect(&framer, &Rtcm3Framer::frameFound, &decoder,
                     qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    QObject::connect(&decoder, &MessageSource::newMessage, [this](Message const *message) {
        message->addReference();
        messages.append(message);
    });
    QObject::connect(&decoder, &MessageSource::newUnknownMessage,
                     [this](FormatInfo const *, QString const &type) { unknown.append(type); });
    auto record = [this](MessageApiEvent const &event) {
        events.append(event.getTypeString() + QLatin1String(": ") + event.getMessage());
    };
    QObject::connect(&framer, &MessageSource::newEvent, record);
    QObject::connect(&decoder, &MessageSource::newEvent, record);
    framer.addData(input);
    framer.finish();
}

DecodedStream::~DecodedStream()
{
    for (Message const *message : std::as_const(messages))
        message->removeReference();
}

QVector<Message const *> DecodedStream::ofNumber(int number) const
{
    QVector<Message const *> result;
    for (Message const *message : messages) {
        if (message->getInfo()->getName() == QString::number(number))
            result.append(message);
    }
    return result;
}

FieldValue value(Message const *message, QString const &field, unsigned int index)
{
    FieldInfo const *info = message->getInfo()->getFieldInfo(field);
    return info ? info->getValue(message, index) : FieldValue::invalid();
}

} // namespace Rtcm3TestData
