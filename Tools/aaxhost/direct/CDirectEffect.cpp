#include "Tools/aaxhost/direct/CDirectEffect.h"

#include "Interfaces/AAX/AAX_IString.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/player/ParseNumber.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fmt/format.h>

namespace
{
constexpr AAX_CTypeID kChunk = AAX_FourCharCode("drct");
constexpr AAX_CTypeID kValues =
    AAX_FourCharCode("vals"); // behind a plug-in's own chunk: what a host would read

std::string IDOf(std::int32_t inIndex) { return fmt::format("{:05}", inIndex); }

double Bounded(double inValue) { return std::clamp(inValue, 0.0, 1.0); }

std::vector<char> DataOf(const AAX_SPlugInChunk& inChunk)
{
    return {inChunk.mData, inChunk.mData + std::max(inChunk.mSize, 0)};
}
} // namespace

CDirectEffect::CDirectEffect(const SUnwrapped& inUnwrapped)
    : mUnwrapped(inUnwrapped), mFolder(inUnwrapped.mPath.substr(0, inUnwrapped.mPath.rfind('/') + 1))
{
}

AAX_Result CDirectEffect::Initialize(IACFUnknown* hostContext)
{
    mController = ACFPtr<AAX_IACFController>::Query(hostContext, IID_IAAXControllerV1);
    mAutomation = ACFPtr<AAX_IACFAutomationDelegate>::Query(hostContext, IID_IAAXAutomationDelegateV1);
    if (!mController || !mAutomation)
        return kAAX_ErrorNullObject;
    float rate = 0.0F;
    SMainStems stems;
    (void)mController->GetSampleRate(&rate); // this host answers all three
    (void)mController->GetInputStemFormat(&stems.mInput);
    (void)mController->GetOutputStemFormat(&stems.mOutput);
    mRate = static_cast<double>(rate);
    const auto channels = std::ranges::find(mUnwrapped.mChannels, stems, &SChannels::mStems);
    if (channels == mUnwrapped.mChannels.end())
        return kAAX_ErrorUnsupported;
    mChannels = *channels;

    mPlugin = std::make_unique<CDrivenPlugin>(kHostVersion,
                                              [this](const SHostCall& inCall) { return Answer(inCall); });
    if (!mPlugin->Open(mUnwrapped.mPath, rate).empty())
    {
        mPlugin.reset();
        return kAAX_ErrorNullObject;
    }
    if (mUnwrapped.mServices.mAnswers)
        (void)mPlugin->Dispatch(effStartProcess); // the interface gives the result no meaning
    mLatency = mPlugin->Effect().initialDelay;
    (void)mController->SetSignalLatency(mLatency); // this host takes every one
    for (std::int32_t i = 0; i < ParameterCount(); ++i)
    {
        mDefaults.push_back(mPlugin->GetParameter(i));
        (void)mAutomation->RegisterParameter(IDOf(i).c_str()); // as above
    }
    mEvents.reserve(kMostEvents);
    mPieceEvents.reserve(kMostEvents);
    mPlugin->ReserveEvents(kMostEvents);
    mInputs.resize(mPlugin->InputCount());
    mOutputs.resize(mPlugin->OutputCount());
    mSilence.resize(CDrivenPlugin::kMaxFrames);
    mUnheard.assign(mPlugin->OutputCount(), mSilence);
    return kAAX_Success;
}

AAX_Result CDirectEffect::Uninitialize()
{
    for (std::int32_t i = 0; i < ParameterCount(); ++i)
        (void)mAutomation->UnregisterParameter(IDOf(i).c_str()); // as registered
    mPlugin.reset();
    mAutomation.Reset();
    mController.Reset();
    return kAAX_Success;
}

AAX_Result CDirectEffect::NotificationReceived(AAX_CTypeID, const void*, std::uint32_t)
{
    return kAAX_Success;
}

std::int32_t CDirectEffect::ParameterCount() const
{
    return mPlugin != nullptr ? std::max(mPlugin->Effect().numParams, 0) : 0;
}

std::optional<std::int32_t> CDirectEffect::IndexOf(AAX_CParamID inID) const
{
    const auto number = inID != nullptr ? ParseNumber(inID) : std::nullopt;
    const bool isOne = number && *number >= 0.0 && *number < ParameterCount() &&
                       inID == IDOf(static_cast<std::int32_t>(*number));
    return isOne ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
}

