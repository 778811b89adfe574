// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_BENCH_BENCHGOALS_H
#define MESSAGEAPI_BENCH_BENCHGOALS_H

#include <string>
#include <vector>

/**
 * A speed or memory goal: a subject benchmark measured against a reference benchmark of the
 * same run, or a figure that a benchmark reports as a counter held against a fixed limit. The
 * table at the end of the run prints, per goal, both median CPU times and their ratio (or the
 * counter's median) and whether the goal is met.
 */
struct BenchGoal
{
    enum Kind {
        AtMostTimesReference, ///< met when subject time / reference time <= limit
        AtLeastTimesFaster, ///< met when reference time / subject time >= limit
        CounterAtMost ///< met when the subject's counter named by counter is <= limit
    };

    std::string title; ///< shown in the table
    std::string subject; ///< benchmark name, with arguments ("BM_EventLogStorm")
    std::string reference; ///< benchmark name of the reference; empty for CounterAtMost
    Kind kind;
    double limit;
    std::string counter = {}; ///< for CounterAtMost: the counter of the subject ("bytes")
};

/// Adds a goal to the table; returns a dummy so that it can run at static initialisation.
int registerBenchGoal(BenchGoal const &goal);
std::vector<BenchGoal> const &benchGoals();

/// Registers a goal from a source file: MSGAPI_BENCH_GOAL(uniqueId, {title, subject, ...}).
#define MSGAPI_BENCH_GOAL(id, ...)                                                                 \
    [[maybe_unused]] static int const id##GoalRegistered = registerBenchGoal(BenchGoal __VA_ARGS__);

/// Bytes currently allocated on the heap (in use, not reserved), for memory figures.
unsigned long long heapBytesInUse();

#endif // MESSAGEAPI_BENCH_BENCHGOALS_H
