#include "Source/AaxAdapter_Parameters.h"

#include "Libs/AAXLibrary/source/AAX_CBinaryDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CBinaryTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CLinearTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CNumberDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CPacket.h"
#include "Libs/AAXLibrary/source/AAX_CParameter.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Libs/AAXLibrary/source/AAX_IPacketHandler.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Source/AaxAdapter_Product.h"
#include "Source/DescribedShape.h"
#include "Source/IAttachedEditor.h"
#include "Source/ParameterId.h"
#include "Source/SourceVstPath.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/CopyBounded.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

namespace
{
static_assert(sizeof(CPluginParameter) <= 128); // plug-ins have thousands

constexpr AAX_CFieldIndex kMasterBypassField = 0;
constexpr AAX_CFieldIndex kGainField = 1;
constexpr std::uint32_t kGainSteps = 55;

const AAX_CLinearTaperDelegate<float, 0> kUnitTaper(0.0F, 1.0F);
const AAX_CNumberDisplayDelegate<float, 2, 0> kTwoDecimals{};

std::unique_ptr<AAX_IParameter> MakeUnitParameter(const char* inId, const char* inName, float inDefault,
                                                  bool inAutomatable)
{
    return std::make_unique<AAX_CParameter<float>>(inId, AAX_CString(inName), inDefault, kUnitTaper,
                                                   kTwoDecimals, inAutomatable);
}
} // namespace

AAX_IEffectParameters* AaxAdapter_Parameters::Create()
{
    return AAX_CreateContained<AaxAdapter_Parameters>();
}

AaxAdapter_Parameters::AaxAdapter_Parameters()
    : mEventData(kFirstEventCapacity), mEventTimes(kFirstEventCapacity)
{
}

AaxAdapter_Parameters::~AaxAdapter_Parameters()
{
    // The parameters know members of this object, and the base would delete them after these are gone.
    IgnoreReports();
    (void)RemoveParameters(); // always succeeds
    LeavePlugin();
    ClosePlugin();
}

void AaxAdapter_Parameters::ReleasePlugin()
{
    LeavePlugin();
    if (mPlugin != nullptr && mPlugin->GetEffect() != nullptr)
        (void)AAX_Contained( // it closes either way
            [this]
            {
                PluginEnds();
                return kAAX_Success;
            });
    ClosePlugin();
}

void AaxAdapter_Parameters::LeavePlugin()
{
    if (mEditor != nullptr)
        std::exchange(mEditor, nullptr)->ForgetInstance();
    // A plug-in may report changes while it closes; nobody is left to hear them.
    mVst2Host.SetMainListener(nullptr);
    mVst2Host.SetEditListener(nullptr);
    (void)AAX_Contained( // it closes either way
        [this]
        {
            if (mPlugin != nullptr && mPlugin->IsEditorOpen())
                mPlugin->CloseEditor();
            return kAAX_Success;
        });
}

void AaxAdapter_Parameters::ClosePlugin()
{
    mPlugin = nullptr;
    mVst2Host.Reset(); // also one that could not be started
}

AAX_Result AaxAdapter_Parameters::Uninitialize()
{
    // First of all: threads of the plug-in may be reporting changes of the parameters that go now.
    IgnoreReports();
    ParametersEnd();
    return RemoveParameters();
}

void AaxAdapter_Parameters::IgnoreReports()
{
    mHasParameters.store(false);
    mVst2Host.SetMainListener(nullptr); // returns when nobody reports any more
}

AAX_Result AaxAdapter_Parameters::RemoveParameters()
{
    const AAX_Result result = AAX_CInstrumentParameters::Uninitialize();
    mAutomation.Detach();
    return result;
}

