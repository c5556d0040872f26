#include "Source/features/CStems.h"

#include "Source/DescribedShape.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductOptions.h"

#include <cstdint>

namespace
{
constexpr SStemPair kMono{AAX_eStemFormat_Mono, AAX_eStemFormat_Mono};
constexpr SStemPair kMonoStereo{AAX_eStemFormat_Mono, AAX_eStemFormat_Stereo};
constexpr SStemPair kStereo{AAX_eStemFormat_Stereo, AAX_eStemFormat_Stereo};

std::vector<SStemPair> ProductStems()
{
    constexpr SStemPair known[] = {kMono, kMonoStereo, kStereo}; // by number, from 1
    std::vector<SStemPair> list;
    for (auto rest = static_cast<std::uint32_t>(kStems); rest != 0; rest >>= 4U)
        list.push_back(known[(rest & 0xFU) - 1]);
    return list;
}

bool IsKnown(const SStemPair& inStems)
{
    return inStems == kMono || inStems == kMonoStereo || inStems == kStereo;
}

SStemPair OwnStems(const CVst2Plugin& inPlugin)
{
    const SStemLayout layout = StemLayoutOfPorts(inPlugin.InputPorts(), inPlugin.OutputPorts());
    return {layout.mInputStem, layout.mOutputStem};
}

VstSpeakerArrangement ArrangementOf(std::int32_t inStem)
{
    VstSpeakerArrangement arrangement{};
    arrangement.numChannels = static_cast<std::int32_t>(AAX_StemChannelCount(inStem));
    const bool isMono = arrangement.numChannels == 1;
    arrangement.type = isMono ? kSpeakerArrMono : kSpeakerArrStereo;
    for (std::int32_t i = 0; i < arrangement.numChannels; ++i)
        arrangement.speakers[i].type = isMono ? kSpeakerM : kSpeakerL + i;
    return arrangement;
}

/** @return whether the plug-in says that it takes them; its channels may be others then, or not. */
bool Offer(const CVst2Plugin& inPlugin, const SStemPair& inStems)
{
    VstSpeakerArrangement input = ArrangementOf(inStems.mInput);
    VstSpeakerArrangement output = ArrangementOf(inStems.mOutput);
    return inPlugin.Dispatch(effSetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&input), &output) == 1;
}

bool CanHave(const CVst2Plugin& inPlugin, const SStemPair& inStems)
{
    const SStemPair own = OwnStems(inPlugin);
    const bool isNarrower = AAX_StemChannelCount(inStems.mInput) <= AAX_StemChannelCount(own.mInput) &&
                            AAX_StemChannelCount(inStems.mOutput) <= AAX_StemChannelCount(own.mOutput);
    return isNarrower || Offer(inPlugin, inStems);
}

/** The same in every build: songs are found by it. */
std::uint32_t DerivedId(std::uint32_t inId, const SStemPair& inStems)
{
    std::uint32_t hash = 2166136261U; // FNV-1a
    const auto add = [&](std::uint32_t inWord)
    {
        for (std::uint32_t shift = 0; shift < 32; shift += 8)
            hash = (hash ^ ((inWord >> shift) & 0xFFU)) * 16777619U;
    };
    add(inId);
    add(static_cast<std::uint32_t>(inStems.mInput));
    add(static_cast<std::uint32_t>(inStems.mOutput));
    return hash != inId ? hash : ~hash;
}

ESecondChannel SecondOf(std::int32_t inStem, long inOwnChannels, bool inIsAsBefore, ESecondChannel inOfMono)
{
    return AAX_StemChannelCount(inStem) == 1 && inOwnChannels == 2 && inIsAsBefore ? inOfMono
                                                                                   : ESecondChannel::kHosts;
}
} // namespace

std::vector<SComponentChoice> ListStemComponents(CVst2Plugin& inPlugin)
{
    const auto id = static_cast<std::uint32_t>(inPlugin.GetUniqueId());
    std::vector<SComponentChoice> list;
    for (const SStemPair& stems : ProductStems())
        if (CanHave(inPlugin, stems))
            list.push_back({stems, list.empty() ? id : DerivedId(id, stems)});
    if (list.empty())
        list.push_back({OwnStems(inPlugin), id});
    return list;
}

void CStems::Choose(const SStemPair& inTold, const CVst2Plugin& inPlugin)
{
    mStems = IsKnown(inTold) ? inTold : ProductStems().front();
    mInputs = inPlugin.GetEffect()->numInputs;
    mOutputs = inPlugin.GetEffect()->numOutputs;
    if (mStems == OwnStems(inPlugin))
        return;
    (void)inPlugin.Dispatch(effMainsChanged, 0, 0); // channels change while it is off
    (void)Offer(inPlugin, mStems);                  // what comes of it is seen by its channels
}

void CStems::Fit(SDescribedShape& ioShape, const AEffect& inEffect) const
{
    const long auxiliary = ioShape.mOutputChannels - ioShape.mMainOutputChannels;
    ioShape.mSecondInput =
        SecondOf(mStems.mInput, ioShape.mInputChannels, inEffect.numInputs == mInputs, ESecondChannel::kSame);
    ioShape.mSecondOutput = SecondOf(mStems.mOutput, ioShape.mMainOutputChannels,
                                     inEffect.numOutputs == mOutputs, ESecondChannel::kUnheard);
    ioShape.mInputChannels = AAX_StemChannelCount(mStems.mInput);
    ioShape.mMainOutputChannels = AAX_StemChannelCount(mStems.mOutput);
    ioShape.mOutputChannels = ioShape.mMainOutputChannels + auxiliary;
}
