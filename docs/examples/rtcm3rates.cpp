// SPDX-License-Identifier: LGPL-2.1-or-later
// Reading RTCM 3: the rates, gaps and errors of every message type in a capture, measured in
// the stream's own time.
#include <rtcm3/rtcm3decoder.h>
#include <rtcm3/rtcm3dictionary.h>
#include <rtcm3/rtcm3epochclock.h>
#include <rtcm3/rtcm3framer.h>

#include <messageinfo.h>
#include <messagesourcemultiplexer.h>
#include <messagestatistics.h>
#include <messagestatisticscoordinator.h>
#include <timesource.h>

#include <QFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    QFile file(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "usage: rtcm3rates CAPTURE\n");
        return 1;
    }

    Rtcm3Dictionary dictionary;
    Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("capture"));
    Rtcm3Decoder decoder(&dictionary, QStringLiteral("decoder"));
    QObject::connect(&framer, &Rtcm3Framer::frameFound, &decoder,
                     qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    // The framer's events (CRC errors, foreign bytes) and the decoder's messages as one source.
    MessageSourceMultiplexer stream(QStringLiteral("stream"), nullptr);
    stream.addSource(&framer);
    stream.addSource(&decoder);

    TimeSource time;
    MessageStatisticsCoordinator statistics(&stream, &time);
    for (MessageInfo const *info : dictionary.getFormat()->getMessageInfos())
        statistics.enableGapDetection(info);
    // Sets the time from each observation message and closes the epochs.
    Rtcm3EpochClock clock(&decoder, &time, &statistics);

    // Chunks of any size will do, as a socket delivers them.
    while (!file.atEnd())
        framer.addData(file.read(4096));
    framer.finish();

    for (MessageStatistics const *messages : statistics.getAllMessageStatistics()) {
        MessageInfo const *info = messages->getMessageInfo();
        const long long interval = messages->getIntervalsSortedOnFrequency(0).value(0);
        std::printf("%-5s %-40s %6u  every %-12s %d missing\n",
                    qPrintable(messages->getMessageName()),
                    qPrintable(info ? info->getShortDescriptiveText() : QStringLiteral("unknown")),
                    messages->getCount(),
                    qPrintable(interval > 0 ? messages->getIntervalString(quint64(interval))
                                            : QStringLiteral("-")),
                    messages->getNumberOfMissingEpochs());
    }
    std::printf("frames %llu, CRC errors %u\n", framer.getFrameCount(),
                statistics.getEventCount(MessageApiEvent::CrcError));
    return 0;
}
