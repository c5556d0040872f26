#include "Tools/vst2probe/CPluginInspector.h"

#include "Platform/PluginImage.h"
#include "Source/plugins/PortList.h"
#include "Tools/vst2probe/LoadFault.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace
{
constexpr VstIntPtr kHostVersion = 2400;
constexpr char kHostProduct[] = "IsmAaxVstHost";
constexpr std::int32_t kBlockSize = 1024; // frames, as a module announces
constexpr float kSampleRate = 44100.0F;   // Hz
constexpr int kBlocks = 8;                // enough for a latency that shows late
/** Longer than any text of a plug-in that was seen; the interface allows 64 characters. */
constexpr std::size_t kTextLength = 1024;
// Far above what any plug-in has; a nonsensical count must not become a huge list.
constexpr std::int32_t kMaxChannels = 4096;
constexpr std::int32_t kMaxListed = 65536;

void GiveProduct(void* outText)
{
    if (outText != nullptr)
    {
        std::memcpy(outText, kHostProduct, sizeof(kHostProduct)); // the interface has room for 64 characters
    }
}

/** The one that the plug-in's calls are for: the host callback has no argument of ours. Main thread. */
CPluginInspector* gInspector = nullptr;

VstTimeInfo StandingTime()
{
    VstTimeInfo time{};
    time.sampleRate = static_cast<double>(kSampleRate);
    time.tempo = 120.0;
    time.timeSigNumerator = 4;
    time.timeSigDenominator = 4;
    time.smpteFrameRate = 25;
    time.flags = kVstTransportPlaying | kVstTempoValid;
    return time;
}

std::vector<float*> Pointers(std::vector<std::array<float, kBlockSize>>& ioBuffers)
{
    std::vector<float*> pointers;
    std::ranges::transform(ioBuffers, std::back_inserter(pointers),
                           [](auto& ioBuffer) { return ioBuffer.data(); });
    return pointers;
}
} // namespace

CPluginInspector::CPluginInspector(std::int32_t inEntryVersion, Tell inTell)
    : mEntryVersion(inEntryVersion), mTell(std::move(inTell)), mTimeInfo(StandingTime())
{
    gInspector = this;
}

CPluginInspector::~CPluginInspector() { gInspector = nullptr; }

void CPluginInspector::Run(const std::string& inPath)
{
    std::string refusal;
    try
    {
        Stage("its code was loaded");
        refusal = Load(inPath);
        if (refusal.empty())
        {
            Stage("its entry function ran");
            refusal = Enter();
        }
        if (refusal.empty())
        {
            Stage("it was asked what it is");
            ReadIdentity();
            ReadPorts();
            Stage("it was opened");
            Open();
            Stage("it was asked for its parameters");
            ReadParameters();
            Stage("it rendered its first block");
            RenderBlocks();
            Stage("it was closed");
            Close();
        }
    }
    catch (...)
    {
        refusal = "it threw an exception";
    }
    mTell(refusal.empty() ? nlohmann::ordered_json{{"facts", mFacts}}
                          : nlohmann::ordered_json{{"refused", refusal}});
}

std::string CPluginInspector::Load(const std::string& inPath)
{
    mImage = OpenPluginImage(inPath.c_str());
    if (mImage == nullptr || !mImage->LoadExecutable())
    {
        return LoadFault(inPath);
    }
    mFacts.executables = static_cast<std::int32_t>(PluginExecutables(inPath).size());
    for (const char* name : {"VSTPluginMain", "main_macho", PlatformEntrySymbol()})
    {
        void* const symbol = name != nullptr ? mImage->FindSymbol(name) : nullptr;
        if (symbol != nullptr)
        {
            mEntry = reinterpret_cast<VstPluginEntryProc>(symbol);
            return {};
        }
    }
    return "it has no entry function of VST 2";
}

std::string CPluginInspector::Enter()
{
    AEffect* const effect = mEntry(&HostCallback);
    if (effect == nullptr)
    {
        return "its entry function returned nothing";
    }
    if (effect->magic != kEffectMagic || effect->dispatcher == nullptr)
    {
        return "its entry function returned something that is no VST 2 effect";
    }
    mEffect = effect;
    return {};
}

// In the order in which a module asks.
void CPluginInspector::ReadIdentity()
{
    const AEffect& effect = *mEffect;
    mFacts.latencyWhenLoaded = effect.initialDelay;
    mFacts.name = Text(effGetEffectName);
    mFacts.vendor = Text(effGetVendorString);
    mFacts.product = Text(effGetProductString);
    mFacts.interfaceVersion = static_cast<std::int32_t>(Dispatch(effGetVstVersion));
    mFacts.uniqueId = effect.uniqueID;
    mFacts.version = effect.version;
    mFacts.flags = effect.flags;
    mFacts.inputs = std::clamp(effect.numInputs, 0, kMaxChannels);
    mFacts.outputs = std::clamp(effect.numOutputs, 0, kMaxChannels);
    char question[] = "receiveVstMidiEvent";
    const bool says = Dispatch(effCanDo, 0, 0, question) == 1;
    mFacts.midiBeforeOpen = says || mWantsMidi;
}

