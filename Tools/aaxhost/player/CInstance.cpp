#include "Tools/aaxhost/player/CInstance.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/support/CStage.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace
{
/** Has a registered factory make its object and asks it for the interface; empty when there is none. */
template <class Interface>
ACFPtr<Interface> MakeObject(const SEffect& inEffect, AAX_CProcPtrID inProc, const acfIID& inIid)
{
    const auto factory = reinterpret_cast<AAX_CFactoryProc>(FindProcPtr(inEffect, inProc));
    if (factory == nullptr)
        return {};
    // Held while it is asked, so that an object without the interface deletes itself.
    const ACFPtr<IACFUnknown> object(factory());
    return ACFPtr<Interface>::Query(object.Get(), inIid);
}

/** @param inStems by name; empty: the first component. */
COutcome<const SComponent*> FindComponent(const SEffect& inEffect, const std::string& inStems)
{
    if (inEffect.mComponents.empty() || inEffect.mComponents.front().mProcs.empty())
        return SProblem{"The module describes no component with a render procedure."};
    std::vector<std::string> names;
    for (const SComponent& component : inEffect.mComponents)
    {
        names.push_back(NameOfStems(MainStemsOf(component)));
        if (!component.mProcs.empty() && (inStems.empty() || names.back() == inStems))
            return &component;
    }
    return SProblem{fmt::format("The module describes no component for the stems '{}'; it has {}.", inStems,
                                fmt::join(names, ", "))};
}
} // namespace

CInstance::CInstance(CModule& inModule)
    : mModule(inModule), mHost(std::make_unique<CInstanceHost>(inModule.Host().Log()))
{
}

CInstance::~CInstance()
{
    const CStage stage("an instance was being closed");
    CloseGUI();
    mHost->SetEffectParameters(nullptr);
    if (mParameters)
        (void)mParameters->Uninitialize(); // the object goes away whatever it answers
}

COutcome<std::unique_ptr<CInstance>> CInstance::Create(CModule& inModule, double inSampleRate,
                                                       const SInstanceOptions& inOptions)
{
    const CStage stage("an instance was being made");
    std::unique_ptr<CInstance> instance(new CInstance(inModule));
    const auto begun = instance->Begin(inSampleRate, inOptions);
    if (!begun)
        return begun.Problem();
    return instance;
}

COutcome<SDone> CInstance::Begin(double inSampleRate, const SInstanceOptions& inOptions)
{
    mOptions = inOptions;
    const SEffect& effect = mModule.Effect();
    const auto component = FindComponent(effect, inOptions.mStems);
    if (!component)
        return component.Problem();
    mComponent = **component;
    mProcess = mComponent.mProcs.front().mProcess;
    const SMainStems stems = MainStemsOf(mComponent);
    mInputChannels = AAX_StemChannelCount(stems.mInput);
    mMainOutputChannels = AAX_StemChannelCount(stems.mOutput);
    mOutputChannels = mMainOutputChannels;
    for (const SAuxStem& stem : mComponent.mAuxStems)
        mOutputChannels += AAX_StemChannelCount(stem.mFormat);

    SControllerState& controller = mHost->Controller().State();
    controller.mEffectID = effect.mID;
    controller.mInputStemFormat = stems.mInput;
    controller.mOutputStemFormat = stems.mOutput;
    mHost->SetSampleRate(inSampleRate);
    mHost->Automation().SetAnswers(inOptions.mAnswers);

    mParameters = MakeObject<AAX_IACFEffectParameters>(effect, kAAX_ProcPtrEffectParameters,
                                                       IID_IAAXEffectParametersV1);
    if (!mParameters)
        return SProblem{"The module makes no effect-parameters object."};
    if (const AAX_Result initialized = mParameters->Initialize(mHost->Unknown()))
        return SProblem{
            fmt::format("The instance does not start: Initialize answered {}.", NameOfResult(initialized))};
    mHost->SetEffectParameters(mParameters.Get());
    const AAX_Result result =
        inOptions.mBeginsWithCoefficients ? mParameters->GenerateCoefficients() : kAAX_Success;
    if (result != kAAX_Success)
        return SProblem{fmt::format("The instance does not start: GenerateCoefficients answered {}.",
                                    NameOfResult(result))};
    return SDone{};
}

