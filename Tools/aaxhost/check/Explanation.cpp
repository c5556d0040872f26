#include "Tools/aaxhost/check/Explanation.h"

#include <algorithm>

std::vector<SExplanation> AllExplanations()
{
    std::vector<SExplanation> all;
    for (const auto& group :
         {AutomationExplanations(), DescriptionExplanations(), EditorExplanations(), FeatureExplanations(),
          HostFeatureExplanations(), LifeCycleExplanations(), MidiExplanations(), ParameterExplanations(),
          RenderingExplanations(), RobustnessExplanations(), SignalExplanations(), StateExplanations(),
          TransportExplanations()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}

const SExplanation* FindExplanation(std::string_view inCheck)
{
    static const std::vector<SExplanation> all = AllExplanations();
    const auto found = std::ranges::find(
        all, inCheck, [](const SExplanation& explanation) { return std::string_view(explanation.mCheck); });
    return found == all.end() ? nullptr : &*found;
}
