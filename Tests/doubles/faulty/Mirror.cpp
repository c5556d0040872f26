#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <cstring>
#include <memory>
#include <vector>

namespace
{
/** What a plug-in hears of its host, as numbers, on its way into the sound. */
struct SHeard
{
    void Add(double inValue) { mNumbers.push_back(static_cast<float>(inValue)); }
    std::vector<float> mNumbers;
    int mIdleCalls = 0;
    std::int32_t mBlocks = 0;
};

void HearEvents(const VstEvents& inEvents, SHeard& outHeard)
{
    const VstEvent* const* const list = inEvents.events;
    for (std::int32_t i = 0; i < inEvents.numEvents; ++i)
    {
        const bool isDump = list[i]->type == kVstSysExType;
        const auto& dump = *reinterpret_cast<const VstMidiSysexEvent*>(list[i]);
        const auto& note = *reinterpret_cast<const VstMidiEvent*>(list[i]);
        outHeard.Add(list[i]->deltaFrames);
        for (std::int32_t k = 0; k < (isDump ? dump.dumpBytes : 3); ++k)
            outHeard.Add(static_cast<std::uint8_t>(isDump ? dump.sysexDump[k] : note.midiData[k]));
    }
}

void HearTime(CPlainEffect& ioEffect, SHeard& outHeard)
{
    const VstTimeInfo* const time = ioEffect.Time();
    for (const double value :
         {double(time->flags), time->samplePos, time->ppqPos, time->tempo, time->barStartPos,
          time->cycleStartPos, time->cycleEndPos, time->nanoSeconds * 1e-9, double(time->timeSigNumerator),
          double(time->timeSigDenominator)})
        outHeard.Add(value);
}

void HearAnswers(CPlainEffect& ioEffect, SHeard& outHeard)
{
    for (const std::int32_t opcode : {audioMasterGetSampleRate, audioMasterGetBlockSize,
                                      audioMasterGetCurrentProcessLevel, audioMasterGetLanguage})
        outHeard.Add(static_cast<double>(ioEffect.CallHost(opcode)));
    for (const char* ability : {"sizeWindow", "receiveVstMidiEvent", "offline"})
    {
        char text[64] = {};
        std::strncpy(text, ability, sizeof(text) - 1);
        outHeard.Add(static_cast<double>(ioEffect.CallHost(audioMasterCanDo, 0, 0, text)));
    }
    outHeard.Add(ioEffect.CallHost(audioMasterGetDirectory) != 0 ? 1.0 : 0.0);
    outHeard.Add(outHeard.mIdleCalls);
}
} // namespace

namespace faults
{
/**
 * Is correct, and tells in its sound what it hears of its host. It sends a note in each block, knows its
 * latency after the first, asks for idle time until it had it three times, and for another size of its
 * editor.
 */
void Mirror(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    const auto heard = std::make_shared<SHeard>();
    ioEffect.mOnCall = [&ioEffect, heard](const SCall& inCall) -> VstIntPtr
    {
        switch (inCall.mOpcode)
        {
        case effCanDo: return 1;
        case effOpen: (void)ioEffect.CallHost(audioMasterNeedIdle); break;
        case effIdle: return ++heard->mIdleCalls < 3 ? 1 : 0;
        case effEditIdle: (void)ioEffect.CallHost(audioMasterSizeWindow, 300, 200); break;
        case effProcessEvents: HearEvents(*static_cast<const VstEvents*>(inCall.mPointer), *heard); return 1;
        default: break;
        }
        return ioEffect.Answer(inCall);
    };
    ioEffect.mOnBlock = [&ioEffect, heard](const SBlock& inBlock)
    {
        HearTime(ioEffect, *heard);
        HearAnswers(ioEffect, *heard);
        const auto key = static_cast<std::uint8_t>(heard->mBlocks++ % 128);
        ioEffect.SendMidi({0x90, key, 100}, inBlock.mFrames / 2);
        ioEffect.Effect()->initialDelay = 96;
        for (std::int32_t i = 0; i < inBlock.mFrames; ++i)
        {
            const auto place = static_cast<std::size_t>(i);
            inBlock.mOutputs[0][i] = place < heard->mNumbers.size() ? heard->mNumbers[place] : 0.0F;
            inBlock.mOutputs[1][i] = 0.0F;
        }
        heard->mNumbers.clear();
    };
}
} // namespace faults
