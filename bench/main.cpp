// SPDX-License-Identifier: LGPL-2.1-or-later
// Runs every benchmark (three repetitions in random order, medians) and prints the goal table: per
// goal the subject's and the reference's median CPU time, their ratio and whether the goal is met,
// then the figures that benchmarks report as counters.
#include "benchgoals.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

namespace {

double toNanoseconds(double value, benchmark::TimeUnit unit)
{
    switch (unit) {
    case benchmark::kSecond:
        return value * 1e9;
    case benchmark::kMillisecond:
        return value * 1e6;
    case benchmark::kMicrosecond:
        return value * 1e3;
    case benchmark::kNanosecond:
        break;
    }
    return value;
}

/// The console output as usual, and the medians kept for the goal table.
class MedianCollector : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(std::vector<Run> const &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (Run const &run : runs) {
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
                continue;
            const std::string name = run.run_name.str();
            mNanoseconds[name] = toNanoseconds(run.GetAdjustedCPUTime(), run.time_unit);
            for (auto const &counter : run.counters)
                mCounters[name][counter.first] = counter.second.value;
        }
    }

    std::map<std::string, double> mNanoseconds;
    std::map<std::string, std::map<std::string, double>> mCounters;
};

std::string formatTime(double ns)
{
    char text[32];
    if (ns >= 1e6)
        std::snprintf(text, sizeof text, "%.2f ms", ns / 1e6);
    else if (ns >= 1e3)
        std::snprintf(text, sizeof text, "%.2f us", ns / 1e3);
    else
        std::snprintf(text, sizeof text, "%.1f ns", ns);
    return text;
}

/// One row of the goal table; the header row uses it too, so the columns stay aligned.
void printRow(char const *goal, char const *subject, char const *reference, char const *ratio,
              char const *limit, char const *result)
{
    std::printf("%-58s %12s %12s %9s %10s %s\n", goal, subject, reference, ratio, limit, result);
}

/// A figure held against a fixed limit: the counter's median stands in the subject column.
/// Returns whether the goal is met; a goal that did not run counts as met, as above.
bool printCounterGoal(MedianCollector const &collector, BenchGoal const &goal)
{
    const auto counters = collector.mCounters.find(goal.subject);
    if (counters == collector.mCounters.end()
        || counters->second.find(goal.counter) == counters->second.end()) {
        printRow(goal.title.c_str(), "-", "-", "-", "-", "not run");
        return true;
    }
    const double value = counters->second.at(goal.counter);
    const bool met = value <= goal.limit;
    char valueText[32];
    char limitText[32];
    std::snprintf(valueText, sizeof valueText, "%.0f", value);
    std::snprintf(limitText, sizeof limitText, "<= %.0f", goal.limit);
    printRow(goal.title.c_str(), valueText, "-", "-", limitText, met ? "met" : "MISSED");
    return met;
}

int printGoalTable(MedianCollector const &collector)
{
    std::printf("\n");
    printRow("goal", "subject", "reference", "ratio", "limit", "result");
    int missed = 0;
    for (BenchGoal const &goal : benchGoals()) {
        if (goal.kind == BenchGoal::CounterAtMost) {
            missed += printCounterGoal(collector, goal) ? 0 : 1;
            continue;
        }
        const auto subject = collector.mNanoseconds.find(goal.subject);
        const auto reference = collector.mNanoseconds.find(goal.reference);
        if (subject == collector.mNanoseconds.end() || reference == collector.mNanoseconds.end()) {
            printRow(goal.title.c_str(), "-", "-", "-", "-", "not run");
            continue;
        }
        const bool faster = goal.kind == BenchGoal::AtLeastTimesFaster;
        const double ratio
            = faster ? reference->second / subject->second : subject->second / reference->second;
        const bool met = faster ? ratio >= goal.limit : ratio <= goal.limit;
        missed += met ? 0 : 1;
        char ratioText[32];
        char limitText[32];
        std::snprintf(ratioText, sizeof ratioText, faster ? "%.1fx" : "%.2f", ratio);
        std::snprintf(limitText, sizeof limitText, faster ? ">= %.0fx" : "<= %.2f", goal.limit);
        printRow(goal.title.c_str(), formatTime(subject->second).c_str(),
                 formatTime(reference->second).c_str(), ratioText, limitText,
                 met ? "met" : "MISSED");
    }

    std::printf("\nfigures (medians):\n");
    for (auto const &benchmarkCounters : collector.mCounters) {
        for (auto const &counter : benchmarkCounters.second)
            std::printf("  %-56s %-28s %14.1f\n", benchmarkCounters.first.c_str(),
                        counter.first.c_str(), counter.second);
    }
    return missed;
}

bool hasOption(int argc, char **argv, char const *prefix)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], prefix, std::strlen(prefix)) == 0)
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);

    std::vector<char *> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=3";
    char aggregatesOnly[] = "--benchmark_report_aggregates_only=true";
    // The repetitions of all benchmarks run in random order, so that a subject and its
    // reference share the machine's busy and quiet spells instead of one getting a quiet one.
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    if (!hasOption(argc, argv, "--benchmark_repetitions"))
        arguments.push_back(repetitions);
    if (!hasOption(argc, argv, "--benchmark_report_aggregates_only"))
        arguments.push_back(aggregatesOnly);
    if (!hasOption(argc, argv, "--benchmark_enable_random_interleaving"))
        arguments.push_back(interleaving);
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());

    MedianCollector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    benchmark::Shutdown();
    const int missed = printGoalTable(collector);
    std::printf("\n%d goal(s) missed\n", missed);
    return 0;
}
