#pragma once
#include "Tools/support/CChildProcess.h"
#include "Tools/support/CTemporaryFolder.h"

/**
 * A copy of this process that does some work and hands over a text. It has no standard input, output or
 * error, a fresh home folder that goes with it, and a process group of its own of which nothing is left when
 * this object goes.
 *
 * This process may have one thread only. Nothing that the work does reaches it but the text.
 */
class CChildRun
{
public:
    /** @param inSeconds at most, from now on. Throws where no folder, pipe or process is to be had. */
    CChildRun(const std::function<std::string()>& inWork, double inSeconds);

    /** Waits a moment for its end. @return nothing where it goes on. */
    std::optional<SChildEnd> TakeEnd(std::chrono::milliseconds inLongest);

private:
    void ReadReport(CChildProcess::Clock::time_point inUntil);

    CTemporaryFolder mHome;
    const CChildProcess::Clock::time_point mDeadline;
    CChildProcess mChild;
    std::string mBytes; // of its report so far
    bool mIsClosed = false;
};

/** Has a copy of this process do the work, and waits for it. */
SChildEnd RunInChild(const std::function<std::string()>& inWork, double inSeconds);
