#pragma once
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

/** What two calls cost that were measured in turns. */
struct SInterleavedTimes
{
    double mFirst = 0.0;  // microseconds a call, median
    double mSecond = 0.0; // microseconds a call, median
    double mRatio =
        0.0; // of the second over the first: median over the turns, so that what disturbs both is not seen
};

/** The middle one; 0 of none. */
inline double Median(std::vector<double> inValues)
{
    if (inValues.empty())
        return 0.0;
    const auto middle = inValues.begin() + static_cast<std::ptrdiff_t>(inValues.size() / 2);
    std::ranges::nth_element(inValues, middle);
    return *middle;
}

/** @return microseconds a call. */
template <class Call>
double TimeOf(int inCalls, Call& inCall)
{
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < inCalls; ++i)
        inCall();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - before).count() /
           inCalls;
}

/** @return how many calls take about that long; at least one. */
template <class Call>
int CallsWithin(double inMicroseconds, Call& inCall)
{
    int calls = 1;
    while (calls < (1 << 20) && TimeOf(calls, inCall) * calls < inMicroseconds)
        calls *= 2;
    return calls;
}

/**
 * Runs two calls in turns, both about as long: on a machine that does other work as well, or changes its
 * clock, only what was measured at the same time can be compared.
 */
template <class First, class Second>
SInterleavedTimes MeasureInterleaved(First inFirst, Second inSecond, int inTurns)
{
    constexpr double kTurnMicroseconds = 300.0;
    const int calls = CallsWithin(kTurnMicroseconds, inFirst);
    (void)TimeOf(calls, inSecond); // warms its caches up as well
    std::vector<double> first;
    std::vector<double> second;
    std::vector<double> ratios;
    for (int turn = 0; turn < inTurns; ++turn)
    {
        // Each goes first in every other turn, since the one behind finds a warmer cache.
        const bool swapped = turn % 2 != 0;
        const double early = swapped ? TimeOf(calls, inSecond) : TimeOf(calls, inFirst);
        const double late = swapped ? TimeOf(calls, inFirst) : TimeOf(calls, inSecond);
        first.push_back(swapped ? late : early);
        second.push_back(swapped ? early : late);
        ratios.push_back(second.back() / first.back());
    }
    return {Median(first), Median(second), Median(ratios)};
}

/** @return the median time of a call in microseconds. */
template <class Call>
double MedianTime(Call inCall, int inTurns)
{
    constexpr double kTurnMicroseconds = 200.0;
    const int calls = CallsWithin(kTurnMicroseconds, inCall);
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(inTurns));
    for (int turn = 0; turn < inTurns; ++turn)
        times.push_back(TimeOf(calls, inCall));
    return Median(times);
}
