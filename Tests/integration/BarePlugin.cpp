#include "Tests/integration/BarePlugin.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace
{
// The plug-in that calls: only one is loading or rendering at a time. Main thread.
CBarePlugin* gCurrent = nullptr;

VstPluginEntryProc FindEntry(void* inLibrary)
{
    for (const char* name : {"VSTPluginMain", "main_macho", "main"})
        if (void* symbol = dlsym(inLibrary, name))
            return reinterpret_cast<VstPluginEntryProc>(symbol);
    throw std::runtime_error("no entry");
}
} // namespace

VstIntPtr CBarePlugin::Callback(AEffect*, std::int32_t inOpcode, std::int32_t, VstIntPtr, void* inPointer,
                                float)
{
    const bool isInsideEntry = gCurrent->mEffect == nullptr;
    switch (inOpcode)
    {
    case audioMasterVersion: return isInsideEntry ? gCurrent->mEntryVersion : 2400;
    case audioMasterGetProductString: std::strcpy(static_cast<char*>(inPointer), "IsmAaxVstHost"); return 0;
    case audioMasterGetTime: return isInsideEntry ? 0 : reinterpret_cast<VstIntPtr>(&gCurrent->mTime);
    case audioMasterUpdateDisplay: return isInsideEntry ? 0 : 1;
    default: return 0;
    }
}

CBarePlugin::CBarePlugin(const std::filesystem::path& inFile, std::int32_t inEntryVersion, float inSampleRate)
    : mEntryVersion(inEntryVersion)
{
    gCurrent = this;
    mLibrary = dlopen(inFile.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (mLibrary == nullptr)
        throw std::runtime_error(dlerror());
    mEffect = FindEntry(mLibrary)(&Callback);
    if (mEffect == nullptr || mEffect->magic != kEffectMagic)
        throw std::runtime_error(inFile.string() + " gave no effect");
    mTime.sampleRate = inSampleRate;
    mTime.tempo = 120.0;
    mTime.timeSigNumerator = 4;
    mTime.timeSigDenominator = 4;
    mTime.smpteFrameRate = 25;
    mTime.flags = kVstTransportPlaying | kVstTempoValid;
    Initialize(inSampleRate);
    Initialize(inSampleRate);
    mInputs.assign(static_cast<std::size_t>(mEffect->numInputs), std::vector<float>(kMaxFrames));
    mOutputs.assign(static_cast<std::size_t>(mEffect->numOutputs), std::vector<float>(kMaxFrames));
}

CBarePlugin::~CBarePlugin()
{
    Dispatch(effMainsChanged, 0);
    Dispatch(effClose);
}

VstIntPtr CBarePlugin::Dispatch(std::int32_t inOpcode, VstIntPtr inValue, void* inPointer, float inOpt)
{
    gCurrent = this;
    return mEffect->dispatcher(mEffect, inOpcode, 0, inValue, inPointer, inOpt);
}

void CBarePlugin::Initialize(float inSampleRate)
{
    Dispatch(effSetSampleRate, 0, nullptr, inSampleRate);
    Dispatch(effSetBlockSize, kMaxFrames);
    Dispatch(effOpen);
    Dispatch(effMainsChanged, 1);
}

void CBarePlugin::SendEvents(std::span<const SBareEvent> inEvents)
{
    if (inEvents.empty())
        return;
    mEvents.clear();
    std::ranges::transform(inEvents, std::back_inserter(mEvents),
                           [](const SBareEvent& inEvent)
                           {
                               VstMidiEvent event{};
                               event.type = kVstMidiType;
                               event.byteSize = sizeof(VstMidiEvent);
                               event.deltaFrames = static_cast<std::int32_t>(inEvent.mOffset);
                               std::memcpy(event.midiData, inEvent.mBytes, sizeof(event.midiData));
                               return event;
                           });
    mEventBlock.assign(offsetof(VstEvents, events) + mEvents.size() * sizeof(VstEvent*), std::byte{0});
    const auto count = static_cast<std::int32_t>(mEvents.size());
    std::memcpy(mEventBlock.data(), &count, sizeof(count));
    for (std::size_t i = 0; i < mEvents.size(); ++i)
    {
        const VstMidiEvent* const event = &mEvents[i];
        std::memcpy(mEventBlock.data() + offsetof(VstEvents, events) + i * sizeof(event), &event,
                    sizeof(event));
    }
    Dispatch(effProcessEvents, 0, mEventBlock.data());
}

void CBarePlugin::Render(std::span<const std::vector<float>> inInputs, std::size_t inFirstFrame,
                         std::int32_t inFrames, std::vector<std::vector<float>>& ioOutputs)
{
    std::vector<float*> inputs;
    for (std::size_t channel = 0; channel < mInputs.size(); ++channel)
    {
        if (channel < inInputs.size())
            std::copy_n(inInputs[channel].begin() + static_cast<std::ptrdiff_t>(inFirstFrame), inFrames,
                        mInputs[channel].begin());
        inputs.push_back(mInputs[channel].data());
    }
    std::vector<float*> outputs;
    std::ranges::transform(mOutputs, std::back_inserter(outputs),
                           [](auto& ioBuffer) { return ioBuffer.data(); });
    gCurrent = this;
    mEffect->processReplacing(mEffect, inputs.data(), outputs.data(), inFrames);

    ioOutputs.resize(mOutputs.size());
    for (std::size_t channel = 0; channel < mOutputs.size(); ++channel)
        ioOutputs[channel].insert(ioOutputs[channel].end(), mOutputs[channel].begin(),
                                  mOutputs[channel].begin() + inFrames);
}
