#include "Tools/benchmark/EmptyPlugin.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#define EMPTY_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

namespace
{
constexpr std::int32_t kChannels = 2;

/** A stereo effect that takes and sends MIDI and renders nothing: whatever a block costs is its host's. */
struct SEmptyPlugin
{
    AEffect mEffect{};
    std::vector<float> mParameters;
    std::vector<char> mChunk;
    std::vector<VstMidiEvent> mNotes;
    std::vector<VstIntPtr> mEvents; // a VstEvents: count, reserved, pointers to the notes
};
constexpr std::size_t kListHeader = 2;

// Written by whoever makes and ends instances: the main thread.
std::vector<std::unique_ptr<SEmptyPlugin>> gInstances;
audioMasterCallback gHost = nullptr;

SEmptyPlugin& PluginOf(AEffect* inEffect) { return *static_cast<SEmptyPlugin*>(inEffect->object); }

std::size_t Setting(const char* inName)
{
    const char* const text = std::getenv(inName);
    return text != nullptr ? std::strtoul(text, nullptr, 10) : 0;
}

VstIntPtr DescribePin(std::int32_t inIndex, void* outPin)
{
    if (inIndex < 0 || inIndex >= kChannels)
        return 0;
    auto& pin = *static_cast<VstPinProperties*>(outPin);
    pin = {};
    std::strcpy(pin.label, "Main");
    pin.flags = kVstPinIsActive | kVstPinIsStereo;
    return 1;
}

bool CanDo(const char* inText)
{
    return std::strcmp(inText, "receiveVstMidiEvent") == 0 || std::strcmp(inText, "sendVstEvents") == 0;
}

void End(const SEmptyPlugin& inPlugin)
{
    std::erase_if(
        gInstances, [&](const auto& inListed) { return inListed.get() == &inPlugin; });
}

VstIntPtr Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                   void* inPointer, float)
{
    SEmptyPlugin& plugin = PluginOf(inEffect);
    switch (inOpcode)
    {
    case effClose: End(plugin); return 0;
    case effGetEffectName:
        std::snprintf(static_cast<char*>(inPointer), kVstMaxEffectNameLen, "Empty");
        return 1;
    case effGetParamName: std::snprintf(static_cast<char*>(inPointer), 8, "P%d", inIndex); return 1;
    case effGetParamDisplay:
        std::snprintf(static_cast<char*>(inPointer), 8, "%.2f",
                      static_cast<double>(plugin.mParameters[static_cast<std::size_t>(inIndex)]));
        return 1;
    case effGetParamLabel: std::memcpy(inPointer, "dB", sizeof("dB")); return 1;
    case effGetInputProperties:
    case effGetOutputProperties: return DescribePin(inIndex, inPointer);
    case effCanDo: return CanDo(static_cast<const char*>(inPointer)) ? 1 : 0;
    case effGetChunk:
        *static_cast<void**>(inPointer) = plugin.mChunk.data();
        return static_cast<VstIntPtr>(plugin.mChunk.size());
    case effSetChunk:
        plugin.mChunk.assign(static_cast<const char*>(inPointer),
                             static_cast<const char*>(inPointer) + inValue);
        return 1;
    default: return 0;
    }
}

void SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue)
{
    PluginOf(inEffect).mParameters[static_cast<std::size_t>(inIndex)] = inValue;
}

float GetParameter(AEffect* inEffect, std::int32_t inIndex)
{
    return PluginOf(inEffect).mParameters[static_cast<std::size_t>(inIndex)];
}

void RenderNothing(AEffect* inEffect, float**, float**, std::int32_t)
{
    SEmptyPlugin& plugin = PluginOf(inEffect);
    if (plugin.mEvents.size() > kListHeader)
        (void)gHost(inEffect, audioMasterProcessEvents, 0, 0, plugin.mEvents.data(), 0.0F);
}

/** The list of as many notes as it sends in each block. */
void MakeEvents(SEmptyPlugin& outPlugin)
{
    outPlugin.mNotes.assign(Setting(kEmptyPluginSends), {});
    outPlugin.mEvents.assign({static_cast<VstIntPtr>(outPlugin.mNotes.size()), 0});
    for (VstMidiEvent& note : outPlugin.mNotes)
    {
        note.type = kVstMidiType;
        note.midiData[0] = static_cast<char>(0x90);
        outPlugin.mEvents.push_back(reinterpret_cast<VstIntPtr>(&note));
    }
}

constexpr SEmptyPluginAccess kAccess{[] { return static_cast<int>(gInstances.size()); },
                                     [](int inIndex)
                                     { return &gInstances[static_cast<std::size_t>(inIndex)]->mEffect; },
                                     [] { return gHost; }};
} // namespace

EMPTY_PLUGIN_EXPORT const SEmptyPluginAccess* GetEmptyPluginAccess() { return &kAccess; }

EMPTY_PLUGIN_EXPORT AEffect* VSTPluginMain(audioMasterCallback inHost)
{
    auto plugin = std::make_unique<SEmptyPlugin>();
    plugin->mParameters.assign(Setting(kEmptyPluginParameters), 0.5F);
    plugin->mChunk.assign(Setting(kEmptyPluginChunkBytes), '\x5A');
    MakeEvents(*plugin);
    AEffect& effect = plugin->mEffect;
    effect.magic = kEffectMagic;
    effect.dispatcher = &Dispatch;
    effect.setParameter = &SetParameter;
    effect.getParameter = &GetParameter;
    effect.numPrograms = 1;
    effect.numParams = static_cast<std::int32_t>(plugin->mParameters.size());
    effect.numInputs = kChannels;
    effect.numOutputs = kChannels;
    effect.flags = effFlagsCanReplacing | (plugin->mChunk.empty() ? 0 : effFlagsProgramChunks);
    effect.object = plugin.get();
    effect.uniqueID = 0x456D7074; // "Empt"
    effect.version = 1;
    effect.processReplacing = &RenderNothing;
    gHost = inHost;
    gInstances.push_back(std::move(plugin));
    return &gInstances.back()->mEffect;
}
