/**
 * A module of one effect that shows on its outputs what the host hands it. Output by output:
 *
 * 0  at the frame of each MIDI packet the third byte / 128
 * 1  input 0 times the value of the parameter "Level"
 * 2  (auxiliary stem) at the first frame of a block: the transport's position, 1 more while it plays
 *
 * Each MIDI packet goes out again; a program change as a system exclusive message of so many data bytes.
 *
 * The environment variable FAKE_MODULE_FAULT makes it misbehave: startup, register, nodefinition, noeffect,
 * noprocess, nofactory, noparameters, initialize, throw, hugefield, twofields, nostem, twonames (two
 * parameters of one identifier), left (an object outlives its instance), kept (an object of the host's),
 * renamed (nameless when it is opened first), trusting (that the host has every interface), twice (crashes
 * when initialised so), returned (more than it took), exchange (asks for values when its timer is woken and
 * when it gets them), left-when-refused (an object, where the host refuses the name), unregistered, echoing,
 * held and foreign (each with a parameter "00000" that can be automated, which it does not register, asks for
 * again with each value that it gets, touches with each and does not release, or sets by any chunk),
 * nooutput, echo (asks for each value that it gets), latency (tells another one when its timer is woken);
 * with the packets that go out: late, empty, early, shortened, endless.
 */
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_IEffectParameters.h"
#include "Interfaces/AAX/AAX_IMIDINode.h"
#include "Interfaces/AAX/AAX_IString.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFPtr.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace
{
bool Fault(std::string_view inName)
{
    const char* fault = std::getenv("FAKE_MODULE_FAULT");
    return fault != nullptr && inName == fault;
}

/** The parameter is one as a wrapped plug-in's, which a host can automate. */
bool IsAutomated() { return Fault("unregistered") || Fault("echoing") || Fault("held") || Fault("foreign"); }

const char* LevelID() { return IsAutomated() ? "00000" : "Level"; }

/** One parameter; a value that is set is asked of the host and taken over with the host's update. The text of
 * its value is all that the host sent, call by call. */
class CFakeParameters final : public AAX_IEffectParameters
{
public:
    double mLevel = 1.0;

    AAX_Result Initialize(IACFUnknown* hostContext) override
    {
        if (Fault("initialize"))
            return kAAX_ErrorNullObject;
        if (Fault("twice") && mController)
            std::abort();
        mAutomation = ACFPtr<AAX_IACFAutomationDelegate>::Query(hostContext, IID_IAAXAutomationDelegateV1);
        mController = ACFPtr<AAX_IACFController>::Query(hostContext, IID_IAAXControllerV1);
        return (mAutomation && mController) || Fault("trusting") ? mController->SetSignalLatency(64)
                                                                 : kAAX_ErrorNullObject;
    }
    AAX_Result Uninitialize() override
    {
        for (int i = 0; mController && i < 3 && Fault("returned"); ++i)
            mController->Release();
        mAutomation.Reset();
        mController.Reset();
        return kAAX_Success;
    }
    AAX_Result GetNumberOfParameters(std::int32_t* count) const override
    {
        return Answer(count, Fault("twonames") ? 2 : 1);
    }
    AAX_Result GetParameterIndex(AAX_CParamID id, std::int32_t* index) const override
    {
        return IsLevel(id) ? Answer(index, 0) : kAAX_ErrorUnknownParameter;
    }
    AAX_Result GetParameterIDFromIndex(std::int32_t, AAX_IString* id) const override
    {
        id->Set(LevelID());
        return kAAX_Success;
    }
    AAX_Result GetParameterName(AAX_CParamID, AAX_IString* name) const override
    {
        name->Set("The \"level\"");
        return kAAX_Success;
    }
    AAX_Result GetParameterNormalizedValue(AAX_CParamID, double* value) const override
    {
        return Answer(value, mLevel);
    }
    AAX_Result SetParameterNormalizedValue(AAX_CParamID id, double value) override
    {
        return IsLevel(id) ? mAutomation->PostSetValueRequest(id, value) : kAAX_ErrorUnknownParameter;
    }
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID id, double value, AAX_EUpdateSource) override
    {
        mPending = value;
        Note(std::string(id).append(" ").append(std::to_string(std::lround(100.0 * value))).append("%"));
        if (Fault("held"))
            return mAutomation->PostTouchRequest(id);
        return Fault("echo") || Fault("exchange") || Fault("echoing")
                   ? mAutomation->PostSetValueRequest(id, value)
                   : kAAX_Success;
    }
    AAX_Result UpdateParameterTouch(AAX_CParamID id, AAX_CBoolean touched) override
    {
        Note(std::string(touched != 0 ? "touch " : "release ").append(id));
        return kAAX_Success;
    }
    AAX_Result GetParameterValueString(AAX_CParamID, AAX_IString* text, std::int32_t) const override
    {
        text->Set(mSent.c_str());
        return kAAX_Success;
    }
    AAX_Result GenerateCoefficients() override
    {
        mLevel = mPending;
        return kAAX_Success;
    }
    AAX_Result ResetFieldData(AAX_CFieldIndex, void* data, std::uint32_t size) const override
    {
        const void* self = this;
        if (size >= sizeof(void*))
            std::memcpy(data, &self, sizeof(void*));
        return kAAX_Success;
    }

    // The rest is of no use to the tests.
    AAX_Result NotificationReceived(AAX_CTypeID, const void*, std::uint32_t) override { return No(); }
    AAX_Result GetMasterBypassParameter(AAX_IString*) const override { return No(); }
    AAX_Result GetParameterIsAutomatable(AAX_CParamID, AAX_CBoolean* automatable) const override
    {
        return IsAutomated() ? Answer(automatable, 1) : No();
    }
    AAX_Result GetParameterNumberOfSteps(AAX_CParamID, std::int32_t*) const override { return No(); }
    AAX_Result GetParameterNameOfLength(AAX_CParamID, AAX_IString*, std::int32_t) const override
    {
        return No();
    }
    AAX_Result GetParameterDefaultNormalizedValue(AAX_CParamID, double*) const override { return No(); }
    AAX_Result SetParameterDefaultNormalizedValue(AAX_CParamID, double) override { return No(); }
    AAX_Result GetParameterType(AAX_CParamID, AAX_EParameterType*) const override { return No(); }
    AAX_Result GetParameterOrientation(AAX_CParamID, std::int32_t*) const override { return No(); }
    AAX_Result GetParameter(AAX_CParamID, AAX_IParameter**) override { return No(); }
    AAX_Result GetParameterValueInfo(AAX_CParamID, std::int32_t, std::int32_t*) const override
    {
        return No();
    }
    AAX_Result GetParameterValueFromString(AAX_CParamID, double*, const AAX_IString&) const override
    {
        return No();
    }
    AAX_Result GetParameterStringFromValue(AAX_CParamID, double, AAX_IString*, std::int32_t) const override
    {
        return No();
    }
    AAX_Result SetParameterNormalizedRelative(AAX_CParamID, double) override { return No(); }
    AAX_Result TouchParameter(AAX_CParamID) override { return No(); }
    AAX_Result ReleaseParameter(AAX_CParamID) override { return No(); }
    AAX_Result UpdateParameterNormalizedRelative(AAX_CParamID, double) override { return No(); }
    AAX_Result GetNumberOfChunks(std::int32_t*) const override { return No(); }
    AAX_Result GetChunkIDFromIndex(std::int32_t, AAX_CTypeID*) const override { return No(); }
    AAX_Result GetChunkSize(AAX_CTypeID, std::uint32_t*) const override { return No(); }
    AAX_Result GetChunk(AAX_CTypeID, AAX_SPlugInChunk*) const override { return No(); }
    AAX_Result SetChunk(AAX_CTypeID, const AAX_SPlugInChunk*) override
    {
        if (!Fault("foreign"))
            return No();
        mLevel = mPending = 0.25;
        return kAAX_Success;
    }
    AAX_Result CompareActiveChunk(const AAX_SPlugInChunk*, AAX_CBoolean*) const override { return No(); }
    AAX_Result GetNumberOfChanges(std::int32_t*) const override { return No(); }
    AAX_Result TimerWakeup() override
    {
        if (Fault("exchange"))
            return mAutomation->PostSetValueRequest(LevelID(), 0.5);
        return Fault("latency") ? mController->SetSignalLatency(3) : No();
    }
    AAX_Result GetCurveData(AAX_CTypeID, const float*, std::uint32_t, float*) const override { return No(); }
    AAX_Result GetCustomData(AAX_CTypeID, std::uint32_t, void*, std::uint32_t*) const override
    {
        return No();
    }
    AAX_Result SetCustomData(AAX_CTypeID, std::uint32_t, const void*) override { return No(); }
    AAX_Result DoMIDITransfers() override { return No(); }
    AAX_Result RenderAudio_Hybrid(AAX_SHybridRenderInfo*) override { return No(); }
    AAX_Result UpdateMIDINodes(AAX_CFieldIndex, AAX_CMidiPacket&) override { return No(); }
    AAX_Result UpdateControlMIDINodes(AAX_CTypeID, AAX_CMidiPacket&) override { return No(); }

private:
    static AAX_Result No() { return kAAX_ErrorUnsupported; }
    static bool IsLevel(AAX_CParamID id) { return std::string_view(id) == LevelID(); }
    template <class T, class Value>
    static AAX_Result Answer(T* out, Value inValue)
    {
        *out = inValue;
        return kAAX_Success;
    }

    void Note(const std::string& inCall) { mSent.append(mSent.empty() ? "" : ", ").append(inCall); }

    ACFPtr<AAX_IACFAutomationDelegate> mAutomation;
    ACFPtr<AAX_IACFController> mController;
    std::string mSent;
    double mPending = 1.0;
};

