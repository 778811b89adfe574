// SPDX-License-Identifier: LGPL-2.1-or-later
// Message statistics: the heap that one statistics object takes, alone and with the
// coordinator's book-keeping, empty and after a history of messages with gaps.
#include "benchgoals.h"

#include "formatinfo.h"
#include "messageinfo.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "timesource.h"

#include <benchmark/benchmark.h>

#include <QString>

#include <memory>
#include <vector>

namespace {

/// Enough objects that the growth of the lists they sit in averages out.
constexpr int objectCount = 1000;

/// A format with objectCount message types, named like real ones.
struct Dictionary
{
    Dictionary()
        : format(QStringLiteral("STATBENCH"))
    {
        for (int i = 0; i < objectCount; ++i) {
            infos.push_back(std::make_unique<MessageInfo>(QStringLiteral("Message%1").arg(i)));
            infos.back()->setFormatInfo(&format);
            format.addMessageInfo(infos.back().get());
        }
    }

    FormatInfo format;
    std::vector<std::unique_ptr<MessageInfo>> infos;
};

/// Heap per statistics object made directly, as the coordinator makes it, each one after
/// feed(statistics, time) has run on it.
template <typename Feed> double heapBytesPerStatistics(Dictionary const &dictionary, Feed feed)
{
    TimeSource time;
    MessageStatisticsCoordinator coordinator(nullptr, &time);
    // The first child makes the coordinator's list of children; count from the second on.
    new MessageStatistics(dictionary.infos.front().get(), &time, &coordinator);
    const unsigned long long before = heapBytesInUse();
    for (int i = 1; i < objectCount; ++i)
        feed(new MessageStatistics(dictionary.infos.at(i).get(), &time, &coordinator), time);
    return double(heapBytesInUse() - before) / (objectCount - 1);
}

/// Heap per statistics object with no message yet.
void BM_MessageStatisticsEmptyMemory(benchmark::State &state)
{
    const Dictionary dictionary;
    double bytesPerObject = 0;
    for (auto _ : state)
        bytesPerObject
            = heapBytesPerStatistics(dictionary, [](MessageStatistics *, TimeSource &) {});
    state.counters["heapBytesPerObject"] = bytesPerObject;
}
BENCHMARK(BM_MessageStatisticsEmptyMemory)->Iterations(1);

/// Heap per message type in a coordinator: the object and the coordinator's look-up entries.
void BM_MessageStatisticsCoordinatedMemory(benchmark::State &state)
{
    const Dictionary dictionary;
    double bytesPerType = 0;
    for (auto _ : state) {
        TimeSource time;
        MessageStatisticsCoordinator coordinator(nullptr, &time);
        const unsigned long long before = heapBytesInUse();
        for (auto const &info : dictionary.infos)
            coordinator.getMessageStatistics(info.get());
        bytesPerType = double(heapBytesInUse() - before) / objectCount;
    }
    state.counters["heapBytesPerType"] = bytesPerType;
}
BENCHMARK(BM_MessageStatisticsCoordinatedMemory)->Iterations(1);

/// Heap per statistics object after a history: a few distinct intervals, a missing epoch every
/// tenth message (so all gaps are stored), gap detection on.
void BM_MessageStatisticsHistoryMemory(benchmark::State &state)
{
    const Dictionary dictionary;
    constexpr int messagesPerObject = 1000;
    double bytesPerObject = 0;
    for (auto _ : state) {
        bytesPerObject = heapBytesPerStatistics(
            dictionary, [](MessageStatistics *statistics, TimeSource &time) {
                statistics->setGapDetectionEnabled(true);
                unsigned long long millis = 1400000000000ULL;
                for (int message = 0; message < messagesPerObject; ++message) {
                    millis += message % 10 == 9 ? 2000 : 1000 + 100 * (message % 100 == 50);
                    time.setMillis(millis);
                    statistics->processNewMessage();
                }
            });
    }
    state.counters["heapBytesPerObject"] = bytesPerObject;
}
BENCHMARK(BM_MessageStatisticsHistoryMemory)->Iterations(1);

} // namespace

MSGAPI_BENCH_GOAL(messageStatisticsEmptyMemory,
                  { "message statistics, empty: heap bytes per object",
                    "BM_MessageStatisticsEmptyMemory/iterations:1", "", BenchGoal::CounterAtMost,
                    1024.0, "heapBytesPerObject" })
