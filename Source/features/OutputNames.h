#pragma once
#include <span>

class CVst2Plugin;

/**
 * Names an output: the plug-in's own label, or "Out 3-4" by its channels, of which the first is 1.
 * @param inFirstChannel counted from 0. @param inChannels 1 or 2. @param outName gets a terminator.
 */
void NameOutput(const CVst2Plugin& inPlugin, long inFirstChannel, long inChannels, std::span<char> outName);
