#pragma once
#include "Source/AAX_CInstrumentParameters.h"
#include "Source/CChannelExtension.h"
#include "Source/CClearedFlag.h"
#include "Source/CNotedAutomation.h"
#include "Source/CPluginParameter.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/IMainHost.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class AAX_CChunkDataParser;
class AAX_CPacket;
class CVst2Plugin;
class IAttachedEditor;
struct SDescribedShape;

/**
 * One instance: a copy of the wrapped plug-in with one AAX parameter per parameter of it, a master bypass and
 * a gain, kept in step in both directions, and its rendering.
 *
 * Threads: parameter and chunk calls on the host's main thread, `RenderAudio` on the render thread. The
 * plug-in may report changes from any thread. No exception of the plug-in leaves a call: it fails with
 * kAAX_ErrorNullObject, and a render call gives silence.
 */
class AaxAdapter_Parameters : public AAX_CInstrumentParameters, public IMainHost
{
public:
    /** The factory that the description registers; the object starts with no references. */
    static AAX_IEffectParameters* Create();

    AaxAdapter_Parameters();
    ~AaxAdapter_Parameters() override;

    /** Loads the wrapped plug-in and creates the parameters; without a plug-in there are bypass and gain
     * only. When it fails there is no plug-in either. */
    AAX_Result EffectInit() override;
    /** Hears no more of the plug-in, which stays loaded. */
    AAX_Result Uninitialize() override;
    void RenderAudio(AAX_SInstrumentRenderInfo* ioInfo) override;

    /** The plug-in changed a parameter: tells the host, and does not call the plug-in again. Ignored until
     * the parameters are made, and while a state is loaded: the values are read when it is. */
    void SetHostParameter(long inIndex, float inValue) override;
    /** The plug-in may have changed every parameter; ignored while `EffectInit` or a state load runs. */
    void UpdateParameters() override;

    virtual void SetParameter(long inIndex, float inValue);
    AAX_Result SetParameterNormalizedValue(AAX_CParamID inId, double inValue) override;
    /**
     * Hands the value to the plug-in only: the plug-in keeps it, and the host has it already. An answer to
     * what the plug-in reported is not handed back to it (`CPluginParameter`).
     */
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                              AAX_EUpdateSource inSource) override;
    /** An exception of the plug-in fails it; the packets are generated again with the next call then. */
    AAX_Result GenerateCoefficients() override;
    /** Sees to what a host has left unanswered. */
    AAX_Result TimerWakeup() override;

    /**
     * State: the base's controls chunk, and the chunk of a plug-in that keeps one, with its current program,
     * as the last. Main thread, also while the render thread renders.
     */
    AAX_Result GetNumberOfChunks(std::int32_t* outCount) const override;
    AAX_Result GetChunkIDFromIndex(std::int32_t inIndex, AAX_CTypeID* outId) const override;
    AAX_Result GetChunkSize(AAX_CTypeID inId, std::uint32_t* outSize) const override;
    /** @return kAAX_ErrorChunkSize when the plug-in's chunk is larger than a chunk can be, or than it was
     * when its size was asked for. */
    AAX_Result GetChunk(AAX_CTypeID inId, AAX_SPlugInChunk* outChunk) const override;
    /** A chunk that is neither of the two is no error, and changes nothing. */
    AAX_Result SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk) override;
    AAX_Result CompareActiveChunk(const AAX_SPlugInChunk* inChunk, AAX_CBoolean* outIsEqual) const override;

    static long IdToIx(const char* inId);

    /** Fills the gain packet and pushes every AAX parameter's value into the plug-in, but for those of which
     * the plug-in has got or reported a newer one. Passes an exception of the plug-in on. */
    AAX_Result UpdatePacket_Gain(const char* inId, AAX_CPacket& outPacket);

    /** Knows the editor, so that either can go first. One that was attached before is told to forget. */
    void AttachEditor(IAttachedEditor& inEditor);
    void ReleaseEditor(IAttachedEditor& inEditor) noexcept;
    CVst2Host& Host() { return mVst2Host; }

    // ---- What no module calls.
    /** The text lives in this object until the next call; main thread only. */
    const char* IxToId(long inIndex);
    // For a host's own messages to an editor. They do nothing.
    virtual void SetEditorData(int inType, void* inData, unsigned long inSize);
    virtual void MessageToEditor(int inMessage, float inValue);

    static constexpr const char* kGainID = "Gain";
    // What the plug-in is told; larger blocks go in parts.
    static constexpr std::int32_t kBlockSizeFrames = 1024;
    static constexpr std::int64_t kFirstEventCapacity = 100;
    // Far above what any plug-in has: a higher number is a mistake, and counts as none.
    static constexpr long kMaxParameters = 65536;
    static constexpr std::int32_t kMaxChannels = 4096; // of either direction

