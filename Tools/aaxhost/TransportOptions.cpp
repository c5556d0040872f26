#include "Tools/aaxhost/TransportOptions.h"

#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/player/ParseNumber.h"
#include "Tools/aaxhost/player/PointFile.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <utility>

namespace
{
constexpr SPointForm kTempoForm{"tempo file", "tempo", "1.5,96.25", kLowestTempo, kHighestTempo};
constexpr double kHighestNumber = 86400.0; // of seconds and of quarter notes
constexpr int kMostBeats = 99;
constexpr int kMostDivided = 32;

/** Two numbers with a sign between them; nothing for any other text. */
std::optional<std::pair<double, double>> ParsePair(const std::string& inText, char inBetween)
{
    const std::size_t at = inText.find(inBetween);
    if (at == std::string::npos)
        return std::nullopt;
    const auto first = ParseNumber(inText.substr(0, at));
    const auto second = ParseNumber(inText.substr(at + 1));
    const auto fits = [](std::optional<double> number)
    { return number && *number >= 0.0 && *number <= kHighestNumber; };
    if (!fits(first) || !fits(second))
        return std::nullopt;
    return std::pair(*first, *second);
}

std::optional<SMeter> ParseMeter(const std::string& inText)
{
    const auto pair = ParsePair(inText, '/');
    const auto isWhole = [](double number, double most)
    { return number >= 1.0 && number <= most && number == std::floor(number); };
    if (!pair || !isWhole(pair->first, kMostBeats) || !isWhole(pair->second, kMostDivided))
        return std::nullopt;
    const SMeter meter{static_cast<std::int32_t>(pair->first), static_cast<std::int32_t>(pair->second)};
    const bool isPowerOfTwo = (meter.mDenominator & (meter.mDenominator - 1)) == 0;
    return isPowerOfTwo ? std::optional(meter) : std::nullopt;
}

std::optional<SLoop> ParseLoop(const std::string& inText)
{
    const auto pair = ParsePair(inText, ':');
    return pair && pair->second > pair->first ? std::optional(SLoop{pair->first, pair->second})
                                              : std::nullopt;
}

std::optional<SJump> ParseJump(const std::string& inText)
{
    const auto pair = ParsePair(inText, ':');
    return pair ? std::optional(SJump{pair->first, pair->second}) : std::nullopt;
}

/** Takes what the parser takes. @param inForm what it takes, in words. */
template <class Parser>
CLI::Validator Parsed(Parser inParser, const char* inForm)
{
    const auto check = [=](const std::string& text)
    { return inParser(text) ? std::string() : fmt::format("'{}' is not {}.", text, inForm); };
    return CLI::Validator(check, "");
}

/** The first tempo holds from the very start, as the first value of an automation does. */
std::vector<STempoChange> TemposOf(const std::vector<SPoint>& inPoints)
{
    std::vector<STempoChange> tempos{{0.0, inPoints.front().mValue}};
    for (const SPoint& point : inPoints)
        tempos.push_back({point.mSeconds, point.mValue});
    return tempos;
}
} // namespace

void AddTransportOptions(CLI::App& ioCommand, STransportOptions& outOptions)
{
    ioCommand
        .add_option("--tempo", outOptions.mTempo,
                    "Beats per minute of the transport; otherwise the MIDI file's or 120")
        ->check(NumberFrom(kLowestTempo, kHighestTempo));
    ioCommand
        .add_option("--tempo-map", outOptions.mTempoMap,
                    "Lines seconds,beats per minute in place of one tempo: each holds up to the next line")
        ->type_name("FILE.csv");
    ioCommand
        .add_option_function<std::string>(
            "--meter", [&outOptions](const std::string& text) { outOptions.mMeter = ParseMeter(text); },
            "The meter of the transport; otherwise the MIDI file's or 4/4")
        ->type_name("N/D")
        ->check(Parsed(&ParseMeter, "a meter like 7/8: 1 to 99 beats of 1, 2, 4, 8, 16 or 32"));
    ioCommand
        .add_option_function<std::string>(
            "--loop", [&outOptions](const std::string& text) { outOptions.mLoop = ParseLoop(text); },
            "In quarter notes: the transport goes on at A when it comes to B; the input, the notes and "
            "the automation go on with the file")
        ->type_name("A:B")
        ->check(Parsed(&ParseLoop, "a loop like 4:8.5, in quarter notes, that ends after it begins"));
    ioCommand
        .add_option_function<std::vector<std::string>>(
            "--jump",
            [&outOptions](const std::vector<std::string>& texts)
            {
                for (const std::string& text : texts)
                    outOptions.mJumps.push_back(ParseJump(text).value_or(SJump())); // it was checked
                std::ranges::stable_sort(outOptions.mJumps, {}, &SJump::mAtSeconds);
            },
            "In seconds: at AT of the file the transport is moved to TO")
        ->type_name("AT:TO")
        ->allow_extra_args(false)
        ->check(Parsed(&ParseJump, "a jump like 2.5:0, in seconds of the file and of the transport"));
    ioCommand.add_flag("--stopped", outOptions.mStopped, "Leave the transport stopped");
}

COutcome<CTimeline> MakeTimeline(const STransportOptions& inOptions, const SMidiSong& inSong)
{
    std::vector<STempoChange> tempos = inSong.mTempos;
    if (inOptions.mTempo)
        tempos = {{0.0, *inOptions.mTempo}};
    if (!inOptions.mTempoMap.empty())
    {
        const auto points = ReadPointFile(inOptions.mTempoMap, kTempoForm);
        if (!points)
            return points.Problem();
        tempos = TemposOf(*points);
    }
    std::vector<SMeterChange> meters = inSong.mMeters;
    if (inOptions.mMeter)
        meters = {{0.0, *inOptions.mMeter}};
    return CTimeline(tempos, meters);
}
