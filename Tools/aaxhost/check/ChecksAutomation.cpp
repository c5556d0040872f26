#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/check/SoundDifference.h"
#include "Tools/aaxhost/check/StateSteps.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
SFinding Registered(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    for (const std::string& id : NeededParameters(*instance))
        if (!instance->Host().Automation().IsRegistered(id))
            return SFinding::Failed(
                fmt::format("{} is automatable and not registered with the host's automation.",
                            NameOfParameter(*instance, id)));
    return SFinding::Passed();
}

SFinding Settles(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    for (const std::string& id : NeededParameters(*instance))
    {
        TrySet(*instance, id, 0.75);
        if (!DeliverAll(*instance))
            return SFinding::Failed(fmt::format(
                "Setting {} once starts an endless exchange of values with the host: {} in {} cycles, and {} "
                "wait.",
                NameOfParameter(*instance, id),
                Counted(static_cast<std::int64_t>(instance->Host().Automation().ValueRequests()), "request"),
                kMostCycles, instance->Host().Automation().PendingRequests()));
    }
    return SFinding::Passed();
}

/** Counts what is asked for in a number of cycles after the last of twenty steps. */
SFinding SettlesAfterAutomation(CCheckContext& ioContext)
{
    constexpr int steps = 20;
    constexpr int cycles = 20;
    constexpr std::size_t most = 1'000'000; // what an exchange that grows has no end at
    for (const EAnswers answers : kAllAnswers)
        for (const int stepsACycle : {1, 5})
        {
            ioContext.InstanceOptions().mAnswers = answers;
            CRig rig(ioContext);
            CInstance& instance = rig.Instance();
            const CHostAutomation& automation = instance.Host().Automation();
            const auto ids = NeededParameters(instance);
            CSequence sequence(17);
            const auto cycle = [&]
            {
                rig.Render(64);
                ioContext.Log().Clear(); // of a line a request
            };
            for (int step = 1; step <= steps && automation.ValueRequests() < most; ++step)
            {
                for (const std::string& id : ids)
                    TryUpdate(instance, id, sequence.Fraction());
                (void)instance.FinishUpdates();
                if (step % stepsACycle == 0 && step < steps)
                    cycle();
            }
            const std::size_t before = automation.ValueRequests();
            const auto further = [&] { return automation.ValueRequests() - before; };
            int done = 0;
            while (done < cycles && further() <= ids.size())
            {
                cycle();
                ++done;
            }
            if (further() > ids.size() || before >= most)
                return SFinding::Failed(fmt::format(
                    "With {} steps of automation, {} in each cycle, a host that answers {} is asked for {} "
                    "values, and for {} more in the {} cycles after them; the plug-in has {} parameters.",
                    steps, stepsACycle, NameOfAnswers(answers), before, further(), done, ids.size()));
        }
    return SFinding::Passed();
}

SFinding BeforeCoefficients(CCheckContext& ioContext)
{
    constexpr std::int32_t block = 64;
    const auto automate = [](CInstance& instance)
    {
        (void)NeededParameters(instance);
        for (const SParameterInfo& info : instance.ListParameters())
            if (info.mAutomatable)
                (void)instance.UpdateParameter(info.mID, info.mDefault < 0.5 ? 0.9 : 0.1); // read back
        (void)instance.FinishUpdates();
    };
    CRig later(ioContext); // automated when it has begun to render
    later.Render(block);
    automate(later.Instance());
    ioContext.InstanceOptions().mBeginsWithCoefficients = false;
    CRig early(ioContext);
    automate(early.Instance());
    for (const std::int32_t frames : {0, block})
    {
        for (CRig* rig : {&later, &early})
            if (frames > 0)
                rig->Render(frames);
        if (const auto moved = FirstMoved(early.Instance(), Values(later.Instance())))
            return SFinding::Failed(fmt::format(
                "Automated before the first coefficients, {} is at {:.4f} when they and {} frames are "
                "done; automated later, at {:.4f}.",
                moved->mName, moved->mNow, frames, moved->mBefore));
    }
    return SFinding::Passed();
}

SFinding NoTouchLeft(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = NeededParameters(instance);
    for (const std::string& id : ids)
    {
        TryUpdate(instance, id, 0.3);
        (void)instance.FinishUpdates();
    }
    rig.Play(0.1);
    (void)DeliverAll(instance); // looked at by another check
    for (const std::string& id : ids)
        if (instance.Host().Automation().IsTouched(id))
            return SFinding::Failed(fmt::format("{} stays touched, so its automation never plays again.",
                                                NameOfParameter(instance, id)));
    const std::size_t touches = ioContext.Log().Count("PostTouchRequest");
    const std::size_t releases = ioContext.Log().Count("PostReleaseRequest");
    return touches == releases
               ? SFinding::Passed()
               : SFinding::Failed(fmt::format(
                     "Touches and releases of parameters are not balanced: {} and {}.", touches, releases));
}

SFinding Accepted(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    for (const std::string& id : NeededParameters(instance))
        for (const double value : {0.0, 0.33, 1.0, 0.5})
        {
            if (const AAX_Result result = instance.UpdateParameter(id, value))
                return SFinding::Failed(fmt::format("{} refuses its automation: {}.",
                                                    NameOfParameter(instance, id), NameOfResult(result)));
            if (const AAX_Result result = instance.FinishUpdates())
                return SFinding::Failed(fmt::format("After an update of {} the coefficients fail: {}.",
                                                    NameOfParameter(instance, id), NameOfResult(result)));
        }
    rig.Play(0.05);
    return SFinding::Passed();
}

