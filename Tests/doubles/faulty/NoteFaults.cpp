#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <bitset>
#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>

namespace
{
CPlainEffect& MakeSynth(audioMasterCallback inHost) { return MakePlain(inHost, {.mIsSynth = true}); }

/** Has each message looked at, and changed, ahead of the faultless synthesizer. */
void OnMessage(CPlainEffect& ioEffect, std::function<void(VstMidiEvent&)> inLook)
{
    ioEffect.mOnCall = [&ioEffect, look = std::move(inLook)](const SCall& inCall)
    {
        if (inCall.mOpcode == effProcessEvents)
        {
            auto& list = *static_cast<VstEvents*>(inCall.mPointer);
            VstEvent** const events = list.events;
            for (std::int32_t i = 0; i < list.numEvents; ++i)
                look(*reinterpret_cast<VstMidiEvent*>(events[i]));
        }
        return ioEffect.Answer(inCall);
    };
}

int KindOf(const VstMidiEvent& inEvent) { return inEvent.midiData[0] & 0xF0; }
} // namespace

// What is wrong with a synthesizer's notes and messages.
namespace faults
{
/** Makes no sound of its notes. */
AEffect* Mute(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    effect.mOnBlock = [](const SBlock& inBlock)
    {
        for (float* output : {inBlock.mOutputs[0], inBlock.mOutputs[1]})
            std::fill_n(output, inBlock.mFrames, 0.0F);
    };
    return effect.Effect();
}

/** Knows neither "all sound off" nor "all notes off". */
AEffect* Panic(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    OnMessage(effect,
              [](VstMidiEvent& ioEvent)
              {
                  if (KindOf(ioEvent) == 0xB0)
                      ioEvent.midiData[0] = 0;
              });
    return effect.Effect();
}

/** Divides by what a controller, the resonance, leaves of its range. */
AEffect* Resonance(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    const auto gain = std::make_shared<float>(1.0F);
    OnMessage(
        effect,
        [gain](const VstMidiEvent& inEvent)
        {
            constexpr int resonance = 71;
            if (KindOf(inEvent) == 0xB0 && inEvent.midiData[1] == resonance)
                *gain += 1.0F / static_cast<float>(127 - inEvent.midiData[2]);
        });
    effect.mOnBlock = [&effect, gain](const SBlock& inBlock)
    {
        effect.Render(inBlock);
        std::transform(inBlock.mOutputs[0], inBlock.mOutputs[0] + inBlock.mFrames, inBlock.mOutputs[0],
                       [=](float inSample) { return inSample * *gain / *gain; });
    };
    return effect.Effect();
}

/** Crashes where a program is chosen that it does not have. */
AEffect* Programs(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    OnMessage(effect,
              [](const VstMidiEvent& inEvent)
              {
                  if (KindOf(inEvent) == 0xC0 && inEvent.midiData[1] > 0)
                      std::abort();
              });
    return effect.Effect();
}

/** Takes every message's first byte for a status. */
AEffect* Status(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    OnMessage(effect,
              [](const VstMidiEvent& inEvent)
              {
                  if (KindOf(inEvent) < 0x80)
                      std::abort(); // no place in a table of eight kinds
              });
    return effect.Effect();
}

/** Writes each message to its frame of the block, wherever that is. */
AEffect* Frames(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    const auto last = std::make_shared<std::int32_t>(0);
    OnMessage(effect, [last](const VstMidiEvent& inEvent) { *last = std::max(*last, inEvent.deltaFrames); });
    effect.mOnBlock = [&effect, last](const SBlock& inBlock)
    {
        if (*last >= std::max(inBlock.mFrames, 1))
            std::abort();
        *last = 0;
        effect.Render(inBlock);
    };
    return effect.Effect();
}

/** Has room for a hundred messages in a block, and crashes where there are more. */
AEffect* Messages(audioMasterCallback inHost)
{
    CPlainEffect& effect = MakeSynth(inHost);
    const auto count = std::make_shared<int>(0);
    OnMessage(effect,
              [count](const VstMidiEvent&)
              {
                  constexpr int room = 100;
                  if (++*count > room)
                      std::abort();
              });
    effect.mOnBlock = [&effect, count](const SBlock& inBlock)
    {
        *count = 0;
        effect.Render(inBlock);
    };
    return effect.Effect();
}

/** Shares its voices with all instances, and leaves there those that sound when it is closed. */
AEffect* Voices(audioMasterCallback inHost)
{
    static std::bitset<128> left;
    CPlainEffect& effect = MakeSynth(inHost);
    const auto held = std::make_shared<std::bitset<128>>();
    OnMessage(
        effect,
        [held](const VstMidiEvent& inEvent)
        {
            if (KindOf(inEvent) == 0x80 || KindOf(inEvent) == 0x90)
                held->set(inEvent.midiData[1] & 0x7F, KindOf(inEvent) == 0x90);
        });
    effect.mOnClose = [held] { left |= *held; };
    effect.mOnBlock = [&effect](const SBlock& inBlock)
    {
        if (left.any())
            std::abort(); // they belong to nobody
        effect.Render(inBlock);
    };
    return effect.Effect();
}
} // namespace faults
