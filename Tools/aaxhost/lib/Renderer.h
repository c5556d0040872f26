#pragma once
#include "Tools/aaxhost/lib/AudioFile.h"
#include "Tools/aaxhost/lib/AutomationCurve.h"
#include "Tools/aaxhost/lib/MidiFile.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

class CInstance;

struct SAutomationLane
{
    std::string mParameterID;
    CAutomationCurve mCurve;
};

/** What to render. */
struct SRenderJob
{
    std::int64_t mFrames = 0;
    double mRate = 44100.0;          // Hz; the rate that the instance was made with
    std::int32_t mBlockFrames = 512; // 1 to SRenderCall::kBufferFrames
    double mTempo = 120.0;           // beats per minute
    bool mPlaying = true;            // stopped: the position stays 0
    const SAudio* mInput = nullptr;  // null: silence. One channel feeds all inputs
    std::vector<SMidiEvent> mMidi;   // in the order of the times
    std::vector<SAutomationLane> mAutomation;
};

/** Gets every rendered block; what it answers other than success ends the render. */
using RenderSink =
    std::function<COutcome<SDone>(std::span<const float* const> channels, std::int32_t frames)>;
/** Gets the number of frames done so far. */
using RenderProgress = std::function<void(std::int64_t framesDone)>;

/**
 * Renders as fast as the instance can. A MIDI event falls on the frame nearest to its time; automation is
 * evaluated at the start of each block.
 */
COutcome<SDone> RenderOffline(CInstance& inInstance, const SRenderJob& inJob, const RenderSink& inSink,
                              const RenderProgress& inProgress = {});
