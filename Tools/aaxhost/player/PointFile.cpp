#include "Tools/aaxhost/player/PointFile.h"

#include "Tools/aaxhost/player/ParseNumber.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <utility>

namespace
{
std::string_view Trimmed(std::string_view inText)
{
    const auto first = inText.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return inText.substr(first, inText.find_last_not_of(" \t\r") - first + 1);
}

/** Whether it names its columns, as spreadsheets do it in a first line. */
bool IsHeader(std::string_view inLine)
{
    const auto comma = inLine.find(',');
    const auto isWord = [](std::string_view text) {
        return !text.empty() &&
               (std::isalpha(static_cast<unsigned char>(text.front())) || text.front() == '"');
    };
    return comma != std::string_view::npos && isWord(inLine) && isWord(Trimmed(inLine.substr(comma + 1)));
}

/** Whether the numbers of the line look like 0,5 in place of 0.5. */
bool HasDecimalCommas(std::string_view inLine)
{
    const bool manyCommas = std::count(inLine.begin(), inLine.end(), ',') > 1;
    const bool onlyCommas = inLine.find_first_not_of("0123456789, \t-+") == std::string_view::npos;
    return inLine.find(';') != std::string_view::npos || (manyCommas && onlyCommas);
}

/** @return what is wrong with the line, empty when a point was read. */
std::string ReadPoint(std::string_view inLine, const SPointForm& inForm, SPoint& outPoint)
{
    if (HasDecimalCommas(inLine))
        return fmt::format("has decimal commas or semicolons: write seconds,{} with decimal points, as in {}",
                           inForm.mValue, inForm.mExample);
    const auto comma = inLine.find(',');
    if (comma == std::string_view::npos)
        return fmt::format("is not of the form seconds,{}", inForm.mValue);
    const auto seconds = ParseNumber(std::string(Trimmed(inLine.substr(0, comma))));
    const auto value = ParseNumber(std::string(Trimmed(inLine.substr(comma + 1))));
    if (!seconds || !value)
        return "does not hold two numbers";
    if (*seconds < 0.0)
        return "has a time below 0";
    if (*value < inForm.mLowest || *value > inForm.mHighest)
        return fmt::format("has a {} outside of {} to {}", inForm.mValue, inForm.mLowest, inForm.mHighest);
    outPoint = {*seconds, *value};
    return {};
}
} // namespace

COutcome<std::vector<SPoint>> ParsePoints(std::string_view inText, const SPointForm& inForm)
{
    if (inText.starts_with("\xFF\xFE") || inText.starts_with("\xFE\xFF"))
        return SProblem{"The text is UTF-16: save it as UTF-8."};
    if (constexpr std::string_view mark = "\xEF\xBB\xBF"; inText.starts_with(mark))
        inText.remove_prefix(mark.size());
    std::vector<SPoint> points;
    int lineNumber = 0;
    bool mayBeHeader = true;
    while (!inText.empty())
    {
        const auto end = inText.find('\n');
        const std::string_view line = Trimmed(inText.substr(0, end));
        inText = end == std::string_view::npos ? std::string_view() : inText.substr(end + 1);
        ++lineNumber;
        if (line.empty() || line.front() == '#')
            continue;
        if (std::exchange(mayBeHeader, false) && IsHeader(line))
            continue;
        SPoint point;
        if (const std::string fault = ReadPoint(line, inForm, point); !fault.empty())
            return SProblem{fmt::format("Line {} {}.", lineNumber, fault)};
        if (!points.empty() && point.mSeconds < points.back().mSeconds)
            return SProblem{fmt::format("Line {} goes back in time.", lineNumber)};
        points.push_back(point);
    }
    if (points.empty())
        return SProblem{"There is no point."};
    return points;
}

COutcome<std::vector<SPoint>> ReadPointFile(const std::string& inPath, const SPointForm& inForm)
{
    std::ifstream file(inPath, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad())
        return SProblem{fmt::format("The {} '{}' cannot be read.", inForm.mFile, inPath)};
    auto points = ParsePoints(text, inForm);
    if (!points)
        return SProblem{
            fmt::format("The {} '{}' is wrong: {}", inForm.mFile, inPath, points.Problem().mSentence)};
    return points;
}
