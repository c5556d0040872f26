#include "Source/plugins/CVst2Host.h"

#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/EffectRegistry.h"
#include "Source/plugins/IEditHost.h"
#include "Source/plugins/IHostCallAnswers.h"
#include "Source/plugins/IMainHost.h"
#include "Source/plugins/MouseModifiers.h"
#include "Source/plugins/ProductOptions.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <optional>

std::vector<CVst2Host*> gVctHosts;
std::atomic<CVst2Host*> pVst2Host = nullptr;

namespace
{
/** Held while a thread changes gVctHosts or the count below. */
std::mutex gHostsMutex;
std::uint32_t gHostsMade = 0;
} // namespace

VstIntPtr AnswerUnmatchedCall(std::int32_t inOpcode, void* inPointer, std::int32_t inEntryVersion) noexcept
{
    // Without a current host the product's name is not given.
    void* const text = pVst2Host.load() != nullptr ? inPointer : nullptr;
    return AnswerHostCall(EHostCaller::kUnmatched, inOpcode, text, inEntryVersion);
}

CVst2Host::CVst2Host() : mMouseMods(kMouseModAlways)
{
    InitTimeInfo();
    const std::lock_guard lock(gHostsMutex);
    mSerial = ++gHostsMade;
    gVctHosts.push_back(this);
    if (pVst2Host.load() == nullptr)
        pVst2Host.store(this);
}

CVst2Host::~CVst2Host()
{
    {
        const std::lock_guard lock(gHostsMutex);
        std::erase(gVctHosts, this);
    }
    for (const auto& plugin : mPlugins)
        plugin->Unregister();
    CVst2Host::Reset();
    // Null even when another host is alive: the next one to be made or to be marked becomes the current one.
    pVst2Host.store(nullptr);
}

CVst2Plugin* CVst2Host::LoadPlugin(const char* inUtf8Path)
{
    // Listed before it is loaded, so that a call that it makes meanwhile finds it.
    CVst2Plugin* const plugin = mPlugins.emplace_back(std::make_unique<CVst2Plugin>()).get();
    if (!plugin->Load(inUtf8Path, this))
    {
        mPlugins.pop_back();
        return nullptr;
    }
    const bool canInitialize = mBlockSize >= 1 && mSampleRate > 0.0F;
    return !canInitialize || plugin->Initialize(mBlockSize, mSampleRate) ? plugin : nullptr;
}

void CVst2Host::Reset()
{
    // Closed while all are still listed: closing makes a plug-in call its host.
    for (const auto& plugin : mPlugins)
        plugin->Close();
    mPlugins.clear();
}

bool CVst2Host::ClosePlugin(IPlugin* inPlugin)
{
    const auto found = std::find_if(mPlugins.begin(), mPlugins.end(),
                                    [inPlugin](const auto& inListed) { return inListed.get() == inPlugin; });
    if (inPlugin == nullptr || found == mPlugins.end())
        return false;
    (*found)->Close();
    mPlugins.erase(found);
    return true;
}

bool CVst2Host::InitPlugins()
{
    bool allDone = true;
    for (const auto& plugin : mPlugins)
        allDone = plugin->Initialize(mBlockSize, mSampleRate) && allDone;
    return allDone;
}

long CVst2Host::GetEffectIndex(const AEffect* inEffect) const
{
    const auto found =
        std::find_if(mPlugins.begin(), mPlugins.end(),
                     [inEffect](const auto& inListed) { return inListed->GetEffect() == inEffect; });
    return inEffect == nullptr || found == mPlugins.end() ? -1 : std::distance(mPlugins.begin(), found);
}

void CVst2Host::SetMainListener(IMainHost* inListener) { mListenerCalls.Replace(mMainListener, inListener); }

void CVst2Host::SetEditListener(IEditHost* inListener) { mListenerCalls.Replace(mEditListener, inListener); }

void CVst2Host::SetCallAnswers(IHostCallAnswers* inAnswers)
{
    mListenerCalls.Replace(mCallAnswers, inAnswers);
}

void CVst2Host::SetSampleRate(float inHertz)
{
    mSampleRate = inHertz;
    mTimeInfo.sampleRate = inHertz;
}

void CVst2Host::SetTempo(float inTempo)
{
    mTempo = inTempo;
    if (inTempo > 0.0F)
    {
        mTimeInfo.tempo = inTempo;
        mTimeInfo.flags |= kVstTempoValid;
    }
    else
    {
        mTimeInfo.flags &= ~kVstTempoValid;
    }
}

void CVst2Host::InitTimeInfo() { mTimeInfo = InitialTimeInfo(44100.0); }

void CVst2Host::ProcessEvents(std::span<const SMidiMsg> inMessages)
{
    for (const auto& plugin : mPlugins)
        plugin->ProcessEvents(inMessages);
}

void CVst2Host::Process()
{
    for (const auto& plugin : mPlugins)
        plugin->EffectIdle();
}

VstIntPtr CVst2Host::AudioMasterCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                         VstIntPtr inValue, void* inPointer, float inOpt) noexcept
{
    const CEffectRegistry::SOwner owner = gEffectRegistry.Find(inEffect);
    if (owner.mHost == nullptr)
        return AnswerUnmatchedCall(inOpcode, inPointer, kEntryHostVersion);
    // Ahead of all others: asked in every block, by some plug-ins for every sample.
    if (inOpcode == audioMasterGetTime)
        return reinterpret_cast<VstIntPtr>(&owner.mHost->mTimeInfo);
    return owner.mHost->AnswerContained(owner.mPlugin, inOpcode, inIndex, inValue, inPointer, inOpt);
}