AAX_Result AaxAdapter_Parameters::EffectInit()
{
    const CClearedFlag notReady = IgnoredReports();
    mHasParameters.store(false);
    const AAX_Result result = AAX_Contained(
        [this]
        {
            LoadWrappedPlugin();
            AddPluginParameters();
            AddOwnParameters();
            AddLastParameters();
            RegisterPackets();
            mHasParameters.store(true, std::memory_order_release);
            return kAAX_Success;
        });
    if (result != kAAX_Success)
        ReleasePlugin();
    return result;
}

void AaxAdapter_Parameters::LoadWrappedPlugin()
{
    ReleasePlugin(); // of an earlier initialisation: its threads may be asking for what changes now
    mSampleRate = 0.0F;
    (void)Controller()->GetSampleRate(&mSampleRate); // a host that answers nothing leaves the rate at 0
    mTimeInfoRate = static_cast<double>(mSampleRate);
    mSamplesPerBarAtOneBpm = static_cast<double>(mSampleRate * 240.0F); // 4/4

    mLatency = 0;
    mVst2Host.SetBufferSize(kBlockSizeFrames);
    mVst2Host.SetSampleRate(mSampleRate);
    mVst2Host.SetMainListener(this);
    std::array<char, kSourceVstPathSize> path{}; // not the shared one: instances may start on several threads
    CreateSourceVstPath(path.data());
    mPlugin = mVst2Host.LoadPlugin(path.data());
    if (mPlugin != nullptr)
    {
        PluginLoaded();
        // Again, although loading has done it: some plug-ins drop the rate and block size sent before they
        // are open.
        mPlugin->Initialize(kBlockSizeFrames, mSampleRate);
        const std::optional<SDescribedShape> described = RememberedDescription();
        SDescribedShape shape = described ? *described : ShapeOf(*mPlugin);
        PluginStarted(shape);
        mLatency = PluginLatency();
        PrepareChannels(shape);
    }
    TellLatency();
}

void AaxAdapter_Parameters::TellLatency()
{
    const std::int64_t latency = std::max<std::int64_t>(mLatency, 0);
    if (latency == 0 && mToldLatency == 0) // which a host takes for granted
        return;
    (void)Controller()->SetSignalLatency(
        static_cast<std::int32_t>(latency)); // a refusal changes nothing here
    mToldLatency = latency;
}

void AaxAdapter_Parameters::RefreshLatency()
{
    if (mPlugin == nullptr || Controller() == nullptr)
        return;
    mLatency = PluginLatency();
    if (std::max<std::int64_t>(mLatency, 0) != mToldLatency)
        TellLatency();
}

std::int64_t AaxAdapter_Parameters::PluginLatency() const { return mPlugin->GetInitialDelay(); }

void AaxAdapter_Parameters::PrepareChannels(const SDescribedShape& inShape)
{
    const AEffect& effect = *mPlugin->GetEffect();
    mHasInputNode = inShape.mHasInputNode;
    mHostOutputChannels = inShape.mOutputChannels;
    const bool isDirect =
        effect.processReplacing != nullptr && inShape.mSecondOutput == ESecondChannel::kHosts;
    mDirectOutputs = isDirect ? mHostOutputChannels : kNoneDirect;
    // With a nonsensical count it counts as grown, and its blocks are silent.
    const auto sensible = [](std::int32_t inChannels) { return inChannels <= kMaxChannels ? inChannels : 0; };
    mInputs.Prepare(inShape.mInputChannels, sensible(effect.numInputs), kBlockSizeFrames,
                    inShape.mSecondInput);
    mOutputs.Prepare(inShape.mOutputChannels, sensible(effect.numOutputs), kBlockSizeFrames,
                     inShape.mSecondOutput);
}

