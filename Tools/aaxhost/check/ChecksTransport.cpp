#include "Tools/aaxhost/check/CRig.h"

#include <fmt/format.h>
#include <limits>

namespace
{
SFinding Tempos(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (const double tempo : {1.0, 20.0, 59.94, 120.0, 333.3, 999.0})
    {
        rig.Transport().mTempo = tempo;
        rig.Play(0.1);
        rig.ExpectFinite(fmt::format("at {} beats per minute", tempo));
    }
    return SFinding::Passed();
}

SFinding MovingTempo(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Feed(Noise(0.25F));
    rig.Send(0, 0x90, 60, 100);
    const int blocks = ioContext.Scaled(100, 2000);
    for (int i = 0; i < blocks; ++i)
    {
        rig.Transport().mTempo = 1.0 + 998.0 * i / blocks;
        rig.Render(128);
    }
    rig.ExpectFinite(
        fmt::format("while the tempo rises from 1 to 999 beats per minute in {} blocks", blocks));
    return SFinding::Passed();
}

SFinding Stopped(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Transport().mPlaying = false;
    rig.Play(0.3);
    rig.ExpectFinite("while the transport stands");
    return SFinding::Passed();
}

SFinding StartAndStop(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (int i = 0; i < 20; ++i)
    {
        rig.Transport().mPlaying = i % 2 == 0;
        rig.Play(0.03);
    }
    rig.ExpectFinite("while the transport starts and stops");
    return SFinding::Passed();
}

SFinding Jumps(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CSequence sequence(17);
    const int jumps = ioContext.Scaled(20, 500);
    rig.Feed(Noise(0.25F));
    for (int i = 0; i < jumps; ++i)
    {
        rig.Transport().mSamplePosition = static_cast<std::int64_t>(sequence.Next());
        rig.Send(0, i % 4 < 2 ? 0x90 : 0x80, 60, 100);
        rig.Render(512);
    }
    rig.ExpectFinite(fmt::format("while the position jumps {} times", jumps));
    return SFinding::Passed();
}

SFinding FarPositions(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (const std::int64_t position :
         {std::int64_t{0}, std::int64_t{-48000}, std::int64_t{1} << 31, std::int64_t{1} << 40,
          std::numeric_limits<std::int64_t>::max() / 2, std::numeric_limits<std::int64_t>::min() / 2})
    {
        rig.Transport().mSamplePosition = position;
        rig.Play(0.02);
        rig.ExpectFinite(fmt::format("at the position {}", position));
    }
    return SFinding::Passed();
}

SFinding Loop(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    STransportState& transport = rig.Transport();
    transport.mLooping = true;
    transport.mLoopEndTick = CHostTransport::kTicksPerQuarter;
    for (int i = 0; i < 20; ++i)
    {
        transport.mSamplePosition = 0;
        rig.Play(0.05);
    }
    rig.ExpectFinite("in a loop");
    return SFinding::Passed();
}

SFinding NoAnswers(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Instance().Host().Transport().SetResult(kAAX_ErrorUnsupported);
    rig.Play(0.1);
    rig.ExpectFinite("while the host's transport answers nothing");
    return SFinding::Passed();
}

SFinding OddMeters(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    const std::int32_t meters[][2] = {{3, 4}, {7, 8}, {1, 1}, {31, 32}};
    for (const auto& meter : meters)
    {
        rig.Transport().mMeterNumerator = meter[0];
        rig.Transport().mMeterDenominator = meter[1];
        rig.Play(0.05);
    }
    rig.ExpectFinite("in odd meters");
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> TransportChecks()
{
    static constexpr SCheck kChecks[] = {
        {"transport.tempos", "Tempos from 1 to 999 beats per minute do no harm.", 2, &Tempos},
        {"transport.moving-tempo", "A tempo that rises while playing does no harm.", 3, &MovingTempo},
        {"transport.stopped", "Blocks are rendered while the transport stands.", 1, &Stopped},
        {"transport.start-stop", "The transport may start and stop again and again.", 2, &StartAndStop},
        {"transport.jumps", "The position may jump with every block.", 2, &Jumps},
        {"transport.far-positions", "Positions before zero and far out do no harm.", 3, &FarPositions},
        {"transport.loop", "A short loop does no harm.", 3, &Loop},
        {"transport.meters", "Odd meters do no harm.", 3, &OddMeters},
        {"transport.no-answers", "A host whose transport answers nothing is survived.", 3, &NoAnswers},
    };
    return kChecks;
}
