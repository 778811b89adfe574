// SPDX-License-Identifier: LGPL-2.1-or-later
#include "benchgoals.h"

#include <malloc.h>

namespace {
std::vector<BenchGoal> &goals()
{
    static std::vector<BenchGoal> registered;
    return registered;
}
} // namespace

int registerBenchGoal(BenchGoal const &goal)
{
    goals().push_back(goal);
    return int(goals().size());
}

std::vector<BenchGoal> const &benchGoals()
{
    return goals();
}

unsigned long long heapBytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}
