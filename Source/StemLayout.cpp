#include "Source/StemLayout.h"

#include "Source/plugins/SIOPortDef.h"

#include <algorithm>

namespace
{
std::int32_t StemOfChannels(long inChannels, std::int32_t inOtherwise) noexcept
{
    switch (inChannels)
    {
    case 1: return AAX_eStemFormat_Mono;
    case 2: return AAX_eStemFormat_Stereo;
    default: return inOtherwise;
    }
}

std::int32_t StemOfFirstPort(std::span<const SIOPortDef> inPorts, std::int32_t inOtherwise) noexcept
{
    return inPorts.empty() ? inOtherwise : StemOfChannels(inPorts.front().channelCount, inOtherwise);
}
} // namespace

long SStemLayout::InputChannelCount() const noexcept { return AAX_StemChannelCount(mInputStem); }

long SStemLayout::OutputChannelCount() const noexcept
{
    long count = AAX_StemChannelCount(mOutputStem);
    for (const std::int32_t stem : std::span(mAuxStems).first(static_cast<std::size_t>(mNumAuxStems)))
        count += AAX_StemChannelCount(stem);
    return count;
}

SStemLayout StemLayoutOfPorts(std::span<const SIOPortDef> inInputs, std::span<const SIOPortDef> inOutputs)
{
    SStemLayout layout;
    layout.mOutputStem = StemOfFirstPort(inOutputs, AAX_eStemFormat_None);
    layout.mInputStem = StemOfFirstPort(inInputs, layout.mOutputStem);
    if (layout.mOutputStem == AAX_eStemFormat_None)
        layout.mOutputStem = layout.mInputStem;

    if (!inOutputs.empty())
    {
        const std::span aux =
            inOutputs.subspan(1, std::min<std::size_t>(inOutputs.size() - 1, kMaxAuxOutputStems));
        layout.mNumAuxStems = static_cast<std::int32_t>(aux.size());
        std::ranges::transform(aux, layout.mAuxStems.begin(),
                               [](const SIOPortDef& inPort) {
                                   return inPort.channelCount == 2 ? AAX_eStemFormat_Stereo
                                                                   : AAX_eStemFormat_Mono;
                               });
    }
    return layout;
}
