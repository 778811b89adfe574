// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3streamgenerator.h"

#include "eventlog.h"
#include "messageinfo.h"
#include "messagesourcemultiplexer.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3framer.h"
#include "rtcm3/rtcm3streamtime.h"
#include "timesource.h"

#include <QTest>

#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__)
#define RTCM3_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RTCM3_ADDRESS_SANITIZER 1
#endif
#endif
#ifdef RTCM3_ADDRESS_SANITIZER
// The sanitizer's own heap, which mallinfo2() does not see; its header is not always installed.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

/**
 * A long damaged stream through framer, decoder, stream time, statistics and event log: every
 * frame put in is counted, every other byte is counted as foreign, and the heap does not grow
 * with the stream's length. MESSAGEAPI_LONG_STREAM_BYTES sets the length (default 4 MiB;
 * tools/run-fuzz.sh runs 1 GiB).
 */
class tst_Rtcm3LongStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void boundedAndComplete();
};

namespace {

/// Bytes of heap in use, as the allocator counts them.
quint64 heapInUse()
{
#ifdef RTCM3_ADDRESS_SANITIZER
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

} // namespace

void tst_Rtcm3LongStream::boundedAndComplete()
{
    const quint64 length = qEnvironmentVariableIsSet("MESSAGEAPI_LONG_STREAM_BYTES")
        ? qgetenv("MESSAGEAPI_LONG_STREAM_BYTES").toULongLong()
        : 4u << 20;
    // What the flow may hold beyond its state after the first MiB: the framer's buffer, two
    // chunks. A log that kept every run of foreign bytes grew by 1.4 MB in the first 4 MiB.
    constexpr quint64 heapBound = 512u << 10;

    Rtcm3Dictionary dictionary;
    Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("Framer"));
    Rtcm3Decoder decoder(&dictionary, QStringLiteral("Decoder"));
    QObject::connect(&framer, &Rtcm3Framer::frameFound, &decoder,
                     qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    MessageSourceMultiplexer sources(QStringLiteral("Stream"), nullptr);
    sources.addSource(&framer);
    sources.addSource(&decoder);
    TimeSource time;
    Rtcm3StreamTime streamTime(QDate(2024, 5, 1));
    MessageStatisticsCoordinator statistics(&sources, &time);
    statistics.enableGapDetection(dictionary.getMessageInfo(1077));
    // A child of the multiplexer.
    auto *log = new EventLog(&sources, &time);
    QObject::connect(&decoder, &MessageSource::newMessageEarly, [&](Message const *message) {
        if (streamTime.processMessage(message))
            time.setMillis(streamTime.getMillis());
    });
    QObject::connect(&decoder, &MessageSource::newMessageLate, [&](Message const *message) {
        if (Rtcm3StreamTime::isEndOfEpoch(message))
            statistics.closeEpoch();
    });

    Rtcm3StreamGenerator generator(16);
    std::mt19937 chunkSizes(12);
    QByteArray stream;
    quint64 fed = 0;
    quint64 baseline = 0;
    quint64 peak = 0;
    while (fed < length) {
        const int chunkSize = 1 + int(chunkSizes() % 65536);
        while (stream.size() < chunkSize)
            generator.appendEpoch(stream);
        framer.addData(stream.left(chunkSize));
        stream.remove(0, chunkSize);
        fed += quint64(chunkSize);
        if (baseline == 0 && fed >= (1u << 20))
            baseline = heapInUse();
        if (baseline != 0)
            peak = qMax(peak, heapInUse());
    }
    framer.addData(stream);
    fed += quint64(stream.size());
    framer.finish();

    quint64 messages = 0;
    for (MessageStatistics const *perType : statistics.getAllMessageStatistics())
        messages += perType->getCount();
    QCOMPARE(framer.getFrameCount(), generator.getFrameCount());
    QCOMPARE(framer.getForeignByteCount(), fed - generator.getFrameByteCount());
    QCOMPARE(messages, generator.getFrameCount() - generator.getShortFrameCount());
    QVERIFY(framer.getCrcErrorCount() >= generator.getCorruptedFrameCount());
    qInfo("%llu bytes, %llu frames, %llu entries in the log, heap %llu bytes above %llu", fed,
          framer.getFrameCount(), quint64(log->getEntries().size()), peak - baseline, baseline);
    QVERIFY2(peak - baseline < heapBound,
             qPrintable(QStringLiteral("the heap grew by %1 bytes").arg(peak - baseline)));
}

QTEST_GUILESS_MAIN(tst_Rtcm3LongStream)
#include "tst_rtcm3longstream.moc"
