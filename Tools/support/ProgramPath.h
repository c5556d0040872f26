#pragma once
#include <string>

/** The file of this program, whatever it was called by; empty where the system does not say. */
std::string ProgramPath();
