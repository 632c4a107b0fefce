#pragma once

#include <benchmark/benchmark.h>

#include <ctime>
#include <functional>
#include <optional>
#include <string>

/** Does a piece of work and returns the seconds that the part of it that counts took. */
using TimedWork = std::function<double()>;

/**
 * The processor time that @p work takes. Not the time on the clock: what else runs on the machine
 * must not count, and nothing that is measured here sleeps or has threads.
 */
template <typename Work>
[[nodiscard]] double processorSeconds(Work &&work)
{
    const std::clock_t start = std::clock();
    work();
    return double(std::clock() - start) / CLOCKS_PER_SEC;
}

/** What a benchmark is measured by. */
struct RatioGoal
{
    std::string against; ///< What the limit is, in words.
    double bytes = 0; ///< What one pass of the subject takes in or gives out; 0 for no rate.
    std::optional<double> target = {}; ///< The highest ratio that is good enough.
    std::string counter = "ratio"; ///< What the ratio is called.
};

/**
 * Measures a subject by its limit: the two take turns in one run, so that a machine that speeds up
 * or slows down meanwhile does so for both. Reports the median of the rounds' ratios, and stops
 * what a target is measured by from being mistaken for a time on this machine.
 */
void measureAgainst(benchmark::State &state, const RatioGoal &goal, const TimedWork &subject,
                    const TimedWork &limit);

/** Registers a benchmark of some rounds, each of which measures the subject and the limit once. */
void registerRatio(const std::string &name, int rounds,
                   const std::function<void(benchmark::State &)> &benchmark);
