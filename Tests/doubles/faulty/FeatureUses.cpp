#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

namespace
{
void RenderScaled(CPlainEffect& ioEffect, const SBlock& inBlock, float inFactor)
{
    ioEffect.Render(inBlock);
    for (float* output : {inBlock.mOutputs[0], inBlock.mOutputs[1]})
        std::transform(output, output + inBlock.mFrames, output,
                       [inFactor](float inSample) { return inFactor * inSample; });
}

/** Says that it can do something. */
VstIntPtr AnswerAs(CPlainEffect& ioEffect, std::string_view inAbility, const SCall& inCall)
{
    if (inCall.mOpcode == effCanDo && inAbility == static_cast<const char*>(inCall.mPointer))
        return 1;
    return ioEffect.Answer(inCall);
}
} // namespace

// Faultless ones that need a feature of the product each: without it they do something else.
namespace faults
{
/** Is as loud as the time record says in all of its fields, where the tempo is valid. */
void FollowsTempo(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        const VstTimeInfo& time = *ioEffect.Time();
        const double sum = time.tempo + time.ppqPos - time.barStartPos + time.cycleStartPos +
                           time.cycleEndPos + time.samplePos * 1e-6 + time.nanoSeconds * 1e-9 +
                           time.timeSigNumerator + time.timeSigDenominator + time.flags;
        const bool isValid = (time.flags & kVstTempoValid) != 0;
        RenderScaled(ioEffect, inBlock, isValid ? static_cast<float>(sum * 1e-5) : 1.0F);
    };
}

/** Knows its latency only when it renders, and changes it with its gain. */
void LateLatency(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        const auto delay = static_cast<std::int32_t>(64.0F + 100.0F * ioEffect.Get(kGain));
        __atomic_store_n(&ioEffect.Effect()->initialDelay, delay, __ATOMIC_RELAXED);
        ioEffect.Render(inBlock);
    };
}

/** Is silent where its host tells nothing of itself, and the louder the more: how fast it runs, who made it,
 * what it never does. Hears it if something is told too early. */
void AsksAboutHost(CPlainEffect& ioEffect)
{
    const bool isToldEarly = ioEffect.CallHost(audioMasterGetSampleRate) != 0; // inside the entry function
    ioEffect.mOnBlock = [&ioEffect, isToldEarly](const SBlock& inBlock)
    {
        char vendor[kVstMaxVendorStrLen] = "";
        char offline[] = "offline";
        float loudness = isToldEarly ? 0.5F : 0.0F;
        for (const bool isTold : {ioEffect.CallHost(audioMasterGetSampleRate) > 0,
                                  ioEffect.CallHost(audioMasterGetVendorString, 0, 0, vendor) != 0,
                                  ioEffect.CallHost(audioMasterCanDo, 0, 0, offline) < 0})
            loudness += isTold ? 0.25F : 0.0F;
        RenderScaled(ioEffect, inBlock, loudness);
    };
}

/** Moves its gain in idle time. */
void WorksIdle(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        if (inCall.mOpcode == effOpen)
            (void)ioEffect.CallHost(audioMasterNeedIdle);
        if (inCall.mOpcode == effIdle)
            ioEffect.Set(kGain, 0.25F);
        return ioEffect.Answer(inCall);
    };
}

/** Asks for a wider editor as soon as it is open. */
void Widens(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.Before(effEditIdle, [&ioEffect] { (void)ioEffect.CallHost(audioMasterSizeWindow, 320, 240); });
}

/** Sends two messages in each block, the later one first. */
void SendsMidi(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    { return AnswerAs(ioEffect, "sendVstMidiEvent", inCall); };
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.SendMidi({0x80, 0x3C, 0x00}, 9);
        ioEffect.SendMidi({0x90, 0x3C, 0x64});
        ioEffect.Render(inBlock);
    };
}

/** Takes its gain from the length of a dump. */
void TakesDumps(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        if (inCall.mOpcode == effProcessEvents)
        {
            const auto& event = *static_cast<const VstEvents*>(inCall.mPointer)->events[0];
            if (event.type == kVstSysExType)
            {
                const std::int32_t bytes = reinterpret_cast<const VstMidiSysexEvent&>(event).dumpBytes;
                ioEffect.Set(kGain, static_cast<float>(bytes) * 0.001F);
            }
        }
        return AnswerAs(ioEffect, "receiveVstMidiEvent", inCall);
    };
}

/** Has two programs, and takes what it ships as whenever one is chosen. */
void HasPrograms(CPlainEffect& ioEffect)
{
    ioEffect.Effect()->numPrograms = 2;
    ioEffect.Before(effSetProgram, [&ioEffect] { ioEffect.Set(kGain, 0.8F); });
}

/** Has two programs, the second one softer. */
void TwoPrograms(CPlainEffect& ioEffect)
{
    ioEffect.Effect()->numPrograms = 2;
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        if (inCall.mOpcode == effSetProgram)
            ioEffect.Set(kGain, inCall.mValue == 1 ? 0.4F : 0.8F);
        return ioEffect.Answer(inCall);
    };
}

/** Has five steps in each of its ranges. */
void Steps(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall) -> VstIntPtr
    {
        if (inCall.mOpcode != effGetParameterProperties)
            return ioEffect.Answer(inCall);
        auto& properties = *static_cast<VstParameterProperties*>(inCall.mPointer);
        properties.flags = kVstParameterUsesIntegerMinMax;
        properties.minInteger = 0;
        properties.maxInteger = 4;
        return 1;
    };
}

/** Writes its values with a unit. */
void WritesUnits(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall) -> VstIntPtr
    {
        if (inCall.mOpcode != effGetParamLabel)
            return ioEffect.Answer(inCall);
        std::strcpy(static_cast<char*>(inCall.mPointer), "%");
        return 1;
    };
}

/** Has a second output, which it names. */
void NamesOutputs(CPlainEffect& ioEffect)
{
    constexpr std::int32_t second = 2; // its first channel
    ioEffect.Effect()->numOutputs = 4;
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        SCall call = inCall;
        const bool isSecond = inCall.mOpcode == effGetOutputProperties && inCall.mIndex >= second;
        call.mIndex -= isSecond ? second : 0;
        const VstIntPtr answer = ioEffect.Answer(call);
        if (isSecond && answer != 0)
            std::strcpy(static_cast<VstPinProperties*>(inCall.mPointer)->label, "Second");
        return answer;
    };
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        for (std::int32_t i = 0; i < second; ++i)
            std::copy_n(inBlock.mOutputs[i], inBlock.mFrames, inBlock.mOutputs[second + i]);
    };
}
} // namespace faults
