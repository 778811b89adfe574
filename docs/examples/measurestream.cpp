// SPDX-License-Identifier: LGPL-2.1-or-later
// Measuring a stream: counts, intervals and gaps per message type, in the stream's own time,
// and the events with the time at which they came.
#include "tiny/tinydecoder.h"
#include "tiny/tinydictionary.h"

#include <eventlog.h>
#include <messageinfo.h>
#include <messagestatistics.h>
#include <messagestatisticscoordinator.h>
#include <timesource.h>

#include <cstdio>

int main()
{
    TinyDictionary dictionary;
    TinyDecoder decoder(&dictionary, QStringLiteral("receiver"));
    TimeSource time;
    MessageStatisticsCoordinator statistics(&decoder, &time);
    for (MessageInfo const *info : dictionary.getFormat()->getMessageInfos())
        statistics.enableGapDetection(info);
    auto *log = new EventLog(&decoder, &time); // a child of the decoder

    // 20 s of a receiver: a position every second, a status every two; the positions of
    // seconds 8 and 9 are lost, and one block fails its CRC.
    const unsigned long long start = 1400000000000ULL; // ms since the GPS epoch
    for (unsigned int second = 0; second < 20; ++second) {
        time.setMillis(start + second * 1000ULL);
        if (second != 8 && second != 9)
            decoder.decodeMessage(QByteArray::fromHex("01"
                                                      "1fcc5d80"
                                                      "0676e2a0"
                                                      "0007a120"));
        if (second % 2 == 0)
            decoder.decodeMessage(QByteArray::fromHex("02"
                                                      "0c"
                                                      "02"));
        if (second == 13)
            decoder.reportCRCErrorEvent(decoder.getFormatInfo());
        statistics.closeEpoch(); // the epoch of this second has ended
    }

    for (MessageStatistics const *messages : statistics.getAllMessageStatistics()) {
        const long long interval = messages->getIntervalsSortedOnFrequency(0).value(0);
        std::printf("%s: %u messages, every %s, %d gaps, %d epochs missing\n",
                    qPrintable(messages->getMessageName()), messages->getCount(),
                    qPrintable(messages->getIntervalString(quint64(interval))),
                    messages->getNumberOfGaps(), messages->getNumberOfMissingEpochs());
        for (MessageStatistics::Gap const &gap : messages->getGaps())
            std::printf("    gap from second %llu: %u missing\n", (gap.startMillis - start) / 1000,
                        gap.missingEpochs);
    }
    for (EventLog::Entry const &entry : log->getEntries())
        std::printf("%s %s: %s\n", qPrintable(entry.time.toString(Qt::ISODate)),
                    qPrintable(entry.event.getTypeString()), qPrintable(entry.event.getMessage()));
    return 0;
}
