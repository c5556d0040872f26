#include "Source/features/CFeaturedParameters.h"

#include "Interfaces/VST2/HostQuestions.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Source/AaxAdapter_Parameters_Steps.h"
#include "Source/DescribedShape.h"
#include "Source/IAttachedEditor.h"
#include "Source/SourceVstPath.h"
#include "Source/features/ParameterProperties.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductFeatures.h"
#include "Source/plugins/ProductOptions.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace
{
/** A longer latency is a plug-in's mistake. Seconds. */
constexpr double kMostLatency = 10.0;

/** The height that came as a wider number; 0, which no editor has, where 32 bits do not hold it. */
constexpr std::int32_t HeightOf(VstIntPtr inValue) noexcept
{
    return std::in_range<std::int32_t>(inValue) ? static_cast<std::int32_t>(inValue) : 0;
}

/** Names its thread as the one that renders, while it lives. */
class CRenderMark
{
public:
    /** @param ioThread null where nobody asks. */
    explicit CRenderMark(std::atomic<std::thread::id>* ioThread) noexcept : mThread(ioThread)
    {
        if (mThread != nullptr)
            mThread->store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    CRenderMark(const CRenderMark&) = delete;
    CRenderMark& operator=(const CRenderMark&) = delete;
    ~CRenderMark()
    {
        if (mThread != nullptr)
            mThread->store({}, std::memory_order_relaxed);
    }

private:
    std::atomic<std::thread::id>* mThread;
};
} // namespace

AAX_IEffectParameters* CFeaturedParameters::Create() { return AAX_CreateContained<CFeaturedParameters>(); }

CFeaturedParameters::CFeaturedParameters()
{
    std::array<char, kSourceVstPathSize> path{};
    CreateSourceVstPath(path.data());
    const std::string_view file(path.data());
    mDirectory = file.substr(0, file.rfind('/') + 1); // a folder's text ends with the slash
    if (kProductFeatures.mSysex)
        mSysexInput.Prepare();
    Host().SetCallAnswers(this);
}

CFeaturedParameters::~CFeaturedParameters()
{
    // The plug-in still asks while it closes.
    (void)AaxAdapter_Parameters::Uninitialize(); // always succeeds
    ReleasePlugin();
    Host().SetCallAnswers(nullptr);
}

// ---- The life of the plug-in

void CFeaturedParameters::PluginLoaded()
{
    if (kStems == 0)
        return;
    SStemPair told;
    (void)Controller()->GetInputStemFormat(&told.mInput); // a host that does not tell has the first component
    (void)Controller()->GetOutputStemFormat(&told.mOutput);
    mStems.Choose(told, *Plugin());
}

void CFeaturedParameters::PluginStarted(SDescribedShape& ioShape)
{
    if (kStems != 0)
        mStems.Fit(ioShape, *Plugin()->GetEffect());
    mTransportTime.SetSampleRate(static_cast<double>(SampleRate()));
    if (ioShape.mHasOutputNode && !mMidiOutput.IsPrepared())
        mMidiOutput.Prepare();
    if (kProductFeatures.mHostAnswers)
        (void)Plugin()->Dispatch(effStartProcess); // the interface gives the result no meaning
    mBypassesItself = kProductFeatures.mBypass && Plugin()->CanDo("bypass");
    mMostAtOnce.store(kBlockSizeFrames, std::memory_order_relaxed);
    mBypass.Configure(static_cast<double>(SampleRate()), static_cast<std::int32_t>(ioShape.mInputChannels),
                      static_cast<std::int32_t>(ioShape.mMainOutputChannels));
    mAnswersAutomation = kProductFeatures.mParameterProperties &&
                         AnswersAutomation(*Plugin(), std::min(Plugin()->GetNumParameters(), kMaxParameters));
}

void CFeaturedParameters::PluginEnds()
{
    mPrograms.Detach();
    if (kProductFeatures.mHostAnswers)
        (void)Plugin()->Dispatch(effStopProcess);
}

std::int64_t CFeaturedParameters::PluginLatency() const
{
    const std::int64_t latency = AaxAdapter_Parameters::PluginLatency();
    if (!kProductFeatures.mLatency)
        return latency;
    const bool isSensible =
        latency >= 0 && static_cast<double>(latency) <= kMostLatency * static_cast<double>(SampleRate());
    return isSensible ? latency : 0;
}

void CFeaturedParameters::RestorePlugin(std::span<const char> inData, std::int32_t inProgram)
{
    if (!kProductFeatures.mProgramFirst)
        return AaxAdapter_Parameters::RestorePlugin(inData, inProgram);
    GivePluginProgram(inProgram);
    GivePluginChunk(inData);
}

AAX_Result CFeaturedParameters::SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk)
{
    const AAX_Result result = AaxAdapter_Parameters::SetChunk(inId, inChunk);
    if (kProductFeatures.mGestures && Plugin() != nullptr)
        (void)AAX_Contained( // a plug-in that throws here is told of once more than needed
            [this]
            {
                NoteKnownValues();
                return kAAX_Success;
            });
    if (kProductFeatures.mLatency)
        RefreshLatency();
    return result;
}