protected:
    /** A part of a block. */
    struct SFrames
    {
        std::int32_t mFirst;
        std::int32_t mCount;
    };

    // ---- Where a product's features (Source/features/) come in. Main thread.

    /** The plug-in is loaded and going to be switched on once more. */
    virtual void PluginLoaded() {}
    /** It is switched on. @param ioShape what the host was told of it, which may be another for this
     * instance. */
    virtual void PluginStarted(SDescribedShape& /*ioShape*/) {}
    /** It is going to be switched off. */
    virtual void PluginEnds() {}
    virtual bool IsAutomatable(long /*inIndex*/) const { return true; }
    /** One of the plug-in's parameters, before the host sees it. */
    virtual void DescribeParameter(long /*inIndex*/, AAX_IParameter& /*ioParameter*/) const {}
    /** The plug-in's parameters and the module's own are there; more may follow. */
    virtual void AddLastParameters() {}
    /** What the parameters' requests go through. @param inHost what they end at. */
    virtual AAX_IAutomationDelegate& AutomationFor(AAX_IAutomationDelegate& inHost) { return inHost; }
    /** The plug-in's reports are heard no more, and the parameters go. */
    virtual void ParametersEnd() {}
    /** Samples. There is a plug-in. */
    virtual std::int64_t PluginLatency() const;
    /** Gives the plug-in a saved chunk and, where it is not negative, the program that was saved with it. */
    virtual void RestorePlugin(std::span<const char> inData, std::int32_t inProgram);
    /** Gives the plug-in the values that a controls chunk holds; what it reports meanwhile reaches nobody. */
    virtual void RestoreControls(AAX_CChunkDataParser& ioSaved);
    /** Gives the AAX parameters the values that the plug-in has; the plug-in is not called back. */
    virtual void MirrorPluginValues() const;

    // ---- What they use.

    /** While it lives, what the plug-in reports reaches nobody: it is read afterwards. */
    [[nodiscard]] CClearedFlag IgnoredReports() { return CClearedFlag(mReady); }
    /** Gives the AAX parameter a value of the host, and counts the change. */
    void KeepUpdate(AAX_CParamID inId, double inValue);
    /** Samples, as the host knows it. */
    std::int64_t ToldLatency() const { return mToldLatency; }
    /** Tells the host of the plug-in's latency where it is another one now. */
    void RefreshLatency();
    /** Closes it, and its editor before. */
    void ReleasePlugin();
    void GivePluginChunk(std::span<const char> inData);
    void GivePluginProgram(std::int32_t inProgram);
    /** Whether what the plug-in reports of its parameters reaches the host; any thread. */
    bool HearsParameters() const { return mHasParameters.load() && mReady.load(); }
    /** Parameters that the plug-in has now and had when it was loaded; 0 without a plug-in. */
    long PluginParameterCount() const;
    /** The index of a parameter that the plug-in has; -1 for any other identifier. */
    long PluginParameterIndex(AAX_CParamID inId) const;
    /** Whether the host has been asked for another value of it. */
    bool AwaitsAnswer(long inIndex) const
    {
        return mPluginParameters[static_cast<std::size_t>(inIndex)].IsWaiting();
    }
    CVst2Plugin* Plugin() const { return mPlugin; }
    long HostOutputChannels() const { return mHostOutputChannels; }
    IAttachedEditor* AttachedEditor() const { return mEditor; }
    float SampleRate() const { return mSampleRate; }

    // The steps of a block; some are defined in AaxAdapter_Parameters_Steps.h. Render thread.

    void UpdateTimeInfo(const AAX_SInstrumentRenderInfo& inInfo) noexcept;
    /** So many frames further on, where the transport plays. */
    void AdvanceTimeInfo(std::int32_t inFrames) noexcept;
    std::span<const AAX_CMidiPacket> PacketsOf(const AAX_SInstrumentRenderInfo& inInfo) const;
    /** All those of a block of at most kBlockSizeFrames frames. */
    void ForwardEvents(std::span<const AAX_CMidiPacket> inPackets);
    /** The packets of a part of the block; the last part also gets those that lie behind the block's end.
     * They go in as many calls as the plug-in's limit takes. */
    void ForwardPacketsOf(SFrames inFrames, bool inIsLast, std::span<const AAX_CMidiPacket> inPackets);
    /** A block of at most kBlockSizeFrames frames. */
    void RenderPlugin(AAX_SInstrumentRenderInfo& ioInfo);
    /** A part of a block. */
    void RenderFitted(AAX_SInstrumentRenderInfo& ioInfo, SFrames inFrames);
    /** From one of the described channels on. */
    void SilenceOutputs(const AAX_SInstrumentRenderInfo& ioInfo, long inFirstChannel,
                        SFrames inFrames) const noexcept;

