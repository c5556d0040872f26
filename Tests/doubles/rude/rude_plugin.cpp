#include "Interfaces/VST2/AEffect.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <thread>

namespace
{
enum class ERudeness
{
    kNone,
    kNoEntry,
    kCrashInEntry,
    kHangInEntry,
    kExitInEntry,
    kThrowInEntry,
    kReturnNull,
    kWrongMagic,
    kCrashInOpen,
    kHangInOpen,
    kCrashInRender,
    kThrowInRender,
    kDragInIdle,
    kWriteToOutput,
    kBrokenTexts,
    kDemanding,
    kSpeakerPin,
    kRefuseAnyVersion,
    kMissingLibrary
};
constexpr ERudeness kRudeness = ERudeness::RUDENESS;
constexpr bool Is(ERudeness inRudeness) { return kRudeness == inRudeness; }

audioMasterCallback gHost = nullptr; // the host's main thread

[[noreturn]] void Crash()
{
    (void)std::raise(SIGSEGV); // ends the process
    std::abort();
}

[[noreturn]] void Hang()
{
    while (true)
    {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

VstIntPtr GiveText(void* outText)
{
    auto* const text = static_cast<char*>(outText);
    if (Is(ERudeness::kBrokenTexts))
    {
        std::fill_n(text, 600, '\xFF'); // no UTF-8, and far too long
        std::memcpy(text, "A\nB", 3);
        text[600] = '\0';
        return 1;
    }
    constexpr char name[] = "Rude & Co";
    std::memcpy(text, name, sizeof(name));
    return 1;
}

VstIntPtr GivePin(void* outPin)
{
    if (Is(ERudeness::kDemanding))
    {
        return 0;
    }
    auto& pin = *static_cast<VstPinProperties*>(outPin);
    std::memset(pin.label, 'x', sizeof(pin.label)); // without an end
    pin.flags = Is(ERudeness::kSpeakerPin) ? kVstPinUseSpeaker : kVstPinIsStereo;
    return 1;
}

VstIntPtr Open(AEffect* inEffect)
{
    if (Is(ERudeness::kCrashInOpen))
    {
        Crash();
    }
    if (Is(ERudeness::kHangInOpen))
    {
        Hang();
    }
    if (Is(ERudeness::kDemanding))
    {
        gHost(inEffect, audioMasterWantMidi, 0, 1, nullptr, 0.0F);
    }
    return 0;
}

/** What a person's hand at the editor's knob does. */
void Drag(AEffect* inEffect)
{
    gHost(inEffect, audioMasterBeginEdit, 0, 0, nullptr, 0.0F);
    gHost(inEffect, audioMasterAutomate, 0, 0, nullptr, 0.0F);
    gHost(inEffect, audioMasterEndEdit, 0, 0, nullptr, 0.0F);
}

VstIntPtr Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t /*inIndex*/, VstIntPtr /*inValue*/,
                   void* inPointer, float /*inOpt*/)
{
    if (Is(ERudeness::kDragInIdle) && inOpcode == effEditIdle)
    {
        Drag(inEffect);
    }
    if (Is(ERudeness::kWriteToOutput))
    {
        (void)std::puts("{\"refused\": \"a plug-in talks to the screen\"}"); // that's all it's about
        (void)std::fflush(stdout);
    }
    switch (inOpcode)
    {
    case effOpen: return Open(inEffect);
    case effGetEffectName:
    case effGetVendorString:
    case effGetParamName: return GiveText(inPointer);
    case effGetInputProperties:
    case effGetOutputProperties: return GivePin(inPointer);
    default: return 0;
    }
}

void Render(AEffect* inEffect, float** /*inInputs*/, float** outOutputs, std::int32_t /*inFrames*/)
{
    if (Is(ERudeness::kCrashInRender))
    {
        Crash();
    }
    std::fill_n(outOutputs[1], 1024, 0.5F); // the whole announced block, as some plug-ins do
    inEffect->initialDelay = 77;            // known only now
    if (Is(ERudeness::kThrowInRender))
    {
        throw std::runtime_error("rude");
    }
}

AEffect MakeEffect()
{
    AEffect effect{};
    effect.magic = Is(ERudeness::kWrongMagic) ? 0x12345678 : kEffectMagic;
    effect.dispatcher = &Dispatch;
    effect.setParameter = [](AEffect*, std::int32_t, float) {};
    effect.getParameter = [](AEffect*, std::int32_t) { return std::numeric_limits<float>::quiet_NaN(); };
    effect.processReplacing = &Render;
    effect.numParams = 1;
    effect.numPrograms = -3;
    effect.numOutputs = 2;
    effect.numInputs = Is(ERudeness::kDemanding) ? 0 : 2;
    effect.uniqueID = 0x00000102;
    return effect;
}
} // namespace

#define RUDE_EXPORT extern "C" __attribute__((visibility("default")))

RUDE_EXPORT AEffect* RUDE_ENTRY(audioMasterCallback inHost);
RUDE_EXPORT AEffect* RUDE_ENTRY(audioMasterCallback inHost)
{
    gHost = inHost;
    switch (kRudeness)
    {
    case ERudeness::kCrashInEntry: Crash();
    case ERudeness::kHangInEntry: Hang();
    case ERudeness::kExitInEntry: std::exit(3);
    case ERudeness::kThrowInEntry: throw std::runtime_error("rude");
    case ERudeness::kReturnNull: return nullptr;
    case ERudeness::kDemanding:
        if (inHost(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F) == 0)
        {
            return nullptr;
        }
        break;
    case ERudeness::kRefuseAnyVersion:
        (void)inHost(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F); // whatever it is
        return nullptr;
    default: break;
    }
    static AEffect effect = MakeEffect();
    return &effect;
}
