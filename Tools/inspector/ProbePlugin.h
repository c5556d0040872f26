#pragma once
#include "Tools/inspector/PluginFacts.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/** What came of looking at a plug-in. Reasons are parts of a sentence, such as "its entry function ...". */
struct SProbeResult
{
    std::optional<SPluginFacts> mFacts; // nothing: refused
    std::string mRefusal;               // why, when refused
    std::int32_t mEntryVersion = 0;     // the host version that it takes inside its entry function
    bool mAskedVersion = false;         // whether it asks for one there
    std::string mRefusalOfZero;         // what it did with 0 when it needs another
};

/** What came of one look at a plug-in. */
struct SProbeAttempt
{
    std::optional<SPluginFacts> mFacts; // nothing: refused
    std::string mRefusal;               // why, when refused
    bool mAskedVersion = false;         // whether it asked for the host's version inside its entry function
};

/** The host's version that most plug-ins want to hear inside their entry function. */
inline constexpr std::int32_t kUsualEntryVersion = 2400;

/** Looks at a plug-in from a child process, once. Parameters and errors are those of ProbePlugin(). */
SProbeAttempt ProbeOnce(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        std::int32_t inEntryVersion, std::chrono::milliseconds inLimit);

/**
 * Looks at a plug-in from a child process of its own, with 0 as the host's version inside the entry function
 * and, if it asked for that and failed, with 2400.
 *
 * @param inProgram  vst2probe, which the child runs.
 * @param inPlugin   absolute path of a file or bundle.
 * @param inLimit    for each of the two attempts.
 * Throws std::system_error when no process can be made.
 */
SProbeResult ProbePlugin(const std::string& inProgram, const std::filesystem::path& inPlugin,
                         std::chrono::milliseconds inLimit);

/**
 * As above, but the child is a copy of this process, with an empty home folder. This process may have one
 * thread only. Where no process can be made the plug-in counts as refused.
 */
SProbeResult ProbePluginInCopy(const std::filesystem::path& inPlugin, std::chrono::milliseconds inLimit);

/** The child's side: looks at the plug-in, tells of it on standard output and ends the process. */
[[noreturn]] void RunProbeChild(const std::filesystem::path& inPlugin, std::int32_t inEntryVersion,
                                std::chrono::milliseconds inLimit);

/** The hidden option of vst2probe that makes it the child; its value is the entry version. */
inline constexpr const char* kProbeChildOption = "--child-with-entry-version";
