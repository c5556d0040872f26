#include "Tools/aaxhost/CommandSupport.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/lib/CInstance.h"
#include "Tools/aaxhost/lib/ParseNumber.h"
#include "Tools/support/CWholeFile.h"

#include <cmath>
#include <cstdio>
#include <fmt/format.h>
#include <map>
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

CLI::Validator NumberFrom(double inLowest, double inHighest)
{
    const auto check = [=](const std::string& text)
    {
        const auto value = ParseNumber(text);
        const bool taken = value && *value >= inLowest && *value <= inHighest;
        return taken ? std::string()
                     : fmt::format("'{}' is not a number from {} to {}.", text, inLowest, inHighest);
    };
    return CLI::Validator(check, fmt::format("{} to {}", inLowest, inHighest));
}

CLI::Validator WholeNumberFrom(int inLowest, int inHighest)
{
    const auto check = [=](const std::string& text)
    {
        const auto value = ParseNumber(text);
        const bool taken = value && *value >= inLowest && *value <= inHighest &&
                           *value == std::floor(*value) &&
                           text.find_first_not_of("0123456789") == std::string::npos;
        return taken ? std::string()
                     : fmt::format("'{}' is not a whole number from {} to {}.", text, inLowest, inHighest);
    };
    return CLI::Validator(check, fmt::format("{} to {}", inLowest, inHighest));
}

CLI::Validator Assignment()
{
    const auto check = [](const std::string& text)
    {
        const SAssignment parts = SplitAssignment(text);
        return parts.mID.empty() || parts.mRest.empty() ? fmt::format("'{}' is not of the form ID=...", text)
                                                        : std::string();
    };
    return CLI::Validator(check, "");
}

SAssignment SplitAssignment(const std::string& inText)
{
    const auto equals = inText.find('=');
    if (equals == std::string::npos)
        return {inText, {}};
    return {inText.substr(0, equals), inText.substr(equals + 1)};
}

void AddAnswersOption(CLI::App& ioCommand, EAnswers& outAnswers)
{
    std::map<std::string, EAnswers> names;
    for (const EAnswers answers : kAllAnswers)
        names.emplace(NameOfAnswers(answers), answers);
    ioCommand
        .add_option("--answers", outAnswers,
                    "When the host answers the module's requests: at-once, late or last (late)")
        ->transform(CLI::CheckedTransformer(names).description(""));
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
