#pragma once
#include "Tools/vst2probe/ProbePlugin.h"

#include <string>
#include <vector>

/** The options of a product that somebody has chosen. */
struct SExpectedProduct
{
    std::int32_t entryVersion = 0;
    bool portsFromCounts = false;
    bool midiInput = false;
};

/** What came of trying a plug-in with a product's options. */
struct SExpectation
{
    std::string refusal;               // empty: it loads; else a part of a sentence, with what would help
    std::vector<std::string> warnings; // sentences: it loads, but what it does then is hardly what is wanted
};

/**
 * Tries a plug-in from a child process as a product would load it. Parameters and errors are those of
 * ProbePlugin().
 */
SExpectation TryProduct(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        const SExpectedProduct& inExpected, std::chrono::milliseconds inLimit);
