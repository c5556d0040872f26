#pragma once
#include <string>
#include <vector>

/**
 * @param inPlugin absolute path of a plug-in.
 * @return its executables: the file itself or, of a bundle folder, those of which the first is loaded. Empty
 * where there are none, or where only the system knows.
 */
std::vector<std::string> PluginExecutables(const std::string& inPlugin);

/**
 * Says why loading a plug-in just failed, from its file and from what the system's loader said last. On the
 * thread that tried.
 *
 * @return the part of a sentence behind the plug-in's name.
 */
std::string LoadFault(const std::string& inPlugin);