IACFUnknown* CreateParameters()
{
    if (Fault("left"))
        (void)new CFakeParameters; // nobody has it
    return Fault("noparameters") ? nullptr : static_cast<AAX_IACFEffectParameters*>(new CFakeParameters);
}

struct SContext
{
    float** mInputs;
    float** mOutputs;
    const std::int32_t* mFrames;
    CFakeParameters** mInstance;
    AAX_IMIDINode* mMidi;
    AAX_IMIDINode* mTransport;
    AAX_IMIDINode* mMidiOutput;
};

/** Data bytes 1, 2, 3 and so on. */
void PostExclusive(AAX_IMIDINode& ioOutput, std::uint32_t inFrame, std::uint8_t inData)
{
    AAX_CMidiPacket packet{inFrame, 1, {0xF0}, 0};
    for (int i = 1; i <= inData + 1; ++i)
    {
        packet.mData[packet.mLength++] = i <= inData ? static_cast<std::uint8_t>(i) : 0xF7;
        if (packet.mLength < 4 && i <= inData)
            continue;
        if (!Fault("endless") || i <= inData)
            ioOutput.PostMIDIPacket(&packet);
        packet.mLength = 0;
    }
}

void PassOn(AAX_CMidiPacket inPacket, std::int32_t inFrames, AAX_IMIDINode& ioOutput)
{
    if (inPacket.mData[0] == 0xC0)
        return PostExclusive(ioOutput, inPacket.mTimestamp, inPacket.mData[1]);
    if (Fault("late"))
        inPacket.mTimestamp = static_cast<std::uint32_t>(inFrames);
    if (Fault("early"))
        inPacket.mTimestamp = 1000 - inPacket.mTimestamp;
    if (Fault("empty") || Fault("shortened"))
        inPacket.mLength = Fault("empty") ? 0 : 2;
    ioOutput.PostMIDIPacket(&inPacket);
}

