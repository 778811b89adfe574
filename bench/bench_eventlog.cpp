// SPDX-License-Identifier: LGPL-2.1-or-later
// Event log: an error storm (one text repeated past the repeat limit) against one hash increment.
#include "benchgoals.h"

#include "eventlog.h"
#include "messageapievent.h"
#include "messagesource.h"
#include "timesource.h"

#include <benchmark/benchmark.h>

#include <QHash>
#include <QString>

namespace {

void BM_EventLogStorm(benchmark::State &state)
{
    MessageSource source(QStringLiteral("Rover"), nullptr);
    TimeSource time(nullptr);
    time.setMillis(1000);
    auto *log = new EventLog(&source, &time); // a child of the source
    const MessageApiEvent event(MessageApiEvent::CrcError, QStringLiteral("VEXA CRC error"), nullptr);
    for (int i = 0; i < log->getMaxRepeat(); ++i)
        log->processEvent(event);
    for (auto _ : state)
        log->processEvent(event);
    benchmark::DoNotOptimize(log->getEntries().size());
}
BENCHMARK(BM_EventLogStorm);

void BM_EventLogStormFloor(benchmark::State &state)
{
    QHash<QString, int> counts;
    const QString text = QStringLiteral("VEXA CRC error");
    for (auto _ : state) {
        ++counts[text];
        benchmark::DoNotOptimize(counts);
    }
}
BENCHMARK(BM_EventLogStormFloor);

} // namespace

MSGAPI_BENCH_GOAL(eventLogStorm, {"event log: repeated text past the limit vs hash increment",
                                  "BM_EventLogStorm", "BM_EventLogStormFloor",
                                  BenchGoal::AtMostTimesReference, 2.0})
