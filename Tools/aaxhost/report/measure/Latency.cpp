#include "Tools/aaxhost/check/ImpulseArrival.h"
#include "Tools/aaxhost/report/measure/Level.h"
#include "Tools/aaxhost/report/measure/Parts.h"

#include <algorithm>
#include <chrono>
#include <fmt/format.h>

namespace
{
constexpr double kRates[] = {44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0}; // Hz
constexpr std::int32_t kBlockSizes[] = {32, 256, 1024};
constexpr int kLongest = 1 << 20; // samples that are waited for

SReportLatencyPoint LatencyAt(CCheckContext& ioContext, double inRate, std::int32_t inBlock, bool inIsEffect)
{
    CRig rig(ioContext, inRate);
    rig.RenderFrames(4 * std::int64_t{inBlock}, inBlock); // some know it only then
    SReportLatencyPoint point{inRate, inBlock, rig.Instance().Host().Controller().State().mSignalLatency};
    if (!inIsEffect)
        return point;
    rig.Record();
    rig.Feed([source = Impulse(0, 0.5F), start = rig.Position()](std::int64_t frame, std::size_t channel)
             { return source(frame - start, channel); });
    rig.RenderFrames(std::clamp(point.mReported, 0, kLongest) + 4096, inBlock);
    const std::vector<float> response = FirstOutput(rig);
    const auto arrival = FindImpulse(std::vector<double>(response.begin(), response.end()));
    point.mMeasured = arrival ? arrival->Nearest(point.mReported) : -1;
    return point;
}
} // namespace

SReportLatency MeasureLatency(const std::string& inModule, double inSeconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(inSeconds);
    CCheckContext context(inModule, kMeasureStrictness);
    const bool isEffect = !context.IsInstrument() && context.MakeInstance()->InputChannels() > 0;
    SReportLatency latency;
    for (const double rate : kRates)
        for (const std::int32_t block : kBlockSizes)
        {
            if (Clock::now() >= end)
            {
                latency.mCut = fmt::format("the time of {:g} seconds was up", inSeconds);
                return latency;
            }
            latency.mPoints.push_back(LatencyAt(context, rate, block, isEffect));
        }
    return latency;
}
