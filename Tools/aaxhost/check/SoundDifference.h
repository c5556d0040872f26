#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

using Sound = std::vector<std::vector<float>>; // channel-major

/** Where and how far two sounds are apart. */
struct SSoundDifference
{
    std::size_t mChannel = 0; // the first with a difference
    std::size_t mFrame = 0;   // where it begins there
    float mBefore = 0.0F;     // the samples at that place
    float mNow = 0.0F;
    double mLargest = 0.0; // between two finite samples of any channel
    std::size_t mSamples = 0;
    std::size_t mAll = 0; // samples that were compared
};

/** As far as both go. @return nothing where no two samples are further apart than inTolerance. */
std::optional<SSoundDifference> DifferenceOf(const Sound& inBefore, const Sound& inNow, float inTolerance);

/** "output 1 is 0.25000 at frame 37 where it was 0.50000; 12 of 9600 samples differ, by up to -12.0 dB" */
std::string InWords(const SSoundDifference& inDifference);
