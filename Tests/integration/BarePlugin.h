#pragma once
#include "Interfaces/VST2/AEffect.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

/** One MIDI message of a block. */
struct SBareEvent
{
    std::uint32_t mOffset; // samples from the start of the block
    std::uint8_t mBytes[4];
};

/**
 * A VST 2 plug-in called directly, with nothing of this project between: what the module's rendering is
 * compared with.
 *
 * Answers the plug-in's calls as a module of the given entry version does.
 */
class CBarePlugin
{
public:
    static constexpr std::int32_t kMaxFrames = 1024;

    /** Throws std::runtime_error when the plug-in cannot be loaded. Initialises it twice, as an instance
     * does. */
    CBarePlugin(const std::filesystem::path& inFile, std::int32_t inEntryVersion, float inSampleRate);
    CBarePlugin(const CBarePlugin&) = delete;
    CBarePlugin& operator=(const CBarePlugin&) = delete;
    ~CBarePlugin();

    AEffect& Effect() { return *mEffect; }
    VstTimeInfo& Time() { return mTime; }
    void SendEvents(std::span<const SBareEvent> inEvents);
    /** Channel-major in and out; each output gets `inFrames` more samples. */
    void Render(std::span<const std::vector<float>> inInputs, std::size_t inFirstFrame, std::int32_t inFrames,
                std::vector<std::vector<float>>& ioOutputs);

private:
    static VstIntPtr Callback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                              VstIntPtr inValue, void* inPointer, float inOpt);
    void Initialize(float inSampleRate);
    VstIntPtr Dispatch(std::int32_t inOpcode, VstIntPtr inValue = 0, void* inPointer = nullptr,
                       float inOpt = 0.0F);

    std::int32_t mEntryVersion = 0;
    void* mLibrary = nullptr;
    AEffect* mEffect = nullptr;
    VstTimeInfo mTime{};
    std::vector<VstMidiEvent> mEvents;
    std::vector<std::byte> mEventBlock;
    std::vector<std::vector<float>> mInputs;
    std::vector<std::vector<float>> mOutputs;
};
