#pragma once
#include <string>

/** @return the file of the plug-in with that fault: a function in this folder. */
inline std::string Faulty(const std::string& inFault) { return FAULTY_PLUGINS "/faulty_" + inFault + ".so"; }