SFinding Dense(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = NeededParameters(instance);
    rig.Feed(Noise(0.25F));
    rig.Send(0, 0x90, 60, 100);
    const int blocks = ioContext.Scaled(200, 5000);
    for (int block = 0; block < blocks; ++block)
    {
        const std::string& id = ids[static_cast<std::size_t>(block) % ids.size()];
        TryUpdate(instance, id, 0.5 + 0.5 * std::sin(0.05 * block));
        rig.Render(16);
    }
    rig.ExpectFinite(fmt::format("while automation moves every 16 frames of {}", 16 * blocks));
    return SFinding::Passed();
}

constexpr double kSameSound = 1e-4; // relative to the louder one: -80 dB

/** How far two recordings are apart, relative to the louder one. */
double Difference(const CRig& inFirst, const CRig& inSecond)
{
    double difference = 0.0;
    double energy = 0.0;
    for (std::size_t channel = 0; channel < inFirst.Recording().size(); ++channel)
        for (std::size_t i = 0; i < inFirst.Recording()[channel].size(); ++i)
        {
            const double first = static_cast<double>(inFirst.Recording()[channel][i]);
            const double second = static_cast<double>(inSecond.Recording()[channel][i]);
            if (!std::isfinite(first) || !std::isfinite(second))
                continue;
            difference += (first - second) * (first - second);
            energy += std::max(first * first, second * second);
        }
    return energy > 0.0 ? std::sqrt(difference / energy) : 0.0;
}

SFinding Audible(CCheckContext& ioContext)
{
    const auto render = [&](CRig& rig, double value)
    {
        if (value >= 0.0)
            for (const std::string& id : NeededParameters(rig.Instance()))
                TryUpdate(rig.Instance(), id, value);
        rig.Record();
        rig.Play(0.2);
    };
    CRig plain(ioContext);
    (void)NeededParameters(plain.Instance());
    render(plain, -1.0);
    double largest = 0.0;
    for (const double value : {0.9, 0.1, 0.6})
    {
        CRig moved(ioContext);
        render(moved, value);
        largest = std::max(largest, Difference(plain, moved));
        if (largest > kSameSound)
            return SFinding::Passed();
    }
    return plain.TakePeak() > 0.0F
               ? SFinding::Warning(fmt::format(
                     "No parameter makes an audible difference to the test material: all {} of them at 0.9, "
                     "0.1 and 0.6 make one of {} to the sound, and {} would be heard.",
                     NeededParameters(plain.Instance()).size(), InDecibels(largest), InDecibels(kSameSound)))
               : SFinding::Skipped("The plug-in makes no sound of the test material.");
}

SFinding Repeatable(CCheckContext& ioContext)
{
    const auto render = [](CRig& rig)
    {
        const auto ids = NeededParameters(rig.Instance());
        rig.Feed(Noise(0.25F));
        rig.Record();
        rig.Send(0, 0x90, 60, 100);
        for (int block = 0; block < 40; ++block)
        {
            TryUpdate(rig.Instance(), ids.front(), block / 39.0);
            rig.Render(128);
        }
    };
    CRig first(ioContext);
    render(first);
    CRig second(ioContext);
    render(second);
    const double difference = Difference(first, second);
    if (difference < kSameSound)
        return SFinding::Passed();
    const auto where = DifferenceOf(first.Recording(), second.Recording(), 0.0F);
    return SFinding::Warning(
        fmt::format("The same automation of {}, played twice, does not give the same sound but one that "
                    "differs by {} of its level: {}.",
                    NameOfParameter(first.Instance(), NeededParameters(first.Instance()).front()),
                    InDecibels(difference), where ? InWords(*where) : std::string()));
}

SFinding StoppedTransport(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Transport().mPlaying = false;
    CInstance& instance = rig.Instance();
    for (const std::string& id : NeededParameters(instance))
    {
        TryUpdate(instance, id, 0.8);
        rig.Render(64);
    }
    rig.ExpectFinite("while parameters move and the transport stands");
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> AutomationChecks()
{
    static constexpr SCheck kChecks[] = {
        {"automation.registered", "Every automatable parameter is registered with the host's automation.", 1,
         &Registered},
        {"automation.accepted", "Every parameter takes automation over its whole range.", 1, &Accepted},
        {"automation.settles", "Setting a parameter once does not start an endless exchange with the host.",
         1, &Settles},
        {"automation.answers",
         "Automation starts no exchange of values, whether the host answers at once, late or only the last.",
         2, &SettlesAfterAutomation},
        {"automation.before-coefficients", "What is automated before the first coefficients stays.", 1,
         &BeforeCoefficients},
        {"automation.no-touch-left", "Touches and releases are balanced and no parameter stays touched.", 1,
         &NoTouchLeft},
        {"automation.dense", "Automation every 16 frames leaves the sound finite.", 3, &Dense},
        {"automation.audible", "Automated parameters reach the sound.", 2, &Audible},
        {"automation.repeatable", "The same automation gives the same sound again.", 3, &Repeatable},
        {"automation.stopped", "Parameters that move while the transport stands leave the sound finite.", 2,
         &StoppedTransport},
    };
    return kChecks;
}
