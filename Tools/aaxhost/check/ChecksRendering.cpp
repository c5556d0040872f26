#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/CallWatch.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/check/SoundDifference.h"
#include "Tools/aaxhost/check/StateSteps.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <ctime>
#include <fmt/format.h>
#include <string>
#include <vector>

namespace
{
bool IsPowerOfTwo(std::int32_t inFrames) { return std::has_single_bit(static_cast<std::uint32_t>(inFrames)); }
bool IsNoPowerOfTwo(std::int32_t inFrames) { return !IsPowerOfTwo(inFrames); }

SFinding BlockSizes(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (const std::int32_t block :
         ioContext.Blocks({1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096}, &IsPowerOfTwo))
    {
        rig.Play(block < 16 ? 0.02 : 0.1, block);
        rig.ExpectFinite(fmt::format("with blocks of {} frames", block));
    }
    return SFinding::Passed();
}

SFinding OddBlocks(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (const std::int32_t block : ioContext.Blocks(
             {3, 7, 31, 63, 65, 127, 333, 441, 511, 777, 1023, 1025, 2047, 4095}, &IsNoPowerOfTwo))
    {
        rig.Play(block < 16 ? 0.02 : 0.05, block);
        rig.ExpectFinite(fmt::format("with blocks of {} frames", block));
    }
    return SFinding::Passed();
}

SFinding ChangingBlocks(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Feed(Noise(0.25F));
    CSequence sequence(13);
    const int blocks = ioContext.Scaled(100, 5000);
    for (int i = 0; i < blocks; ++i)
    {
        if (i % 20 == 0)
            rig.Send(0, i % 40 == 0 ? 0x90 : 0x80, 60, 100);
        rig.Render(static_cast<std::int32_t>(1 + sequence.Below(SRenderCall::kBufferFrames)));
    }
    rig.ExpectFinite(fmt::format("in {} blocks of changing size", blocks));
    return SFinding::Passed();
}

SFinding EmptyBlock(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (int i = 0; i < 5; ++i)
    {
        rig.Render(0);
        rig.Play(0.02);
    }
    rig.ExpectFinite("after blocks of no frames");
    return SFinding::Passed();
}

SFinding Rates(CCheckContext& ioContext)
{
    for (const double rate :
         ioContext.Rates({44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0}, &IsSessionRate))
    {
        CRig rig(ioContext, rate);
        rig.Play(0.1);
        rig.ExpectFinite(fmt::format("at {} Hz", rate));
    }
    return SFinding::Passed();
}

SFinding Bounds(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (const std::int32_t block :
         ioContext.Blocks({1, 2, 3, 15, 16, 17, 64, 100, 333, 512, 1000, 1023, 1024, 1025, 2048, 4095, 4096}))
        rig.Play(block < 16 ? 0.01 : 0.05, block);
    return rig.Overrun().empty() ? SFinding::Passed() : SFinding::Failed(rig.Overrun() + ", outside of it.");
}

SFinding InputsKept(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    if (rig.Inputs() == 0)
        return SFinding::Skipped("The plug-in has no inputs.");
    rig.Play(0.2);
    return rig.WrittenInput().empty()
               ? SFinding::Passed()
               : SFinding::Warning(
                     fmt::format("The plug-in writes into its input buffers: {}.", rig.WrittenInput()));
}

SFinding WritesOutputs(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.DirtyOutputs();
    for (const std::int32_t block : ioContext.Blocks({512, 1, 64, 1024}))
    {
        rig.Play(block < 16 ? 0.01 : 0.1, block);
        rig.Feed(Silence()); // in which there may be nothing to write
        rig.RenderFrames(std::int64_t{4} * block, block);
        if (!rig.Unwritten().empty())
            return SFinding::Failed(rig.Unwritten() + ", so what was in the host's buffer is heard.");
    }
    return SFinding::Passed();
}

/** The same material whatever the blocks: noise, and notes that begin and end at frames of their own. */
Sound SoundInBlocksOf(CCheckContext& ioContext, std::int32_t inBlock, std::int64_t inFrames)
{
    struct SNote
    {
        std::int64_t mFrame;
        std::uint8_t mStatus;
        std::uint8_t mNumber;
    };
    constexpr SNote notes[] = {{0, 0x90, 48},    {700, 0x90, 60},  {1500, 0x90, 67},
                               {3000, 0x80, 48}, {5000, 0x80, 60}, {9000, 0x80, 67}};
    CRig rig(ioContext);
    rig.Feed(Noise(0.25F));
    rig.Record();
    while (rig.Position() < inFrames)
    {
        const auto frames =
            static_cast<std::int32_t>(std::min<std::int64_t>(inBlock, inFrames - rig.Position()));
        for (const SNote& note : notes)
            if (note.mFrame >= rig.Position() && note.mFrame < rig.Position() + frames)
                rig.Send(static_cast<std::uint32_t>(note.mFrame - rig.Position()), note.mStatus, note.mNumber,
                         100);
        rig.Render(frames);
    }
    rig.ExpectFinite(fmt::format("with blocks of {} frames", inBlock));
    return rig.Recording();
}

constexpr float kSameSample = 1e-4F; // -80 dB of full scale
const char kNeverTheSame[] =
    "The sound is never the same twice, so it was only looked at for broken samples.";

SFinding LargeBlocks(CCheckContext& ioContext)
{
    constexpr std::int32_t announced = 1024; // to the plug-in, which gets no larger block
    constexpr std::int64_t all = std::int64_t{3} * SRenderCall::kBufferFrames;
    const Sound sound = SoundInBlocksOf(ioContext, announced, all);
    if (DifferenceOf(sound, SoundInBlocksOf(ioContext, announced, all), kSameSample))
        return SFinding::Passed(kNeverTheSame);
    for (const std::int32_t block : {2 * announced, SRenderCall::kBufferFrames})
        if (const auto other = DifferenceOf(sound, SoundInBlocksOf(ioContext, block, all), kSameSample))
            return SFinding::Failed(fmt::format("In blocks of {} frames, {}; compared with blocks of {}.",
                                                block, InWords(*other), announced));
    struct SPart
    {
        std::int32_t mBlock;
        std::int64_t mFrames;
    };
    for (const SPart& part : {SPart{1, 2048}, SPart{7, 4096}, SPart{1023, all}, SPart{1025, all}})
        if (const auto other =
                DifferenceOf(sound, SoundInBlocksOf(ioContext, part.mBlock, part.mFrames), kSameSample))
            return SFinding::Warning(fmt::format(
                "The sound depends on the size of the blocks: in blocks of {} frames, {}; compared with "
                "blocks of {}.",
                part.mBlock, InWords(*other), announced));
    return SFinding::Passed();
}

SFinding InPlace(CCheckContext& ioContext)
{
    CRig apart(ioContext);
    if (apart.Inputs() == 0)
        return SFinding::Skipped("The plug-in has no inputs.");
    CRig again(ioContext);
    CRig inPlace(ioContext);
    inPlace.RenderInPlace();
    for (CRig* rig : {&apart, &again, &inPlace})
    {
        rig->Record();
        rig->Play(0.2);
    }
    inPlace.ExpectFinite("when inputs and outputs are the same buffers");
    if (DifferenceOf(apart.Recording(), again.Recording(), kSameSample))
        return SFinding::Passed(kNeverTheSame);
    const auto difference = DifferenceOf(apart.Recording(), inPlace.Recording(), kSameSample);
    return difference ? SFinding::Failed(fmt::format(
                            "The sound is another one when inputs and outputs are the same buffers: {}.",
                            InWords(*difference)))
                      : SFinding::Passed();
}

SFinding SharedOutputs(CCheckContext& ioContext)
{
    CRig shared(ioContext);
    if (shared.Outputs() <= 3)
        return SFinding::Skipped("The plug-in has no outputs that a host leaves unused.");
    CRig apart(ioContext);
    CRig again(ioContext);
    shared.ShareUnusedOutputs();
    for (CRig* rig : {&apart, &again, &shared})
    {
        rig->Record();
        rig->Play(0.2);
    }
    shared.ExpectFinite("when unused outputs share a buffer");
    // What is in the shared buffer is the last one's to write there.
    const auto used = [](const CRig& rig)
    { return Sound(rig.Recording().begin(), rig.Recording().begin() + 2); };
    if (DifferenceOf(used(apart), used(again), kSameSample))
        return SFinding::Passed(kNeverTheSame);
    const auto difference = DifferenceOf(used(apart), used(shared), kSameSample);
    return difference ? SFinding::Failed(fmt::format("The first two outputs have another sound when the {} "
                                                     "that nobody uses share a buffer: {}.",
                                                     shared.Outputs() - 2, InWords(*difference)))
                      : SFinding::Passed();
}

SFinding RepeatableSound(CCheckContext& ioContext)
{
    CRig first(ioContext);
    CRig second(ioContext);
    for (CRig* rig : {&first, &second})
    {
        rig->Record();
        rig->Play(0.3);
    }
    if (const auto difference = DifferenceOf(first.Recording(), second.Recording(), kSameSample))
        return SFinding::Warning(fmt::format("Two instances make different sounds of the same material, so a "
                                             "bounce is never what was heard: {}.",
                                             InWords(*difference)));
    return SFinding::Passed();
}

constexpr std::int32_t kWatchedFrames = 256;

/** What rendering does that it should not: by itself, and in the blocks after a parameter has moved. */
struct SWatches
{
    int mBlocks = 0; // of each
    SCallWatch mSteady;
    SCallWatch mMoving;
};

/** The first blocks, in which a plug-in may still settle, are left out. */
SWatches Watch(CCheckContext& ioContext)
{
    if (const std::string obstacle = CallWatchObstacle(); !obstacle.empty())
        throw SCheckEnd{SFinding::Skipped(obstacle)};
    const std::string moduleFile = ioContext.ModuleFile();
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = AutomatableParameters(instance);
    rig.Play(0.2);
    SWatches watches;
    SRenderCall& call = rig.Call();
    call.mFrames = kWatchedFrames;
    const auto render = [&](int block, SCallWatch& watch)
    {
        if (rig.Midi() != nullptr)
        {
            rig.Midi()->Clear();
            rig.Send(10, block % 2 == 0 ? 0x90 : 0x80, static_cast<std::uint8_t>(40 + block / 2 % 40), 100);
            rig.Send(20, 0xB0, 1, static_cast<std::uint8_t>(block % 128));
        }
        WatchCalls(moduleFile, watch, [&] { instance.Render(call); });
    };
    const int blocks = ioContext.Scaled(50, 2000);
    watches.mBlocks = blocks;
    for (int block = 0; block < blocks; ++block)
        render(block, watches.mSteady);
    for (int block = 0; block < blocks && !ids.empty(); ++block)
    {
        TryUpdate(instance, ids[static_cast<std::size_t>(block) % ids.size()], (block % 10) / 10.0);
        render(block, watches.mMoving);
    }
    return watches;
}

/** @param inDoes says in words what one side did in a number of blocks; empty when it did nothing. */
template <class Does>
SFinding Judge(const SWatches& inWatches, Does inDoes)
{
    for (const SCallWatch* watch : {&inWatches.mSteady, &inWatches.mMoving})
        if (const std::string what = inDoes(watch->mModule, inWatches.mBlocks); !what.empty())
            return SFinding::Failed(fmt::format("The module itself {} while it renders.", what));
    if (const std::string what = inDoes(inWatches.mSteady.mPlugin, inWatches.mBlocks); !what.empty())
        return SFinding::Failed(
            fmt::format("The wrapped plug-in {} while it renders; the module itself does not.", what));
    if (const std::string what = inDoes(inWatches.mMoving.mPlugin, inWatches.mBlocks); !what.empty())
        return SFinding::Warning(
            fmt::format("In the block after a parameter has moved, the wrapped plug-in {}; the "
                        "module itself does not.",
                        what));
    return SFinding::Passed();
}

/** "in 12 of 50 blocks of 256 frames" */
std::string InBlocks(int inBlocks, int inAll)
{
    return fmt::format("in {} of {} blocks of {} frames", inBlocks, inAll, kWatchedFrames);
}

/** "takes locks 12 times in 12 of 50 blocks of 256 frames (pthread_mutex_lock, called by a.so in Lock())" */
std::string CallsInWords(const SWatchedCalls& inCalls, EForbiddenKind inKind, const char* inDoes,
                         int inBlocks)
{
    const int count = inCalls.Of(inKind);
    return count == 0 ? std::string()
                      : fmt::format("{} {} {} ({})", inDoes, Counted(count, "time"),
                                    InBlocks(inCalls.RunsWith(inKind), inBlocks), inCalls.FirstOf(inKind));
}

SFinding Allocations(CCheckContext& ioContext)
{
    return Judge(
        Watch(ioContext),
        [](const SWatchedCalls& calls, int blocks)
        {
            const std::string taken =
                CallsInWords(calls, EForbiddenKind::kAllocation, "allocates memory", blocks);
            const std::string given = CallsInWords(calls, EForbiddenKind::kRelease, "frees memory", blocks);
            return taken + (taken.empty() || given.empty() ? "" : " and ") + given;
        });
}

SFinding Locks(CCheckContext& ioContext)
{
    return Judge(
        Watch(ioContext),
        [](const SWatchedCalls& calls, int blocks) {
            return CallsInWords(calls, EForbiddenKind::kLock, "takes locks that it may have to wait for",
                                blocks);
        });
}

SFinding SystemCalls(CCheckContext& ioContext)
{
    return Judge(
        Watch(ioContext),
        [](const SWatchedCalls& calls, int blocks)
        {
            std::vector<std::string> names;
            for (std::size_t i = 0; i < calls.mSystemCallCount; ++i)
                names.push_back(NameOfSystemCall(calls.mSystemCalls[i]));
            std::ranges::sort(names);
            const std::string caller = calls.mSystemCaller.empty() ? "" : ", first by " + calls.mSystemCaller;
            return names.empty()
                       ? std::string()
                       : fmt::format("makes system calls {} ({}{})", InBlocks(calls.mSystemCallRuns, blocks),
                                     fmt::join(names, ", "), caller);
        });
}

SFinding KeepsUp(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Play(0.2);
    const auto processorSeconds = [] { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; };
    constexpr double seconds = 1.0;
    constexpr std::int32_t block = 256;
    const double before = processorSeconds();
    rig.Play(seconds, block);
    const double used = processorSeconds() - before;
    return used < seconds
               ? SFinding::Passed()
               : SFinding::Warning(fmt::format(
                     "A block takes longer to compute than to play on this machine: {} seconds in blocks of "
                     "{} frames take {:.2f} seconds of processor time.",
                     seconds, block, used));
}

SFinding LongRun(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    const int rounds = ioContext.Scaled(5, 60);
    for (int i = 0; i < rounds; ++i)
    {
        rig.Play(1.0);
        rig.ExpectFinite(fmt::format("after {} seconds", i + 1));
    }
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> RenderingChecks()
{
    static constexpr SCheck kChecks[] = {
        {"rendering.block-sizes", "Blocks of 1 to 4,096 frames, all powers of two, are rendered.", 1,
         &BlockSizes},
        {"rendering.odd-blocks", "Blocks of odd sizes are rendered.", 2, &OddBlocks},
        {"rendering.large-blocks", "Blocks of up to 4,096 frames sound as those of 1,024 do.", 2,
         &LargeBlocks},
        {"rendering.changing-blocks", "The block size may change with every block.", 2, &ChangingBlocks},
        {"rendering.empty-block", "Blocks of no frames do no harm.", 3, &EmptyBlock},
        {"rendering.rates", "Rates from 44.1 to 192 kHz are rendered.", 2, &Rates},
        {"rendering.bounds", "Nothing is written outside the frames of a block, in no output.", 1, &Bounds},
        {"rendering.inputs-kept", "Input buffers are left as they are.", 2, &InputsKept},
        {"rendering.writes-outputs", "Every frame of every output is written, in every block.", 2,
         &WritesOutputs},
        {"rendering.in-place", "Inputs and outputs may be the same buffers.", 2, &InPlace},
        {"rendering.shared-outputs", "Outputs that nobody uses may share a buffer.", 3, &SharedOutputs},
        {"rendering.repeatable", "The same material gives the same sound in every instance.", 2,
         &RepeatableSound},
        {"rendering.allocations", "No memory is allocated or freed while a block is rendered.", 3,
         &Allocations},
        {"rendering.locks", "No lock is taken while a block is rendered.", 3, &Locks},
        {"rendering.system-calls", "No system call is made while a block is rendered.", 3, &SystemCalls},
        {"rendering.keeps-up", "A block is computed in less time than it plays.", 2, &KeepsUp},
        {"rendering.long-run", "The sound stays finite over a long run.", 6, &LongRun},
    };
    return kChecks;
}
