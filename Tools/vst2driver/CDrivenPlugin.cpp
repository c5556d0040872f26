#include "Tools/vst2driver/CDrivenPlugin.h"

#include "Platform/PluginImage.h"
#include "Tools/vst2driver/LoadFault.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <mutex>
#include <utility>

namespace
{
/** Longer than any text of a plug-in that was seen; the interface allows 64 characters. */
constexpr std::size_t kTextLength = 1024;

/** The one that is being called: whoever calls its host without an effect is taken for it. The driving thread
 * writes, the plug-ins' calls read on any. */
std::atomic<CDrivenPlugin*> gCurrent = nullptr;
/** All that are alive, for calls of the others. */
std::vector<CDrivenPlugin*> gAlive;
std::mutex gAliveMutex;
} // namespace

void CDrivenPlugin::SBuffers::Resize(std::int32_t inCount)
{
    mChannels.assign(static_cast<std::size_t>(std::clamp(inCount, 0, kMaxChannels)),
                     std::vector<float>(kMaxFrames));
    mPointers.clear();
    std::ranges::transform(mChannels, std::back_inserter(mPointers),
                           [](auto& ioChannel) { return ioChannel.data(); });
}

CDrivenPlugin::CDrivenPlugin(VstIntPtr inEntryVersion, HostAnswer inAnswer)
    : mEntryVersion(inEntryVersion), mAnswer(std::move(inAnswer))
{
    const std::lock_guard lock(gAliveMutex);
    gAlive.push_back(this);
}

CDrivenPlugin::~CDrivenPlugin()
{
    try
    {
        Close();
    }
    catch (...)
    {
        // There is nobody left to tell.
    }
    const std::lock_guard lock(gAliveMutex);
    std::erase(gAlive, this);
    CDrivenPlugin* self = this;
    (void)gCurrent.compare_exchange_strong(self, nullptr); // another one may be current
}

std::string CDrivenPlugin::Load(const std::string& inPath)
{
    mImage = OpenPluginImage(inPath.c_str());
    if (mImage == nullptr || !mImage->LoadExecutable())
        return LoadFault(inPath);
    for (const char* name : {"VSTPluginMain", "main_macho", PlatformEntrySymbol()})
    {
        void* const symbol = name != nullptr ? mImage->FindSymbol(name) : nullptr;
        if (symbol != nullptr)
        {
            mEntry = reinterpret_cast<VstPluginEntryProc>(symbol);
            return {};
        }
    }
    return "it has no entry function of VST 2";
}

std::string CDrivenPlugin::Enter()
{
    gCurrent = this;
    AEffect* const effect = mEntry(&HostCallback);
    if (effect == nullptr)
        return "its entry function returned nothing";
    if (effect->magic != kEffectMagic || effect->dispatcher == nullptr)
        return "its entry function returned something that is no VST 2 effect";
    mEffect = effect;
    return {};
}

std::string CDrivenPlugin::Open(const std::string& inPath, float inSampleRate)
{
    std::string refusal = Load(inPath);
    if (refusal.empty())
        refusal = Enter();
    if (refusal.empty())
        Start(inSampleRate);
    return refusal;
}

void CDrivenPlugin::Start(float inSampleRate)
{
    mTime.sampleRate = static_cast<double>(inSampleRate);
    // Twice, as an instance of a module does: some plug-ins drop the rate that was sent before they were
    // open, some make their own instance in the first effOpen only, and some take more memory the second
    // time.
    for (int turn = 0; turn < 2; ++turn)
    {
        (void)Dispatch(effSetSampleRate, 0, 0, nullptr, inSampleRate); // results of these have no meaning
        (void)Dispatch(effSetBlockSize, 0, kMaxFrames);
        (void)Dispatch(effOpen);
        (void)Dispatch(effMainsChanged, 0, 1);
        mIsOn = true;
    }
    mInputs.Resize(Effect().numInputs);
    mOutputs.Resize(Effect().numOutputs);
}

void CDrivenPlugin::Close()
{
    if (mEffect == nullptr)
        return;
    if (std::exchange(mIsOn, false))
        (void)Dispatch(effMainsChanged, 0, 0); // as above
    (void)Dispatch(effClose);
    mEffect = nullptr;
}

VstIntPtr CDrivenPlugin::Dispatch(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                                  void* inPointer, float inOpt)
{
    gCurrent.store(this, std::memory_order_release);
    AEffect* const effect = mEffect;
    return effect->dispatcher(effect, inOpcode, inIndex, inValue, inPointer, inOpt);
}

std::string CDrivenPlugin::Text(std::int32_t inOpcode, std::int32_t inIndex)
{
    std::array<char, kTextLength> text{};
    (void)Dispatch(inOpcode, inIndex, 0, text.data()); // many plug-ins answer 0 and write all the same
    text.back() = '\0';
    return text.data();
}

bool CDrivenPlugin::CanDo(std::string inText) { return Dispatch(effCanDo, 0, 0, inText.data()) == 1; }

std::string CDrivenPlugin::OutputLabel(std::int32_t inChannel)
{
    std::array<VstPinProperties, 2> answer{}; // the second is room for what is written too far
    if (Dispatch(effGetOutputProperties, inChannel, 0, answer.data()) == 0)
        return {};
    const auto& label = answer.front().label; // may fill its field without a terminator
    return {std::begin(label), std::ranges::find(label, '\0')};
}

