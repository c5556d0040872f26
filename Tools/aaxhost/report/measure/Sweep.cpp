#include "Tools/aaxhost/report/measure/Level.h"
#include "Tools/aaxhost/report/measure/Parts.h"

#include <algorithm>
#include <chrono>
#include <fmt/format.h>

namespace
{
constexpr int kValues = 9;                   // from 0 to 1
constexpr std::size_t kMostParameters = 128; // more is no picture
constexpr double kAudibleDecibels = 0.5;     // beyond what the level does by itself

/** Frames in which values glide and echoes come; the more parameters, the fewer. */
std::int64_t SettlingFrames(std::size_t inParameters)
{
    constexpr std::int64_t all = 300000; // of one point of each parameter: some seconds
    return std::clamp<std::int64_t>(all / static_cast<std::int64_t>(inParameters), 4096, 32768);
}

/** The level with the values that there are, of an instrument with a note that is played anew. */
double SettledLevel(CRig& ioRig, bool inIsPlayed, std::int64_t inSettling)
{
    if (inIsPlayed)
        ioRig.Send(0, 0x80, 60, 64);
    ioRig.RenderFrames(inSettling, 512);
    if (inIsPlayed)
        ioRig.Send(0, 0x90, 60, 100);
    return RenderLevel(ioRig, kLevelFrames);
}

double RangeOf(const std::vector<double>& inLevels)
{
    const auto [lowest, highest] = std::ranges::minmax(inLevels);
    return highest - lowest;
}
} // namespace

SReportSweep MeasureSweep(const std::string& inModule, double inSeconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(inSeconds);
    CCheckContext context(inModule, kMeasureStrictness);
    SReportSweep sweep;
    sweep.mIsPlayed = context.IsInstrument();
    CRig rig(context);
    CInstance& instance = rig.Instance();
    const std::vector<std::string> ids = AutomatableParameters(instance);
    if (ids.empty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no parameters to automate.")};
    sweep.mAutomatable = static_cast<int>(ids.size());
    if (!sweep.mIsPlayed)
        rig.Feed(PeriodicNoise());
    const std::int64_t settling = SettlingFrames(ids.size());
    sweep.mSettling = static_cast<double>(settling) / kCheckRate;
    rig.RenderFrames(8 * kLevelFrames, 512); // echoes build up
    std::vector<double> still;
    for (int i = 0; i < kValues; ++i)
    {
        sweep.mValues.push_back(static_cast<double>(i) / (kValues - 1));
        still.push_back(SettledLevel(rig, sweep.mIsPlayed, settling));
    }
    sweep.mSpread = RangeOf(still);
    const std::vector<SParameterInfo> parameters = instance.ListParameters();
    for (const std::string& id : ids)
    {
        if (sweep.mParameters.size() == kMostParameters)
            sweep.mCut = fmt::format("only the first {} parameters are swept", kMostParameters);
        else if (Clock::now() >= end)
            sweep.mCut = fmt::format("the time of {:g} seconds was up", inSeconds);
        if (!sweep.mCut.empty())
            break;
        const double before = ValueOf(instance, id);
        const auto info = std::ranges::find(parameters, id, &SParameterInfo::mID);
        SReportSweptParameter& swept = sweep.mParameters.emplace_back();
        swept.mID = id;
        swept.mName = info == parameters.end() ? std::string() : info->mName;
        for (const double value : sweep.mValues)
        {
            (void)instance.UpdateParameter(id, value); // a refusal shows as a level that stays
            (void)instance.FinishUpdates();
            swept.mLevels.push_back(SettledLevel(rig, sweep.mIsPlayed, settling));
        }
        swept.mIsAudible = RangeOf(swept.mLevels) > sweep.mSpread + kAudibleDecibels;
        (void)instance.UpdateParameter(id, before); // where it was
        (void)instance.FinishUpdates();
        rig.RenderFrames(settling, 512);
    }
    return sweep;
}
