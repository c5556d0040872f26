#pragma once
#include "Tools/aaxhost/player/CPlayhead.h"
#include "Tools/aaxhost/player/MidiFile.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

/** What the command line says of the transport. */
struct STransportOptions
{
    std::optional<double> mTempo; // beats per minute
    std::string mTempoMap;        // a file
    std::optional<SMeter> mMeter;
    std::optional<SLoop> mLoop;
    std::vector<SJump> mJumps; // in the order of their times
    bool mStopped = false;
};

inline constexpr double kLowestTempo = 1.0; // beats per minute
inline constexpr double kHighestTempo = 999.0;

/** @param outOptions lives until the command line is read. */
void AddTransportOptions(CLI::App& ioCommand, STransportOptions& outOptions);

/** The tempo and the meter of the options; where they say nothing those of the song. */
COutcome<CTimeline> MakeTimeline(const STransportOptions& inOptions, const SMidiSong& inSong);
