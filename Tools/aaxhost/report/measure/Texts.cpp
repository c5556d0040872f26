#include "Interfaces/VST2/AEffect.h"
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/report/measure/Parts.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <algorithm>

SReportParameterTexts ReadTexts(const std::string& inModule)
{
    constexpr std::int32_t most = 4096; // a nonsensical count must not become a huge list
    CCheckContext context(inModule, kMeasureStrictness);
    CDrivenPlugin plugin(kHostVersion);
    SReportParameterTexts texts;
    if (const std::string refusal =
            plugin.Open(context.Module().PluginPath(), static_cast<float>(kCheckRate));
        !refusal.empty())
    {
        texts.mProblem = "The wrapped plug-in could not be loaded by itself: " + refusal + ".";
        return texts;
    }
    const std::int32_t count = std::clamp(plugin.Effect().numParams, 0, most);
    for (std::int32_t i = 0; i < count; ++i)
    {
        const float before = plugin.GetParameter(i);
        const auto textAt = [&](float value)
        {
            plugin.SetParameter(i, value);
            return plugin.Text(effGetParamDisplay, i);
        };
        SReportTexts& text = texts.mParameters.emplace_back();
        text.mName = plugin.Text(effGetParamName, i);
        text.mUnit = plugin.Text(effGetParamLabel, i);
        text.mDefault = plugin.Text(effGetParamDisplay, i);
        text.mAtZero = textAt(0.0F);
        text.mAtHalf = textAt(0.5F);
        text.mAtOne = textAt(1.0F);
        plugin.SetParameter(i, before); // of some it decides how the others are shown
    }
    return texts;
}
