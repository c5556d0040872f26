#include "Tools/inspector/CPluginInspector.h"

#include "Interfaces/VST2/HostQuestions.h"
#include "Platform/PluginImage.h"
#include "Source/plugins/PortList.h"
#include "Tools/macho_slices/MacBundle.h"
#include "Tools/macho_slices/MachOSlices.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace
{
constexpr float kSampleRate = 44100.0F; // Hz
constexpr int kBlocks = 8;              // enough for a latency that shows late
// Far above what any plug-in has; a nonsensical count must not become a huge list.
constexpr std::int32_t kMaxListed = 65536;
} // namespace

CPluginInspector::CPluginInspector(std::int32_t inEntryVersion, Tell inTell)
    : mTell(std::move(inTell)),
      mPlugin(inEntryVersion,
              [this](const SHostCall& inCall)
              {
                  Hear(inCall);
                  return std::nullopt;
              })
{
}

void CPluginInspector::Run(const std::string& inPath)
{
    std::string refusal;
    try
    {
        Stage("its code was loaded");
        refusal = mPlugin.Load(inPath);
        if (refusal.empty())
        {
            Stage("its entry function ran");
            mFacts.mExecutables = static_cast<std::int32_t>(PluginExecutables(inPath).size());
            for (const SMachOSlice& slice : ReadMachOSlices(FindMacExecutable(inPath)).mSlices)
                mFacts.mProcessors.push_back(slice.ProcessorName());
            refusal = mPlugin.Enter();
        }
        if (refusal.empty())
        {
            Stage("it was asked what it is");
            ReadIdentity();
            ReadPorts();
            Stage("it was opened");
            Start();
            Stage("it was asked for its parameters");
            ReadParameters();
            Stage("it rendered its first block");
            RenderBlocks();
            Stage("it was closed");
            mPlugin.Close();
        }
    }
    catch (...)
    {
        refusal = "it threw an exception";
    }
    mTell(refusal.empty() ? nlohmann::ordered_json{{"facts", mFacts}}
                          : nlohmann::ordered_json{{"refused", refusal}});
}

// In the order in which a module asks.
void CPluginInspector::ReadIdentity()
{
    const AEffect& effect = mPlugin.Effect();
    mFacts.mLatencyWhenLoaded = effect.initialDelay;
    mFacts.mName = mPlugin.Text(effGetEffectName);
    mFacts.mVendor = mPlugin.Text(effGetVendorString);
    mFacts.mProduct = mPlugin.Text(effGetProductString);
    mFacts.mInterfaceVersion = static_cast<std::int32_t>(mPlugin.Dispatch(effGetVstVersion));
    mFacts.mUniqueId = effect.uniqueID;
    mFacts.mVersion = effect.version;
    mFacts.mFlags = effect.flags;
    mFacts.mKind = static_cast<std::int32_t>(mPlugin.Dispatch(effGetPlugCategory));
    mFacts.mInputs = std::clamp(effect.numInputs, 0, CDrivenPlugin::kMaxChannels);
    mFacts.mOutputs = std::clamp(effect.numOutputs, 0, CDrivenPlugin::kMaxChannels);
    mFacts.mSendsMidi = mPlugin.CanDo("sendVstMidiEvent") || mPlugin.CanDo("sendVstEvents");
    mFacts.mBypasses = mPlugin.CanDo("bypass");
    mFacts.mMidiBeforeOpen = mPlugin.CanDo("receiveVstMidiEvent") || Heard(audioMasterWantMidi);
}

