#include "Tools/aaxhost/check/CRenderThread.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/KeptValues.h"
#include "Tools/aaxhost/check/SoundDifference.h"
#include "Tools/aaxhost/check/StateSteps.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fmt/format.h>

namespace
{
/** @return the sentence about the first parameter that differs; empty when none does. */
std::string Compare(CInstance& inInstance, const std::vector<double>& inValues)
{
    const auto moved = FirstMoved(inInstance, inValues);
    return moved ? fmt::format("{} was saved at {:.4f} and comes back at {:.4f}.", moved->mName,
                               moved->mBefore, moved->mNow)
                 : std::string();
}

SFinding RoundTrip(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    MoveAll(instance, 21);
    rig.Play(0.1);
    const auto values = Values(instance);
    const SInstanceState saved = Take(ioContext, instance);
    MoveAll(instance, 22);
    rig.Play(0.1);
    Give(ioContext, instance, saved);
    rig.Render(64);
    (void)DeliverAll(instance);
    return KeptOrLost(ioContext, instance, saved, values, "");
}

SFinding NewInstance(CCheckContext& ioContext)
{
    const auto first = ioContext.MakeInstance();
    MoveAll(*first, 23);
    const auto values = Values(*first);
    const SInstanceState saved = Take(ioContext, *first);
    CRig rig(ioContext);
    Give(ioContext, rig.Instance(), saved);
    rig.Render(64);
    (void)DeliverAll(rig.Instance());
    return KeptOrLost(ioContext, rig.Instance(), saved, values, "In a new instance: ");
}

SFinding StaysAfterAnswers(CCheckContext& ioContext)
{
    for (const EAnswers answers : kAllAnswers)
    {
        ioContext.InstanceOptions().mAnswers = answers;
        const auto instance = ioContext.MakeInstance();
        MoveAll(*instance, 33);
        const SInstanceState saved = Take(ioContext, *instance);
        MoveAll(*instance, 34);
        Load(ioContext, *instance, saved);
        const auto values = Values(*instance);
        const SInstanceState loaded = Take(ioContext, *instance);
        // Of one that is never saved the same twice the bytes say nothing.
        const bool isSteady = OtherBytes(loaded, Take(ioContext, *instance)).empty();
        (void)DeliverAll(*instance); // looked at by the checks of automation
        if (const auto moved = FirstMoved(*instance, values))
            return SFinding::Failed(fmt::format("With a host that answers {}, {} is at {:.4f} right after a "
                                                "load and at {:.4f} after the answers.",
                                                NameOfAnswers(answers), moved->mName, moved->mBefore,
                                                moved->mNow));
        if (const std::string other = OtherBytes(loaded, Take(ioContext, *instance));
            isSteady && !other.empty())
            return SFinding::Failed(
                fmt::format("With a host that answers {}, saved again after the answers to a load, {}.",
                            NameOfAnswers(answers), other));
    }
    return SFinding::Passed();
}

SFinding SameAgain(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    MoveAll(rig.Instance(), 24);
    const SInstanceState first = Take(ioContext, rig.Instance());
    const SInstanceState second = Take(ioContext, rig.Instance());
    const std::string other = OtherBytes(first, second);
    return other.empty()
               ? SFinding::Passed()
               : SFinding::Warning(fmt::format(
                     "Saved twice without a change, the state is not the same, so sessions look changed: {}.",
                     other));
}

SFinding SavedBytes(CCheckContext& ioContext)
{
    const auto first = ioContext.MakeInstance();
    MoveAll(*first, 25);
    const SInstanceState saved = Take(ioContext, *first);
    const auto second = ioContext.MakeInstance();
    Give(ioContext, *second, saved);
    const std::string other = OtherBytes(saved, Take(ioContext, *second));
    return other.empty() ? SFinding::Passed()
                         : SFinding::Warning(fmt::format(
                               "A state that was loaded and saved again has other bytes: {}.", other));
}

/** Where two new instances sound different that have been through the same. */
template <class Prepare>
std::optional<SSoundDifference> DifferenceOfTwo(CCheckContext& ioContext, Prepare inPrepare)
{
    constexpr float same = 1e-4F; // -80 dB of full scale
    Sound sounds[2];
    for (Sound& sound : sounds)
    {
        CRig rig(ioContext);
        inPrepare(rig.Instance());
        rig.RenderSeconds(0.2); // in which values may glide
        rig.Record();
        rig.Play(0.2);
        sound = rig.Recording();
    }
    return DifferenceOf(sounds[0], sounds[1], same);
}

SFinding SameSound(CCheckContext& ioContext)
{
    const auto move = [](CInstance& instance) { MoveAll(instance, 26); };
    const auto instance = ioContext.MakeInstance();
    move(*instance);
    const SInstanceState saved = Take(ioContext, *instance);
    const auto difference =
        DifferenceOfTwo(ioContext, [&](CInstance& loaded) { Give(ioContext, loaded, saved); });
    if (!difference)
        return SFinding::Passed();
    // One that is no more the same without a load is so by itself, and loses nothing by the load.
    if (const auto without = DifferenceOfTwo(ioContext, move))
        return SFinding::Passed(
            fmt::format("The sound is never the same twice, also without a load: {}.", InWords(*without)));
    return SFinding::Warning(fmt::format(
        "Two instances that loaded the same state do not sound the same, and two whose parameters "
        "were set alike do: {}.",
        InWords(*difference)));
}

SFinding FromAnotherThread(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    rig.Feed(Noise(0.25F));
    const SInstanceState start = Take(ioContext, instance);
    CRenderThread render([&] { rig.RenderBlock(128); });
    const int rounds = ioContext.Scaled(10, 500);
    for (int round = 0; round < rounds; ++round)
        Give(ioContext, instance, round % 2 == 0 ? Take(ioContext, instance) : start);
    render.WaitForBlocks(2);
    render.Stop();
    rig.ExpectFinite(fmt::format("while the state is loaded {} times on another thread", rounds));
    return SFinding::Passed();
}

/** Loads a changed copy of each chunk, then looks at whether the instance still renders and saves. */
template <class Change>
void LoadChanged(CCheckContext& ioContext, CRig& ioRig, const SInstanceState& inState, Change inChange)
{
    for (const CStateChunk& chunk : inState.mChunks)
    {
        CStateChunk changed = inChange(chunk);
        changed.Record().mChunkID = chunk.Record().mChunkID;
        // To refuse it is as good as to take what can be taken.
        (void)ioRig.Instance().Parameters().SetChunk(chunk.Record().mChunkID, &changed.Record());
        (void)DeliverAll(ioRig.Instance());
    }
    ioRig.Play(0.03);
    (void)Take(ioContext, ioRig.Instance());
}

CStateChunk CopyOf(const CStateChunk& inChunk, std::size_t inSize)
{
    CStateChunk copy(inSize);
    const auto data = inChunk.Data();
    std::copy_n(data.begin(), std::min(inSize, data.size()), copy.Room().begin());
    copy.Record().mVersion = inChunk.Record().mVersion;
    return copy;
}

/** The instance works again as soon as it gets a good state. */
SFinding Recovers(CCheckContext& ioContext, CRig& ioRig, const SInstanceState& inGood,
                  const std::vector<double>& inValues, int inBroken)
{
    Give(ioContext, ioRig.Instance(), inGood);
    ioRig.Render(64);
    (void)DeliverAll(ioRig.Instance());
    // That a good state comes back at all is looked at in another check.
    CRig fresh(ioContext);
    Give(ioContext, fresh.Instance(), inGood);
    (void)DeliverAll(fresh.Instance());
    if (!Compare(fresh.Instance(), inValues).empty())
        return SFinding::Passed();
    const std::string difference = Compare(ioRig.Instance(), inValues);
    return difference.empty()
               ? SFinding::Passed()
               : SFinding::Failed(fmt::format("After {} broken states a good one: ", inBroken) + difference);
}

SFinding Truncated(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    MoveAll(rig.Instance(), 27);
    const auto values = Values(rig.Instance());
    const SInstanceState good = Take(ioContext, rig.Instance());
    const int cuts = ioContext.Scaled(4, 200);
    for (int cut = 0; cut <= cuts; ++cut)
        LoadChanged(ioContext, rig, good,
                    [=](const CStateChunk& chunk)
                    {
                        return CopyOf(chunk, chunk.Data().size() * static_cast<std::size_t>(cut) /
                                                 static_cast<std::size_t>(cuts + 1));
                    });
    return Recovers(ioContext, rig, good, values, cuts + 1);
}

SFinding Random(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    MoveAll(rig.Instance(), 28);
    const auto values = Values(rig.Instance());
    const SInstanceState good = Take(ioContext, rig.Instance());
    CSequence sequence(29);
    const int rounds = ioContext.Scaled(3, 200);
    for (int round = 0; round < rounds; ++round)
        LoadChanged(ioContext, rig, good,
                    [&](const CStateChunk&)
                    {
                        CStateChunk chunk(1 + sequence.Below(2000));
                        for (std::byte& byte : chunk.Room())
                            byte = static_cast<std::byte>(sequence.Below(256));
                        return chunk;
                    });
    return Recovers(ioContext, rig, good, values, rounds);
}

SFinding Damaged(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    const auto values = Values(rig.Instance());
    const SInstanceState good = Take(ioContext, rig.Instance());
    CSequence sequence(31);
    const int rounds = ioContext.Scaled(5, 300);
    for (int round = 0; round < rounds; ++round)
        LoadChanged(
            ioContext, rig, good,
            [&](const CStateChunk& chunk)
            {
                CStateChunk damaged = CopyOf(chunk, chunk.Data().size());
                if (!damaged.Room().empty())
                    damaged.Room()[sequence.Below(static_cast<std::uint32_t>(damaged.Room().size()))] =
                        static_cast<std::byte>(sequence.Below(256));
                return damaged;
            });
    return Recovers(ioContext, rig, good, values, rounds);
}

SFinding Foreign(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Render(64);
    (void)DeliverAll(rig.Instance());
    const auto before = Values(rig.Instance());
    constexpr std::size_t bytes = 64;
    CStateChunk chunk(bytes);
    chunk.Record().mChunkID = 0x6E6F6E65;                                    // "none"
    (void)rig.Instance().Parameters().SetChunk(0x6E6F6E65, &chunk.Record()); // must change nothing
    rig.Render(64);
    (void)DeliverAll(rig.Instance());
    const std::string difference = Compare(rig.Instance(), before);
    return difference.empty()
               ? SFinding::Passed()
               : SFinding::Failed(
                     fmt::format("A chunk 'none' of {} bytes, which is none of the plug-in's, changed it: {}",
                                 bytes, difference));
}

SFinding Huge(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    const SInstanceState good = Take(ioContext, rig.Instance());
    constexpr std::size_t bytes = 64UL << 20;
    LoadChanged(ioContext, rig, good, [](const CStateChunk& chunk) { return CopyOf(chunk, bytes); });
    return SFinding::Passed();
}

SFinding Sizes(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    AAX_IACFEffectParameters& parameters = instance->Parameters();
    std::int32_t count = 0;
    if (parameters.GetNumberOfChunks(&count) != kAAX_Success || count <= 0)
        return SFinding::Failed("The instance has no chunk, so a session keeps nothing of it.");
    for (std::int32_t i = 0; i < count; ++i)
    {
        AAX_CTypeID id = 0;
        std::uint32_t size = 0;
        if (parameters.GetChunkIDFromIndex(i, &id) != kAAX_Success ||
            parameters.GetChunkSize(id, &size) != kAAX_Success)
            return SFinding::Failed(fmt::format("The chunk {} has no identifier or no size.", i));
        constexpr std::size_t margin = 256;
        CStateChunk chunk(size + margin);
        std::ranges::fill(chunk.Room(), std::byte{0xA5});
        if (parameters.GetChunk(id, &chunk.Record()) != kAAX_Success)
            return SFinding::Failed(fmt::format("The chunk {} cannot be saved.", NameOfFourCharCode(id)));
        const auto behind = chunk.Room().subspan(size);
        const auto isWritten = [](std::byte byte) { return byte != std::byte{0xA5}; };
        if (const auto written = std::ranges::count_if(behind, isWritten); written > 0)
            return SFinding::Failed(fmt::format("The chunk {} is longer than the {} bytes that were told: of "
                                                "the {} bytes behind them {} were written.",
                                                NameOfFourCharCode(id), size, margin, written));
    }
    return SFinding::Passed();
}

SFinding Compares(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    const SInstanceState saved = Take(ioContext, *instance);
    for (const CStateChunk& chunk : saved.mChunks)
    {
        AAX_CBoolean isEqual = 0;
        if (instance->Parameters().CompareActiveChunk(&chunk.Record(), &isEqual) == kAAX_Success &&
            isEqual == 0)
            return SFinding::Warning(
                fmt::format("Right after it was saved, the chunk {} of {} bytes counts as changed.",
                            NameOfFourCharCode(chunk.Record().mChunkID), chunk.Data().size()));
    }
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> StateChecks()
{
    static constexpr SCheck kChecks[] = {
        {"state.sizes", "Every chunk can be saved and fits the size that it was announced with.", 1, &Sizes},
        {"state.round-trip", "A saved state, loaded again after changes, brings every parameter back.", 1,
         &RoundTrip},
        {"state.new-instance", "A saved state brings every parameter back in a new instance.", 1,
         &NewInstance},
        {"state.answers", "A loaded state stays as it is when the host has answered, whenever it answers.", 2,
         &StaysAfterAnswers},
        {"state.same-again", "Saved twice without a change, the state is the same.", 2, &SameAgain},
        {"state.same-bytes", "A loaded state is saved with the same bytes.", 2, &SavedBytes},
        {"state.same-sound",
         "Instances that load the same state sound the same, where the plug-in ever does.", 3, &SameSound},
        {"state.compares", "A state that was just saved counts as unchanged.", 2, &Compares},
        {"state.threads", "The state can be saved and loaded while another thread renders.", 4,
         &FromAnotherThread},
        {"state.foreign", "A chunk that is none of the plug-in's changes nothing.", 2, &Foreign},
        {"state.truncated", "Cut-off states do no harm.", 4, &Truncated, EAlone::Accuses},
        {"state.random", "Random bytes as a state do no harm.", 4, &Random, EAlone::Accuses},
        {"state.damaged", "States with a wrong byte do no harm.", 5, &Damaged, EAlone::Accuses},
        {"state.huge", "A state of 64 megabytes does no harm.", 8, &Huge, EAlone::Accuses},
    };
    return kChecks;
}