AAX_Result CDirectEffect::GetNumberOfParameters(std::int32_t* count) const
{
    if (count == nullptr)
        return kAAX_ErrorNullArgument;
    *count = ParameterCount();
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetMasterBypassParameter(AAX_IString*) const { return kAAX_ErrorUnsupported; }

AAX_Result CDirectEffect::GetParameterIsAutomatable(AAX_CParamID id, AAX_CBoolean* automatable) const
{
    if (!IndexOf(id))
        return kAAX_ErrorUnknownParameter;
    *automatable = 1;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterNumberOfSteps(AAX_CParamID id, std::int32_t* steps) const
{
    if (!IndexOf(id))
        return kAAX_ErrorUnknownParameter;
    *steps = 128;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterName(AAX_CParamID id, AAX_IString* name) const
{
    const auto index = IndexOf(id);
    if (!index)
        return kAAX_ErrorUnknownParameter;
    name->Set(mPlugin->Text(effGetParamName, *index).c_str());
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterNameOfLength(AAX_CParamID id, AAX_IString* name,
                                                   std::int32_t length) const
{
    const auto index = IndexOf(id);
    if (!index)
        return kAAX_ErrorUnknownParameter;
    const auto most = static_cast<std::size_t>(std::max(length, 0));
    name->Set(mPlugin->Text(effGetParamName, *index).substr(0, most).c_str());
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterDefaultNormalizedValue(AAX_CParamID id, double* value) const
{
    const auto index = IndexOf(id);
    if (!index)
        return kAAX_ErrorUnknownParameter;
    *value = static_cast<double>(mDefaults[static_cast<std::size_t>(*index)]);
    return kAAX_Success;
}

AAX_Result CDirectEffect::SetParameterDefaultNormalizedValue(AAX_CParamID, double)
{
    return kAAX_ErrorUnsupported;
}

AAX_Result CDirectEffect::GetParameterType(AAX_CParamID id, AAX_EParameterType* type) const
{
    if (!IndexOf(id))
        return kAAX_ErrorUnknownParameter;
    *type = AAX_eParameterType_Continuous;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterOrientation(AAX_CParamID, std::int32_t*) const
{
    return kAAX_ErrorUnsupported;
}

AAX_Result CDirectEffect::GetParameter(AAX_CParamID, AAX_IParameter**) { return kAAX_ErrorUnsupported; }

AAX_Result CDirectEffect::GetParameterIndex(AAX_CParamID id, std::int32_t* index) const
{
    const auto found = IndexOf(id);
    if (!found)
        return kAAX_ErrorUnknownParameter;
    *index = *found;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterIDFromIndex(std::int32_t index, AAX_IString* id) const
{
    if (index < 0 || index >= ParameterCount())
        return kAAX_ErrorUnknownParameter;
    id->Set(IDOf(index).c_str());
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterValueInfo(AAX_CParamID, std::int32_t, std::int32_t*) const
{
    return kAAX_ErrorUnsupported;
}

AAX_Result CDirectEffect::GetParameterValueFromString(AAX_CParamID id, double* value,
                                                      const AAX_IString& text) const
{
    if (!IndexOf(id))
        return kAAX_ErrorUnknownParameter;
    const auto number = ParseNumber(text.Get());
    if (!number)
        return kAAX_ErrorTextNotConvertible;
    *value = Bounded(*number);
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterStringFromValue(AAX_CParamID id, double value, AAX_IString* text,
                                                      std::int32_t) const
{
    if (!IndexOf(id))
        return kAAX_ErrorUnknownParameter;
    text->Set(fmt::format("{:.2f}", value).c_str());
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetParameterValueString(AAX_CParamID id, AAX_IString* text,
                                                  std::int32_t maxLength) const
{
    double value = 0.0;
    const AAX_Result result = GetParameterNormalizedValue(id, &value);
    return result == kAAX_Success ? GetParameterStringFromValue(id, value, text, maxLength) : result;
}

AAX_Result CDirectEffect::GetParameterNormalizedValue(AAX_CParamID id, double* value) const
{
    const auto index = IndexOf(id);
    if (!index)
        return kAAX_ErrorUnknownParameter;
    *value = static_cast<double>(mPlugin->GetParameter(*index));
    return kAAX_Success;
}

AAX_Result CDirectEffect::SetParameterNormalizedValue(AAX_CParamID id, double value)
{
    return IndexOf(id) ? mAutomation->PostSetValueRequest(id, value) : kAAX_ErrorUnknownParameter;
}

AAX_Result CDirectEffect::SetParameterNormalizedRelative(AAX_CParamID id, double delta)
{
    double value = 0.0;
    const AAX_Result result = GetParameterNormalizedValue(id, &value);
    return result == kAAX_Success ? SetParameterNormalizedValue(id, value + delta) : result;
}

AAX_Result CDirectEffect::TouchParameter(AAX_CParamID id)
{
    return IndexOf(id) ? mAutomation->PostTouchRequest(id) : kAAX_ErrorUnknownParameter;
}

AAX_Result CDirectEffect::ReleaseParameter(AAX_CParamID id)
{
    return IndexOf(id) ? mAutomation->PostReleaseRequest(id) : kAAX_ErrorUnknownParameter;
}

AAX_Result CDirectEffect::UpdateParameterTouch(AAX_CParamID id, AAX_CBoolean)
{
    return IndexOf(id) ? kAAX_Success : kAAX_ErrorUnknownParameter;
}

AAX_Result CDirectEffect::UpdateParameterNormalizedValue(AAX_CParamID id, double value, AAX_EUpdateSource)
{
    const auto index = IndexOf(id);
    if (!index)
        return kAAX_ErrorUnknownParameter;
    ++mChanges;
    mPlugin->SetParameter(*index, static_cast<float>(value)); // as a host has it, also out of range
    return kAAX_Success;
}

AAX_Result CDirectEffect::UpdateParameterNormalizedRelative(AAX_CParamID id, double delta)
{
    double value = 0.0;
    const AAX_Result result = GetParameterNormalizedValue(id, &value);
    return result == kAAX_Success ? UpdateParameterNormalizedValue(id, value + delta, 0) : result;
}

AAX_Result CDirectEffect::GenerateCoefficients() { return kAAX_Success; }

AAX_Result CDirectEffect::ResetFieldData(AAX_CFieldIndex field, void* data, std::uint32_t size) const
{
    const void* const self = this;
    if (field == mUnwrapped.mEffectField && size == sizeof(self))
        std::memcpy(data, &self, size);
    return kAAX_Success;
}

bool CDirectEffect::KeepsChunks() const
{
    return mPlugin != nullptr && (mPlugin->Effect().flags & effFlagsProgramChunks) != 0;
}

std::vector<char> CDirectEffect::State(AAX_CTypeID inChunk) const
{
    if (inChunk == kChunk && KeepsChunks())
        return mPlugin->GetChunk(0);
    std::vector<float> values(static_cast<std::size_t>(ParameterCount()));
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = mPlugin->GetParameter(static_cast<std::int32_t>(i));
    std::vector<char> bytes(values.size() * sizeof(float));
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

bool CDirectEffect::HasChunk(AAX_CTypeID inID) const
{
    return inID == kChunk || (inID == kValues && KeepsChunks());
}

AAX_Result CDirectEffect::GetNumberOfChunks(std::int32_t* count) const
{
    *count = KeepsChunks() ? 2 : 1;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetChunkIDFromIndex(std::int32_t index, AAX_CTypeID* id) const
{
    std::int32_t count = 0;
    (void)GetNumberOfChunks(&count); // cannot fail
    if (index < 0 || index >= count)
        return kAAX_ErrorChunkIndex;
    *id = index == 0 ? kChunk : kValues;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetChunkSize(AAX_CTypeID id, std::uint32_t* size) const
{
    if (!HasChunk(id))
        return kAAX_ErrorUnknownChunk;
    mSaved = State(id);
    *size = static_cast<std::uint32_t>(mSaved.size());
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetChunk(AAX_CTypeID id, AAX_SPlugInChunk* chunk) const
{
    if (!HasChunk(id))
        return kAAX_ErrorUnknownChunk;
    chunk->mSize = static_cast<std::int32_t>(mSaved.size());
    chunk->mVersion = 1;
    std::ranges::copy(mSaved, chunk->mData);
    return kAAX_Success;
}

AAX_Result CDirectEffect::SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk* chunk)
{
    if (!HasChunk(id))
        return kAAX_ErrorUnknownChunk;
    if (id == kValues)
        return kAAX_Success; // its own chunk has them
    std::vector<char> data = DataOf(*chunk);
    ++mChanges;
    if (KeepsChunks())
    {
        (void)mPlugin->SetChunk(0, data); // answered with anything
        return kAAX_Success;
    }
    std::vector<float> values(data.size() / sizeof(float));
    std::memcpy(values.data(), data.data(), values.size() * sizeof(float));
    for (std::int32_t i = 0; i < ParameterCount() && i < std::ssize(values); ++i)
        if (const float value = values[static_cast<std::size_t>(i)]; std::isfinite(value))
            mPlugin->SetParameter(i, std::clamp(value, 0.0F, 1.0F));
    return kAAX_Success;
}

AAX_Result CDirectEffect::CompareActiveChunk(const AAX_SPlugInChunk* chunk, AAX_CBoolean* isEqual) const
{
    *isEqual = !HasChunk(chunk->mChunkID) || DataOf(*chunk) == State(chunk->mChunkID) ? 1 : 0;
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetNumberOfChanges(std::int32_t* count) const
{
    *count = mChanges;
    return kAAX_Success;
}

AAX_Result CDirectEffect::TimerWakeup()
{
    if (mPlugin == nullptr)
        return kAAX_Success;
    if (mWantsIdle.exchange(false) && mPlugin->Dispatch(effIdle) != 0)
        mWantsIdle = true;
    if (const std::int32_t latency = mPlugin->Effect().initialDelay; latency != mLatency)
    {
        mLatency = latency;
        return mController->SetSignalLatency(latency);
    }
    return kAAX_Success;
}

AAX_Result CDirectEffect::GetCurveData(AAX_CTypeID, const float*, std::uint32_t, float*) const
{
    return kAAX_ErrorUnsupported;
}

AAX_Result CDirectEffect::GetCustomData(AAX_CTypeID, std::uint32_t, void*, std::uint32_t*) const
{
    return kAAX_ErrorUnsupported;
}

AAX_Result CDirectEffect::SetCustomData(AAX_CTypeID, std::uint32_t, const void*)
{
    return kAAX_ErrorUnsupported;
}

AAX_Result CDirectEffect::DoMIDITransfers() { return kAAX_Success; }

AAX_Result CDirectEffect::RenderAudio_Hybrid(AAX_SHybridRenderInfo*) { return kAAX_ErrorUnsupported; }

AAX_Result CDirectEffect::UpdateMIDINodes(AAX_CFieldIndex, AAX_CMidiPacket&) { return kAAX_Success; }

AAX_Result CDirectEffect::UpdateControlMIDINodes(AAX_CTypeID, AAX_CMidiPacket&) { return kAAX_Success; }

std::optional<VstIntPtr> CDirectEffect::Answer(const SHostCall& inCall)
{
    switch (inCall.mOpcode)
    {
    case audioMasterAutomate:
    case audioMasterBeginEdit:
    case audioMasterEndEdit:
        // Nothing inside the entry function, and for parameters that it does not have.
        if (const std::string id = IDOf(inCall.mIndex);
            inCall.mCaller == EHostCaller::kLoaded && IndexOf(id.c_str()))
            Edit(inCall, id.c_str());
        return 1;
    case audioMasterNeedIdle: mWantsIdle = mUnwrapped.mServices.mIdleTime; return std::nullopt;
    case audioMasterSizeWindow:
        if (inCall.mIndex < 1 || inCall.mValue < 1 || inCall.mValue > INT32_MAX)
            return 0;
        mSizeWish =
            static_cast<std::uint64_t>(inCall.mIndex) << 32 | static_cast<std::uint64_t>(inCall.mValue);
        return 1;
    default: return mUnwrapped.mServices.Answer(inCall, mRate, mIsRendering, mFolder);
    }
}

void CDirectEffect::Edit(const SHostCall& inCall, AAX_CParamID inID)
{
    AAX_IACFViewContainer* const container = mContainer;
    constexpr std::uint32_t noKeys = 0;
    // This host takes every one.
    switch (inCall.mOpcode)
    {
    case audioMasterBeginEdit:
        (void)mAutomation->PostTouchRequest(inID);
        if (container != nullptr)
            (void)container->HandleParameterMouseDown(inID, noKeys);
        break;
    case audioMasterEndEdit:
        (void)mAutomation->PostReleaseRequest(inID);
        if (container != nullptr)
            (void)container->HandleParameterMouseUp(inID, noKeys);
        break;
    default: (void)mAutomation->PostSetValueRequest(inID, Bounded(static_cast<double>(inCall.mOpt))); break;
    }
}

std::optional<AAX_Point> CDirectEffect::TakeSizeWish()
{
    const std::uint64_t wish = mSizeWish.exchange(0);
    return wish != 0 ? std::optional(
                           AAX_Point{static_cast<float>(wish & UINT32_MAX), static_cast<float>(wish >> 32)})
                     : std::nullopt;
}