void Render(const SContext& inContext)
{
    const std::int32_t frames = *inContext.mFrames;
    for (int channel = 0; channel < 3; ++channel)
        std::fill_n(inContext.mOutputs[channel], frames, 0.0F);
    const AAX_CMidiStream& stream = *inContext.mMidi->GetNodeBuffer();
    for (std::uint32_t i = 0; i < stream.mCount; ++i)
        inContext.mOutputs[0][stream.mPackets[i].mTimestamp] +=
            static_cast<float>(stream.mPackets[i].mData[2]) / 128.0F;
    for (std::uint32_t i = 0; i < stream.mCount && !Fault("nooutput"); ++i)
        PassOn(stream.mPackets[i], frames, *inContext.mMidiOutput);
    const auto level = static_cast<float>((*inContext.mInstance)->mLevel);
    for (std::int32_t i = 0; i < frames; ++i)
        inContext.mOutputs[1][i] = inContext.mInputs[0][i] * level;
    bool playing = false;
    std::int64_t position = 0;
    AAX_ITransport* transport = inContext.mTransport->GetTransport();
    if (transport->IsTransportPlaying(&playing) == kAAX_Success &&
        transport->GetCurrentNativeSampleLocation(&position) == kAAX_Success)
        inContext.mOutputs[2][0] = static_cast<float>(position + (playing ? 1 : 0));
}

void RenderAll(void* const begin[], const void* end)
{
    if (Fault("throw"))
        throw std::runtime_error("render");
    for (void* const* at = begin; at != end; ++at)
        Render(*static_cast<const SContext*>(*at));
}

template <class Interface>
ACFPtr<Interface> Make(IACFComponentFactory& inFactory, const acfUID& inComponent, const acfIID& inIid)
{
    ACFPtr<Interface> object;
    (void)inFactory.CreateComponent(inComponent, nullptr, inIid, object.Receive()); // empty when refused
    return object;
}