void AaxAdapter_Parameters::AddPluginParameters()
{
    const long announced = mPlugin != nullptr ? mPlugin->GetNumParameters() : 0;
    mParameterCount = announced <= kMaxParameters ? std::max(announced, 0L) : 0;
    mPluginParameters = std::vector<CPluginParameter>(static_cast<std::size_t>(mParameterCount));
    mAutomation.Attach(AutomationFor(*AutomationDelegate()), mPluginParameters);
    mParameterManager.Initialize(&mAutomation);
    for (long i = 0; i < mParameterCount; ++i)
    {
        const float value = mPlugin->GetParameter(i);
        std::unique_ptr<AAX_IParameter> parameter =
            MakeUnitParameter(CParameterId(i).Get(), mPlugin->GetParameterName(i), value, IsAutomatable(i));
        DescribeParameter(i, *parameter);
        mParameterManager.AddParameter(parameter.release());
    }
}

long AaxAdapter_Parameters::PluginParameterCount() const
{
    return mPlugin != nullptr ? std::min(mParameterCount, mPlugin->GetNumParameters()) : 0;
}

void AaxAdapter_Parameters::AddOwnParameters()
{
    // "bypass" is false and "on" is true: the switch shows the state of the effect, not of the bypass.
    auto bypass = std::make_unique<AAX_CParameter<bool>>(
        cDefaultMasterBypassID, AAX_CString("Master Bypass"), false, AAX_CBinaryTaperDelegate<bool>(),
        AAX_CBinaryDisplayDelegate<bool>("bypass", "on"), true);
    bypass->SetNumberOfSteps(2);
    bypass->SetType(AAX_eParameterType_Discrete);
    mParameterManager.AddParameter(bypass.release());

    // Nobody is meant to turn it, so its name is a dash. Its packet is what brings the values into the
    // plug-in.
    std::unique_ptr<AAX_IParameter> gain = MakeUnitParameter(kGainID, "----", 1.0F, false);
    gain->SetNumberOfSteps(kGainSteps);
    mParameterManager.AddParameter(gain.release());
}

void AaxAdapter_Parameters::RegisterPackets()
{
    mPacketDispatcher.RegisterPacket(cDefaultMasterBypassID, kMasterBypassField);
    const AAX_CPacketHandler<AaxAdapter_Parameters> gainHandler(this,
                                                                &AaxAdapter_Parameters::UpdatePacket_Gain);
    mPacketDispatcher.RegisterPacket(kGainID, kGainField, &gainHandler);
}

void AaxAdapter_Parameters::AttachEditor(IAttachedEditor& inEditor)
{
    if (mEditor != nullptr && mEditor != &inEditor)
        mEditor->ForgetInstance();
    mEditor = &inEditor;
}

void AaxAdapter_Parameters::ReleaseEditor(IAttachedEditor& inEditor) noexcept
{
    if (mEditor != &inEditor)
        return;
    mEditor = nullptr;
    mVst2Host.SetEditListener(nullptr);
}

void AaxAdapter_Parameters::SetHostParameter(long inIndex, float inValue)
{
    // While they are made on the main thread, another one must not look for them.
    if (HearsParameters())
        SetParameter(inIndex, inValue);
}

void AaxAdapter_Parameters::UpdateParameters()
{
    if (!mReady.load(std::memory_order_acquire))
        return;
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
        SetParameter(i, mPlugin->GetParameter(i));
}

void AaxAdapter_Parameters::SetParameter(long inIndex, float inValue)
{
    const bool isPutOff = inIndex >= 0 && inIndex < mParameterCount &&
                          mPluginParameters[static_cast<std::size_t>(inIndex)].PutsOff();
    if (!isPutOff)
        Report(inIndex, inValue);
    mHasRequests.store(true, std::memory_order_release); // a beat that takes it finds what was noted above
}

void AaxAdapter_Parameters::Report(long inIndex, float inValue)
{
    // An index that no parameter has is the plug-in's mistake, and there is nobody to tell.
    (void)AAX_CEffectParameters::SetParameterNormalizedValue(CParameterId(inIndex).Get(), inValue);
}

void AaxAdapter_Parameters::SetEditorData(int, void*, unsigned long) {}

void AaxAdapter_Parameters::MessageToEditor(int, float) {}

