#include "Tools/aaxhost/check/Comparison.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
std::string OtherSoundOrChunk(const SHeard& inPlugin, const SHeard& inModule)
{
    std::string other = OtherSound(inPlugin.mSound, inModule.mSound);
    if (other.empty() && inPlugin.mChunk != inModule.mChunk)
        other = fmt::format("the plug-in's chunk of {} bytes has {} bytes and differs from byte {} on",
                            inPlugin.mChunk.size(), inModule.mChunk.size(),
                            std::ranges::mismatch(inPlugin.mChunk, inModule.mChunk).in1 -
                                inPlugin.mChunk.begin());
    return other;
}
} // namespace

std::vector<char> PluginChunkOf(const SInstanceState& inState)
{
    constexpr std::size_t trailer = 9; // a mark of five bytes, and the program's number
    std::vector<char> chunk;
    for (const CStateChunk& saved : inState.mChunks)
        if (saved.Record().mChunkID == AAX_FourCharCode("0001") && saved.Data().size() >= trailer)
            for (const std::byte byte : saved.Data().first(saved.Data().size() - trailer))
                chunk.push_back(static_cast<char>(byte));
    return chunk;
}

std::string OtherSound(const Sound& inPlugin, const Sound& inModule)
{
    for (std::size_t i = 0; i < std::min(inPlugin.size(), inModule.size()); ++i)
        if (inPlugin[i] != inModule[i])
            return fmt::format("output {} differs from frame {} on", i + 1,
                               std::ranges::mismatch(inPlugin[i], inModule[i]).in1 - inPlugin[i].begin());
    return {};
}

SFinding Compare(const SComparison& inComparison)
{
    const SHeard with = inComparison.mWith();
    if (inComparison.mWith() != with)
        return SFinding::Skipped(kUnsteady);
    if (inComparison.mWithout() == with)
        return SFinding::Skipped(inComparison.mSameAnyway);
    const std::string other = OtherSoundOrChunk(with, inComparison.mModule());
    return other.empty() ? SFinding::Passed()
                         : SFinding::Failed(fmt::format("{}: {}.", inComparison.mDiffers, other));
}