void CPluginInspector::ReadPorts()
{
    const auto read = [this](EPortDirection inDirection, long inChannels, std::vector<SPortFacts>& outFacts)
    {
        std::vector<SIOPortDef> ports;
        const bool whole = ListPorts(*mEffect, inDirection, inChannels, false, ports);
        const std::int32_t opcode =
            inDirection == EPortDirection::kInput ? effGetInputProperties : effGetOutputProperties;
        std::int32_t pin = 0;
        for (const SIOPortDef& port : ports)
        {
            // Asked again for its label, which a module drops for outputs.
            VstPinProperties properties{};
            (void)Dispatch(opcode, pin, 0, &properties); // it answered just before
            const auto end = std::ranges::find(properties.label, '\0');
            outFacts.push_back({{std::begin(properties.label), end}, port.channelCount});
            pin += static_cast<std::int32_t>(port.channelCount);
        }
        return whole;
    };
    mFacts.portListCut = !read(EPortDirection::kInput, mFacts.inputs, mFacts.inputPorts) ||
                         !read(EPortDirection::kOutput, mFacts.outputs, mFacts.outputPorts);
    mFacts.midiBeforeOpen = mFacts.midiBeforeOpen || mWantsMidi;
}

void CPluginInspector::Open()
{
    // Twice, as an instance does: some plug-ins make their own instance in the first effOpen only.
    for (int turn = 0; turn < 2; ++turn)
    {
        (void)Dispatch(effSetSampleRate, 0, 0, nullptr, kSampleRate); // results of these have no meaning
        (void)Dispatch(effSetBlockSize, 0, kBlockSize);
        (void)Dispatch(effOpen);
        (void)Dispatch(effMainsChanged, 0, 1);
    }
    mFacts.midiAfterOpen = mFacts.midiBeforeOpen || mWantsMidi;
    mFacts.latencyAtStart = mEffect.load()->initialDelay;
}

void CPluginInspector::ReadParameters()
{
    AEffect& effect = *mEffect;
    const std::int32_t parameters =
        effect.getParameter != nullptr ? std::min(effect.numParams, kMaxListed) : 0;
    for (std::int32_t i = 0; i < parameters; ++i)
    {
        mFacts.parameters.push_back({Text(effGetParamName, i), Text(effGetParamLabel, i),
                                     Text(effGetParamDisplay, i), effect.getParameter(&effect, i)});
    }
    for (std::int32_t i = 0; i < std::min(effect.numPrograms, kMaxListed); ++i)
    {
        mFacts.programs.push_back(Text(effGetProgramNameIndexed, i));
    }
}

void CPluginInspector::RenderBlocks()
{
    AEffect& effect = *mEffect;
    std::vector<std::array<float, kBlockSize>> inputs(static_cast<std::size_t>(mFacts.inputs));
    std::vector<std::array<float, kBlockSize>> outputs(static_cast<std::size_t>(mFacts.outputs));
    for (int block = 0; block < kBlocks && effect.processReplacing != nullptr; ++block)
    {
        for (auto& input : inputs)
        {
            input.fill(0.0F); // some plug-ins write into their inputs
        }
        effect.processReplacing(&effect, Pointers(inputs).data(), Pointers(outputs).data(), kBlockSize);
        mTimeInfo.samplePos += kBlockSize;
        if (block == 0)
        {
            mFacts.latencyAfterFirstBlock = effect.initialDelay; // some know it only now
            Stage("it rendered more blocks");
        }
    }
    mFacts.latencyAfterBlocks = effect.initialDelay;
}

void CPluginInspector::Close()
{
    (void)Dispatch(effMainsChanged, 0, 0); // nothing is asked of it any more
    (void)Dispatch(effClose);
    mEffect = nullptr;
}

void CPluginInspector::Stage(const char* inText) { mTell({{"stage", inText}}); }

VstIntPtr CPluginInspector::Dispatch(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                                     void* inPointer, float inOpt)
{
    AEffect* const effect = mEffect;
    return effect->dispatcher(effect, inOpcode, inIndex, inValue, inPointer, inOpt);
}

std::string CPluginInspector::Text(std::int32_t inOpcode, std::int32_t inIndex)
{
    std::array<char, kTextLength> text{};
    (void)Dispatch(inOpcode, inIndex, 0, text.data()); // many plug-ins answer 0 and write all the same
    text.back() = '\0';
    return text.data();
}

VstIntPtr CPluginInspector::HostCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t /*inIndex*/,
                                         VstIntPtr /*inValue*/, void* inPointer, float /*inOpt*/)
{
    if (gInspector == nullptr)
    {
        return 0;
    }
    return inEffect != nullptr && inEffect == gInspector->mEffect
               ? gInspector->Answer(inOpcode, inPointer)
               : gInspector->AnswerUnmatched(inOpcode, inPointer);
}

VstIntPtr CPluginInspector::AnswerUnmatched(std::int32_t inOpcode, void* inPointer)
{
    switch (inOpcode)
    {
    case audioMasterVersion: mTell({{"askedVersion", true}}); return mEntryVersion;
    case audioMasterGetProductString: GiveProduct(inPointer); return 0;
    default: return 0;
    }
}

VstIntPtr CPluginInspector::Answer(std::int32_t inOpcode, void* inPointer)
{
    switch (inOpcode)
    {
    case audioMasterVersion: return kHostVersion;
    case audioMasterWantMidi: mWantsMidi = true; return 0;
    case audioMasterGetTime: return reinterpret_cast<VstIntPtr>(&mTimeInfo);
    case audioMasterUpdateDisplay: return 1;
    case audioMasterGetProductString: GiveProduct(inPointer); return 0;
    default: return 0;
    }
}
