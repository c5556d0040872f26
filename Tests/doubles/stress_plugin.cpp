#include "Interfaces/VST2/AEffect.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <thread>

/**
 * A plug-in that is correct with threads, and uses its host from as many as it can: from each call, from the
 * render call, and all the time from a thread of its own between open and close.
 */
namespace
{
constexpr std::int32_t kParameters = 8;

class CStressEffect
{
public:
    explicit CStressEffect(audioMasterCallback inHost) : mHost(inHost)
    {
        mEffect.magic = kEffectMagic;
        mEffect.dispatcher = &Dispatch;
        mEffect.setParameter = [](AEffect* ioEffect, std::int32_t inIndex, float inValue)
        { Self(ioEffect).Value(inIndex).store(inValue, std::memory_order_relaxed); };
        mEffect.getParameter = [](AEffect* inEffect, std::int32_t inIndex)
        { return Self(inEffect).Value(inIndex).load(std::memory_order_relaxed); };
        mEffect.processReplacing = &Process;
        mEffect.numParams = kParameters;
        mEffect.numPrograms = 2;
        mEffect.numInputs = mEffect.numOutputs = 2;
        mEffect.flags = effFlagsProgramChunks | effFlagsHasEditor;
        mEffect.object = this;
        mEffect.uniqueID = 0x53747273;
    }
    AEffect& Effect() { return mEffect; }

private:
    static CStressEffect& Self(AEffect* inEffect) { return *static_cast<CStressEffect*>(inEffect->object); }

    std::atomic<float>& Value(std::int32_t inIndex)
    {
        return mValues[static_cast<std::size_t>(inIndex) % kParameters];
    }
    VstIntPtr Call(std::int32_t inOpcode, std::int32_t inIndex = 0)
    {
        return mHost(&mEffect, inOpcode, inIndex, 0, nullptr, 0.0F);
    }
    /** What a person at the editor causes. */
    void Turn(std::int32_t inIndex)
    {
        Value(inIndex).store(0.5F, std::memory_order_relaxed);
        (void)Call(audioMasterBeginEdit, inIndex); // no call here has a result of interest
        (void)Call(audioMasterAutomate, inIndex);
        (void)Call(audioMasterEndEdit, inIndex);
    }
    void StartThread()
    {
        if (mThread.joinable())
            return;
        mStops.store(false);
        mThread = std::thread(
            [this]
            {
                for (std::int32_t round = 0; !mStops.load(); ++round)
                {
                    if (round % 64 == 0) // a host has to answer each of them
                        Turn(round / 64 % kParameters);
                    for (const std::int32_t opcode :
                         {audioMasterGetTime, audioMasterVersion, audioMasterNeedIdle, audioMasterWantMidi,
                          audioMasterUpdateDisplay})
                        (void)Call(opcode);
                    std::this_thread::yield();
                }
            });
    }
    void StopThread()
    {
        mStops.store(true);
        if (mThread.joinable())
            mThread.join();
    }

    static VstIntPtr Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t, VstIntPtr inValue,
                              void* inPointer, float)
    {
        CStressEffect& self = Self(inEffect);
        (void)self.Call(audioMasterGetTime);
        switch (inOpcode)
        {
        case effOpen: self.StartThread(); return 0;
        case effClose:
            self.StopThread();
            delete &self;
            return 0;
        case effCanDo: return 1;
        case effEditGetRect: *static_cast<ERect**>(inPointer) = &self.mSize; return 1;
        case effEditOpen: return 1;
        case effEditIdle: self.Turn(1); return 0;
        case effGetInputProperties:
        case effGetOutputProperties:
            static_cast<VstPinProperties*>(inPointer)->flags = kVstPinIsStereo;
            return 1;
        case effGetChunk:
            for (std::size_t i = 0; i < kParameters; ++i)
                self.mChunk[i] = self.mValues[i].load(std::memory_order_relaxed);
            *static_cast<void**>(inPointer) = self.mChunk.data();
            return sizeof(self.mChunk);
        case effSetChunk:
            if (inValue == sizeof(self.mChunk))
            {
                std::memcpy(self.mChunk.data(), inPointer, sizeof(self.mChunk));
                for (std::size_t i = 0; i < kParameters; ++i)
                    self.mValues[i].store(self.mChunk[i], std::memory_order_relaxed);
            }
            (void)self.Call(audioMasterUpdateDisplay);
            return 1;
        default: return 0;
        }
    }
    static void Process(AEffect* inEffect, float** inInputs, float** inOutputs, std::int32_t inFrames)
    {
        CStressEffect& self = Self(inEffect);
        const auto* const time = reinterpret_cast<const VstTimeInfo*>(self.Call(audioMasterGetTime));
        const float gain = time != nullptr && time->tempo > 0.0 ? 1.0F : 0.0F;
        for (std::int32_t i = 0; i < inFrames; ++i)
            for (std::size_t channel = 0; channel < 2; ++channel)
                inOutputs[channel][i] = gain * inInputs[channel][i];
        (void)self.Call(audioMasterAutomate, 2);
    }

    audioMasterCallback mHost;
    AEffect mEffect{};
    std::array<std::atomic<float>, kParameters> mValues{};
    std::array<float, kParameters> mChunk{}; // main thread
    ERect mSize{0, 0, 100, 200};
    std::atomic<bool> mStops = false;
    std::thread mThread;
};
} // namespace

extern "C" __attribute__((visibility("default"))) AEffect* VSTPluginMain(audioMasterCallback inHost);
extern "C" __attribute__((visibility("default"))) AEffect* VSTPluginMain(audioMasterCallback inHost)
{
    return &(new CStressEffect(inHost))->Effect(); // deletes itself on effClose
}
