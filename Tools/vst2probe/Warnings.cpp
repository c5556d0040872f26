#include "Tools/vst2probe/Warnings.h"

#include "Source/AAX_SInstrumentSetupInfo.h"

#include <algorithm>

#include <fmt/format.h>

namespace
{
constexpr std::size_t kMaxOutputPorts = 1 + static_cast<std::size_t>(kMaxAuxOutputStems);

/** Empty when the host hears every output. */
std::string UnheardOutputs(const SPluginFacts& inFacts, bool inPortsFromCounts)
{
    long heard = 0;
    for (std::size_t i = 0; i < std::min(inFacts.outputPorts.size(), kMaxOutputPorts); ++i)
        heard += inFacts.outputPorts[i].channels;
    if (inFacts.outputPorts.empty()) // of which the option, or its reason, says all there is to say
        heard = inPortsFromCounts ? 2 * static_cast<long>(kMaxOutputPorts) : inFacts.outputs;
    if (heard >= inFacts.outputs)
        return {};
    const bool tooMany = inFacts.outputPorts.empty() || inFacts.outputPorts.size() > kMaxOutputPorts;
    return fmt::format("Of its {} outputs a host hears the first {}: {}.", inFacts.outputs, heard,
                       tooMany ? fmt::format("one port and {} auxiliary ones is all that can be described",
                                             kMaxAuxOutputStems)
                               : "it describes no pin of the rest");
}
} // namespace

std::vector<std::string> WarningsOf(const SPluginFacts& inFacts, bool inPortsFromCounts)
{
    std::vector<std::string> warnings;
    if (std::string unheard = UnheardOutputs(inFacts, inPortsFromCounts); !unheard.empty())
        warnings.push_back(std::move(unheard));
    if (inFacts.latencyAfterBlocks != inFacts.latencyAtStart)
    {
        warnings.push_back(
            fmt::format("Its latency is {} samples when it is opened and {} when it has rendered "
                        "some blocks; a host is told the first only.",
                        inFacts.latencyAtStart, inFacts.latencyAfterBlocks));
    }
    if (inFacts.executables > 1)
    {
        warnings.push_back(fmt::format("It has {} executables of which one is loaded, the first by its name.",
                                       inFacts.executables));
    }
    return warnings;
}
