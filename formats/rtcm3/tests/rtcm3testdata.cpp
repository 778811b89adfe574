// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "fieldinfo.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3encoder.h"
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
    return !captureDir().isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                     : QByteArray();
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

QByteArray frame(QString const &payloadBits)
{
    QByteArray payload((payloadBits.size() + 7) / 8, '\0');
    for (int i = 0; i < payloadBits.size(); ++i) {
        if (payloadBits.at(i) == QLatin1Char('1'))
            payload[i / 8] = char(payload.at(i / 8) | (0x80 >> (i % 8)));
    }
    return Rtcm3Encoder::frame(payload);
}

DecodedStream::DecodedStream(Rtcm3Dictionary const &dictionary, QByteArray const &input,
                             int chunkSize)
{
    Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&dictionary, QStringLiteral("Decoder"));
    QObject::connect(&framer, &Rtcm3Framer::frameFound, [&](const uint8_t *bytes, uint length) {
        frames.append(QString::fromLatin1(
            QByteArray(reinterpret_cast<char const *>(bytes), int(length)).toHex()));
        decoder.decodeMessage(bytes, length);
    });
    QObject::connect(&decoder, &MessageSource::newMessage, [this](Message const *message) {
        message->addReference();
        messages.append(message);
    });
    QObject::connect(&decoder, &MessageSource::newUnknownMessage,
                     [this](FormatInfo const *, QString const &type) { unknown.append(type); });
    auto record = [this, &dictionary](MessageApiEvent const &event) {
        events.append(
            (event.getFormat() == dictionary.getFormat() ? QString() : QStringLiteral("?"))
            + event.getTypeString() + QLatin1String(": ") + event.getMessage());
    };
    QObject::connect(&framer, &MessageSource::newEvent, record);
    QObject::connect(&decoder, &MessageSource::newEvent, record);
    chunkSize = chunkSize > 0 ? chunkSize : int(qMax(1, input.size()));
    for (int offset = 0; offset < input.size(); offset += chunkSize)
        framer.addData(input.mid(offset, chunkSize));
    framer.finish();
    events.append(QStringLiteral("%1 foreign, %2 incomplete")
                      .arg(framer.getForeignByteCount())
                      .arg(framer.getIncompleteFrameByteCount()));
}

DecodedStream::~DecodedStream()
{
    for (Message const *message : std::as_const(messages))
        message->removeReference();
}

QVector<Message const *> DecodedStream::ofNumber(int number) const
{
    QVector<Message const *> result;
    std::copy_if(messages.cbegin(), messages.cend(), std::back_inserter(result),
                 [number](Message const *m) { return m->getInfo()->getName().toInt() == number; });
    return result;
}

FieldValue value(Message const *message, QString const &field, unsigned int index)
{
    FieldInfo const *info = message->getInfo()->getFieldInfo(field);
    return info ? info->getValue(message, index) : FieldValue::invalid();
}

} // namespace Rtcm3TestData