private:
    static constexpr long kNoneDirect = -1;

    /** What the plug-in reports of its parameters reaches nobody from here on. */
    void IgnoreReports();
    AAX_Result RemoveParameters();
    void LoadWrappedPlugin();
    /** Ends what goes between it and the host; the host's editor knows it no more. */
    void LeavePlugin();
    void ClosePlugin();
    void TellLatency();
    void AddPluginParameters();
    void AddOwnParameters();
    void RegisterPackets();
    void PrepareChannels(const SDescribedShape& inShape);
    bool HasPluginChunk() const;
    AAX_Result SavePluginChunk(AAX_SPlugInChunk& outChunk) const;
    AAX_Result LoadPluginChunk(const AAX_SPlugInChunk& inChunk);
    AAX_Result LoadControls(const AAX_SPlugInChunk& inChunk);
    /** Tells the host where the plug-in has made another value of one that it was given. */
    void TellOtherControls(AAX_CChunkDataParser& ioSaved);
    void LookAfterRequests();
    /** Tells the host of a value that the plug-in has. */
    void Report(long inIndex, float inValue);

    void ForwardPackets(std::int64_t inCount, const AAX_CMidiPacket* inPackets);
    void GrowEventArrays(std::int64_t inCount);
    void RenderInParts(AAX_SInstrumentRenderInfo& ioInfo);

    std::array<char, 24> mIdBuffer{};
    CVst2Host mVst2Host;
    // The main thread stores these two (release), wherever the plug-in reports changes they are loaded
    // (acquire): who finds that there are parameters finds them made.
    std::atomic<bool> mReady{true};
    std::atomic<bool> mHasParameters{false};
    long mParameterCount = 0;                        // of the plug-in, as the host knows them
    std::vector<CPluginParameter> mPluginParameters; // as many; made and replaced while nobody listens
    CNotedAutomation mAutomation;                    // what the AAX parameters ask the host through
    // Some may wait: any thread stores it (release) when one was noted, the main thread's beat takes it
    // (acquire) and then looks for them.
    std::atomic<bool> mHasRequests{false};
    float mSampleRate = 0.0F;           // Hz
    CVst2Plugin* mPlugin = nullptr;     // owned by mVst2Host
    IAttachedEditor* mEditor = nullptr; // the host's
    std::vector<unsigned long> mEventData;
    std::vector<unsigned long> mEventTimes;
    std::int64_t mEventCapacity = kFirstEventCapacity;
    std::int64_t mEventsAtOnce = kFirstEventCapacity; // what the arrays and one call to the plug-in take
    std::int64_t mLatency = 0;                        // samples
    std::int64_t mToldLatency = 0;                    // as the host knows it
    mutable long mAnnouncedChunkSize =
        -1; // bytes of the plug-in's chunk as the host was told last; -1: never

    bool mHasInputNode = false;          // the description added the input MIDI node
    double mSamplesPerBarAtOneBpm = 0.0; // follows from the sample rate
    double mTimeInfoRate = 0.0;          // as well
    double mTempo = 120.0;               // where the host writes it; render thread, as the next
    double mLastTempo = 120.0;           // the last that was one
    long mHostOutputChannels = 0;        // as described
    long mDirectOutputs = kNoneDirect;   // with so many the plug-in writes all of them by itself
    CChannelExtension mInputs;
    CChannelExtension mOutputs;
};
