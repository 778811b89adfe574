// SPDX-License-Identifier: LGPL-2.1-or-later
// Event log: an error storm (one text repeated past the repeat limit) against one hash increment,
// logging against a hash increment, a list append and one signal, and the heap that entries take.
#include "benchgoals.h"

#include "eventlog.h"
#include "messageapievent.h"
#include "messagesource.h"
#include "timesource.h"

#include <benchmark/benchmark.h>

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QVector>

namespace {

/// Distinct texts that the logging benchmarks cycle through.
constexpr int loggedTextCount = 64;
/// Rounds of all texts between two clear(): each text is logged this many times, below the
/// repeat limit, so every event is kept.
constexpr int roundsPerClear = 50;

QVector<QString> loggedTexts()
{
    QVector<QString> texts;
    for (int i = 0; i < loggedTextCount; ++i)
        texts.append(QStringLiteral("Rover%1 CRC error").arg(i));
    return texts;
}

} // namespace

/// Counts what a log announces, as a window showing the log would take it.
class EntryCounter : public QObject
{
    Q_OBJECT

public:
    int count = 0;

public Q_SLOTS:
    void countEntry(EventLog::Entry const &) { ++count; }
};

namespace {

void BM_EventLogStorm(benchmark::State &state)
{
    MessageSource source(QStringLiteral("Rover"), nullptr);
    TimeSource time(nullptr);
    time.setMillis(1000);
    auto *log = new EventLog(&source, &time); // a child of the source
    const MessageApiEvent event(MessageApiEvent::CrcError, QStringLiteral("VEXA CRC error"),
                                nullptr);
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

void BM_EventLogLogged(benchmark::State &state)
{
    MessageSource source(QStringLiteral("Rover"), nullptr);
    TimeSource time(nullptr);
    time.setMillis(1400000000000ULL);
    auto *log = new EventLog(&source, &time); // a child of the source
    EntryCounter counter;
    QObject::connect(log, &EventLog::newEntry, &counter, &EntryCounter::countEntry);
    QVector<MessageApiEvent> events;
    for (QString const &text : loggedTexts())
        events.append(MessageApiEvent(MessageApiEvent::CrcError, text, nullptr));

    // Clearing is part of the price of logging: every entry is freed once. The floor pays the
    // same, so it is amortised over both alike.
    int text = 0;
    int round = 0;
    for (auto _ : state) {
        log->processEvent(events.at(text));
        if (++text == loggedTextCount) {
            text = 0;
            if (++round == roundsPerClear) {
                round = 0;
                log->clear();
            }
        }
    }
    if (counter.count != int(state.iterations()))
        state.SkipWithError("the log dropped events");
}
BENCHMARK(BM_EventLogLogged);

} // namespace

/// The floor's entry: the same data as a logged entry, in plain types.
struct FloorEntry
{
    QDateTime time;
    int type;
    QString text;
    void const *format;
};

/// The floor's log: a hash increment, a list append and one signal per event.
class FloorLog : public QObject
{
    Q_OBJECT

public:
    void process(int type, QString const &text)
    {
        if (++mCounts[text] > 100)
            return;
        mEntries.append(FloorEntry { mTime, type, text, nullptr });
        Q_EMIT newEntry(mEntries.constLast());
    }
    void clear()
    {
        mEntries.clear();
        mCounts.clear();
    }

    QDateTime mTime = QDateTime::fromSecsSinceEpoch(1715964800, Qt::UTC);

Q_SIGNALS:
    void newEntry(FloorEntry entry);

private:
    QHash<QString, int> mCounts;
    QList<FloorEntry> mEntries;
};

class FloorEntryCounter : public QObject
{
    Q_OBJECT

public:
    int count = 0;

public Q_SLOTS:
    void countEntry(FloorEntry const &) { ++count; }
};

namespace {

void BM_EventLogLoggedFloor(benchmark::State &state)
{
    FloorLog log;
    FloorEntryCounter counter;
    QObject::connect(&log, &FloorLog::newEntry, &counter, &FloorEntryCounter::countEntry);
    const QVector<QString> texts = loggedTexts();

    int text = 0;
    int round = 0;
    for (auto _ : state) {
        log.process(MessageApiEvent::CrcError, texts.at(text));
        if (++text == loggedTextCount) {
            text = 0;
            if (++round == roundsPerClear) {
                round = 0;
                log.clear();
            }
        }
    }
    if (counter.count != int(state.iterations()))
        state.SkipWithError("the floor dropped events");
}
BENCHMARK(BM_EventLogLoggedFloor);

/// Heap per kept entry: many entries sharing their texts, so that the figure is the entry and
/// its share of the list and of the repeat counts, not the text.
void BM_EventLogEntryMemory(benchmark::State &state)
{
    const QVector<QString> texts = loggedTexts();
    QVector<MessageApiEvent> events;
    for (QString const &text : texts)
        events.append(MessageApiEvent(MessageApiEvent::CrcError, text, nullptr));
    constexpr int perText = 99;
    double bytesPerEntry = 0;
    for (auto _ : state) {
        MessageSource source(QStringLiteral("Rover"), nullptr);
        TimeSource time(nullptr);
        time.setMillis(1400000000000ULL);
        auto *log = new EventLog(&source, &time);
        const unsigned long long before = heapBytesInUse();
        for (int round = 0; round < perText; ++round) {
            for (MessageApiEvent const &event : std::as_const(events))
                log->processEvent(event);
        }
        const unsigned long long after = heapBytesInUse();
        const int entries = log->getEntries().size();
        bytesPerEntry = double(after - before) / entries;
    }
    state.counters["heapBytesPerEntry"] = bytesPerEntry;
}
BENCHMARK(BM_EventLogEntryMemory)->Iterations(1);

} // namespace

MSGAPI_BENCH_GOAL(eventLogStorm,
                  { "event log: repeated text past the limit vs hash increment", "BM_EventLogStorm",
                    "BM_EventLogStormFloor", BenchGoal::AtMostTimesReference, 2.0 })
MSGAPI_BENCH_GOAL(eventLogLogged,
                  { "event log: logged event vs hash, append and signal", "BM_EventLogLogged",
                    "BM_EventLogLoggedFloor", BenchGoal::AtMostTimesReference, 2.0 })

#include "bench_eventlog.moc"
