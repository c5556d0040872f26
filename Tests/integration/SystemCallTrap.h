#pragma once
#include <functional>
#include <string>
#include <vector>

/** A file that a thread opened, or a program that it started, as it named it. */
struct STrappedCall
{
    int mNumber = 0; // of the system call
    std::string mPath;
};

/**
 * Runs something on a thread of its own and writes down every call with which it, or a thread that it starts,
 * opens a file, starts a program or makes a process; all of them go on as if nothing had looked.
 *
 * @return nothing where this system does not let a process watch itself; inWork was not run then.
 */
bool TrapSystemCalls(const std::function<void()>& inWork, std::vector<STrappedCall>& outCalls);
