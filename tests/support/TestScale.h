#pragma once

#include <QtGlobal>

#include <algorithm>

// How much a test does where more would find more. All tests go by one number, the percentage in
// TVL_TEST_PERCENT: a small one for every day, 100 for the whole before a matter is closed.
// Whatever it is, the cases of a test class and their names stay the same.

constexpr int EverydayPercent = 5;

inline int testPercent()
{
    const int percent = qEnvironmentVariableIntValue("TVL_TEST_PERCENT");
    return percent > 0 ? percent : EverydayPercent;
}

/** How many random cases, kills or steps of a history are tried out of the whole. */
inline int testCases(int whole)
{
    return std::max(1, int(qint64(whole) * testPercent() / 100));
}

/** How large a case is that looks for costs that grow too fast: a fifth shows them too. */
inline int testSize(int whole)
{
    return testPercent() < 100 ? whole / 5 : whole;
}

/** How far apart the places are that are damaged one after another; over the whole as told. */
inline int testStep(int whole)
{
    // One more than ten times as much meets all remainders of a division by ten.
    return testPercent() < 100 ? 10 * whole + 1 : whole;
}

/** One of how many places in a row is tried where each is a case of its own: one in seven every
 * day.
 */
inline int testStride()
{
    constexpr int EverydayStride = 7;
    return std::max(1, EverydayStride * EverydayPercent / testPercent());
}