COutcome<SDone> CInstance::OpenGUI()
{
    CloseGUI();
    mGUI = MakeObject<AAX_IACFEffectGUI>(mModule.Effect(), kAAX_ProcPtrEffectGUI, IID_IAAXEffectGUIV1);
    if (!mGUI)
        return SProblem{"The module makes no editor object."};
    if (const AAX_Result result = mGUI->Initialize(mHost->Unknown()))
    {
        mGUI.Reset();
        return SProblem{
            fmt::format("The editor does not start: Initialize answered {}.", NameOfResult(result))};
    }
    return SDone{};
}

void CInstance::CloseGUI()
{
    if (mGUI)
        (void)mGUI->Uninitialize(); // the object goes away whatever it answers
    mGUI.Reset();
}

std::string CInstance::MasterBypassID()
{
    CHostString id;
    (void)mParameters->GetMasterBypassParameter(&id); // no answer: there is none
    return id.Text();
}

std::vector<SParameterInfo> CInstance::ListParameters()
{
    // What the module leaves unanswered stays as it is: this lists, it does not judge.
    std::int32_t count = 0;
    (void)mParameters->GetNumberOfParameters(&count);
    std::vector<SParameterInfo> list;
    for (std::int32_t i = 0; i < count; ++i)
    {
        CHostString text;
        if (mParameters->GetParameterIDFromIndex(i, &text) != kAAX_Success)
            continue;
        SParameterInfo& info = list.emplace_back();
        info.mID = text.Text();
        const char* id = info.mID.c_str();
        CHostString name;
        (void)mParameters->GetParameterName(id, &name);
        info.mName = name.Text();
        CHostString shortName;
        (void)mParameters->GetParameterNameOfLength(id, &shortName, 8);
        info.mShortName = shortName.Text();
        (void)mParameters->GetParameterDefaultNormalizedValue(id, &info.mDefault);
        (void)mParameters->GetParameterNormalizedValue(id, &info.mValue);
        CHostString valueText;
        (void)mParameters->GetParameterValueString(id, &valueText, 32);
        info.mValueText = valueText.Text();
        (void)mParameters->GetParameterNumberOfSteps(id, &info.mSteps);
        AAX_EParameterType type = AAX_eParameterType_Continuous;
        (void)mParameters->GetParameterType(id, &type);
        info.mDiscrete = type == AAX_eParameterType_Discrete;
        AAX_CBoolean automatable = 0;
        (void)mParameters->GetParameterIsAutomatable(id, &automatable);
        info.mAutomatable = automatable != 0;
    }
    return list;
}

bool CInstance::HasParameter(const std::string& inID)
{
    std::int32_t index = -1;
    return mParameters->GetParameterIndex(inID.c_str(), &index) == kAAX_Success && index >= 0;
}

AAX_Result CInstance::RunCycle() { return mHost->DeliverUpdates(*mParameters.Get()); }

AAX_Result CInstance::SetParameter(const std::string& inID, double inNormalized)
{
    return mParameters->SetParameterNormalizedValue(inID.c_str(), inNormalized);
}

AAX_Result CInstance::UpdateParameter(const std::string& inID, double inNormalized)
{
    return mParameters->UpdateParameterNormalizedValue(inID.c_str(), inNormalized, 0);
}

AAX_Result CInstance::FinishUpdates() { return mParameters->GenerateCoefficients(); }

std::unique_ptr<SRenderCall> CInstance::MakeRenderCall()
{
    auto call = std::make_unique<SRenderCall>(mComponent, mInputChannels, mOutputChannels,
                                              mModule.Host().Log(), mHost->Transport());
    call->mSampleRate = mHost->Controller().State().mSampleRate;
    for (SRenderCall::SBlock& block : call->mBlocks)
        if (block.mKind == EFieldKind::PrivateData)
            // A field that the module does not fill stays zero, which is what a host gives it.
            (void)mParameters->ResetFieldData(block.mField, block.mWords.data(), block.mSize);
    return call;
}

void CInstance::Render(SRenderCall& ioCall)
{
    for (SRenderCall::SBlock& block : ioCall.mBlocks)
    {
        if (block.mKind != EFieldKind::DataInPort)
            continue;
        if (const auto* packet = mHost->Controller().Packet(block.mField); packet != nullptr)
            std::memcpy(block.mWords.data(), packet->data(),
                        std::min<std::size_t>(block.mSize, packet->size()));
    }
    for (SRenderCall::SNode& node : ioCall.mNodes)
        node.mNode->ForgetPosted();
    void* const contexts[] = {ioCall.Context()};
    mProcess(contexts, contexts + 1);
}
