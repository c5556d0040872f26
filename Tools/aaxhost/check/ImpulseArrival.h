#pragma once
#include <optional>
#include <span>

/** Where a response has its impulse, in frames. */
struct SImpulseArrival
{
    int mBegin = 0; // the first sample above a thousandth of the peak
    int mPeak = 0;
    double mPeakSize = 0.0; // linear

    /** The beginning, or, of a filter that rings ahead, the peak where that is nearer to the reported
     * latency. */
    int Nearest(int inReported) const noexcept;
};

/** What is not finite counts as silence. @return nothing where the response is silent, below -100 dB. */
std::optional<SImpulseArrival> FindImpulse(std::span<const double> inResponse);
