#pragma once
#include "Interfaces/AAX/AAX_IEffectParameters.h"
#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"
#include "Libs/AAXLibrary/source/AAX_CPacketDispatcher.h"
#include "Libs/AAXLibrary/source/AAX_CParameterManager.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

class AAX_IAutomationDelegate;
class AAX_IController;
class AAX_IDisplayDelegateBase;
class AAX_ITaperDelegateBase;
class AAX_ITransport;
class AAX_VAutomationDelegate;
class AAX_VController;
class AAX_VTransport;

inline constexpr const char* cDefaultMasterBypassID = "MasterBypassID";
inline constexpr const char* cPreviewID = "PreviewID";
/** The chunk that holds the value of every parameter. */
inline constexpr AAX_CTypeID kAAX_ControlsChunkID = AAX_FourCharCode("elck");
inline constexpr char kAAX_ControlsChunkName[] = "Complete Controls State";
/** The host's preview state; the data's first 32-bit word is 0 or not. */
inline constexpr AAX_CTypeID kAAX_NotificationPreview = AAX_FourCharCode("ASPv");

/** An integer as a normalized value and back: the whole range on 0 to 1, what lies outside is clamped. */
std::int32_t NormalizedToInt32(double inNormalized) noexcept;
double Int32ToNormalized(std::int32_t inValue) noexcept;
double BoolToNormalized(bool inValue) noexcept;

/**
 * Base of an instance's data model: answers the host's parameter, automation, notification and chunk calls
 * from the parameters that a derived class adds in `EffectInit`.
 *
 * What a plug-in or user wants goes to the host as a request; the value changes, its packets become dirty and
 * the change counts only when the host confirms it through `UpdateParameterNormalizedValue`. The host's
 * interfaces may all be missing. An identifier that no parameter has, null included, answers
 * kAAX_ErrorUnknownParameter unless a call says otherwise, a null argument of the host
 * kAAX_ErrorNullArgument, an exception, such as for want of memory, kAAX_ErrorNullObject.
 *
 * Threads: the host serializes the calls of one instance; no lock is taken.
 */
class AAX_CEffectParameters : public AAX_IEffectParameters
{
public:
    AAX_CEffectParameters();
    ~AAX_CEffectParameters() override;

    /**
     * Takes over what the context offers and has the derived class create its parameters. An instance that is
     * initialised already is uninitialised first.
     * @return what `EffectInit` answers.
     */
    AAX_Result Initialize(IACFUnknown* inHostContext) override;
    /** Forgets all that `EffectInit` has made and gives the host's interfaces back; the changes stay counted.
     */
    AAX_Result Uninitialize() override;
    AAX_Result NotificationReceived(AAX_CTypeID inType, const void* inData, std::uint32_t inSize) override;

