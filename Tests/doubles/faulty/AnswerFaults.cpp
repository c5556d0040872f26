#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>

namespace
{
bool AsksForAPin(const SCall& inCall)
{
    return inCall.mOpcode == effGetInputProperties || inCall.mOpcode == effGetOutputProperties;
}

/** No UTF-8, and far too long. */
VstIntPtr GiveWildText(void* outText)
{
    auto* const text = static_cast<char*>(outText);
    std::fill_n(text, 600, '\xFF');
    std::memcpy(text, "A\nB", 3);
    text[600] = '\0';
    return 1;
}
} // namespace

// What is wrong, missing or strange in what it says of itself.
namespace faults
{
/** Has no fault. */
void None(CPlainEffect&) {}

/** Has no identity: its unique number is 0, as that of every plug-in whose maker forgot to choose one. */
void Identity(CPlainEffect& ioEffect) { ioEffect.Effect()->uniqueID = 0; }

/** Misreports its latency: says 64 samples and has none. */
void Latency(CPlainEffect& ioEffect) { ioEffect.Effect()->initialDelay = 64; }

/** Gives texts, counts, values and labels that no host expects, and knows its latency only when it renders.
 */
void WildAnswers(CPlainEffect& ioEffect)
{
    AEffect& record = *ioEffect.Effect();
    record.uniqueID = 0x00000102;
    record.numParams = 1;
    record.numPrograms = -3;
    record.getParameter = [](AEffect*, std::int32_t) { return std::numeric_limits<float>::quiet_NaN(); };
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall) -> VstIntPtr
    {
        if (AsksForAPin(inCall))
        {
            auto& pin = *static_cast<VstPinProperties*>(inCall.mPointer);
            std::memset(pin.label, 'x', sizeof(pin.label)); // without an end
            pin.flags = kVstPinIsStereo;
            return 1;
        }
        switch (inCall.mOpcode)
        {
        case effGetEffectName:
        case effGetVendorString:
        case effGetParamName: return GiveWildText(inCall.mPointer);
        default: return ioEffect.Answer(inCall);
        }
    };
    ioEffect.mOnBlock = [&record](const SBlock& inBlock)
    {
        std::fill_n(inBlock.mOutputs[1], 1024, 0.5F); // the whole announced block, as some plug-ins do
        record.initialDelay = 77;
    };
}

/** Describes its pins by a speaker. */
void SpeakerPin(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        const VstIntPtr result = ioEffect.Answer(inCall);
        if (AsksForAPin(inCall) && result != 0)
            static_cast<VstPinProperties*>(inCall.mPointer)->flags = kVstPinUseSpeaker;
        return result;
    };
}

/** Needs every product option and says that it sends MIDI; its unique number is the host's version that it
 * was told inside its entry. */
AEffect* Demanding(audioMasterCallback inHost)
{
    const VstIntPtr version = inHost(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F);
    if (version == 0)
        return nullptr;
    CPlainEffect& effect = MakePlain(inHost);
    effect.Effect()->uniqueID = static_cast<std::int32_t>(version);
    effect.Effect()->numInputs = 0;
    effect.mOnBlock = [](const SBlock&) {}; // without an input there is nothing to hear
    effect.mOnCall = [&effect](const SCall& inCall) -> VstIntPtr
    {
        if (inCall.mOpcode == effOpen)
            (void)effect.CallHost(audioMasterWantMidi, 0, 1); // it has no answer of interest
        if (inCall.mOpcode == effCanDo)
            return std::strcmp(static_cast<const char*>(inCall.mPointer), "sendVstEvents") == 0 ? 1 : 0;
        return AsksForAPin(inCall) ? 0 : effect.Answer(inCall);
    };
    return effect.Effect();
}

/** Prints in each call something that looks like an answer of the program that loaded it. */
void WriteToOutput(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        (void)std::puts("{\"refused\": \"a plug-in talks to the screen\"}"); // that's all it's about
        (void)std::fflush(stdout);
        return ioEffect.Answer(inCall);
    };
}
} // namespace faults
