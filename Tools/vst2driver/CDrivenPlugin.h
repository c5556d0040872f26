#pragma once
#include "Interfaces/VST2/HostAnswers.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

class IPluginImage;

/** A MIDI message. */
struct SPluginEvent
{
    std::int32_t mOffset; // frames from the start of the block
    std::array<std::uint8_t, 4> mBytes;
};

/** @return the answer, or nothing for that of HostAnswers.h. Called on any thread; must not throw. */
using HostAnswer = std::function<std::optional<VstIntPtr>(const SHostCall&)>;

/**
 * A VST 2 plug-in called directly, with no module between: what a module is compared with, and what a tool
 * asks a plug-in through. It is opened as a module opens it, and its calls are answered as a module's are.
 *
 * Threads: one at a time; the plug-in may call its host on any. Any number may be alive at once. An exception
 * of the plug-in's passes, but for one while this object goes. The plug-in's code stays loaded.
 */
class CDrivenPlugin
{
public:
    static constexpr std::int32_t kMaxFrames = 1024; // of a block, as a module announces it
    /** Far above what any plug-in has: a nonsensical count must not become a huge list. */
    static constexpr std::int32_t kMaxChannels = 4096;

    /**
     * @param inEntryVersion the host's version inside the entry function.
     * @param inAnswer       is asked first, but for the time, which is asked for in the midst of rendering.
     */
    explicit CDrivenPlugin(VstIntPtr inEntryVersion = 0, HostAnswer inAnswer = nullptr);
    CDrivenPlugin(const CDrivenPlugin&) = delete;
    CDrivenPlugin& operator=(const CDrivenPlugin&) = delete;
    ~CDrivenPlugin();

    // Each says why it went no further, as the part of a sentence behind the plug-in's name; empty: it did.
    /** Loads its code. @param inPath absolute, of a file or bundle. */
    [[nodiscard]] std::string Load(const std::string& inPath);
    /** Calls its entry function, once it is loaded. */
    [[nodiscard]] std::string Enter();
    /** Loads, enters and starts it. */
    [[nodiscard]] std::string Open(const std::string& inPath, float inSampleRate);

    // What follows is for a plug-in that was entered.
    /** Opens it and switches it on. @param inSampleRate Hz. */
    void Start(float inSampleRate);
    /** Switches it off and closes it; nothing is asked of it any more. Without this, the destructor does it.
     */
    void Close();

    AEffect& Effect() { return *mEffect; }
    VstIntPtr Dispatch(std::int32_t inOpcode, std::int32_t inIndex = 0, VstIntPtr inValue = 0,
                       void* inPointer = nullptr, float inOpt = 0.0F);
    /** The text that it writes for an opcode, of 1,023 bytes at most. */
    std::string Text(std::int32_t inOpcode, std::int32_t inIndex = 0);
    bool CanDo(std::string inText); // a copy: some plug-ins write into it
    /** Empty where it describes no such output. */
    std::string OutputLabel(std::int32_t inChannel);
    /** Nothing where it says nothing of the parameter. */
    std::optional<VstParameterProperties> ParameterProperties(std::int32_t inIndex);
    float GetParameter(std::int32_t inIndex);
    void SetParameter(std::int32_t inIndex, float inValue);
    /** @param inScope 0 for the bank, 1 for the program. @return the state, a copy; empty where it gives
     * none. */
    std::vector<char> GetChunk(std::int32_t inScope);
    /** @return whether it says that it took the state. */
    bool SetChunk(std::int32_t inScope, std::span<char> inChunk);

    /** For the next block. They stay alive until others are sent. Sends nothing where there are none. */
    void SendEvents(std::span<const SPluginEvent> inEvents);
    /** From now on sending as many allocates nothing. */
    void ReserveEvents(std::size_t inCount);
    /** What it is told of the transport; Process() moves the position on. */
    VstTimeInfo& Time() { return mTime; }
    /** Whether it has asked for that. */
    bool HasAskedForTime() const { return mHasAskedForTime.load(std::memory_order_relaxed); }
    /** Of one channel, kMaxFrames long, once it was started; silent until written to. */
    std::span<float> Input(std::size_t inChannel) { return mInputs.mChannels[inChannel]; }
    std::span<const float> Output(std::size_t inChannel) const { return mOutputs.mChannels[inChannel]; }
    std::size_t InputCount() const { return mInputs.mChannels.size(); }
    std::size_t OutputCount() const { return mOutputs.mChannels.size(); }
    /** Renders a block of at most kMaxFrames from the inputs into the outputs. Allocates nothing. @return
     * false when the plug-in has no function for it. */
    bool Process(std::int32_t inFrames);
    /** Bytes of the inputs and outputs, which are this object's and not the plug-in's. */
    std::size_t BufferBytes() const;

private:
    struct SBuffers
    {
        void Resize(std::int32_t inCount);
        std::vector<std::vector<float>> mChannels;
        std::vector<float*> mPointers;
    };

    static VstIntPtr HostCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                  VstIntPtr inValue, void* inPointer, float inOpt) noexcept;
    static CDrivenPlugin* FindOwner(const AEffect* inEffect) noexcept;
    VstIntPtr Answer(const SHostCall& inCall) const;

    const VstIntPtr mEntryVersion;
    const HostAnswer mAnswer;
    std::unique_ptr<IPluginImage> mImage;
    VstPluginEntryProc mEntry = nullptr;
    std::atomic<AEffect*> mEffect = nullptr; // the driving thread writes, the plug-in's calls read on any
    bool mIsOn = false;
    std::atomic<bool> mHasAskedForTime = false; // the plug-in's calls write on any thread
    VstTimeInfo mTime = InitialTimeInfo(0.0);
    std::vector<VstMidiEvent> mEvents;
    std::vector<VstIntPtr> mEventList; // a VstEvents as long as it takes
    SBuffers mInputs;
    SBuffers mOutputs;
};
