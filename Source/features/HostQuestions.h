#pragma once
#include "Interfaces/VST2/HostAnswers.h"

#include <optional>

/** What a plug-in can be told about its host and instance. */
struct SHostFacts
{
    float mSampleRate = 0.0F;    // Hz
    std::int32_t mBlockSize = 0; // frames
    bool mIsRendering = false;   // whether the render call is what asks
    char* mDirectory = nullptr;  // of the plug-in file; valid while the instance lives
};

/**
 * Answers what a plug-in asks about its host.
 * @return nothing for a call that asks something else. Threads: any. Takes no lock, allocates nothing.
 */
std::optional<VstIntPtr> AnswerQuestion(const SHostCall& inCall, const SHostFacts& inFacts) noexcept;