AAX_Result CFeaturedParameters::TimerWakeup()
{
    if (kProductFeatures.mLatency)
        RefreshLatency();
    mBypass.TimerBeat();
    (void)AAX_Contained( // a plug-in that throws here is seen to again when it asks
        [this]
        {
            GiveIdleTime();
            TellNewNames();
            FollowPrograms();
            mBypass.SetLatency(ToldLatency());
            return kAAX_Success;
        });
    return AaxAdapter_Parameters::TimerWakeup();
}

void CFeaturedParameters::SwitchBypass(bool inIsOn)
{
    if (Plugin() == nullptr)
        return;
    if (mBypassesItself)
    {
        (void)Plugin()->Dispatch(effSetBypass, 0, inIsOn ? 1 : 0); // it has said that it can
        return;
    }
    mBypass.SetLatency(ToldLatency());
    mBypass.Switch(inIsOn);
    if (inIsOn)
        mMostAtOnce.store(0, std::memory_order_relaxed);
}

void CFeaturedParameters::GiveIdleTime()
{
    if (!mWantsIdle.exchange(false, std::memory_order_acquire) || Plugin() == nullptr)
        return;
    if (Plugin()->Dispatch(effIdle) != 0)
        mWantsIdle.store(true, std::memory_order_relaxed);
}

// ---- The plug-in's calls

std::optional<VstIntPtr> CFeaturedParameters::AnswerCall(const SHostCall& inCall)
{
    switch (inCall.mOpcode)
    {
    case audioMasterProcessEvents:
        if (!mMidiOutput.IsPrepared())
            return std::nullopt;
        return TakeEvents(static_cast<const VstEvents*>(inCall.mPointer));
    case audioMasterNeedIdle:
        if (!kProductFeatures.mIdle)
            return std::nullopt;
        mWantsIdle.store(true, std::memory_order_release);
        return 1;
    case audioMasterUpdateDisplay:
        mHasNewNames.store(kProductFeatures.mParameterProperties, std::memory_order_release);
        return std::nullopt;
    case audioMasterBeginEdit:
        if (kProductFeatures.mGestures && HearsParameters())
            mGestures.Begin(inCall.mIndex);
        return std::nullopt;
    case audioMasterEndEdit:
        if (kProductFeatures.mGestures && HearsParameters())
            mGestures.End(inCall.mIndex);
        return std::nullopt;
    case audioMasterSizeWindow:
        if (!kProductFeatures.mResize)
            return std::nullopt;
        return ResizeEditor({inCall.mIndex, HeightOf(inCall.mValue)});
    default: break;
    }
    if (!kProductFeatures.mHostAnswers)
        return std::nullopt;
    return AnswerQuestion(inCall, {.mSampleRate = SampleRate(),
                                   .mBlockSize = kBlockSizeFrames,
                                   .mIsRendering = IsRendering(),
                                   .mDirectory = mDirectory.data(),
                                   .mTakesMidi = kProductFeatures.mMidiOutput,
                                   .mResizesEditor = kProductFeatures.mResize,
                                   .mGivesIdleTime = kProductFeatures.mIdle});
}

