// SPDX-License-Identifier: LGPL-2.1-or-later
// RTCM 3 on real captures, read into memory once: the framer, the scan (framer, decoder, three
// phases, statistics with gap detection on the stream's own epochs, event log, last release),
// the full decode (every value of every message and record) and the rendering (every value as
// text with its unit), each against the floor that every RTCM 3 reader pays: one pass of a
// byte-at-a-time CRC-24Q table over the same bytes. Memory: heap per message in flight and the
// peak heap of a whole scan.
#include "benchgoals.h"

#include "eventlog.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "message.h"
#include "messageinfo.h"
#include "messagesourcemultiplexer.h"
#include "messagestatisticscoordinator.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3epochclock.h"
#include "rtcm3/rtcm3framer.h"
#include "timesource.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <array>
#include <memory>
#include <unordered_map>

namespace {

/// The capture of that name beside the checkout; empty when it is absent.
QByteArray const &capture(int index)
{
    static const std::array<QByteArray, 3> captures = [] {
        std::array<QByteArray, 3> read;
        const char *const names[]
            = { "dropped-packets.rtcm3", "gmsd7-truncated.rtcm3", "f9t-interleaved.log" };
        for (int i = 0; i < 3; ++i) {
            QFile file(QStringLiteral(RTCM3_CAPTURE_DIR "/") + QLatin1String(names[i]));
            if (file.open(QIODevice::ReadOnly))
                read[std::size_t(i)] = file.readAll();
        }
        return read;
    }();
    return captures[std::size_t(index)];
}

/// The byte-at-a-time table computation of CRC-24Q, written here so that the floor does not
/// move when the library's own computation gets faster.
uint32_t tableCrc24q(uint8_t const *data, std::size_t length)
{
    static const std::array<uint32_t, 256> table = [] {
        std::array<uint32_t, 256> t {};
        for (uint32_t byte = 0; byte < 256; ++byte) {
            uint32_t crc = byte << 16;
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc & 0x800000) ? ((crc << 1) ^ 0x1864CFB) : (crc << 1);
            t[byte] = crc & 0xFFFFFF;
        }
        return t;
    }();
    uint32_t crc = 0;
    for (std::size_t i = 0; i < length; ++i)
        crc = ((crc << 8) & 0xFFFFFF) ^ table[((crc >> 16) ^ data[i]) & 0xFF];
    return crc;
}

bool haveCapture(benchmark::State &state)
{
    if (capture(int(state.range(0))).isEmpty()) {
        state.SkipWithError("the RTCM 3 captures (../shared/data/rtcm) are absent");
        return false;
    }
    return true;
}

void reportThroughput(benchmark::State &state, qint64 frames)
{
    const auto bytes = double(capture(int(state.range(0))).size());
    state.SetBytesProcessed(int64_t(state.iterations() * bytes));
    state.counters["frames/s"]
        = benchmark::Counter(double(frames), benchmark::Counter::kIsIterationInvariantRate);
}

void BM_Rtcm3CrcFloor(benchmark::State &state)
{
    if (!haveCapture(state))
        return;
    QByteArray const &input = capture(int(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            tableCrc24q(reinterpret_cast<uint8_t const *>(input.constData()), input.size()));
    }
    reportThroughput(state, 0);
}
BENCHMARK(BM_Rtcm3CrcFloor)->Arg(0)->Arg(1)->Arg(2);

void BM_Rtcm3Framing(benchmark::State &state)
{
    if (!haveCapture(state))
        return;
    Rtcm3Dictionary dictionary;
    QByteArray const &input = capture(int(state.range(0)));
    qint64 frames = 0;
    for (auto _ : state) {
        Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("Framer"));
        QObject::connect(&framer, &Rtcm3Framer::frameFound,
                         [&frames](const uint8_t *, uint) { ++frames; });
        framer.addData(input);
        framer.finish();
    }
    reportThroughput(state, frames / qMax<qint64>(1, state.iterations()));
}
BENCHMARK(BM_Rtcm3Framing)->Arg(0)->Arg(1)->Arg(2);

enum class Depth { Scan, FullDecode, Rendering };

/// Reads (and renders) every value of every message and record it is given. The field list of
/// each message type is taken once, as a reader that shows messages of known types keeps it.
class ValueReader
{
public:
    explicit ValueReader(Depth depth)
        : mDepth(depth)
    { }