    AAX_Result GetNumberOfParameters(std::int32_t* outCount) const override;
    /** The empty text when there is no master bypass. */
    AAX_Result GetMasterBypassParameter(AAX_IString* outId) const override;
    AAX_Result GetParameterIsAutomatable(AAX_CParamID inId, AAX_CBoolean* outAutomatable) const override;
    AAX_Result GetParameterNumberOfSteps(AAX_CParamID inId, std::int32_t* outSteps) const override;
    /** The empty text and success for an unknown identifier, in both forms. */
    AAX_Result GetParameterName(AAX_CParamID inId, AAX_IString* outName) const override;
    /** A shortened name may have several spellings, one a line: the longest that fits is taken. */
    AAX_Result GetParameterNameOfLength(AAX_CParamID inId, AAX_IString* outName,
                                        std::int32_t inLength) const override;
    AAX_Result GetParameterDefaultNormalizedValue(AAX_CParamID inId, double* outValue) const override;
    AAX_Result SetParameterDefaultNormalizedValue(AAX_CParamID inId, double inValue) override;
    AAX_Result GetParameterType(AAX_CParamID inId, AAX_EParameterType* outType) const override;
    AAX_Result GetParameterOrientation(AAX_CParamID inId, std::int32_t* outOrientation) const override;
    AAX_Result GetParameter(AAX_CParamID inId, AAX_IParameter** outParameter) override; // stays ours
    AAX_Result GetParameterIndex(AAX_CParamID inId, std::int32_t* outIndex) const override;
    AAX_Result GetParameterIDFromIndex(std::int32_t inIndex, AAX_IString* outId) const override;
    AAX_Result GetParameterValueInfo(AAX_CParamID inId, std::int32_t inSelector,
                                     std::int32_t* outValue) const override;
    AAX_Result GetParameterValueFromString(AAX_CParamID inId, double* outValue,
                                           const AAX_IString& inText) const override;
    AAX_Result GetParameterStringFromValue(AAX_CParamID inId, double inValue, AAX_IString* outText,
                                           std::int32_t inMaxLength) const override;
    AAX_Result GetParameterValueString(AAX_CParamID inId, AAX_IString* outText,
                                       std::int32_t inMaxLength) const override;
    AAX_Result GetParameterNormalizedValue(AAX_CParamID inId, double* outValue) const override;
    AAX_Result SetParameterNormalizedValue(AAX_CParamID inId, double inValue) override;
    AAX_Result SetParameterNormalizedRelative(AAX_CParamID inId, double inDelta) override;
    AAX_Result TouchParameter(AAX_CParamID inId) override;
    AAX_Result ReleaseParameter(AAX_CParamID inId) override;
    AAX_Result UpdateParameterTouch(AAX_CParamID inId, AAX_CBoolean inTouched) override;
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                              AAX_EUpdateSource inSource) override;
    AAX_Result UpdateParameterNormalizedRelative(AAX_CParamID inId, double inDelta) override;
    /** Posts the packets of every parameter that has changed. */
    AAX_Result GenerateCoefficients() override;
    AAX_Result ResetFieldData(AAX_CFieldIndex inField, void* outData, std::uint32_t inSize) const override;

    AAX_Result GetNumberOfChunks(std::int32_t* outCount) const override;
    AAX_Result GetChunkIDFromIndex(std::int32_t inIndex, AAX_CTypeID* outId) const override;
    AAX_Result GetChunkSize(AAX_CTypeID inId, std::uint32_t* outSize) const override;
    /** Only right after `GetChunkSize`, or else kAAX_ErrorChunkSize. The version field is always -1. */
    AAX_Result GetChunk(AAX_CTypeID inId, AAX_SPlugInChunk* outChunk) const override;
    /** Requests every value that the chunk has for a parameter. */
    AAX_Result SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk) override;
    /** A chunk of another identifier counts as equal. */
    AAX_Result CompareActiveChunk(const AAX_SPlugInChunk* inChunk, AAX_CBoolean* outIsEqual) const override;
    AAX_Result GetNumberOfChanges(std::int32_t* outCount) const override;

    AAX_Result TimerWakeup() override;
    AAX_Result GetCurveData(AAX_CTypeID inCurve, const float* inX, std::uint32_t inCount,
                            float* outY) const override;
    AAX_Result GetCustomData(AAX_CTypeID inType, std::uint32_t inSize, void* outData,
                             std::uint32_t* outWritten) const override;
    AAX_Result SetCustomData(AAX_CTypeID inType, std::uint32_t inSize, const void* inData) override;
    AAX_Result DoMIDITransfers() override;
    AAX_Result RenderAudio_Hybrid(AAX_SHybridRenderInfo* ioInfo) override;
    AAX_Result UpdateMIDINodes(AAX_CFieldIndex inField, AAX_CMidiPacket& inPacket) override;
    AAX_Result UpdateControlMIDINodes(AAX_CTypeID inNode, AAX_CMidiPacket& inPacket) override;

    /** Creates parameters and packets; nothing in the base. */
    virtual AAX_Result EffectInit();

    /** Keeps a parameter out of the controls chunk; null is ignored. */
    void FilterParameterIDOnSave(AAX_CParamID inId);

    // ---- What no module calls: for effects that are written with this class.
    AAX_Result SetTaperDelegate(AAX_CParamID inId, AAX_ITaperDelegateBase& inTaper, bool inPreserveValue);
    AAX_Result SetDisplayDelegate(AAX_CParamID inId, AAX_IDisplayDelegateBase& inDisplay);
    bool IsParameterTouched(AAX_CParamID inId) const;
    bool IsParameterLinkReady(AAX_CParamID inId, AAX_EUpdateSource inSource) const;

    // ---- The host's interfaces.
    /** Null outside of the time from `Initialize` to `Uninitialize`. */
    AAX_IController* Controller();
    const AAX_IController* Controller() const;
    AAX_ITransport* Transport();
    const AAX_ITransport* Transport() const;

protected:
    AAX_IAutomationDelegate* AutomationDelegate(); // null as the others
    /** What `SetChunk` does with a chunk that has been read. */
    void RequestSavedValues(AAX_CChunkDataParser& ioSaved);

private:
    void BuildChunkData() const;
    bool IsSaved(const AAX_IParameter& inParameter) const;

    std::int32_t mNumChanges = 0;
    mutable std::int32_t mChunkSize = 0; // bytes, as reported last
    mutable AAX_CChunkDataParser mChunkParser;

protected:
    std::int32_t mNumSavedParameters = 0;
    AAX_CPacketDispatcher mPacketDispatcher;
    AAX_CParameterManager mParameterManager;

private:
    std::set<std::string, std::less<>> mFilteredParameterIDs;
    std::unique_ptr<AAX_VController> mController;
    std::unique_ptr<AAX_VTransport> mTransport;
    std::unique_ptr<AAX_VAutomationDelegate> mAutomationDelegate;
};