bool CFeaturedParameters::IsRendering() const noexcept
{
    return mRenderThread.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

VstIntPtr CFeaturedParameters::TakeEvents(const VstEvents* inEvents) noexcept
{
    if (inEvents == nullptr)
        return 0;
    if (IsRendering())
        mMidiOutput.Take(*inEvents);
    else
        mMidiOutput.Wait(*inEvents);
    return 1;
}

VstIntPtr CFeaturedParameters::ResizeEditor(SPixelSize inSize) noexcept
{
    if (!inSize.IsSensible())
        return 0;
    if (Host().IsListenerThread())
        return AttachedEditor() != nullptr && AttachedEditor()->Resize(inSize.mWidth, inSize.mHeight) ? 1 : 0;
    // Whether it will be taken is not known yet.
    mRequestedSize.store(inSize, std::memory_order_release);
    return 0;
}

std::optional<SPixelSize> CFeaturedParameters::TakeRequestedSize() noexcept
{
    const SPixelSize size = mRequestedSize.exchange({}, std::memory_order_acquire);
    return size.IsSensible() ? std::optional(size) : std::nullopt;
}

// ---- A block

inline void CFeaturedParameters::RenderBlock(AAX_SInstrumentRenderInfo& ioInfo)
{
    std::span<const AAX_CMidiPacket> packets = PacketsOf(ioInfo);
    if (kProductFeatures.mSysex && mSysexInput.Concerns(packets)) [[unlikely]]
    {
        mSysexInput.Forward(packets, 0, UINT32_MAX, *Plugin());
        packets = {};
    }
    ForwardEvents(packets);
    RenderPlugin(ioInfo);
}

void CFeaturedParameters::RenderAround(AAX_SInstrumentRenderInfo& ioInfo, SFrames inFrames)
{
    static_assert(kBlockSizeFrames <= CBypass::kMaxFrames);
    mBypass.Take(ioInfo.mAudioInputs, inFrames.mFirst, inFrames.mCount);
    try
    {
        RenderFitted(ioInfo, inFrames);
    }
    catch (...)
    {
        SilenceOutputs(ioInfo, 0, inFrames); // of the plug-in; the input is still passed on
    }
    mBypass.Mix(ioInfo.mAudioOutputs, static_cast<std::int32_t>(HostOutputChannels()), inFrames.mFirst);
}

void CFeaturedParameters::RenderAudio(AAX_SInstrumentRenderInfo* ioInfo)
{
    const std::int32_t frames = ioInfo->mNumSamples != nullptr ? *ioInfo->mNumSamples : 0;
    if (kProductFeatures.mTime) [[likely]]
    {
        AAX_IMIDINode* const node = ioInfo->mTransportNode;
        mTransportTime.Write(node != nullptr ? node->GetTransport() : nullptr, ioInfo->mClock, frames,
                             Host().TimeInfo());
    }
    else
    {
        UpdateTimeInfo(*ioInfo);
    }
    if (Plugin() == nullptr || ioInfo->mNumSamples == nullptr) [[unlikely]]
        return;
    const bool sendsMidi = mMidiOutput.IsPrepared();
    const CRenderMark mark(sendsMidi || kProductFeatures.mHostAnswers ? &mRenderThread : nullptr);
    if (sendsMidi)
        mMidiOutput.BeginBlock(frames);
    try
    {
        if (static_cast<std::uint32_t>(frames) <= mMostAtOnce.load(std::memory_order_relaxed)) [[likely]]
            RenderBlock(*ioInfo);
        else
            RenderParts(*ioInfo); // of a negative number there are none
    }
    catch (...)
    {
        SilenceOutputs(*ioInfo, 0, {0, std::max(frames, 0)});
    }
    if (sendsMidi)
        mMidiOutput.Post(ioInfo->mOutputNode);
}

void CFeaturedParameters::RenderParts(AAX_SInstrumentRenderInfo& ioInfo)
{
    const std::int32_t frames = *ioInfo.mNumSamples;
    const std::span<const AAX_CMidiPacket> packets = PacketsOf(ioInfo);
    const bool hasSysex = kProductFeatures.mSysex && mSysexInput.Concerns(packets);
    for (std::int32_t first = 0; first < frames;)
    {
        const SFrames part{first, std::min(frames - first, kBlockSizeFrames)};
        const bool isLast = part.mCount == frames - first;
        const std::uint32_t end = isLast ? UINT32_MAX : static_cast<std::uint32_t>(first + part.mCount);
        mMidiOutput.BeginPart(first);
        if (hasSysex)
            mSysexInput.Forward(packets, static_cast<std::uint32_t>(first), end, *Plugin());
        else
            ForwardPacketsOf(part, isLast, packets);
        if (mBypass.IsUsed())
            RenderAround(ioInfo, part);
        else
            RenderFitted(ioInfo, part);
        if (kProductFeatures.mTime)
            mTransportTime.Advance(part.mCount, Host().TimeInfo());
        else
            AdvanceTimeInfo(part.mCount);
        if (isLast)
            return; // ahead of a sum that no integer holds
        first += part.mCount;
    }
}
