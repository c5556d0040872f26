#include "Tools/aaxhost/report/measure/Level.h"
#include "Tools/aaxhost/report/measure/Parts.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr std::size_t kAutomationPoints = 96;

/** The parameter over which the level changes most: of most plug-ins the volume or the mix. */
std::string MostAudible(CRig& ioRig, const std::vector<std::string>& inIDs)
{
    constexpr std::size_t most = 40;
    std::string best = inIDs.front();
    double widest = -1.0;
    for (std::size_t i = 0; i < std::min(most, inIDs.size()); ++i)
    {
        const double before = ValueOf(ioRig.Instance(), inIDs[i]);
        std::vector<double> levels;
        for (const double value : {0.0, 0.5, 1.0})
        {
            (void)ioRig.Instance().UpdateParameter(inIDs[i], value); // a refusal shows as a level that stays
            (void)RenderLevel(ioRig, kLevelFrames);
            levels.push_back(RenderLevel(ioRig, kLevelFrames));
        }
        const auto [lowest, highest] = std::ranges::minmax(levels);
        (void)ioRig.Instance().UpdateParameter(inIDs[i], before); // where it was
        if (highest - lowest > widest + 0.5)
        {
            widest = highest - lowest;
            best = inIDs[i];
        }
    }
    return best;
}
} // namespace

SReportAutomation MeasureAutomation(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    CRig rig(context);
    CInstance& instance = rig.Instance();
    const auto ids = AutomatableParameters(instance);
    if (ids.empty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no parameters to automate.")};
    SReportAutomation automation;
    rig.Feed(PeriodicNoise());
    rig.Send(0, 0x90, 60, 100);
    rig.RenderSeconds(0.3);
    const std::string id = MostAudible(rig, ids);
    automation.mParameter = NameOfParameter(instance, id);
    rig.Feed(Noise(0.25F)); // the other one comes again more slowly than the points
    constexpr std::int32_t block = 512;
    constexpr int blocksAPoint = 2;
    for (std::size_t point = 0; point < kAutomationPoints; ++point)
    {
        const double phase = static_cast<double>(point) / (kAutomationPoints - 1);
        const double value = 1.0 - std::abs(2.0 * phase - 1.0); // up and down again
        (void)instance.UpdateParameter(id, value);              // a refusal shows as a level that stays
        (void)instance.FinishUpdates();
        automation.mSent.push_back(value);
        automation.mRendered.push_back(RenderLevel(rig, std::int64_t{blocksAPoint} * block));
    }
    automation.mSeconds = kAutomationPoints * blocksAPoint * block / kCheckRate;
    return automation;
}