VstIntPtr CVst2Host::AnswerContained(CVst2Plugin* inPlugin, std::int32_t inOpcode, std::int32_t inIndex,
                                     VstIntPtr inValue, void* inPointer, float inOpt) noexcept
{
    try
    {
        if (mCallAnswers.load(std::memory_order_relaxed) != nullptr)
            if (const auto answer =
                    AnswerAhead({EHostCaller::kLoaded, inOpcode, inIndex, inValue, inPointer, inOpt}))
                return *answer;
        return Answer(inPlugin, inOpcode, inIndex, inPointer);
    }
    catch (...)
    {
        // The answer may call the plug-in or a listener. What they throw must not cross the plug-in's frames.
        return 0;
    }
}

std::optional<VstIntPtr> CVst2Host::AnswerAhead(const SHostCall& inCall)
{
    const CListenerCalls::CCall call(mListenerCalls);
    IHostCallAnswers* const answers = mCallAnswers.load();
    return answers != nullptr ? answers->AnswerCall(inCall) : std::nullopt;
}

VstIntPtr CVst2Host::OnAudioMasterCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                           VstIntPtr /*inValue*/, void* inPointer, float /*inOpt*/)
{
    return Answer(gEffectRegistry.Find(inEffect, this).mPlugin, inOpcode, inIndex, inPointer);
}

VstIntPtr CVst2Host::Answer(CVst2Plugin* inPlugin, std::int32_t inOpcode, std::int32_t inIndex,
                            void* inPointer)
{
    switch (inOpcode)
    {
    case audioMasterAutomate: OnAutomate(inPlugin, inIndex); break;
    case audioMasterWantMidi:
        if (inPlugin != nullptr)
            inPlugin->ForceMidi();
        break;
    case audioMasterGetTime: return reinterpret_cast<VstIntPtr>(&mTimeInfo);
    case audioMasterNeedIdle:
        if (inPlugin != nullptr)
            inPlugin->RequestIdle();
        break;
    case audioMasterUpdateDisplay: OnUpdateDisplay(inPlugin); break;
    case audioMasterBeginEdit: OnGesture(EGesture::kDown, inIndex); break;
    case audioMasterEndEdit: OnGesture(EGesture::kUp, inIndex); break;
    default: break;
    }
    return AnswerHostCall(EHostCaller::kLoaded, inOpcode, inPointer);
}

void CVst2Host::OnAutomate(CVst2Plugin* inPlugin, std::int32_t inIndex)
{
    const CListenerCalls::CCall call(mListenerCalls);
    // The plug-in's own value counts, not the one that came with the call: that is not always normalised.
    IMainHost* const listener = mMainListener.load();
    if (listener != nullptr && inPlugin != nullptr)
        listener->SetHostParameter(inIndex, inPlugin->GetParameter(inIndex));
    OnGesture(EGesture::kDrag, inIndex);
    IMainHost* const ownListener = inPlugin != nullptr ? inPlugin->GetAutomationListener() : nullptr;
    if (ownListener != nullptr)
        ownListener->SetHostParameter(inIndex, inPlugin->GetParameter(inIndex));
}

void CVst2Host::OnGesture(EGesture inGesture, std::int32_t inIndex)
{
    const CListenerCalls::CCall call(mListenerCalls);
    IEditHost* const editor = mEditListener.load();
    if (editor == nullptr)
        return;
    const unsigned long mods = MouseModsFor(inGesture);
    switch (inGesture) // the plug-in is told 0 in any case
    {
    case EGesture::kDown: (void)editor->HandleParameterMouseDown(inIndex, mods); break;
    case EGesture::kDrag: (void)editor->HandleParameterMouseDrag(inIndex, mods); break;
    case EGesture::kUp: (void)editor->HandleParameterMouseUp(inIndex, mods); break;
    }
}

unsigned long CVst2Host::MouseModsFor(EGesture inGesture) noexcept
{
    if (!mHasGestureViewer.load())
        return kMouseModAlways;
    // Automation comes from the render call as well, which must not wait for the window system. Only the
    // listeners' own thread asks it; every other thread takes what was held down last.
    if (mListenerCalls.IsListenerThread())
    {
        if (inGesture != EGesture::kDrag || mIsDragging.load())
            RefreshMouseMods();
        if (inGesture != EGesture::kDrag)
            mIsDragging.store(inGesture == EGesture::kDown);
    }
    return mMouseMods.load();
}

void CVst2Host::SetGestureViewer(bool inIsThere) noexcept
{
    mHasGestureViewer.store(inIsThere);
    mIsDragging.store(false); // one that goes on meanwhile ends unseen
}

void CVst2Host::RefreshMouseMods() noexcept { mMouseMods.store(getMouseMods()); }

void CVst2Host::OnUpdateDisplay(CVst2Plugin* inPlugin)
{
    const CListenerCalls::CCall call(mListenerCalls);
    IMainHost* const listener = mMainListener.load();
    if (listener != nullptr && inPlugin != nullptr && inPlugin->GetNumPrograms() >= 2)
        listener->UpdateParameters();
}
