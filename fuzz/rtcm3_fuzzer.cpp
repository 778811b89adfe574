// SPDX-License-Identifier: LGPL-2.1-or-later
// Feeds bytes to the RTCM 3 framer and decoder in chunks whose sizes the input chooses, reads
// and renders every value of every field of every decoded message and record, and gives the
// messages to the stream time.
//
// Input: n = first byte % 8 chunk sizes, n bytes of sizes (0: the whole rest), then the stream.
// Without sizes the stream arrives in one chunk.
#include "auxiliary/fuzzenvironment.h"
#include "auxiliary/fuzzinput.h"

#include "fieldinfo.h"
#include "message.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3framer.h"
#include "rtcm3/rtcm3streamtime.h"

#include <QVector>

namespace {

Rtcm3Dictionary const *dictionary = nullptr;

void readAll(Message const *message)
{
    for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
        if (!field->isPresent(message))
            continue;
        const unsigned int count = field->getNumberOfValues(message);
        for (unsigned int index = 0; index < count; ++index) {
            const FieldValue value = field->getValue(message, index);
            value.toString(true, field->getPrecision(), field->getRepresentationMode());
            field->getRawString(value);
            field->getInterpretedString(value, true);
            field->isDoNotUseValue(value);
        }
        if (field->isStringField())
            field->getValueString(message);
    }
    for (Message const *record : message->getSubMessages())
        readAll(record);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzEnvironment::setUp();
    static Rtcm3Dictionary rtcm3;
    dictionary = &rtcm3;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size)
{
    FuzzInput input(data, size);
    QVector<int> chunkSizes;
    for (int count = input.takeByte() % 8; count > 0; --count)
        chunkSizes.append(input.takeByte());
    const QByteArray stream = input.takeRest();

    Rtcm3Framer framer(dictionary->getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(dictionary, QStringLiteral("Decoder"));
    Rtcm3StreamTime streamTime(QDate(2024, 5, 1));
    QObject::connect(&framer, &Rtcm3Framer::frameFound, &decoder,
                     qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    QObject::connect(&decoder, &MessageSource::newMessage, [&streamTime](Message const *message) {
        readAll(message);
        streamTime.processMessage(message);
        Rtcm3StreamTime::isEndOfEpoch(message);
    });

    int position = 0;
    for (int chunk = 0; position < stream.size(); ++chunk) {
        const int chunkSize = chunkSizes.isEmpty() ? 0 : chunkSizes.at(chunk % chunkSizes.size());
        const int length = chunkSize == 0 ? stream.size() - position : chunkSize;
        framer.addData(stream.mid(position, length));
        position += length;
    }
    framer.finish();
    return 0;
}
