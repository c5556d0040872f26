#include "Tools/aaxhost/report/measure/Level.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

std::vector<float> FirstOutput(const CRig& inRig)
{
    return inRig.Recording().empty() ? std::vector<float>() : inRig.Recording().front();
}

SignalSource PeriodicNoise()
{
    return [noise = Noise(0.25F)](std::int64_t frame, std::size_t channel)
    { return noise(frame % kLevelFrames, channel); };
}

double LevelOf(std::span<const float> inSamples)
{
    double energy = 0.0;
    for (const float sample : inSamples)
        energy += std::isfinite(sample) ? static_cast<double>(sample) * static_cast<double>(sample) : 0.0;
    const auto count = static_cast<double>(std::max<std::size_t>(inSamples.size(), 1));
    return std::max(-120.0, 10.0 * std::log10(std::max(energy / count, 1e-12)));
}

double RenderLevel(CRig& ioRig, std::int64_t inFrames)
{
    ioRig.ClearRecording();
    ioRig.Record();
    ioRig.RenderFrames(inFrames, 512);
    return LevelOf(FirstOutput(ioRig));
}

int ImpulseArrival(std::span<const float> inResponse, int inReported)
{
    const auto size = [](float sample) { return std::isfinite(sample) ? std::abs(sample) : 0.0F; };
    const auto top = std::ranges::max_element(inResponse, {}, size);
    constexpr float silent = 1e-5F;
    if (top == inResponse.end() || size(*top) < silent)
        return -1;
    const auto begin =
        std::ranges::find_if(inResponse, [&](float sample) { return size(sample) > 0.001F * size(*top); });
    const auto first = static_cast<int>(begin - inResponse.begin());
    const auto loudest = static_cast<int>(top - inResponse.begin());
    return std::abs(loudest - inReported) < std::abs(first - inReported) ? loudest : first;
}
