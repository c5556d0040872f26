#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_IEffectParameters.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tools/aaxhost/direct/SServices.h"
#include "Tools/aaxhost/host/HostDescription.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class AAX_IMIDINode;

/** How many channels a host gives and takes on some stems. */
struct SChannels
{
    SMainStems mStems;
    std::int32_t mInputs = 0;
    std::int32_t mOutputs = 0; // main and auxiliary
};

/** What all instances of an unwrapped plug-in share. */
struct SUnwrapped
{
    std::string mPath;
    SServices mServices;
    AAX_CFieldIndex mEffectField = 0; // where the effect finds itself: the field behind the module's
    std::vector<SField> mFields{};
    std::vector<SChannels> mChannels{}; // a component each
};

/**
 * A plug-in called directly, as an instance: each call of the host becomes the plug-in's own, and nothing is
 * kept or mended between.
 *
 * Its parameters are the plug-in's, its one chunk the plug-in's bank chunk or else all values. Threads: as a
 * module's instance.
 */
class CDirectEffect final : public AAX_IEffectParameters
{
public:
    explicit CDirectEffect(const SUnwrapped& inUnwrapped); // outlives it

    /** Null before it starts and after it ends. */
    CDrivenPlugin* Plugin() const noexcept { return mPlugin.get(); }
    /** The last size that its editor asked for; each once. */
    std::optional<AAX_Point> TakeSizeWish();
    /** Hears of its gestures while the editor is open; null: it is not. */
    void SetContainer(AAX_IACFViewContainer* inContainer) noexcept { mContainer = inContainer; }
    /** @param inSlots the pointers of a render record. Allocates nothing. */
    void Render(void* const* inSlots);

    AAX_Result Initialize(IACFUnknown* hostContext) override;
    AAX_Result Uninitialize() override;
    AAX_Result NotificationReceived(AAX_CTypeID type, const void* data, std::uint32_t size) override;
    AAX_Result GetNumberOfParameters(std::int32_t* count) const override;
    AAX_Result GetMasterBypassParameter(AAX_IString* id) const override;
    AAX_Result GetParameterIsAutomatable(AAX_CParamID id, AAX_CBoolean* automatable) const override;
    AAX_Result GetParameterNumberOfSteps(AAX_CParamID id, std::int32_t* steps) const override;
    AAX_Result GetParameterName(AAX_CParamID id, AAX_IString* name) const override;
    AAX_Result GetParameterNameOfLength(AAX_CParamID id, AAX_IString* name,
                                        std::int32_t length) const override;
    AAX_Result GetParameterDefaultNormalizedValue(AAX_CParamID id, double* value) const override;
    AAX_Result SetParameterDefaultNormalizedValue(AAX_CParamID id, double value) override;
    AAX_Result GetParameterType(AAX_CParamID id, AAX_EParameterType* type) const override;
    AAX_Result GetParameterOrientation(AAX_CParamID id, std::int32_t* orientation) const override;
    AAX_Result GetParameter(AAX_CParamID id, AAX_IParameter** parameter) override;
    AAX_Result GetParameterIndex(AAX_CParamID id, std::int32_t* index) const override;
    AAX_Result GetParameterIDFromIndex(std::int32_t index, AAX_IString* id) const override;
    AAX_Result GetParameterValueInfo(AAX_CParamID id, std::int32_t selector,
                                     std::int32_t* value) const override;
    AAX_Result GetParameterValueFromString(AAX_CParamID id, double* value,
                                           const AAX_IString& text) const override;
    AAX_Result GetParameterStringFromValue(AAX_CParamID id, double value, AAX_IString* text,
                                           std::int32_t maxLength) const override;
    AAX_Result GetParameterValueString(AAX_CParamID id, AAX_IString* text,
                                       std::int32_t maxLength) const override;
    AAX_Result GetParameterNormalizedValue(AAX_CParamID id, double* value) const override;
    AAX_Result SetParameterNormalizedValue(AAX_CParamID id, double value) override;
    AAX_Result SetParameterNormalizedRelative(AAX_CParamID id, double delta) override;
    AAX_Result TouchParameter(AAX_CParamID id) override;
    AAX_Result ReleaseParameter(AAX_CParamID id) override;
    AAX_Result UpdateParameterTouch(AAX_CParamID id, AAX_CBoolean touched) override;
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID id, double value,
                                              AAX_EUpdateSource source) override;
    AAX_Result UpdateParameterNormalizedRelative(AAX_CParamID id, double delta) override;
    AAX_Result GenerateCoefficients() override;
    AAX_Result ResetFieldData(AAX_CFieldIndex field, void* data, std::uint32_t size) const override;
    AAX_Result GetNumberOfChunks(std::int32_t* count) const override;
    AAX_Result GetChunkIDFromIndex(std::int32_t index, AAX_CTypeID* id) const override;
    AAX_Result GetChunkSize(AAX_CTypeID id, std::uint32_t* size) const override;
    AAX_Result GetChunk(AAX_CTypeID id, AAX_SPlugInChunk* chunk) const override;
    AAX_Result SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk* chunk) override;
    AAX_Result CompareActiveChunk(const AAX_SPlugInChunk* chunk, AAX_CBoolean* isEqual) const override;
    AAX_Result GetNumberOfChanges(std::int32_t* count) const override;
    AAX_Result TimerWakeup() override;
    AAX_Result GetCurveData(AAX_CTypeID curve, const float* x, std::uint32_t count, float* y) const override;
    AAX_Result GetCustomData(AAX_CTypeID type, std::uint32_t size, void* data,
                             std::uint32_t* written) const override;
    AAX_Result SetCustomData(AAX_CTypeID type, std::uint32_t size, const void* data) override;
    AAX_Result DoMIDITransfers() override;
    AAX_Result RenderAudio_Hybrid(AAX_SHybridRenderInfo* info) override;
    AAX_Result UpdateMIDINodes(AAX_CFieldIndex field, AAX_CMidiPacket& packet) override;
    AAX_Result UpdateControlMIDINodes(AAX_CTypeID node, AAX_CMidiPacket& packet) override;