void CPluginInspector::ReadPorts()
{
    const auto read = [this](EPortDirection inDirection, long inChannels, std::vector<SPortFacts>& outFacts)
    {
        std::vector<SIOPortDef> ports;
        const bool whole = ListPorts(mPlugin.Effect(), inDirection, inChannels, false, ports);
        const std::int32_t opcode =
            inDirection == EPortDirection::kInput ? effGetInputProperties : effGetOutputProperties;
        std::int32_t pin = 0;
        for (const SIOPortDef& port : ports)
        {
            // Asked again for its label, which a module drops for outputs.
            VstPinProperties properties{};
            (void)mPlugin.Dispatch(opcode, pin, 0, &properties); // it answered just before
            const auto end = std::ranges::find(properties.label, '\0');
            outFacts.push_back({{std::begin(properties.label), end}, port.channelCount});
            pin += static_cast<std::int32_t>(port.channelCount);
        }
        return whole;
    };
    mFacts.mPortListCut = !read(EPortDirection::kInput, mFacts.mInputs, mFacts.mInputPorts) ||
                          !read(EPortDirection::kOutput, mFacts.mOutputs, mFacts.mOutputPorts);
    mFacts.mMidiBeforeOpen = mFacts.mMidiBeforeOpen || Heard(audioMasterWantMidi);
}

void CPluginInspector::Start()
{
    mPlugin.Start(kSampleRate);
    mFacts.mMidiAfterOpen = mFacts.mMidiBeforeOpen || Heard(audioMasterWantMidi);
    mFacts.mLatencyAtStart = mPlugin.Effect().initialDelay;
}

void CPluginInspector::ReadParameters()
{
    const AEffect& effect = mPlugin.Effect();
    const std::int32_t parameters =
        effect.getParameter != nullptr ? std::min(effect.numParams, kMaxListed) : 0;
    for (std::int32_t i = 0; i < parameters; ++i)
    {
        mFacts.mParameters.push_back({mPlugin.Text(effGetParamName, i), mPlugin.Text(effGetParamLabel, i),
                                      mPlugin.Text(effGetParamDisplay, i), mPlugin.GetParameter(i)});
        mFacts.mDescribesParameters = mFacts.mDescribesParameters || mPlugin.ParameterProperties(i) ||
                                      mPlugin.Dispatch(effCanBeAutomated, i) != 0;
    }
    for (std::int32_t i = 0; i < std::min(effect.numPrograms, kMaxListed); ++i)
        mFacts.mPrograms.push_back(mPlugin.Text(effGetProgramNameIndexed, i));
}

void CPluginInspector::RenderBlocks()
{
    const AEffect& effect = mPlugin.Effect();
    for (int block = 0; block < kBlocks; ++block)
    {
        for (std::size_t channel = 0; channel < mPlugin.InputCount(); ++channel)
            std::ranges::fill(mPlugin.Input(channel), 0.0F); // some plug-ins write into their inputs
        if (!mPlugin.Process(CDrivenPlugin::kMaxFrames))
            break;
        if (block == 0)
        {
            mFacts.mLatencyAfterFirstBlock = effect.initialDelay; // some know it only now
            Stage("it rendered more blocks");
        }
    }
    mFacts.mLatencyAfterBlocks = effect.initialDelay;
    mFacts.mAsksTime = mPlugin.HasAskedForTime();
    mFacts.mAsksIdle = Heard(audioMasterNeedIdle);
    mFacts.mAsksAboutHost =
        std::ranges::any_of(kHostQuestions, [this](std::int32_t inOpcode) { return Heard(inOpcode); });
}

bool CPluginInspector::Heard(std::int32_t inOpcode) const
{
    return mHeard[static_cast<std::size_t>(inOpcode)].load();
}

void CPluginInspector::Stage(const char* inText) { mTell({{"stage", inText}}); }

void CPluginInspector::Hear(const SHostCall& inCall)
{
    const bool isLoaded = inCall.mCaller == EHostCaller::kLoaded;
    if (!isLoaded && inCall.mOpcode == audioMasterVersion)
        mTell({{"askedVersion", true}});
    const auto opcode = static_cast<std::size_t>(inCall.mOpcode); // of a negative one there is no place
    if (isLoaded && opcode < mHeard.size())
        mHeard[opcode] = true;
}
