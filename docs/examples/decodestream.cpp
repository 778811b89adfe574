// SPDX-License-Identifier: LGPL-2.1-or-later
// Decoding a stream: two decoders, one per input, merged by a multiplexer into the one source
// that the rest of an application listens to.
#include "tiny/tinydecoder.h"
#include "tiny/tinydictionary.h"

#include <fieldinfo.h>
#include <messageinfo.h>
#include <messagesourcemultiplexer.h>

#include <QStringList>

#include <cstdio>

int main()
{
    TinyDictionary dictionary;
    TinyDecoder radio(&dictionary, QStringLiteral("radio"));
    TinyDecoder file(&dictionary, QStringLiteral("file"));
    MessageSourceMultiplexer input(QStringLiteral("input"), nullptr);
    input.addSource(&radio);
    input.addSource(&file);

    // A message is valid for the duration of the signal; keep it with addReference().
    QObject::connect(&input, &MessageSource::newMessage, [](Message const *message) {
        QStringList fields;
        for (FieldInfo const *field : message->getInfo()->getFieldInfos())
            fields.append(field->getName() + QLatin1Char('=')
                          + field->getInterpretedString(field->getValue(message, 0), true));
        std::printf("%s: %s\n", qPrintable(message->getInfo()->getName()),
                    qPrintable(fields.join(Message::fieldSeparator)));
    });
    QObject::connect(&input, &MessageSource::newUnknownMessage,
                     [](FormatInfo const *format, QString const &type) {
                         std::printf("unknown %s block %s\n", qPrintable(format->getName()),
                                     qPrintable(type));
                     });
    QObject::connect(&input, &MessageSource::newEvent, [](MessageApiEvent const &event) {
        std::printf("%s: %s\n", qPrintable(event.getTypeString()), qPrintable(event.getMessage()));
    });

    radio.reportConnectionOpenedEvent();
    radio.decodeMessage(QByteArray::fromHex("01"
                                            "1fcc5d80"
                                            "0676e2a0"
                                            "0007a120"));
    file.decodeMessage(QByteArray::fromHex("02"
                                           "0c"
                                           "02"));
    file.decodeMessage(QByteArray::fromHex("07"
                                           "0000"));
    radio.decodeMessage(QByteArray::fromHex("01"
                                            "1fcc"));
    // A disabled message type is skipped without a word.
    file.disableMessage(dictionary.getFormat()->getMessageInfo(QStringLiteral("Status")));
    file.decodeMessage(QByteArray::fromHex("02"
                                           "0c"
                                           "02"));
    radio.reportConnectionClosedEvent();
    return 0;
}
