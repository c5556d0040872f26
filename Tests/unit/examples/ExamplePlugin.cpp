#include "Tests/unit/examples/ExamplePlugin.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include <dlfcn.h>

namespace
{
VstIntPtr AnswerNothing(AEffect* /*inEffect*/, std::int32_t /*inOpcode*/, std::int32_t /*inIndex*/,
                        VstIntPtr /*inValue*/, void* /*inPointer*/, float /*inOpt*/)
{
    return 0;
}
} // namespace

CExamplePlugin::CExamplePlugin(const char* inFile) : mLibrary(dlopen(inFile, RTLD_NOW | RTLD_LOCAL))
{
    void* const entry = mLibrary != nullptr ? dlsym(mLibrary, "VSTPluginMain") : nullptr;
    mEffect = entry != nullptr ? reinterpret_cast<VstPluginEntryProc>(entry)(&AnswerNothing) : nullptr;
    if (mEffect == nullptr || mEffect->magic != kEffectMagic)
    {
        throw std::runtime_error(std::string("no plug-in: ") + inFile);
    }
    Dispatch(effSetSampleRate, 0, 0, nullptr, 48000.0F);
    Dispatch(effSetBlockSize, 0, 1024);
    Dispatch(effOpen);
    Dispatch(effMainsChanged, 0, 1);
}

CExamplePlugin::~CExamplePlugin()
{
    Dispatch(effMainsChanged, 0, 0);
    Dispatch(effClose);
    (void)dlclose(mLibrary); // whether it really goes is no matter here
}

VstIntPtr CExamplePlugin::Dispatch(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                                   void* inPointer, float inOpt)
{
    return mEffect->dispatcher(mEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
}

std::string CExamplePlugin::Text(std::int32_t inOpcode, std::int32_t inIndex)
{
    std::array<char, 256> text{};
    Dispatch(inOpcode, inIndex, 0, text.data());
    return text.data();
}

void CExamplePlugin::Restart()
{
    Dispatch(effMainsChanged, 0, 0);
    Dispatch(effMainsChanged, 0, 1);
}

void CExamplePlugin::Send(std::span<const STestMessage> inMessages)
{
    std::vector<VstMidiEvent> events(inMessages.size());
    // The list's header, then as many pointers as there are events.
    constexpr std::size_t header = offsetof(VstEvents, events) / sizeof(VstIntPtr);
    std::vector<VstIntPtr> list(std::max(header + events.size(), sizeof(VstEvents) / sizeof(VstIntPtr)));
    const auto count = static_cast<std::int32_t>(events.size());
    std::memcpy(list.data(), &count, sizeof(count));
    for (std::size_t i = 0; i < events.size(); ++i)
    {
        const STestMessage& message = inMessages[i];
        events[i].type = kVstMidiType;
        events[i].byteSize = sizeof(VstMidiEvent);
        events[i].deltaFrames = message.frame;
        events[i].midiData[0] = static_cast<char>(message.status);
        events[i].midiData[1] = static_cast<char>(message.first);
        events[i].midiData[2] = static_cast<char>(message.second);
        list[header + i] = reinterpret_cast<VstIntPtr>(&events[i]);
    }
    Dispatch(effProcessEvents, 0, 0, list.data());
}

Channels CExamplePlugin::Render(std::int32_t inFrames, const std::vector<STestMessage>& inMessages,
                                const std::vector<std::int32_t>& inBlocks)
{
    Channels output(static_cast<std::size_t>(mEffect->numOutputs),
                    std::vector<float>(static_cast<std::size_t>(inFrames)));
    auto next = inMessages.begin();
    std::size_t turn = 0;
    for (std::int32_t start = 0; start < inFrames; ++turn)
    {
        const std::int32_t frames = std::min(inBlocks[turn % inBlocks.size()], inFrames - start);
        std::vector<STestMessage> due;
        for (; next != inMessages.end() && next->frame < start + frames; ++next)
        {
            due.push_back(*next);
            due.back().frame -= start;
        }
        if (!due.empty())
        {
            Send(due);
        }
        std::vector<float*> outs;
        std::ranges::for_each(output, [&](auto& ioChannel) { outs.push_back(ioChannel.data() + start); });
        mEffect->processReplacing(mEffect, nullptr, outs.data(), frames);
        start += frames;
    }
    return output;
}
