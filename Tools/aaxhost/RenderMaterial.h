#pragma once
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/TransportOptions.h"
#include "Tools/aaxhost/host/CHostAutomation.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/aaxhost/player/Renderer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** What the command line of `render` asks for. */
struct SRenderOptions
{
    std::string mModule;
    std::string mOutput;
    std::string mInput;
    std::string mMidi;
    std::optional<double> mSeconds;
    std::optional<int> mRate; // Hz
    int mBlock = 512;         // frames
    STransportOptions mTransport;
    double mMostTailSeconds = 0.0; // 0: no tail
    double mTimerRate = 30.0;      // in a second of sound; 0: none
    bool mCompensates = false;     // makes up for the latency
    std::string mMidiOutput;
    bool mMainOnly = false;
    std::string mState;
    std::string mSaveState;
    EAnswers mAnswers = EAnswers::Late;
    std::vector<std::string> mSets;        // PARAMETER=VALUE
    std::vector<std::string> mAutomations; // PARAMETER=FILE
    std::optional<double> mBypassAt;       // seconds
    std::string mStems;                    // as `SInstanceOptions` has it
};

/** What the files that the options name hold. */
struct SRenderMaterial
{
    std::optional<SAudio> mInput;
    SMidiSong mMidi;
    CTimeline mTimeline;
    std::vector<SAutomationLane> mAutomation;
    std::optional<SInstanceState> mState;
    int mRate = 44100; // Hz
};

COutcome<SRenderMaterial> ReadMaterial(const SRenderOptions& inOptions);

/** As long as asked for; else as the longest of what is played, with time for notes to fade unless a tail
 * follows. */
std::int64_t LengthInFrames(const SRenderOptions& inOptions, const SRenderMaterial& inMaterial);