std::optional<VstParameterProperties> CDrivenPlugin::ParameterProperties(std::int32_t inIndex)
{
    std::array<VstParameterProperties, 2> answer{}; // as above
    const bool isFilled = Dispatch(effGetParameterProperties, inIndex, 0, answer.data()) == 1;
    return isFilled ? std::optional(answer.front()) : std::nullopt;
}

float CDrivenPlugin::GetParameter(std::int32_t inIndex)
{
    gCurrent.store(this, std::memory_order_release);
    return Effect().getParameter(&Effect(), inIndex);
}

void CDrivenPlugin::SetParameter(std::int32_t inIndex, float inValue)
{
    gCurrent.store(this, std::memory_order_release);
    Effect().setParameter(&Effect(), inIndex, inValue);
}

std::vector<char> CDrivenPlugin::GetChunk(std::int32_t inScope)
{
    void* data = nullptr;
    const VstIntPtr size = Dispatch(effGetChunk, inScope, 0, &data);
    const auto* const bytes = static_cast<const char*>(data);
    return bytes != nullptr && size > 0 ? std::vector(bytes, bytes + size) : std::vector<char>();
}

bool CDrivenPlugin::SetChunk(std::int32_t inScope, std::span<char> inChunk)
{
    return Dispatch(effSetChunk, inScope, static_cast<VstIntPtr>(inChunk.size()), inChunk.data()) != 0;
}

void CDrivenPlugin::ReserveEvents(std::size_t inCount)
{
    mEvents.reserve(inCount);
    mEventList.reserve(inCount + sizeof(VstEvents) / sizeof(VstIntPtr));
}

void CDrivenPlugin::SendEvents(std::span<const SPluginEvent> inEvents)
{
    if (inEvents.empty())
        return;
    constexpr std::size_t kHeader = offsetof(VstEvents, events) / sizeof(VstIntPtr);
    mEvents.assign(inEvents.size(), {});
    mEventList.assign(std::max(kHeader + inEvents.size(), sizeof(VstEvents) / sizeof(VstIntPtr)), 0);
    const auto count = static_cast<std::int32_t>(inEvents.size());
    std::memcpy(mEventList.data(), &count, sizeof(count));
    for (std::size_t i = 0; i < inEvents.size(); ++i)
    {
        VstMidiEvent& event = mEvents[i];
        event.type = kVstMidiType;
        event.byteSize = sizeof(event);
        event.deltaFrames = inEvents[i].mOffset;
        std::memcpy(event.midiData, inEvents[i].mBytes.data(), sizeof(event.midiData));
        mEventList[kHeader + i] = reinterpret_cast<VstIntPtr>(&event);
    }
    (void)Dispatch(effProcessEvents, 0, 0, mEventList.data()); // answered with anything
}

bool CDrivenPlugin::Process(std::int32_t inFrames)
{
    AEffect& effect = Effect();
    if (effect.processReplacing == nullptr)
        return false;
    gCurrent.store(this, std::memory_order_release);
    effect.processReplacing(&effect, mInputs.mPointers.data(), mOutputs.mPointers.data(), inFrames);
    mTime.samplePos += inFrames;
    return true;
}

std::size_t CDrivenPlugin::BufferBytes() const
{
    return (InputCount() + OutputCount()) * kMaxFrames * sizeof(float);
}

CDrivenPlugin* CDrivenPlugin::FindOwner(const AEffect* inEffect) noexcept
{
    if (inEffect == nullptr)
        return nullptr;
    CDrivenPlugin* const current = gCurrent.load(std::memory_order_acquire);
    if (current != nullptr && current->mEffect == inEffect)
        return current;
    const std::lock_guard lock(gAliveMutex);
    const auto found =
        std::ranges::find_if(gAlive, [&](const auto* inPlugin) { return inPlugin->mEffect == inEffect; });
    return found != gAlive.end() ? *found : nullptr;
}

VstIntPtr CDrivenPlugin::HostCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                      VstIntPtr inValue, void* inPointer, float inOpt) noexcept
{
    CDrivenPlugin* const owner = FindOwner(inEffect);
    // Ahead of all others: asked in every block, by some plug-ins for every sample.
    if (owner != nullptr && inOpcode == audioMasterGetTime)
    {
        owner->mHasAskedForTime.store(true, std::memory_order_relaxed);
        return reinterpret_cast<VstIntPtr>(&owner->mTime);
    }
    const EHostCaller caller = owner != nullptr ? EHostCaller::kLoaded : EHostCaller::kUnmatched;
    const CDrivenPlugin* const plugin = owner != nullptr ? owner : gCurrent.load(std::memory_order_acquire);
    return plugin != nullptr ? plugin->Answer({caller, inOpcode, inIndex, inValue, inPointer, inOpt}) : 0;
}

VstIntPtr CDrivenPlugin::Answer(const SHostCall& inCall) const
{
    const std::optional<VstIntPtr> own = mAnswer ? mAnswer(inCall) : std::nullopt;
    return own ? *own : AnswerHostCall(inCall.mCaller, inCall.mOpcode, inCall.mPointer, mEntryVersion);
}
