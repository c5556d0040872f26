#pragma once
#include "Interfaces/VST2/AEffect.h"

#include <cstring>

// What every host side of this project tells a plug-in, whoever it loads it for: the module, the inspector,
// and the driver that the module is compared with. What an answer leads to besides stands with each of them.

/** Who makes a host call. */
enum class EHostCaller
{
    kLoaded,   // a plug-in whose entry function has returned
    kUnmatched // anybody else, in particular whoever calls inside an entry function
};

/** A host call: who makes it, and what comes with it. */
struct SHostCall
{
    EHostCaller mCaller;
    std::int32_t mOpcode;
    std::int32_t mIndex;
    VstIntPtr mValue;
    void* mPointer;
    float mOpt;
};

/** The answer to `audioMasterVersion` once a plug-in is loaded. */
inline constexpr VstIntPtr kHostVersion = 2400;

/** Copies a text with its terminator, where one is wanted. @return 0, as such calls are answered. */
template <std::size_t Size>
VstIntPtr GiveText(const char (&inText)[Size], void* outText) noexcept
{
    static_assert(Size <= 64, "the interface has room for that much");
    if (outText != nullptr)
        std::memcpy(outText, inText, Size);
    return 0;
}

/**
 * Answers a host call as far as that needs nothing but constants; one row a call.
 *
 * @param outText         what came with the call; gets a text, at most 64 bytes of it; null: none is wanted.
 * @param inEntryVersion  what only an unmatched caller hears for the host's version: a product's option.
 * @return what the plug-in gets; 0 for whatever has no row. Threads: any. Takes no lock, allocates nothing.
 */
inline VstIntPtr AnswerHostCall(EHostCaller inCaller, std::int32_t inOpcode, void* outText,
                                VstIntPtr inEntryVersion = 0) noexcept
{
    const bool isLoaded = inCaller == EHostCaller::kLoaded;
    switch (inOpcode)
    {
    case audioMasterVersion: return isLoaded ? kHostVersion : inEntryVersion;
    case audioMasterGetProductString: return GiveText("IsmAaxVstHost", outText);
    case audioMasterUpdateDisplay: return isLoaded ? 1 : 0;
    // Sample rate and block size too: plug-ins learn them from effSetSampleRate, effSetBlockSize and the time
    // info.
    default: return 0;
    }
}

/** The time information before a host has said anything of its transport. */
inline VstTimeInfo InitialTimeInfo(double inSampleRate) noexcept
{
    VstTimeInfo time{};
    time.sampleRate = inSampleRate;
    time.tempo = 120.0;
    time.timeSigNumerator = 4;
    time.timeSigDenominator = 4;
    time.smpteFrameRate = 25; // frames per second, not one of the interface's frame-rate codes
    time.flags = kVstTransportPlaying | kVstTempoValid;
    return time;
}
