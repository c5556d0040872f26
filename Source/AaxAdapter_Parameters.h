#pragma once
#include "Source/AAX_CInstrumentParameters.h"
#include "Source/CChannelExtension.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/IMainHost.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

class AAX_CPacket;
class CAaxEditor;
class CVst2Plugin;

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
     * only. */
    AAX_Result EffectInit() override;
    /** Hears no more of the plug-in, which stays loaded. */
    AAX_Result Uninitialize() override;
    void RenderAudio(AAX_SInstrumentRenderInfo* ioInfo) override;

    /** The plug-in changed a parameter: tells the host, and does not call the plug-in again. Ignored until
     * the parameters are made. */
    void SetHostParameter(long inIndex, float inValue) override;
    /** The plug-in may have changed every parameter; ignored while `EffectInit` or a state load runs. */
    void UpdateParameters() override;

    virtual void SetParameter(long inIndex, float inValue);
    virtual void SetEditorData(int inType, void* inData, unsigned long inSize);
    virtual void MessageToEditor(int inMessage, float inValue);

    AAX_Result SetParameterNormalizedValue(AAX_CParamID inId, double inValue) override;
    /** Hands the value to the plug-in only: the plug-in keeps it, and the host has it already. */
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                              AAX_EUpdateSource inSource) override;

    /**
     * State: the base's controls chunk, and the chunk of a plug-in that keeps one, with its current program,
     * as the last. Main thread, also while the render thread renders.
     */
    AAX_Result GetNumberOfChunks(std::int32_t* outCount) const override;
    AAX_Result GetChunkIDFromIndex(std::int32_t inIndex, AAX_CTypeID* outId) const override;
    AAX_Result GetChunkSize(AAX_CTypeID inId, std::uint32_t* outSize) const override;
    /** @return kAAX_ErrorChunkSize when the plug-in's chunk has outgrown the size told last. */
    AAX_Result GetChunk(AAX_CTypeID inId, AAX_SPlugInChunk* outChunk) const override;
    /** A chunk that is neither of the two is no error, and changes nothing. */
    AAX_Result SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk) override;
    AAX_Result CompareActiveChunk(const AAX_SPlugInChunk* inChunk, AAX_CBoolean* outIsEqual) const override;

    /** The text lives in this object until the next call; main thread only. */
    const char* IxToId(long inIndex);
    static long IdToIx(const char* inId);

    /** Fills the gain packet and pushes every AAX parameter's value into the plug-in. */
    AAX_Result UpdatePacket_Gain(const char* inId, AAX_CPacket& outPacket);

    /** Knows the editor, so that either can go first. One that was attached before is told to forget. */
    void AttachEditor(CAaxEditor& inEditor);
    void ReleaseEditor(CAaxEditor& inEditor) noexcept;
    CVst2Host& Host() { return mVst2Host; }

    static constexpr const char* kGainID = "Gain";
    static constexpr std::int32_t kBlockSizeFrames = 1024; // the largest block of a host
    static constexpr std::int64_t kFirstEventCapacity = 100;
    // Far above what any plug-in has: a higher number is a mistake, and counts as none.
    static constexpr long kMaxParameters = 65536;
    static constexpr std::int32_t kMaxChannels = 4096; // of either direction

private:
    AAX_Result LoadWrappedPlugin();
    /** Closes it, and its editor before; the host's editor knows it no more. */
    void ReleasePlugin();
    void AddPluginParameters();
    void AddOwnParameters();
    void RegisterPackets();
    void PrepareChannels();
    bool HasPluginChunk() const;
    AAX_Result SavePluginChunk(AAX_SPlugInChunk& outChunk) const;
    AAX_Result LoadPluginChunk(const AAX_SPlugInChunk& inChunk);
    AAX_Result LoadControls(const AAX_SPlugInChunk& inChunk);
    /** Gives the AAX parameters the values that the plug-in has; the plug-in is not called back. */
    void MirrorPluginValues() const;
    void PushParameter(AAX_CParamID inId, double inValue);
    /** Parameters that the plug-in has now and had when it was loaded; 0 without a plug-in. */
    long PluginParameterCount() const;

    void UpdateTimeInfo(const AAX_SInstrumentRenderInfo& inInfo) noexcept;
    void ForwardEvents(const AAX_SInstrumentRenderInfo& inInfo);
    void ForwardInParts(std::int64_t inCount);
    void GrowEventArrays(std::int64_t inCount);
    void RenderPlugin(AAX_SInstrumentRenderInfo& ioInfo);
    void RenderExtended(AAX_SInstrumentRenderInfo& ioInfo);
    void SilenceOutputs(const AAX_SInstrumentRenderInfo& ioInfo) const noexcept;

    std::array<char, 24> mIdBuffer{};
    CVst2Host mVst2Host;
    std::atomic<bool> mReady{true}; // written on the main thread, read wherever the plug-in reports changes
    // Written on the main thread, read wherever the plug-in reports changes.
    std::atomic<bool> mHasParameters{false};
    long mParameterCount = 0;       // of the plug-in, as the host knows them
    float mSampleRate = 0.0F;       // Hz
    CVst2Plugin* mPlugin = nullptr; // owned by mVst2Host
    CAaxEditor* mEditor = nullptr;  // the host's
    std::vector<unsigned long> mEventData;
    std::vector<unsigned long> mEventTimes;
    std::int64_t mEventCapacity = kFirstEventCapacity;
    std::int64_t mLatency = 0; // samples
    mutable long mAnnouncedChunkSize =
        -1; // bytes of the plug-in's chunk as the host was told last; -1: never

    bool mHasInputNode = false;          // the description added the input MIDI node
    double mSamplesPerBarAtOneBpm = 0.0; // follows from the sample rate
    double mTempo = 120.0;               // the last one the host gave; render thread
    long mHostOutputChannels = 0;
    CChannelExtension mInputs;
    CChannelExtension mOutputs;
};
