#include "Libs/AAXLibrary/source/AAX_CEffectParameters.h"

#include "Interfaces/AAX/AAX_IParameter.h"
#include "Interfaces/AAX/AAX_IString.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Libs/AAXLibrary/source/AAX_VAutomationDelegate.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Libs/AAXLibrary/source/AAX_VTransport.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

namespace
{
constexpr double kInt32Span = 4294967295.0;
constexpr double kInt32Offset = 2147483648.0;
constexpr std::size_t kLongestShortenedName = 255;

/** Stores what `inRead` answers of a parameter. */
template <class Value, class Read>
AAX_Result ReadParameter(const AAX_CParameterManager& inManager, AAX_CParamID inId, Value* outValue,
                         Read inRead)
{
    if (outValue == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = inManager.GetParameterByID(inId);
    if (parameter == nullptr)
        return kAAX_ErrorUnknownParameter;
    return AAX_Contained(
        [&]
        {
            *outValue = inRead(*parameter);
            return kAAX_Success;
        });
}

/** Has `inUse` do something with a parameter. */
template <class Use>
AAX_Result UseParameter(AAX_CParameterManager& ioManager, AAX_CParamID inId, Use inUse)
{
    AAX_IParameter* const parameter = ioManager.GetParameterByID(inId);
    if (parameter == nullptr)
        return kAAX_ErrorUnknownParameter;
    return AAX_Contained(
        [&]
        {
            inUse(*parameter);
            return kAAX_Success;
        });
}

/** Hands a text to the host. */
AAX_Result SetText(AAX_IString& outText, const char* inText)
{
    return AAX_Contained(
        [&]
        {
            outText.Set(inText);
            return kAAX_Success;
        });
}

/** The longest line of at most `inLength` characters, the first of equally long ones; empty when none fits.
 */
std::string_view LongestFittingLine(std::string_view inLines, std::int32_t inLength)
{
    std::string_view longest;
    while (!inLines.empty())
    {
        const std::size_t end = std::min(inLines.find('\n'), inLines.size());
        const std::string_view line = inLines.substr(0, end);
        if (static_cast<std::int64_t>(line.size()) <= inLength && line.size() > longest.size())
            longest = line;
        inLines.remove_prefix(std::min(end + 1, inLines.size()));
    }
    return longest;
}

double MovedNormalized(double inCurrent, double inDelta) { return std::clamp(inCurrent + inDelta, 0.0, 1.0); }
} // namespace

std::int32_t NormalizedToInt32(double inNormalized) noexcept
{
    const double clamped = inNormalized > 0.0 ? std::min(inNormalized, 1.0) : 0.0; // a NaN counts as 0
    return static_cast<std::int32_t>(std::floor(clamped * kInt32Span - kInt32Offset + 0.5));
}

double Int32ToNormalized(std::int32_t inValue) noexcept { return (inValue + kInt32Offset) / kInt32Span; }

double BoolToNormalized(bool inValue) noexcept { return inValue ? 1.0 : 0.0; }

AAX_CEffectParameters::AAX_CEffectParameters() = default;

AAX_CEffectParameters::~AAX_CEffectParameters()
{
    // The parameters tell the automation delegate of their end, so that it must outlive them.
    (void)AAX_CEffectParameters::Uninitialize(); // always succeeds
}

AAX_Result AAX_CEffectParameters::Initialize(IACFUnknown* inHostContext)
{
    return AAX_Contained(
        [&, this]
        {
            if (mController != nullptr)
                (void)Uninitialize(); // what is left of the earlier one has nobody to be reported to
            mController = std::make_unique<AAX_VController>(inHostContext);
            mAutomationDelegate = std::make_unique<AAX_VAutomationDelegate>(inHostContext);
            mTransport = std::make_unique<AAX_VTransport>(inHostContext);
            mParameterManager.Initialize(mAutomationDelegate.get());
            mPacketDispatcher.Initialize(mController.get(), this);

            const AAX_Result result = EffectInit();
            if (result != kAAX_Success)
                return result;

            AAX_CString bypass;
            if (GetMasterBypassParameter(&bypass) == kAAX_Success)
                FilterParameterIDOnSave(bypass.Get());
            std::int32_t count = 0;
            if (GetNumberOfParameters(&count) == kAAX_Success && count > 0)
                mNumSavedParameters = count - static_cast<std::int32_t>(mFilteredParameterIDs.size());
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::Uninitialize()
{
    mParameterManager.RemoveAllParameters();
    mParameterManager.Initialize(nullptr);
    mPacketDispatcher.Clear();
    mPacketDispatcher.Initialize(nullptr, nullptr);
    mFilteredParameterIDs.clear();
    mNumSavedParameters = 0;
    mChunkParser.Clear();
    mChunkSize = 0;
    mController.reset();
    mAutomationDelegate.reset();
    mTransport.reset();
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::EffectInit() { return kAAX_Success; }

AAX_Result AAX_CEffectParameters::NotificationReceived(AAX_CTypeID inType, const void* inData,
                                                       std::uint32_t inSize)
{
    std::uint32_t word = 0;
    AAX_IParameter* const preview = mParameterManager.GetParameterByID(cPreviewID);
    if (inType != kAAX_NotificationPreview || preview == nullptr || inData == nullptr ||
        inSize < sizeof(word))
        return kAAX_Success;
    std::memcpy(&word, inData, sizeof(word));
    return AAX_Contained(
        [=]
        {
            preview->SetValueWithBool(word != 0);
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::GetNumberOfParameters(std::int32_t* outCount) const
{
    if (outCount == nullptr)
        return kAAX_ErrorNullArgument;
    *outCount = mParameterManager.NumParameters();
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::GetMasterBypassParameter(AAX_IString* outId) const
{
    if (outId == nullptr)
        return kAAX_ErrorNullArgument;
    const bool exists = mParameterManager.GetParameterByID(cDefaultMasterBypassID) != nullptr;
    return SetText(*outId, exists ? cDefaultMasterBypassID : "");
}

AAX_Result AAX_CEffectParameters::GetParameterIsAutomatable(AAX_CParamID inId,
                                                            AAX_CBoolean* outAutomatable) const
{
    if (outAutomatable != nullptr)
        *outAutomatable = 0; // also for an unknown identifier
    return ReadParameter(mParameterManager, inId, outAutomatable,
                         [](const AAX_IParameter& inParameter)
                         { return static_cast<AAX_CBoolean>(inParameter.Automatable() ? 1 : 0); });
}

AAX_Result AAX_CEffectParameters::GetParameterNumberOfSteps(AAX_CParamID inId, std::int32_t* outSteps) const
{
    return ReadParameter(
        mParameterManager, inId, outSteps,
        [](const AAX_IParameter& inParameter)
        { return static_cast<std::int32_t>(inParameter.GetNumberOfSteps()); });
}

AAX_Result AAX_CEffectParameters::GetParameterName(AAX_CParamID inId, AAX_IString* outName) const
{
    if (outName == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(inId);
    return SetText(*outName, parameter != nullptr ? parameter->Name().Get() : "");
}

AAX_Result AAX_CEffectParameters::GetParameterNameOfLength(AAX_CParamID inId, AAX_IString* outName,
                                                           std::int32_t inLength) const
{
    if (outName == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(inId);
    const char* const shortened = parameter != nullptr ? parameter->ShortenedName(inLength).Get() : "";
    return AAX_Contained(
        [&]
        {
            const std::string line(
                LongestFittingLine(std::string_view(shortened).substr(0, kLongestShortenedName), inLength));
            outName->Set(line.empty() ? shortened : line.c_str());
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::GetParameterDefaultNormalizedValue(AAX_CParamID inId,
                                                                     double* outValue) const
{
    return ReadParameter(
        mParameterManager, inId, outValue,
        [](const AAX_IParameter& inParameter) { return inParameter.GetNormalizedDefaultValue(); });
}

AAX_Result AAX_CEffectParameters::SetParameterDefaultNormalizedValue(AAX_CParamID inId, double inValue)
{
    return UseParameter(
        mParameterManager, inId,
        [=](AAX_IParameter& ioParameter) { ioParameter.SetNormalizedDefaultValue(inValue); });
}

AAX_Result AAX_CEffectParameters::GetParameterType(AAX_CParamID inId, AAX_EParameterType* outType) const
{
    return ReadParameter(
        mParameterManager, inId, outType,
        [](const AAX_IParameter& inParameter) { return inParameter.GetType(); });
}

AAX_Result AAX_CEffectParameters::GetParameterOrientation(AAX_CParamID inId,
                                                          std::int32_t* outOrientation) const
{
    return ReadParameter(
        mParameterManager, inId, outOrientation,
        [](const AAX_IParameter& inParameter) { return inParameter.GetOrientation(); });
}

AAX_Result AAX_CEffectParameters::GetParameter(AAX_CParamID inId, AAX_IParameter** outParameter)
{
    if (outParameter == nullptr)
        return kAAX_ErrorNullArgument;
    *outParameter = mParameterManager.GetParameterByID(inId);
    return *outParameter != nullptr ? kAAX_Success : kAAX_ErrorUnknownParameter;
}

AAX_Result AAX_CEffectParameters::GetParameterIndex(AAX_CParamID inId, std::int32_t* outIndex) const
{
    if (outIndex == nullptr)
        return kAAX_ErrorNullArgument;
    *outIndex = mParameterManager.ControlIndexFromID(inId);
    return *outIndex >= 0 ? kAAX_Success : kAAX_ErrorUnknownParameter;
}

AAX_Result AAX_CEffectParameters::GetParameterIDFromIndex(std::int32_t inIndex, AAX_IString* outId) const
{
    if (outId == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = mParameterManager.GetParameter(inIndex);
    const AAX_Result set = SetText(*outId, parameter != nullptr ? parameter->Identifier() : "");
    return parameter != nullptr ? set : kAAX_ErrorUnknownParameter;
}

AAX_Result AAX_CEffectParameters::GetParameterValueInfo(AAX_CParamID, std::int32_t,
                                                        std::int32_t* outValue) const
{
    if (outValue == nullptr)
        return kAAX_ErrorNullArgument;
    *outValue = 0;
    return kAAX_ErrorUnsupported;
}

AAX_Result AAX_CEffectParameters::GetParameterValueFromString(AAX_CParamID inId, double* outValue,
                                                              const AAX_IString& inText) const
{
    if (outValue == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(inId);
    if (parameter == nullptr)
        return kAAX_ErrorUnknownParameter;
    return AAX_Contained(
        [&]
        {
            double value = 0.0; // the parameter also stores values that it refuses
            if (!parameter->GetNormalizedValueFromString(AAX_CString(inText), &value))
                return kAAX_ErrorTextNotConvertible;
            *outValue = value;
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::GetParameterStringFromValue(AAX_CParamID inId, double inValue,
                                                              AAX_IString* outText,
                                                              std::int32_t inMaxLength) const
{
    if (outText == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(inId);
    if (parameter == nullptr)
        return kAAX_ErrorUnknownParameter;
    return AAX_Contained(
        [&]
        {
            AAX_CString text; // the parameter also writes texts of values that it refuses
            if (!parameter->GetStringFromNormalizedValue(inValue, inMaxLength, text))
                return kAAX_ErrorTextNotConvertible;
            outText->Set(text.Get());
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::GetParameterValueString(AAX_CParamID inId, AAX_IString* outText,
                                                          std::int32_t inMaxLength) const
{
    if (outText == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(inId);
    if (parameter == nullptr)
        return kAAX_ErrorUnknownParameter;
    return AAX_Contained(
        [&]
        {
            AAX_CString text;
            (void)parameter->GetValueString(inMaxLength, &text); // a value without a text is shown as none
            outText->Set(text.Get());
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::GetParameterNormalizedValue(AAX_CParamID inId, double* outValue) const
{
    return ReadParameter(
        mParameterManager, inId, outValue,
        [](const AAX_IParameter& inParameter) { return inParameter.GetNormalizedValue(); });
}

AAX_Result AAX_CEffectParameters::SetParameterNormalizedValue(AAX_CParamID inId, double inValue)
{
    return UseParameter(
        mParameterManager, inId,
        [=](AAX_IParameter& ioParameter) { ioParameter.SetNormalizedValue(inValue); });
}

AAX_Result AAX_CEffectParameters::SetParameterNormalizedRelative(AAX_CParamID inId, double inDelta)
{
    double current = 0.0;
    const AAX_Result result = GetParameterNormalizedValue(inId, &current);
    if (result != kAAX_Success)
        return result;
    return SetParameterNormalizedValue(inId, MovedNormalized(current, inDelta));
}

AAX_Result AAX_CEffectParameters::TouchParameter(AAX_CParamID inId)
{
    return UseParameter(
        mParameterManager, inId, [](AAX_IParameter& ioParameter) { ioParameter.Touch(); });
}

AAX_Result AAX_CEffectParameters::ReleaseParameter(AAX_CParamID inId)
{
    return UseParameter(
        mParameterManager, inId, [](AAX_IParameter& ioParameter) { ioParameter.Release(); });
}

AAX_Result AAX_CEffectParameters::UpdateParameterTouch(AAX_CParamID, AAX_CBoolean) { return kAAX_Success; }

AAX_Result AAX_CEffectParameters::UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                                                 AAX_EUpdateSource)
{
    const AAX_Result result =
        UseParameter(mParameterManager, inId,
                     [=](AAX_IParameter& ioParameter) { ioParameter.UpdateNormalizedValue(inValue); });
    if (result != kAAX_Success)
        return result;
    const AAX_Result marked = mPacketDispatcher.SetDirty(inId, true);
    ++mNumChanges;
    return marked;
}

AAX_Result AAX_CEffectParameters::UpdateParameterNormalizedRelative(AAX_CParamID inId, double inDelta)
{
    double current = 0.0;
    const AAX_Result result = GetParameterNormalizedValue(inId, &current);
    if (result != kAAX_Success)
        return result;
    return UpdateParameterNormalizedValue(inId, MovedNormalized(current, inDelta), AAX_EUpdateSource{0});
}

AAX_Result AAX_CEffectParameters::GenerateCoefficients() { return mPacketDispatcher.Dispatch(); }

AAX_Result AAX_CEffectParameters::ResetFieldData(AAX_CFieldIndex, void* outData, std::uint32_t inSize) const
{
    if (outData == nullptr)
        return kAAX_ErrorNullArgument;
    std::memset(outData, 0, inSize);
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::GetNumberOfChanges(std::int32_t* outCount) const
{
    if (outCount == nullptr)
        return kAAX_ErrorNullArgument;
    if (mNumChanges >= 0)
        *outCount = mNumChanges;
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::TimerWakeup() { return kAAX_Success; }

AAX_Result AAX_CEffectParameters::GetCurveData(AAX_CTypeID, const float*, std::uint32_t, float*) const
{
    return kAAX_ErrorUnsupported;
}

AAX_Result AAX_CEffectParameters::GetCustomData(AAX_CTypeID, std::uint32_t, void*,
                                                std::uint32_t* outWritten) const
{
    if (outWritten == nullptr)
        return kAAX_ErrorNullArgument;
    *outWritten = 0;
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::SetCustomData(AAX_CTypeID, std::uint32_t, const void*)
{
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::DoMIDITransfers() { return kAAX_Success; }

AAX_Result AAX_CEffectParameters::RenderAudio_Hybrid(AAX_SHybridRenderInfo*) { return kAAX_ErrorUnsupported; }

AAX_Result AAX_CEffectParameters::UpdateMIDINodes(AAX_CFieldIndex, AAX_CMidiPacket&) { return kAAX_Success; }

AAX_Result AAX_CEffectParameters::UpdateControlMIDINodes(AAX_CTypeID, AAX_CMidiPacket&)
{
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::SetTaperDelegate(AAX_CParamID inId, AAX_ITaperDelegateBase& inTaper,
                                                   bool inPreserveValue)
{
    const AAX_Result result = UseParameter(mParameterManager, inId,
                                           [&](AAX_IParameter& ioParameter)
                                           { ioParameter.SetTaperDelegate(inTaper, inPreserveValue); });
    // Only then the real value has moved without a host update that marks the packets.
    return result == kAAX_Success && !inPreserveValue ? mPacketDispatcher.SetDirty(inId, true) : result;
}

AAX_Result AAX_CEffectParameters::SetDisplayDelegate(AAX_CParamID inId, AAX_IDisplayDelegateBase& inDisplay)
{
    return UseParameter(
        mParameterManager, inId,
        [&](AAX_IParameter& ioParameter) { ioParameter.SetDisplayDelegate(inDisplay); });
}

bool AAX_CEffectParameters::IsParameterTouched(AAX_CParamID inId) const
{
    AAX_CBoolean touched = 0;
    return mAutomationDelegate != nullptr &&
           mAutomationDelegate->GetTouchState(inId, &touched) == kAAX_Success && touched != 0;
}

bool AAX_CEffectParameters::IsParameterLinkReady(AAX_CParamID inId, AAX_EUpdateSource inSource) const
{
    return inSource == AAX_EUpdateSource{0} && IsParameterTouched(inId);
}

void AAX_CEffectParameters::FilterParameterIDOnSave(AAX_CParamID inId)
{
    if (inId != nullptr)
        mFilteredParameterIDs.emplace(inId);
}

AAX_IController* AAX_CEffectParameters::Controller() { return mController.get(); }

const AAX_IController* AAX_CEffectParameters::Controller() const { return mController.get(); }

AAX_ITransport* AAX_CEffectParameters::Transport() { return mTransport.get(); }

const AAX_ITransport* AAX_CEffectParameters::Transport() const { return mTransport.get(); }

AAX_IAutomationDelegate* AAX_CEffectParameters::AutomationDelegate() { return mAutomationDelegate.get(); }