void DescribeEffect(IACFComponentFactory& inFactory, AAX_IACFEffectDescriptor& outEffect)
{
    const auto component = Make<AAX_IACFComponentDescriptor>(inFactory, AAXCompID_AAXComponentDescriptor,
                                                             IID_IAAXComponentDescriptorV1);
    const auto properties =
        Make<AAX_IACFPropertyMap>(inFactory, AAXCompID_AAXPropertyMap, IID_IAAXPropertyMapV1);
    component->AddAudioIn(0);
    component->AddAudioOut(1);
    component->AddAudioBufferLength(2);
    component->AddPrivateData(3, sizeof(void*), 0);
    component->AddMIDINode(4, AAX_eMIDINodeType_LocalInput, "In", 0xFFFF);
    component->AddMIDINode(5, AAX_eMIDINodeType_Transport, "Transport", 0xFFFF);
    if (!Fault("nooutput"))
        component->AddMIDINode(6, AAX_eMIDINodeType_LocalOutput, "Out", 0xFFFF);
    if (Fault("twofields"))
        component->AddPrivateData(2, sizeof(void*), 0);
    if (Fault("hugefield"))
        component->AddPrivateData(0xFFFFFFFF, 4, 0);
    component->AddAuxOutputStem(0, AAX_eStemFormat_Mono, "Aux");
    properties->AddProperty(kAAX_PropertyInputStemFormat, AAX_eStemFormat_Mono);
    if (!Fault("nostem"))
        properties->AddProperty(kAAX_PropertyOutputStemFormat, AAX_eStemFormat_Stereo);
    if (!Fault("noprocess"))
        component->AddProcessProc_Native(RenderAll, properties.Get(), nullptr, nullptr, nullptr);
    outEffect.AddComponent(component.Get());
    if (Fault("renamed"))
        (void)setenv("FAKE_MODULE_FAULT", "", 1); // faultless when it is opened again
    else if (outEffect.AddName("Fake") != kAAX_Success && Fault("left-when-refused"))
        (void)new CFakeParameters; // nobody has it
    if (Fault("kept"))
        properties->AddRef();
    if (!Fault("nofactory"))
        outEffect.AddProcPtr(reinterpret_cast<void*>(&CreateParameters), kAAX_ProcPtrEffectParameters);
}
} // namespace

extern "C"
{
#define FAKE_EXPORT __attribute__((visibility("default"))) ACFRESULT

    FAKE_EXPORT ACFRegisterPlugin(IACFUnknown* inHost, IACFPluginDefinition** outDefinition)
    {
        if (Fault("register"))
            return kAAX_ErrorNullObject;
        const auto factory = ACFPtr<IACFComponentFactory>::Query(inHost, IID_IACFComponentFactory);
        const auto collection =
            Make<AAX_IACFCollection>(*factory.Get(), AAXCompID_AAXCollection, IID_IAAXCollectionV1);
        const auto effect = Make<AAX_IACFEffectDescriptor>(*factory.Get(), AAXCompID_AAXEffectDescriptor,
                                                           IID_IAAXEffectDescriptorV1);
        DescribeEffect(*factory.Get(), *effect.Get());
        if (!Fault("noeffect"))
            collection->AddEffect("com.example.fake", effect.Get());
        collection->SetManufacturerName("Maker \xFF");
        if (Fault("nodefinition"))
            return ACF_OK;
        return collection->QueryInterface(IID_IACFPluginDefinition, reinterpret_cast<void**>(outDefinition));
    }
    FAKE_EXPORT ACFRegisterComponent(IACFUnknown*, acfUInt32, IACFComponentDefinition**) { return ACF_OK; }
    FAKE_EXPORT ACFGetClassFactory(IACFUnknown*, const acfCLSID&, const acfIID&, void**)
    {
        return kAAX_ErrorUnsupported;
    }
    FAKE_EXPORT ACFCanUnloadNow(IACFUnknown*) { return CACFUnknown::GetActiveObjectCount(); }
    FAKE_EXPORT ACFStartup(IACFUnknown*) { return Fault("startup") ? kAAX_ErrorUnsupported : ACF_OK; }
    FAKE_EXPORT ACFShutdown(IACFUnknown*) { return ACF_OK; }
    FAKE_EXPORT ACFGetSDKVersion(std::uint64_t* outVersion)
    {
        *outVersion = 42;
        return ACF_OK;
    }
}
