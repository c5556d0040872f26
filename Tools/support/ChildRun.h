#pragma once
#include "Tools/support/CChildProcess.h"

/**
 * Copies this process, has the copy do the work, and waits for it at most inSeconds. The copy has no standard
 * input, output or error, a fresh home folder that goes with it, and a process group of its own of which
 * nothing is left when this returns.
 *
 * This process may have one thread only. Nothing that the work does reaches it but the text.
 */
SChildEnd RunInChild(const std::function<std::string()>& inWork, double inSeconds);