    void read(Message const *message)
    {
        for (FieldInfo const *field : fieldsOf(message->getInfo())) {
            const unsigned int count = field->getNumberOfValues(message);
            for (unsigned int i = 0; i < count; ++i) {
                const FieldValue value = field->getValue(message, i);
                ++mValues;
                if (value.getType().getBasisType() == FieldType::SubMessage)
                    read(value.getSubMessage());
                else if (mDepth == Depth::Rendering)
                    benchmark::DoNotOptimize(field->getInterpretedString(value, true));
                else if (!value.isValid()) // every value is used: a decoder may not skip one
                    ++mInvalid;
            }
        }
    }

    qint64 values() const { return mValues; }
    qint64 invalidValues() const { return mInvalid; }

private:
    /// Records of one type come one after the other: the last list is looked at first.
    QVector<FieldInfo const *> const &fieldsOf(MessageInfo const *info)
    {
        if (info != mLastInfo) {
            auto found = mFieldLists.find(info);
            if (found == mFieldLists.end())
                found = mFieldLists.emplace(info, info->getFieldInfos()).first;
            mLastInfo = info;
            mLastFields = &found->second;
        }
        return *mLastFields;
    }

    Depth mDepth;
    qint64 mValues = 0;
    qint64 mInvalid = 0;
    // Node-based, so that a list stays where it is while a record's type is added.
    std::unordered_map<MessageInfo const *, QVector<FieldInfo const *>> mFieldLists;
    MessageInfo const *mLastInfo = nullptr;
    QVector<FieldInfo const *> const *mLastFields = nullptr;
};

/// The whole chain a scanner builds, over the capture once.
class Scan
{
public:
    Scan(Rtcm3Dictionary const &dictionary, Depth depth)
        : mFramer(dictionary.getFormat(), QStringLiteral("Framer"))
        , mDecoder(&dictionary, QStringLiteral("Decoder"))
        , mEvents(QStringLiteral("Events"), nullptr)
        , mCoordinator(&mDecoder, &mTimeSource)
        , mLog(&mEvents, &mTimeSource)
        , mClock(&mDecoder, &mTimeSource, &mCoordinator, QDate(2018, 7, 12))
        , mReader(depth)
    {
        QObject::connect(&mFramer, &Rtcm3Framer::frameFound, &mDecoder,
                         qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
        mEvents.addSource(&mFramer);
        mEvents.addSource(&mDecoder);
        for (MessageInfo const *info : dictionary.getFormat()->getMessageInfos())
            mCoordinator.enableGapDetection(info);
        if (depth != Depth::Scan) {
            QObject::connect(&mDecoder, &MessageSource::newMessage,
                             [this](Message const *m) { mReader.read(m); });
        }
    }

    void run(QByteArray const &input)
    {
        mFramer.addData(input);
        mFramer.finish();
    }

    qint64 frames() const { return qint64(mFramer.getFrameCount()); }
    qint64 values() const { return mReader.values(); }
    qint64 invalidValues() const { return mReader.invalidValues(); }

private:
    Rtcm3Framer mFramer;
    Rtcm3Decoder mDecoder;
    MessageSourceMultiplexer mEvents;
    TimeSource mTimeSource;
    MessageStatisticsCoordinator mCoordinator;
    EventLog mLog;
    Rtcm3EpochClock mClock;
    ValueReader mReader;
};

void runScan(benchmark::State &state, Depth depth)
{
    if (!haveCapture(state))
        return;
    Rtcm3Dictionary dictionary;
    QByteArray const &input = capture(int(state.range(0)));
    qint64 frames = 0;
    qint64 values = 0;
    qint64 invalid = 0;
    for (auto _ : state) {
        Scan scan(dictionary, depth);
        scan.run(input);
        frames = scan.frames();
        values = scan.values();
        invalid = scan.invalidValues();
    }
    if (invalid > 0) {
        state.SkipWithError("the capture decoded to invalid values");
        return;
    }
    reportThroughput(state, frames);
    if (values > 0)
        state.counters["values"] = double(values);
}

void BM_Rtcm3Scan(benchmark::State &state)
{
    runScan(state, Depth::Scan);
}
BENCHMARK(BM_Rtcm3Scan)->Arg(0)->Arg(1)->Arg(2);

void BM_Rtcm3FullDecode(benchmark::State &state)
{
    runScan(state, Depth::FullDecode);
}
BENCHMARK(BM_Rtcm3FullDecode)->Arg(0)->Arg(1)->Arg(2);

void BM_Rtcm3Rendering(benchmark::State &state)
{
    runScan(state, Depth::Rendering);
}
BENCHMARK(BM_Rtcm3Rendering)->Arg(0);

/// Heap per message held in flight (each decoded message referenced until the end, minus the
/// frame bytes it copies), and the peak heap of a scan of the capture over its start.
void BM_Rtcm3Memory(benchmark::State &state)
{
    if (!haveCapture(state))
        return;
    Rtcm3Dictionary dictionary;
    QByteArray const &input = capture(int(state.range(0)));
    double perMessage = 0;
    double peak = 0;
    for (auto _ : state) {
        Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("Framer"));
        Rtcm3Decoder decoder(&dictionary, QStringLiteral("Decoder"));
        QObject::connect(&framer, &Rtcm3Framer::frameFound, &decoder,
                         qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
        QVector<Message const *> held;
        held.reserve(20000);
        qint64 frameBytes = 0;
        QObject::connect(&decoder, &MessageSource::newMessage, [&](Message const *message) {
            message->addReference();
            held.append(message);
            frameBytes += message->getRawSize();
        });
        const unsigned long long before = heapBytesInUse();
        framer.addData(input);
        perMessage = (double(heapBytesInUse() - before) - double(frameBytes)) / held.size();
        for (Message const *message : std::as_const(held))
            message->removeReference();

        // The scan, fed in chunks as a socket would, with the heap sampled after each.
        const unsigned long long start = heapBytesInUse();
        unsigned long long highest = start;
        {
            Scan scan(dictionary, Depth::Scan);
            for (int offset = 0; offset < input.size(); offset += 4096) {
                scan.run(input.mid(offset, 4096));
                highest = qMax(highest, heapBytesInUse());
            }
        }
        peak = double(highest - start);
    }
    state.counters["heapBytesPerMessageOverFrame"] = perMessage;
    state.counters["peakHeapBytes"] = peak;
}
BENCHMARK(BM_Rtcm3Memory)->Arg(0)->Iterations(1);

} // namespace

