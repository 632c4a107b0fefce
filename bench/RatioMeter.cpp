#include "RatioMeter.h"

#include <algorithm>
#include <vector>

namespace {

double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

void measureAgainst(benchmark::State &state, const RatioGoal &goal, const TimedWork &subject,
                    const TimedWork &limit)
{
    // The first pass of each finds cold caches and an untouched heap.
    subject();
    limit();

    std::vector<double> subjectTimes;
    std::vector<double> ratios;
    bool subjectFirst = false;
    for ([[maybe_unused]] auto round : state) {
        // Whoever goes second finds the caches as the first left them, so they also take turns
        // there.
        subjectFirst = !subjectFirst;
        double limitTime = subjectFirst ? 0 : limit();
        const double subjectTime = subject();
        if (subjectFirst)
            limitTime = limit();
        state.SetIterationTime(subjectTime);
        subjectTimes.push_back(subjectTime);
        ratios.push_back(subjectTime / limitTime);
    }

    const double time = median(subjectTimes);
    state.SetLabel(goal.against);
    state.counters["median_ms"] = time * 1000;
    state.counters[goal.counter] = median(ratios);
    if (goal.bytes > 0)
        state.counters["MB/s"] = goal.bytes / time / 1e6;
    if (goal.target)
        state.counters["target"] = *goal.target;
}

void registerRatio(const std::string &name, int rounds,
                   const std::function<void(benchmark::State &)> &benchmark)
{
    benchmark::RegisterBenchmark(name.c_str(), benchmark)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(rounds);
}
