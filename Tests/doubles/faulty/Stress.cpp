#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <thread>

namespace
{
constexpr std::int32_t kParameters = 8;
constexpr std::array<std::uint8_t, 3> kController{0xB0};

/** Everything that a plug-in may ask of a host or tell it, on whatever thread. */
void Talk(CPlainEffect& ioEffect, std::int32_t inRound)
{
    char question[] = "sizeWindow";
    (void)ioEffect.CallHost(audioMasterCanDo, 0, 0, question);
    for (const std::int32_t opcode :
         {audioMasterGetTime, audioMasterVersion, audioMasterNeedIdle, audioMasterWantMidi,
          audioMasterUpdateDisplay, audioMasterIOChanged, audioMasterGetSampleRate, audioMasterGetBlockSize,
          audioMasterGetCurrentProcessLevel, audioMasterGetDirectory})
        (void)ioEffect.CallHost(opcode); // no call here has a result of interest
    (void)ioEffect.CallHost(audioMasterSizeWindow, 100 + inRound % 16, 200);
    ioEffect.SendMidi(kController);
    __atomic_store_n(&ioEffect.Effect()->initialDelay, inRound % 16, __ATOMIC_RELAXED);
}

/** What a person at the editor causes. */
void Move(CPlainEffect& ioEffect, std::int32_t inIndex)
{
    ioEffect.Set(inIndex, 0.5F);
    ioEffect.Turn(inIndex);
}

/** Calls the host all the time, until it is stopped. Threads: made and stopped on the main thread. */
class CCaller
{
public:
    explicit CCaller(CPlainEffect& ioEffect) : mThread([this, &ioEffect] { Run(ioEffect); }) {}
    CCaller(const CCaller&) = delete;
    CCaller& operator=(const CCaller&) = delete;
    ~CCaller()
    {
        mStops.store(true);
        mThread.join();
    }

private:
    void Run(CPlainEffect& ioEffect)
    {
        for (std::int32_t round = 0; !mStops.load(); ++round)
        {
            if (round % 64 == 0) // a host has to answer each of them
                Move(ioEffect, round / 64 % kParameters);
            Talk(ioEffect, round);
            std::this_thread::yield();
        }
    }

    std::atomic<bool> mStops = false;
    std::thread mThread; // last: it uses the flag
};

VstIntPtr Answer(CPlainEffect& ioEffect, std::unique_ptr<CCaller>& ioCaller, const SCall& inCall)
{
    (void)ioEffect.CallHost(audioMasterGetTime);
    switch (inCall.mOpcode)
    {
    case effOpen:
        if (!ioCaller)
            ioCaller = std::make_unique<CCaller>(ioEffect);
        break;
    case effCanDo: return 1;
    case effEditIdle: Move(ioEffect, 1); break;
    case effSetChunk: (void)ioEffect.CallHost(audioMasterUpdateDisplay); break;
    default: break;
    }
    return ioEffect.Answer(inCall);
}

void Render(CPlainEffect& ioEffect, const SBlock& inBlock)
{
    const VstTimeInfo* const time = ioEffect.Time();
    const float gain = time != nullptr && time->tempo > 0.0 ? 1.0F : 0.0F;
    for (std::size_t channel = 0; channel < 2; ++channel)
        std::transform(inBlock.mInputs[channel], inBlock.mInputs[channel] + inBlock.mFrames,
                       inBlock.mOutputs[channel], [gain](float inSample) { return gain * inSample; });
    (void)ioEffect.CallHost(audioMasterAutomate, 2);
    ioEffect.SendMidi(kController);
}
} // namespace

namespace faults
{
/** Is correct, and talks to its host in each block. */
void Talkative(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    { return inCall.mOpcode == effCanDo ? 1 : ioEffect.Answer(inCall); };
    ioEffect.mOnBlock = [&ioEffect, round = std::int32_t{0}](const SBlock& inBlock) mutable
    {
        ioEffect.Render(inBlock);
        Talk(ioEffect, round++);
    };
}

/**
 * Is correct with threads, and uses its host from as many as it can: from each call, from the render call,
 * and all the time from a thread of its own between open and close.
 */
AEffect* Stress(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakePlain(inHost, {.mParameters = kParameters});
    effect.SetEditor(std::make_unique<CBlankEditor>());
    const auto caller = std::make_shared<std::unique_ptr<CCaller>>(); // while it is open
    effect.mOnCall = [&effect, caller](const SCall& inCall) { return Answer(effect, *caller, inCall); };
    effect.mOnClose = [caller] { caller->reset(); };
    effect.mOnBlock = [&effect](const SBlock& inBlock) { Render(effect, inBlock); };
    return effect.Effect();
}
} // namespace faults
