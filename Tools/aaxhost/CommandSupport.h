#pragma once
#include "Tools/support/COutcome.h"

#include <string>

/** What every command of the tool shares: exit codes, messages, progress. */

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1; // a failed check, a refused module, an unreadable file
inline constexpr int kExitUsage = 2;   // wrong usage
inline constexpr int kExitUnknown = 3; // whether it would fail could not be told

class CInstance;

/** Says the sentence on standard error. @return kExitFailure. */
int Fail(const SProblem& inProblem);
/** Says the sentence on standard error. @return kExitUsage. */
int FailUsage(const std::string& inSentence);
/** Writes a file whose text is made already; replaces one that is there. */
COutcome<SDone> WriteText(const std::string& inPath, const std::string& inText);

/** `ID=REST`, cut at the first `=`. */
struct SAssignment
{
    std::string mID;
    std::string mRest;
};
/** @param inText what Assignment() of `CommandOptions.h` has taken. */
SAssignment SplitAssignment(const std::string& inText);

/** The host's next cycle, in which what was set or loaded is answered. */
COutcome<SDone> RunCycle(CInstance& inInstance);

/** A bar on standard error while it is a terminal and the work takes long; nothing otherwise. */
class CProgressBar
{
public:
    explicit CProgressBar(double inTotal);
    CProgressBar(const CProgressBar&) = delete;
    CProgressBar& operator=(const CProgressBar&) = delete;
    ~CProgressBar(); // takes the bar away

    void Show(double inDone);
    /** Makes room for a line of text; the next Show brings it back. */
    void Hide();

private:
    double mTotal = 0.0;
    int mLastPercent = -1;
    bool mOnTerminal = false;
};
