#include "Tools/aaxhost/check/SCheck.h"

#include <algorithm>
#include <vector>

const char* NameOfVerdict(EVerdict inVerdict) noexcept
{
    switch (inVerdict)
    {
    case EVerdict::Passed: return "passed";
    case EVerdict::Warning: return "warning";
    case EVerdict::Failed: return "failed";
    case EVerdict::Skipped: return "skipped";
    case EVerdict::Unseen: return "unseen";
    case EVerdict::Unstable: return "unstable";
    }
    return "";
}

std::span<const SCheck> AllChecks()
{
    static const std::vector<SCheck> all = []
    {
        std::vector<SCheck> checks;
        for (const auto& group :
             {DescriptionChecks(), LifeCycleChecks(), ParameterChecks(), AutomationChecks(), MidiChecks(),
              RenderingChecks(), SignalChecks(), TransportChecks(), StateChecks(), EditorChecks(),
              FeatureChecks(), HostFeatureChecks(), RobustnessChecks()})
            checks.insert(checks.end(), group.begin(), group.end());
        return checks;
    }();
    return all;
}

const SCheck* FindCheck(std::string_view inName)
{
    const auto all = AllChecks();
    const auto found =
        std::ranges::find(all, inName, [](const SCheck& check) { return std::string_view(check.mName); });
    return found == all.end() ? nullptr : &*found;
}
