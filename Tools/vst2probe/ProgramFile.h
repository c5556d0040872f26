#pragma once
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

/** One preset or bank file to be written from, or read into, a plug-in. */
struct SProgramFileJob
{
    std::filesystem::path plugin; // absolute
    std::filesystem::path file;
    bool isBank = false;
    bool isLoad = false;
    std::chrono::milliseconds limit{};
};

/**
 * Does it in a child process.
 * @param outText  what there is to print: after a load the parameters as the plug-in has them.
 * @return why it was not done, the part of a sentence behind the plug-in's name; nothing: it was done.
 */
std::optional<std::string> RunProgramFileJob(const std::string& inProgram, const SProgramFileJob& inJob,
                                             std::string& outText);

/** The child's side: does it, tells of it and ends the process. */
[[noreturn]] void RunProgramFileChild(const SProgramFileJob& inJob);

/** The hidden flag that makes this program the child. */
inline constexpr const char* kProgramFileChildFlag = "--child";
