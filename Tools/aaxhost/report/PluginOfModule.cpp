#include "Tools/aaxhost/report/PluginOfModule.h"

#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/support/ChildRun.h"

#include <chrono>
#include <cmath>

namespace
{
constexpr double kProbeSeconds = 20.0; // as long as vst2probe's
} // namespace

SProbeResult ProbePluginOf(const std::string& inModule, double inLimitSeconds)
{
    const double limit = inLimitSeconds > 0.0 ? inLimitSeconds : kProbeSeconds;
    // Only an opened module says where its plug-in is; the plug-in is loaded with it, so that it is looked at
    // in other processes.
    const SChildEnd end = RunInChild(
        [&]
        {
            CHostLog log;
            const auto module = CModule::Open(inModule, log);
            return module ? (*module)->PluginPath() : std::string();
        },
        limit);
    if (end.mKind == SChildEnd::EKind::Finished && !end.mText.empty())
        return ProbePluginInCopy(end.mText, std::chrono::milliseconds(std::llround(limit * 1000.0)));
    SProbeResult result;
    result.mRefusal = "the module that it is in does not open";
    return result;
}
