#pragma once
#include <string>

/**
 * Says why loading a plug-in just failed, from its file and from what the system's loader said last. On the
 * thread that tried.
 *
 * @return the part of a sentence behind the plug-in's name.
 */
std::string LoadFault(const std::string& inPlugin);
