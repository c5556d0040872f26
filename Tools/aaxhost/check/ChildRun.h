#pragma once
#include <functional>
#include <string>

/** How a piece of work in a process of its own ended. */
struct SChildEnd
{
    enum class EKind
    {
        Finished, // with mText
        Signal,   // mNumber: which
        Exit,     // without a word; mNumber: the exit code
        Limit,    // still running then
        NotStarted
    };
    EKind mKind = EKind::NotStarted;
    int mNumber = 0;
    std::string mText; // what the work returned
};

/**
 * Copies this process, has the copy do the work, and waits for it at most inSeconds. The copy has no standard
 * input, output or error, a fresh home folder that goes with it, and a process group of its own of which
 * nothing is left when this returns.
 *
 * This process may have one thread only. Nothing that the work does reaches it but the text.
 */
SChildEnd RunInChild(const std::function<std::string()>& inWork, double inSeconds);

/** "segmentation fault (signal 11)". */
std::string NameOfSignal(int inSignal);
