#pragma once
#include "Tools/inspector/PluginFacts.h"
#include "Tools/vst2probe/ProductChoice.h"

#include <string>

/** @return what was found, for people. The options stand in a paragraph headed "Product options". */
std::string TextReport(const SPluginFacts& inFacts, const SProductChoice& inChoice);

/** @return the same for programs: one JSON object, one value a line. */
std::string JsonReport(const SPluginFacts& inFacts, const SProductChoice& inChoice);
