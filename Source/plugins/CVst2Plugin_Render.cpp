#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace
{
/** Points the plug-in's channels at the buffers that a map names; false leaves them as they were. */
bool MapChannels(std::span<float*> outPointers, float** inBuffers, long inBufferCount, const long* inMap)
{
    const auto count = static_cast<long>(outPointers.size());
    if (count == 0 || count > inBufferCount)
        return false;
    for (float*& pointer : outPointers)
        pointer = inBuffers[*inMap++];
    return true;
}
} // namespace

void CVst2Plugin::Process(float** inBuffers, long inFrames, long inInputBufferCount, long* inInputMap,
                          long inOutputBufferCount, long* inOutputMap)
{
    if (mState != kStateInitialized)
        return;
    (void)MapChannels(mInputPointers, inBuffers, inInputBufferCount,
                      inInputMap); // else the previous buffers serve on
    (void)MapChannels(mOutputPointers, inBuffers, inOutputBufferCount, inOutputMap);
    CallReplacing(mInputPointers.data(), mOutputPointers.data(), inFrames);
}

float** CVst2Plugin::Process(long inFrames, long& outOutputCount)
{
    outOutputCount = mOutputCount;
    float** const buffers = ChannelBuffers();
    if (mState == kStateInitialized && buffers != nullptr)
        CallReplacing(buffers, buffers, inFrames);
    return buffers;
}

float** CVst2Plugin::Process()
{
    long outputCount = 0;
    return Process(GetBlockSize(), outputCount);
}

inline void CVst2Plugin::SetEvent(long inSlot, std::uint32_t inMidiBytes, std::int32_t inOffset)
{
    const auto slot = static_cast<std::size_t>(inSlot);
    VstMidiEvent& event = mMidiEvents[slot];
    event.type = kVstMidiType;
    event.byteSize = sizeof(VstMidiEvent);
    event.deltaFrames = inOffset;
    std::memcpy(event.midiData, &inMidiBytes, sizeof(event.midiData));
    event.detune = 0;
    // Set again each time: plug-ins sort the pointers in place.
    mEventBlock.mEvents[slot] = &event;
}

void CVst2Plugin::DeliverEvents(long inCount, const unsigned long* inMessages, const unsigned long* inOffsets)
{
    const long count = std::min(inCount, kMaxEvents);
    if (count <= 0)
        return;
    long i = 0;
    if (inOffsets != nullptr)
        do
        {
            SetEvent(i, static_cast<std::uint32_t>(inMessages[i]), static_cast<std::int32_t>(inOffsets[i]));
        } while (++i < count);
    else
        do
        {
            SetEvent(i, static_cast<std::uint32_t>(inMessages[i]), 0);
        } while (++i < count);
    if (AcceptsMidi() && mEffect != nullptr)
        (void)Dispatch(effProcessEvents, 0, 0, EventBlock()); // the interface gives the result no meaning
}

void CVst2Plugin::ProcessEvents(std::span<const SMidiMsg> inMessages)
{
    if (!AcceptsMidi())
        return;
    long filled = 0;
    const std::size_t examined = std::min(inMessages.size(), static_cast<std::size_t>(kMaxEvents));
    for (const SMidiMsg& message : inMessages.first(examined))
    {
        if (message.mTarget < 0 || message.mTarget == GetMasterIndex())
        {
            std::uint32_t midiBytes = 0;
            std::memcpy(&midiBytes, message.mMidiBytes.data(), sizeof(midiBytes));
            SetEvent(filled++, midiBytes, 0);
        }
    }
    mEventBlock.mNumEvents = static_cast<std::int32_t>(filled);
    ProcessEvents(EventBlock());
}

void CVst2Plugin::ProcessEvents(VstEvents* inEvents)
{
    if (AcceptsMidi() && mEffect != nullptr && inEvents->numEvents > 0)
        (void)Dispatch(effProcessEvents, 0, 0, inEvents); // the interface gives the result no meaning
}

VstEvents* CVst2Plugin::EventBlock()
{
    static_assert(std::is_standard_layout_v<SEventBlock>);
    static_assert(offsetof(SEventBlock, mNumEvents) == offsetof(VstEvents, numEvents));
    static_assert(offsetof(SEventBlock, mEvents) == offsetof(VstEvents, events));
    return reinterpret_cast<VstEvents*>(&mEventBlock);
}
