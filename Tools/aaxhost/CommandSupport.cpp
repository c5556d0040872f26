#include "Tools/aaxhost/CommandSupport.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/support/CWholeFile.h"

#include <cstdio>
#include <fmt/format.h>
#include <unistd.h>

int Fail(const SProblem& inProblem)
{
    fmt::print(stderr, "{}\n", inProblem.mSentence);
    return kExitFailure;
}

int FailUsage(const std::string& inSentence)
{
    fmt::print(stderr, "{}\n", inSentence);
    return kExitUsage;
}

COutcome<SDone> WriteText(const std::string& inPath, const std::string& inText)
{
    return WriteWholeFile(inPath, std::as_bytes(std::span(inText)));
}

SAssignment SplitAssignment(const std::string& inText)
{
    const auto equals = inText.find('=');
    if (equals == std::string::npos)
        return {inText, {}};
    return {inText.substr(0, equals), inText.substr(equals + 1)};
}

COutcome<SDone> RunCycle(CInstance& inInstance)
{
    if (const AAX_Result result = inInstance.RunCycle())
        return SProblem{fmt::format("The instance refuses updates: GenerateCoefficients answered {}.",
                                    NameOfResult(result))};
    return SDone{};
}

CProgressBar::CProgressBar(double inTotal) : mTotal(inTotal), mOnTerminal(isatty(STDERR_FILENO) != 0) {}

CProgressBar::~CProgressBar() { Hide(); }

void CProgressBar::Hide()
{
    if (mOnTerminal && mLastPercent >= 0)
        fmt::print(stderr, "\r{:60}\r", "");
    mLastPercent = -1;
}

void CProgressBar::Show(double inDone)
{
    if (!mOnTerminal || mTotal <= 0.0)
        return;
    const int percent = static_cast<int>(100.0 * inDone / mTotal);
    if (percent == mLastPercent)
        return;
    mLastPercent = percent;
    fmt::print(stderr, "\r[{:<50}] {:3} %", std::string(static_cast<std::size_t>(percent / 2), '='), percent);
    std::fflush(stderr);
}
