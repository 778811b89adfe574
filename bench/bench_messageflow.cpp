// SPDX-License-Identifier: LGPL-2.1-or-later
// Message flow: one block from the parser's signal through the adapter, a decoder that builds one
// message, its three phases, a multiplexer and the statistics coordinator (gap detection on) to
// the last removeReference, against the same chain written with plain QObject signals.
#include "benchgoals.h"

#include "abstractdecoder.h"
#include "formatinfo.h"
#include "message.h"
#include "messageinfo.h"
#include "messagesourcemultiplexer.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "parsemessagesadapter.h"
#include "timesource.h"

#include "memleaktracer.h"

#include <benchmark/benchmark.h>

#include <QHash>
#include <QObject>

#include <cstdint>

namespace {

constexpr unsigned int blockLength = 64;
/// The receiver time of the first block: some day in the GPS era.
constexpr unsigned long long startMillis = 1400000000000ULL;
constexpr unsigned long long epochMillis = 1000;
/// Every this many blocks one epoch passes without a block, so that gaps are found and closed.
constexpr unsigned int blocksPerMissingEpoch = 100;

/// The millis to advance the clock by before block number block.
unsigned long long stepBefore(unsigned int block)
{
    return block % blocksPerMissingEpoch == 0 ? 2 * epochMillis : epochMillis;
}

} // namespace

/// Stands in for an application's stream parser: signals a complete block at its buffer.
class BenchParser : public QObject
{
    Q_OBJECT

public:
    char const *buffer() const { return mBuffer; }
    // Out of line so that a profile can count the blocks and their cost.
    Q_NEVER_INLINE void deliver(unsigned int id) { Q_EMIT vexa(id, blockLength); }

Q_SIGNALS:
    void vexa(unsigned int id, unsigned int length);
    void crcErrorVexa();

private:
    char mBuffer[blockLength] = {};
};

namespace {

/// The smallest concrete message: it points at the bytes it was decoded from.
class BenchMessage : public Message
{
public:
    BenchMessage(MessageInfo const *info, uint8_t const *raw, unsigned int size)
        : Message(info)
        , mRaw(raw)
        , mSize(size)
    { }

    unsigned int getRawSize() const override { return mSize; }

protected:
    uint8_t const *getRawRepresentation() const override { return mRaw; }

private:
    uint8_t const *mRaw;
    unsigned int mSize;
};

/// A decoder that makes one message of every block and announces it in its three phases.
class BenchDecoder : public AbstractDecoder
{
public:
    BenchDecoder(FormatInfo const *format, MessageInfo const *info)
        : AbstractDecoder(QStringLiteral("Bench"), nullptr)
        , mFormat(format)
        , mInfo(info)
    { }

    using AbstractDecoder::decodeMessage;
    int32_t decodeMessage(const uint8_t *buffer, uint maxlength) override
    {
        auto *message = new BenchMessage(mInfo, buffer, maxlength);
        message->addReference();
        Q_EMIT newMessageEarly(message);
        Q_EMIT newMessage(message);
        Q_EMIT newMessageLate(message);
        message->removeReference();
        return int32_t(maxlength);
    }
    FormatInfo const *getFormatInfo() const override { return mFormat; }
    void reset() override { }
    void enableMessageCode(int32_t) override { }
    void disableMessageCode(int32_t) override { }
    bool isEnabledMessageCode(int32_t) const override { return true; }

private:
    FormatInfo const *mFormat;
    MessageInfo const *mInfo;
};

/// Runs blocks through the whole chain; with the tracer enabled when traced is true.
void runMessageFlow(benchmark::State &state, bool traced)
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    const bool wasEnabled = tracer->isEnabled();

    FormatInfo format(QStringLiteral("FLOWBENCH"));
    MessageInfo info(QStringLiteral("Position"));
    info.setFormatInfo(&format);
    format.addMessageInfo(&info);

    BenchParser parser;
    BenchDecoder decoder(&format, &info);
    new ParseMessagesAdapter(&parser, nullptr, parser.buffer(), &decoder); // dies with the parser
    MessageSourceMultiplexer multiplexer(QStringLiteral("All"), nullptr);
    multiplexer.addSource(&decoder);
    TimeSource time;
    MessageStatisticsCoordinator coordinator(&multiplexer, &time);
    coordinator.enableGapDetection(&info);

