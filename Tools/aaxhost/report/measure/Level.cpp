#include "Tools/aaxhost/report/measure/Level.h"

#include <algorithm>
#include <cmath>

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
