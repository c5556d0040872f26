#include "Tools/aaxhost/report/measure/Level.h"

#include <algorithm>
#include <cmath>

std::vector<float> FirstOutput(const CRig& inRig)
{
    return inRig.Recording().empty() ? std::vector<float>() : inRig.Recording().front();
}

double RenderLevel(CRig& ioRig, std::int64_t inFrames)
{
    ioRig.ClearRecording();
    ioRig.Record();
    ioRig.RenderFrames(inFrames, 512);
    double energy = 0.0;
    for (const float sample : FirstOutput(ioRig))
        energy += std::isfinite(sample) ? static_cast<double>(sample) * static_cast<double>(sample) : 0.0;
    return std::max(-120.0, 10.0 * std::log10(std::max(energy / static_cast<double>(inFrames), 1e-12)));
}