AAX_Result AaxAdapter_Parameters::SetParameterNormalizedValue(AAX_CParamID inId, double inValue)
{
    return AAX_Contained(
        [=, this]
        {
            (void)AAX_CEffectParameters::SetParameterNormalizedValue(
                inId, inValue); // an unknown one reaches nobody
            if (const long index = PluginParameterIndex(inId); index >= 0)
            {
                mPluginParameters[static_cast<std::size_t>(index)].NoteUpdate();
                mPlugin->SetParameter(index, static_cast<float>(inValue));
            }
            return kAAX_Success;
        });
}

AAX_Result AaxAdapter_Parameters::UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                                                 AAX_EUpdateSource)
{
    return AAX_Contained(
        [=, this]
        {
            const long index = PluginParameterIndex(inId);
            if (index < 0)
                return kAAX_Success;
            CPluginParameter& parameter = mPluginParameters[static_cast<std::size_t>(index)];
            if (!parameter.Settle(inValue))
                mPlugin->SetParameter(index, static_cast<float>(inValue));
            if (parameter.TakePutOff()) [[unlikely]]
                Report(index, mPlugin->GetParameter(index));
            return kAAX_Success;
        });
}

void AaxAdapter_Parameters::KeepUpdate(AAX_CParamID inId, double inValue)
{
    // An identifier that no parameter has reaches nobody.
    (void)AAX_CEffectParameters::UpdateParameterNormalizedValue(inId, inValue, AAX_EUpdateSource{0});
}

AAX_Result AaxAdapter_Parameters::GenerateCoefficients()
{
    return AAX_Contained([this] { return AAX_CInstrumentParameters::GenerateCoefficients(); });
}

AAX_Result AaxAdapter_Parameters::TimerWakeup()
{
    if (mHasRequests.exchange(false, std::memory_order_acquire))
        (void)AAX_Contained( // a plug-in that throws here is given it with the host's next update
            [this]
            {
                LookAfterRequests();
                return kAAX_Success;
            });
    return AAX_CInstrumentParameters::TimerWakeup();
}

void AaxAdapter_Parameters::LookAfterRequests()
{
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
    {
        CPluginParameter& parameter = mPluginParameters[static_cast<std::size_t>(i)];
        if (const std::optional<float> value = parameter.TimerBeat())
            mPlugin->SetParameter(i, *value);
        if (parameter.TakePutOff())
            Report(i, mPlugin->GetParameter(i));
        if (parameter.IsWaiting())
            mHasRequests.store(true, std::memory_order_relaxed);
    }
}

long AaxAdapter_Parameters::PluginParameterIndex(AAX_CParamID inId) const
{
    const long index = IdToIx(inId);
    return index < PluginParameterCount() ? index : -1;
}

const char* AaxAdapter_Parameters::IxToId(long inIndex)
{
    CopyBounded(mIdBuffer, CParameterId(inIndex).Get());
    return mIdBuffer.data();
}

long AaxAdapter_Parameters::IdToIx(const char* inId) { return ParameterIndexFromId(inId); }

AAX_Result AaxAdapter_Parameters::UpdatePacket_Gain(const char*, AAX_CPacket& outPacket)
{
    const AAX_IParameter* const gain = mParameterManager.GetParameterByID(kGainID);
    float value = 0.0F;
    if (gain != nullptr && gain->GetValueAsFloat(&value))
    {
        std::memcpy(outPacket.mPacketData.Get(sizeof(value)), &value, sizeof(value));
        outPacket.mDataSize = sizeof(value);
    }
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
    {
        if (mPluginParameters[static_cast<std::size_t>(i)].HasNewerValue())
            continue;
        const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(CParameterId(i).Get());
        if (parameter != nullptr && parameter->GetValueAsFloat(&value))
            mPlugin->SetParameter(i, value);
    }
    return kAAX_Success;
}
