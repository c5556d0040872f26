#pragma once
#include "Examples/common/CVst2Effect.h"

#include <cstddef>
#include <cstdint>

/** What a faulty plug-in says of itself that the others don't. */
struct SPlainOptions
{
    std::int32_t uniqueId = 0x45784272; // "ExBr"
    std::int32_t latency = 0;           // samples
    bool isSynth = false;
    bool keepsChunk = true;
};

/**
 * A faultless small plug-in, a stereo gain with a balance, or a synthesizer of one sine: what each of the
 * plug-ins of this folder spoils in one place, so that the checks can be seen to find it.
 */
class CPlainEffect : public CVst2Effect
{
public:
    explicit CPlainEffect(audioMasterCallback inHost, const SPlainOptions& inOptions = {});

protected:
    enum EParameter : std::size_t
    {
        kGain,
        kBalance,
        kParameterCount
    };

    void Prepare(double inSampleRate) override;
    void Reset() noexcept override;
    void Receive(const VstMidiEvent& inEvent) noexcept override;
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override;
    virtual void EndNote(int inNote) noexcept;

    audioMasterCallback Host() const noexcept { return mHost; }

private:
    audioMasterCallback mHost;
    bool mIsSynth;
    double mSampleRate = 44100.0; // Hz
    double mPhase = 0.0;          // 0 to 1
    int mNote = -1;               // the one that sounds
};

/** The entry of a faulty plug-in: makes it, and gives it into the host's hands. Never throws. */
template <class Effect>
AEffect* MakePlugin(audioMasterCallback inHost) noexcept
{
    try
    {
        return (new Effect(inHost))->Effect(); // the host ends it with effClose
    }
    catch (...)
    {
        return nullptr;
    }
}

#define BROKEN_PLUGIN(Class)                                                                                 \
    EXAMPLE_EXPORT AEffect* VSTPluginMain(audioMasterCallback inHost);                                       \
    EXAMPLE_EXPORT AEffect* VSTPluginMain(audioMasterCallback inHost) { return MakePlugin<Class>(inHost); }

/** The dispatcher that the base gives its record; a fault that lies in an opcode stands in front of it. */
template <class Fault>
class CSpoiledDispatcher
{
public:
    static void Install(AEffect& ioEffect) noexcept
    {
        sBase = ioEffect.dispatcher;
        ioEffect.dispatcher = &Dispatch;
    }
    static VstIntPtr Base(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                          void* inPointer, float inOpt)
    {
        return sBase(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
    }

private:
    static VstIntPtr Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                              VstIntPtr inValue, void* inPointer, float inOpt)
    {
        return Fault::Answer(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
    }
    // The same for every instance; written while the first is made.
    static inline AEffectDispatcherProc sBase = nullptr;
};
