#include "Tools/aaxhost/RenderMaterial.h"

#include "Tools/aaxhost/player/StateFile.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
constexpr double kDefaultSeconds = 5.0; // when nothing else gives a length
constexpr double kMidiTailSeconds = 2.0;
} // namespace

COutcome<SRenderMaterial> ReadMaterial(const SRenderOptions& inOptions)
{
    SRenderMaterial material;
    if (!inOptions.mInput.empty())
    {
        auto audio = ReadAudioFile(inOptions.mInput);
        if (!audio)
            return audio.Problem();
        material.mInput = std::move(*audio);
        material.mRate = material.mInput->mRate;
        if (inOptions.mRate && *inOptions.mRate != material.mRate)
            return SProblem{fmt::format("'{}' is at {} Hz and cannot be rendered at {} Hz.", inOptions.mInput,
                                        material.mRate, *inOptions.mRate)};
    }
    material.mRate = inOptions.mRate.value_or(material.mRate);
    if (!inOptions.mMidi.empty())
    {
        auto midi = ReadMidiFile(inOptions.mMidi);
        if (!midi)
            return midi.Problem();
        material.mMidi = std::move(*midi);
    }
    auto timeline = MakeTimeline(inOptions.mTransport, material.mMidi);
    if (!timeline)
        return timeline.Problem();
    material.mTimeline = std::move(*timeline);
    if (!inOptions.mState.empty())
    {
        auto state = ReadStateFile(inOptions.mState);
        if (!state)
            return state.Problem();
        material.mState = std::move(*state);
    }
    for (const std::string& text : inOptions.mAutomations)
    {
        const SAssignment parts = SplitAssignment(text);
        auto curve = CAutomationCurve::ReadFile(parts.mRest);
        if (!curve)
            return curve.Problem();
        material.mAutomation.push_back({parts.mID, std::move(*curve)});
    }
    return material;
}

std::int64_t LengthInFrames(const SRenderOptions& inOptions, const SRenderMaterial& inMaterial)
{
    double seconds = 0.0;
    if (inMaterial.mInput)
        seconds = static_cast<double>(inMaterial.mInput->Frames()) / inMaterial.mRate;
    const std::vector<SMidiEvent>& events = inMaterial.mMidi.mEvents;
    if (!events.empty())
        seconds = std::max(seconds, events.back().mSeconds +
                                        (inOptions.mMostTailSeconds > 0.0 ? 0.0 : kMidiTailSeconds));
    for (const SAutomationLane& lane : inMaterial.mAutomation)
        seconds = std::max(seconds, lane.mCurve.EndSeconds());
    if (seconds <= 0.0 && events.empty())
        seconds = kDefaultSeconds;
    return std::llround(inOptions.mSeconds.value_or(seconds) * inMaterial.mRate);
}
