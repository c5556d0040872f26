#pragma once
#include "Tools/aaxhost/player/AudioFile.h"
#include "Tools/aaxhost/player/AutomationCurve.h"
#include "Tools/aaxhost/player/CPlayhead.h"
#include "Tools/aaxhost/player/MidiFile.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

class CInstance;
class CPostedMidi;

struct SAutomationLane
{
    std::string mParameterID;
    CAutomationCurve mCurve;
};

/** What to render. */
struct SRenderJob
{
    std::int64_t mFrames = 0;
    std::int64_t mMostTailFrames = 0; // as many more at most, until the outputs have been silent for a second
    double mRate = 44100.0;           // Hz; the rate that the instance was made with
    std::int32_t mBlockFrames = 512;  // 1 to SRenderCall::kBufferFrames
    CTimeline mTimeline;
    std::optional<SLoop> mLoop;
    std::vector<SJump> mJumps;      // in the order of the times
    bool mCompensates = false;      // as many frames more as the module tells that its sound is late
    double mTimerRate = 30.0;       // timer calls in a second of sound; 0: none, as hosts do offline
    bool mPlaying = true;           // stopped: the position stays where it is
    const SAudio* mInput = nullptr; // null: silence. One channel feeds all inputs
    std::vector<SMidiEvent> mMidi;  // in the order of the times
    std::vector<SAutomationLane> mAutomation;
    CPostedMidi* mMidiOutput = nullptr; // gets what the module posts to its output node
};

/** How a render ended. */
struct SRenderEnd
{
    std::int64_t mFrames = 0;  // rendered, with the tail and with what makes up for the latency
    std::int64_t mLatency = 0; // of these, as many that only make up for it; the value that was told last
    bool mIsSilent = false;    // the tail came to silence
    std::vector<SPassage> mPassages;
};

/** A longer latency is not made up for, in seconds. */
inline constexpr double kMostCompensated = 10.0;

/** Gets every rendered block; what it answers other than success ends the render. */
using RenderSink =
    std::function<COutcome<SDone>(std::span<const float* const> channels, std::int32_t frames)>;
/** Gets the number of frames done so far. */
using RenderProgress = std::function<void(std::int64_t framesDone)>;

/** The highest absolute sample that counts as silence in a tail: -120 dB of full scale. */
inline constexpr float kSilence = 1e-6F;

/**
 * Renders as fast as the instance can. A MIDI event falls on the frame nearest to its time. Automation and
 * tempo are those at the start of each block, as in a host with a fixed block size: a change inside of a
 * block is heard of with the next one, the position in quarter notes is exact at each start. A block ends
 * where the position jumps. Sound, MIDI events and automation follow the time of the file, whatever the
 * transport does. A tail ends on the frame that completes a second of silence, whatever the block size.
 */
COutcome<SRenderEnd> RenderOffline(CInstance& inInstance, const SRenderJob& inJob, const RenderSink& inSink,
                                   const RenderProgress& inProgress = {});