private:
    std::optional<VstIntPtr> Answer(const SHostCall& inCall);
    /** Begins, ends or makes an edit of a parameter. */
    void Edit(const SHostCall& inCall, AAX_CParamID inID);
    /** Nothing where there is no such parameter. */
    std::optional<std::int32_t> IndexOf(AAX_CParamID inID) const;
    std::int32_t ParameterCount() const;
    bool KeepsChunks() const;
    bool HasChunk(AAX_CTypeID inID) const;
    std::vector<char> State(AAX_CTypeID inChunk) const;
    void WriteTime(AAX_IMIDINode* inNode);
    /** The packets of a node as events of the next pieces. */
    void TakePackets(AAX_IMIDINode* inNode);
    void RenderPiece(const float* const* inInputs, float* const* inOutputs, std::int32_t inOffset,
                     std::int32_t inFrames, bool inIsLast);

    static constexpr std::size_t kMostEvents = 8192; // of a block; more than any check sends

    const SUnwrapped& mUnwrapped;
    std::string mFolder;
    ACFPtr<AAX_IACFController> mController;
    ACFPtr<AAX_IACFAutomationDelegate> mAutomation;
    SChannels mChannels;
    double mRate = 0.0; // Hz
    std::vector<float> mDefaults;
    std::int32_t mLatency = 0;        // as the host was told
    mutable std::vector<char> mSaved; // since its size was asked for
    std::atomic<bool> mIsRendering = false;
    std::atomic<bool> mWantsIdle = false;
    std::atomic<std::int32_t> mChanges = 0;
    std::atomic<AAX_IACFViewContainer*> mContainer = nullptr;
    std::atomic<std::uint64_t> mSizeWish = 0; // width above, height below; 0: none
    // What rendering needs, made ahead.
    std::vector<SPluginEvent> mEvents;      // of the block
    std::vector<SPluginEvent> mPieceEvents; // of a piece of it
    std::vector<float*> mInputs;
    std::vector<float*> mOutputs;
    std::vector<float> mSilence;
    std::vector<std::vector<float>> mUnheard; // a channel each
    std::unique_ptr<CDrivenPlugin> mPlugin;   // last: its calls use the others
};
