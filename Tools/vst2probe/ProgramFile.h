#pragma once
#include "Tools/support/COutcome.h"

#include <chrono>
#include <filesystem>
#include <string>

/** One preset or bank file to be written from, or read into, a plug-in. */
struct SProgramFileJob
{
    std::filesystem::path mPlugin; // absolute
    std::filesystem::path mFile;
    bool mIsBank = false;
    bool mIsLoad = false;
    std::chrono::milliseconds mLimit{};
};

/**
 * Does it in a child process. A file that is written appears whole or not at all.
 * @param inProgram  vst2probe, which the child runs.
 * @return what there is to print: after a load the parameters as the plug-in has them.
 * Throws std::system_error when no process can be made.
 */
COutcome<std::string> RunProgramFileJob(const std::string& inProgram, const SProgramFileJob& inJob);

/** The child's side: does it, tells of it and ends the process. */
[[noreturn]] void RunProgramFileChild(const SProgramFileJob& inJob);

/** The hidden flag that makes this program the child. */
inline constexpr const char* kProgramFileChildFlag = "--child";