MSGAPI_BENCH_GOAL(rtcm3Framing,
                  { "RTCM 3 framing vs byte-table CRC-24Q", "BM_Rtcm3Framing/0",
                    "BM_Rtcm3CrcFloor/0", BenchGoal::AtMostTimesReference, 0.5 })
MSGAPI_BENCH_GOAL(rtcm3Scan,
                  { "RTCM 3 scan vs byte-table CRC-24Q", "BM_Rtcm3Scan/0", "BM_Rtcm3CrcFloor/0",
                    BenchGoal::AtMostTimesReference, 1.5 })
MSGAPI_BENCH_GOAL(rtcm3FullDecode,
                  { "RTCM 3 full decode vs byte-table CRC-24Q", "BM_Rtcm3FullDecode/0",
                    "BM_Rtcm3CrcFloor/0", BenchGoal::AtMostTimesReference, 4.0 })
MSGAPI_BENCH_GOAL(rtcm3Rendering,
                  { "RTCM 3 rendering vs byte-table CRC-24Q (reported)", "BM_Rtcm3Rendering/0",
                    "BM_Rtcm3CrcFloor/0", BenchGoal::AtMostTimesReference, 1000.0 })
MSGAPI_BENCH_GOAL(rtcm3MessageMemory,
                  { "RTCM 3 heap per message in flight over its frame (bytes)",
                    "BM_Rtcm3Memory/0/iterations:1", "", BenchGoal::CounterAtMost, 256.0,
                    "heapBytesPerMessageOverFrame" })
MSGAPI_BENCH_GOAL(rtcm3PeakMemory,
                  { "RTCM 3 peak heap of a scan (bytes)", "BM_Rtcm3Memory/0/iterations:1", "",
                    BenchGoal::CounterAtMost, 4.0 * 1024 * 1024, "peakHeapBytes" })
