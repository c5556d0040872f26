#include "Tools/aaxhost/bare/BareCost.h"

#include "Interfaces/VST2/AEffect.h"

#include <cstring>
#include <vector>

#include <dlfcn.h>

namespace
{
constexpr std::int32_t kMaxFrames = 1024;
constexpr std::int32_t kHostVersion = 2400;

struct SImageCloser
{
    void operator()(void* inImage) const { dlclose(inImage); }
};
using ImagePtr = std::unique_ptr<void, SImageCloser>;

struct SEffectCloser
{
    void operator()(AEffect* inEffect) const
    {
        inEffect->dispatcher(inEffect, effClose, 0, 0, nullptr, 0.0F);
    }
};
using EffectPtr = std::unique_ptr<AEffect, SEffectCloser>;

// The one plug-in of this process that is being measured; the main thread sets it before each block.
VstTimeInfo gTime{};

VstIntPtr Callback(AEffect*, std::int32_t inOpcode, std::int32_t, VstIntPtr, void*, float)
{
    switch (inOpcode)
    {
    case audioMasterVersion: return kHostVersion;
    case audioMasterGetTime: return reinterpret_cast<VstIntPtr>(&gTime);
    default:
        return 0; // the sample rate and the block size too, as of a module: what they change would be
                  // compared
    }
}

class CLoadedPlugin final : public CBareCost
{
public:
    CLoadedPlugin(ImagePtr inImage, EffectPtr inEffect, float inRate)
        : mImage(std::move(inImage)),
          mEffect(std::move(inEffect)),
          mInputs(MakeBuffers(mEffect->numInputs)),
          mOutputs(MakeBuffers(mEffect->numOutputs))
    {
        // Twice, as a module does it: some plug-ins drop the rate that was sent before they were open, and
        // some take more memory the second time.
        Start(inRate);
        Start(inRate);
        for (std::vector<float>& buffer : mInputs)
        {
            FillWithNoise(buffer);
            mInputPointers.push_back(buffer.data());
        }
        for (std::vector<float>& buffer : mOutputs)
            mOutputPointers.push_back(buffer.data());
    }

    void Render(std::int32_t inFrames) override
    {
        mEffect->processReplacing(mEffect.get(), mInputPointers.data(), mOutputPointers.data(), inFrames);
        gTime.samplePos += inFrames;
    }

    void SendNote(bool inOn) override
    {
        mNote = {};
        mNote.type = kVstMidiType;
        mNote.byteSize = sizeof(mNote);
        const unsigned char bytes[] = {static_cast<unsigned char>(inOn ? 0x90 : 0x80), 60, 100, 0};
        std::memcpy(mNote.midiData, bytes, sizeof(bytes));
        mEvents = {};
        mEvents.numEvents = 1;
        mEvents.events[0] = reinterpret_cast<VstEvent*>(&mNote);
        Dispatch(effProcessEvents, 0, &mEvents);
    }

    std::size_t BufferBytes() const override
    {
        return (mInputs.size() + mOutputs.size()) * kMaxFrames * sizeof(float);
    }

private:
    static std::vector<std::vector<float>> MakeBuffers(std::int32_t inCount)
    {
        return std::vector<std::vector<float>>(static_cast<std::size_t>(inCount > 0 ? inCount : 0),
                                               std::vector<float>(kMaxFrames));
    }

    void Start(float inRate)
    {
        Dispatch(effSetSampleRate, 0, nullptr, inRate);
        Dispatch(effSetBlockSize, kMaxFrames);
        Dispatch(effOpen);
        Dispatch(effMainsChanged, 1);
    }

    void Dispatch(std::int32_t inOpcode, VstIntPtr inValue = 0, void* inPointer = nullptr, float inOpt = 0.0F)
    {
        mEffect->dispatcher(mEffect.get(), inOpcode, 0, inValue, inPointer, inOpt);
    }

    ImagePtr mImage; // the code that the effect runs
    EffectPtr mEffect;
    std::vector<std::vector<float>> mInputs;
    std::vector<std::vector<float>> mOutputs;
    std::vector<float*> mInputPointers;
    std::vector<float*> mOutputPointers;
    VstMidiEvent mNote{};
    VstEvents mEvents{};
};
} // namespace

void CBareCost::FillWithNoise(std::span<float> outSamples)
{
    std::uint32_t noise = 1;
    for (float& sample : outSamples)
    {
        noise = noise * 1664525U + 1013904223U;
        sample = 0.25F * (static_cast<float>(noise >> 8) / 8388608.0F - 1.0F);
    }
}

std::unique_ptr<CBareCost> CBareCost::Open(const std::string& inPlugin, float inRate)
{
    gTime = {};
    gTime.sampleRate = static_cast<double>(inRate);
    gTime.tempo = 120.0;
    gTime.flags = kVstTransportPlaying;
    ImagePtr image(dlopen(inPlugin.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (image == nullptr)
        return nullptr;
    for (const char* name : {"VSTPluginMain", "main_macho", "main"})
    {
        const auto entry = reinterpret_cast<VstPluginEntryProc>(dlsym(image.get(), name));
        if (entry == nullptr)
            continue;
        EffectPtr effect(entry(&Callback));
        if (effect == nullptr || effect->processReplacing == nullptr)
            return nullptr;
        return std::make_unique<CLoadedPlugin>(std::move(image), std::move(effect), inRate);
    }
    return nullptr;
}
