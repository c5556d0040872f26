#pragma once
#include "Tools/inspector/PluginFacts.h"

#include <string>

/** Which CATEGORY a product of the plug-in may want, by what it says that it is and by the words in its name;
 * empty where neither tells. A guess: only its maker knows. */
std::string GuessCategory(const SPluginFacts& inFacts);
