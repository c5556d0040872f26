#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/CallWatch.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/check/StateSteps.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <iterator>

namespace
{
SFinding Creates(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    return instance->OutputChannels() > 0 ? SFinding::Passed()
                                          : SFinding::Failed("The instance has no output channel.");
}

SFinding Deletes(CCheckContext& ioContext)
{
    {
        const auto instance = ioContext.MakeInstance();
    }
    if (const int live = ioContext.Module().LiveObjects(); live != 0)
        return SFinding::Failed(
            fmt::format("After one instance was made and deleted, {} of the module {} left.",
                        Counted(live, "object"), live == 1 ? "is" : "are"));
    return SFinding::Passed();
}

SFinding Repeats(CCheckContext& ioContext)
{
    const int count = ioContext.Scaled(3, 200);
    for (int i = 0; i < count; ++i)
    {
        CRig rig(ioContext);
        rig.Render(64);
    }
    const int live = ioContext.Module().LiveObjects();
    return live == 0 ? SFinding::Passed()
                     : SFinding::Failed(
                           fmt::format("After {} instances were made and deleted, {} of the module {} left.",
                                       count, Counted(live, "object"), live == 1 ? "is" : "are"));
}

SFinding Memory(CCheckContext& ioContext)
{
    if (ResidentBytes() == 0)
        return SFinding::Skipped("How much memory the process has cannot be told here.");
    const auto makeAndDelete = [&](int count)
    {
        for (int i = 0; i < count; ++i)
        {
            CRig rig(ioContext);
            rig.Render(64);
        }
        ioContext.Log().Clear(); // or it would be counted as the module's: a line for each parameter
    };
    // The first part is not measured: it makes what is made once, and the allocator's stock. Growth in some
    // of the others is no leak, since threads may free late; a leak grows in each of them.
    const int partCount = std::max(2, ioContext.Scaled(1, 50));
    constexpr int parts = 10;
    makeAndDelete(partCount);
    constexpr std::size_t allowedBytes = std::size_t{16}
                                         << 10; // an instance; the smallest that is told from chance
    const std::size_t atStart = ResidentBytes();
    for (int part = 0; part < parts; ++part)
    {
        const std::size_t before = ResidentBytes();
        makeAndDelete(partCount);
        if (ResidentBytes() <= before + allowedBytes * static_cast<std::size_t>(partCount))
            return SFinding::Passed();
    }
    const auto grown = static_cast<double>(ResidentBytes()) - static_cast<double>(atStart);
    const int made = parts * partCount;
    return SFinding::Failed(
        fmt::format("The memory grows by {} with every instance that is made and deleted: by {} with {} "
                    "instances; {} each are allowed.",
                    InBytes(grown / made), InBytes(grown), made, InBytes(static_cast<double>(allowedBytes))));
}

SFinding ManyInstances(CCheckContext& ioContext)
{
    const int count = std::min(50, ioContext.Scaled(4, 50));
    std::vector<std::unique_ptr<CRig>> rigs;
    std::generate_n(std::back_inserter(rigs), count, [&] { return std::make_unique<CRig>(ioContext); });
    for (int block = 0; block < 4; ++block)
        for (const auto& rig : rigs)
        {
            rig->Feed(Noise(0.25F));
            rig->Send(0, 0x90, 60, 100);
            rig->Render(256);
        }
    for (const auto& rig : rigs)
        rig->ExpectFinite(fmt::format("with {} instances at once", count));
    return SFinding::Passed();
}

SFinding FiftyInstances(CCheckContext& ioContext)
{
    std::vector<std::unique_ptr<CRig>> rigs;
    constexpr int count = 50;
    for (int i = 0; i < count; ++i)
    {
        rigs.push_back(std::make_unique<CRig>(ioContext));
        rigs.back()->Render(128);
    }
    for (const auto& rig : rigs)
        rig->ExpectFinite(fmt::format("with {} instances", count));
    return SFinding::Passed();
}

/** Two instances with states of their own, given to them one after the other, render side by side. */
SFinding StayDifferent(CCheckContext& ioContext)
{
    struct SSide
    {
        explicit SSide(CCheckContext& inContext) : mRig(inContext) {}
        CRig mRig;
        std::vector<double> mValues;
    };
    SSide sides[] = {SSide(ioContext), SSide(ioContext)};
    std::vector<SInstanceState> states;
    for (std::uint32_t i = 0; i < 2; ++i)
    {
        MoveAll(sides[i].mRig.Instance(), 51 + i);
        states.push_back(Take(ioContext, sides[i].mRig.Instance()));
    }
    for (std::size_t i = 0; i < 2; ++i)
    {
        CRig& rig = sides[i].mRig;
        Give(ioContext, rig.Instance(), states[1 - i]);
        rig.Render(64); // in which a plug-in may settle
        (void)DeliverAll(rig.Instance());
        sides[i].mValues = Values(rig.Instance());
    }
    constexpr int blocks = 20;
    for (int block = 0; block < blocks; ++block)
        for (SSide& side : sides)
            side.mRig.Render(64);
    for (SSide& side : sides)
    {
        (void)DeliverAll(side.mRig.Instance());
        if (const auto moved = FirstMoved(side.mRig.Instance(), side.mValues))
            return SFinding::Failed(fmt::format("With a state of its own and beside an instance with another "
                                                "one, {} goes from {:.4f} to {:.4f} "
                                                "in {} blocks of 64 frames.",
                                                moved->mName, moved->mBefore, moved->mNow, blocks));
    }
    return SFinding::Passed();
}

SFinding Independent(CCheckContext& ioContext)
{
    const auto first = ioContext.MakeInstance();
    const auto second = ioContext.MakeInstance();
    const auto ids = AutomatableParameters(*first);
    if (ids.empty())
        return SFinding::Skipped("The plug-in has no parameters.");
    std::vector<double> before;
    std::ranges::transform(ids, std::back_inserter(before),
                           [&](const std::string& id) { return ValueOf(*second, id); });
    for (const std::string& id : ids)
        (void)first->SetParameter(id,
                                  ValueOf(*first, id) < 0.5 ? 0.9 : 0.1); // only the other one is looked at
    (void)DeliverAll(*first);
    (void)DeliverAll(*second);
    for (std::size_t i = 0; i < ids.size(); ++i)
        if (const double now = ValueOf(*second, ids[i]); std::abs(now - before[i]) > 1e-6)
            return SFinding::Failed(fmt::format(
                "Setting the parameters of one instance changes {} in another, from {:.4f} to {:.4f}.",
                NameOfParameter(*second, ids[i]), before[i], now));
    return StayDifferent(ioContext);
}

SFinding AnyOrder(CCheckContext& ioContext)
{
    std::vector<std::unique_ptr<CRig>> rigs;
    std::generate_n(std::back_inserter(rigs), 4, [&] { return std::make_unique<CRig>(ioContext); });
    // Of four the first goes, then the second of those that are left, twice.
    for (const std::size_t goes : {std::size_t{0}, std::size_t{1}, std::size_t{1}})
    {
        rigs.erase(rigs.begin() + static_cast<std::ptrdiff_t>(goes));
        for (const auto& rig : rigs)
            rig->Play(0.05);
    }
    rigs.front()->ExpectFinite("after 3 other instances were deleted");
    return SFinding::Passed();
}

SFinding Reopens(CCheckContext& ioContext)
{
    for (int i = 0; i < 3; ++i)
    {
        {
            CRig rig(ioContext);
            rig.Play(0.05);
            rig.ExpectFinite(fmt::format("after the module was opened {} more times", i));
        }
        ioContext.CloseModule();
    }
    return SFinding::Passed();
}

SFinding References(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    CInstanceHost& host = instance->Host();
    (void)instance->Parameters().Uninitialize(); // as a host does before it lets the object go
    if (const auto references = host.References(); references < 0)
        return SFinding::Failed(fmt::format(
            "The instance gives back more references to the host than it took: {} more.", -references));
    return SFinding::Passed();
}

SFinding NotesLeftOn(CCheckContext& ioContext)
{
    if (!ioContext.TakesMidi())
        return SFinding::Skipped("The plug-in takes no MIDI.");
    {
        CRig rig(ioContext);
        for (std::uint8_t note = 30; note < 90; ++note)
            rig.Send(0, 0x90, note, 100);
        rig.RenderSeconds(0.1);
    }
    CRig next(ioContext);
    next.RenderSeconds(0.1);
    next.ExpectFinite("after another instance was deleted with 60 notes on");
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> LifeCycleChecks()
{
    static constexpr SCheck kChecks[] = {
        {"life-cycle.creates", "The module gives an instance that starts.", 1, &Creates},
        {"life-cycle.deletes", "A deleted instance leaves nothing behind.", 1, &Deletes},
        {"life-cycle.repeats",
         "Instances can be made and deleted again and again, 200 times at strictness 10.", 2, &Repeats},
        {"life-cycle.memory", "The memory stays steady while instances come and go.", 3, &Memory},
        {"life-cycle.many", "Many instances live and render side by side.", 2, &ManyInstances},
        {"life-cycle.fifty", "50 instances live and render side by side.", 7, &FiftyInstances},
        {"life-cycle.independent", "Values and states of one instance leave another's alone, also in blocks.",
         2, &Independent},
        {"life-cycle.any-order", "Instances can be deleted in any order while others go on.", 3, &AnyOrder},
        {"life-cycle.reopens", "The module works again after it was closed.", 3, &Reopens},
        {"life-cycle.references", "The instance gives back to the host no more than it took.", 3,
         &References},
        {"life-cycle.notes-left-on", "An instance can be deleted while notes sound.", 2, &NotesLeftOn},
    };
    return kChecks;
}