    tracer->setEnabled(traced);
    unsigned long long millis = startMillis;
    unsigned int block = 0;
    for (auto _ : state) {
        ++block;
        millis += stepBefore(block);
        time.setMillis(millis);
        parser.deliver(block);
    }
    tracer->setEnabled(wasEnabled);

    state.SetItemsProcessed(state.iterations());
    MessageStatistics const *statistics = coordinator.getMessageStatistics(&info);
    if (statistics->getCount() != block)
        state.SkipWithError("the statistics missed blocks");
}

void BM_MessageFlow(benchmark::State &state)
{
    runMessageFlow(state, false);
}
BENCHMARK(BM_MessageFlow);

void BM_MessageFlowTraced(benchmark::State &state)
{
    runMessageFlow(state, true);
    MemLeakTracer::getInstance()->reset();
}
BENCHMARK(BM_MessageFlowTraced);

/// The floor's message: allocated and freed once per block like the real one.
struct FloorMessage
{
    void const *info;
    uint8_t const *raw;
    unsigned int size;
};

} // namespace

/// The floor's decoder: the adapter's slot and the decoder in one, plain signals.
class FloorDecoder : public QObject
{
    Q_OBJECT

public:
    explicit FloorDecoder(char const *buffer, void const *info)
        : mBuffer(reinterpret_cast<uint8_t const *>(buffer))
        , mInfo(info)
    { }

public Q_SLOTS:
    void processVexa(unsigned int, unsigned int length)
    {
        auto *message = new FloorMessage { mInfo, mBuffer, length };
        Q_EMIT newMessageEarly(message);
        Q_EMIT newMessage(message);
        Q_EMIT newMessageLate(message);
        delete message;
    }

Q_SIGNALS:
    void newMessageEarly(FloorMessage const *message);
    void newMessage(FloorMessage const *message);
    void newMessageLate(FloorMessage const *message);

private:
    uint8_t const *mBuffer;
    void const *mInfo;
};

/// The floor's multiplexer: forwards the three phases signal to signal.
class FloorMultiplexer : public QObject
{
    Q_OBJECT

public:
    void addSource(FloorDecoder *source)
    {
        connect(source, &FloorDecoder::newMessage, this, &FloorMultiplexer::newMessage);
        connect(source, &FloorDecoder::newMessageEarly, this, &FloorMultiplexer::newMessageEarly);
        connect(source, &FloorDecoder::newMessageLate, this, &FloorMultiplexer::newMessageLate);
    }

Q_SIGNALS:
    void newMessageEarly(FloorMessage const *message);
    void newMessage(FloorMessage const *message);
    void newMessageLate(FloorMessage const *message);
};

/// The floor's statistics: one counter per message type, found by pointer.
class FloorCounter : public QObject
{
    Q_OBJECT

public:
    QHash<void const *, unsigned int> counts;

public Q_SLOTS:
    void processNewMessage(FloorMessage const *message) { ++counts[message->info]; }
};

namespace {

void BM_MessageFlowFloor(benchmark::State &state)
{
    int infoStandIn = 0;
    BenchParser parser;
    FloorDecoder decoder(parser.buffer(), &infoStandIn);
    QObject::connect(&parser, &BenchParser::vexa, &decoder, &FloorDecoder::processVexa);
    FloorMultiplexer multiplexer;
    multiplexer.addSource(&decoder);
    FloorCounter counter;
    QObject::connect(&multiplexer, &FloorMultiplexer::newMessage, &counter,
                     &FloorCounter::processNewMessage);

    unsigned int block = 0;
    for (auto _ : state) {
        ++block;
        parser.deliver(block);
    }
    state.SetItemsProcessed(state.iterations());
    if (counter.counts.value(&infoStandIn) != block)
        state.SkipWithError("the counter missed blocks");
}
BENCHMARK(BM_MessageFlowFloor);

} // namespace

MSGAPI_BENCH_GOAL(messageFlow,
                  { "message flow: block to last release vs plain signals", "BM_MessageFlow",
                    "BM_MessageFlowFloor", BenchGoal::AtMostTimesReference, 2.0 })
MSGAPI_BENCH_GOAL(messageFlowTraced,
                  { "message flow, tracer enabled, vs plain signals", "BM_MessageFlowTraced",
                    "BM_MessageFlowFloor", BenchGoal::AtMostTimesReference, 3.0 })

#include "bench_messageflow.moc"
