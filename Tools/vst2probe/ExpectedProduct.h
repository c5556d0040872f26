#pragma once
#include "Tools/vst2probe/ProbedOptions.h"

#include <string>
#include <vector>

/** What came of trying a plug-in with a product's options. */
struct SExpectation
{
    std::string refusal;               // empty: it loads; else a part of a sentence, with what would help
    std::vector<std::string> warnings; // sentences: it loads, but what it does then is hardly what is wanted
};

/**
 * Tries a plug-in from a child process as a product would load it. Parameters and errors are those of
 * ProbePlugin().
 * @param inExpected the product's options, each of ProbedOptions().
 */
SExpectation TryProduct(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        const OptionValues& inExpected, std::chrono::milliseconds inLimit);
