#include "Tools/aaxhost/check/CRenderThread.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/StateSteps.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>
#include <map>
#include <set>

namespace
{
constexpr std::int32_t kTextLength = 32;
// Values pass through single precision and through the plug-in's own units.
constexpr double kRounding = 1e-5;

bool IsNormalized(double inValue) { return std::isfinite(inValue) && inValue >= 0.0 && inValue <= 1.0; }

/** At most as many as the strictness has time for, spread over the list. */
std::vector<std::string> Selected(const CCheckContext& inContext, std::vector<std::string> inIDs)
{
    const auto most = static_cast<std::size_t>(inContext.Scaled(8, 4096));
    if (inIDs.size() <= most)
        return inIDs;
    std::vector<std::string> selected;
    for (std::size_t i = 0; i < most; ++i)
        selected.push_back(inIDs[i * inIDs.size() / most]);
    return selected;
}

SFinding List(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    std::int32_t count = -1;
    if (instance->Parameters().GetNumberOfParameters(&count) != kAAX_Success || count < 0)
        return SFinding::Failed("The instance does not say how many parameters it has.");
    const auto list = instance->ListParameters();
    if (list.size() != static_cast<std::size_t>(count))
        return SFinding::Failed(
            fmt::format("{} parameters are announced and {} have an identifier.", count, list.size()));
    std::set<std::string> ids;
    for (const SParameterInfo& info : list)
    {
        if (info.mID.empty() || info.mID.size() > 31)
            return SFinding::Failed(fmt::format("The identifier '{}' has {} characters, and not 1 to 31.",
                                                info.mID, info.mID.size()));
        if (!ids.insert(info.mID).second)
            return SFinding::Failed(fmt::format("Two parameters have the identifier '{}'.", info.mID));
        if (!instance->HasParameter(info.mID))
            return SFinding::Failed(
                fmt::format("The identifier '{}' does not lead back to its parameter.", info.mID));
    }
    return SFinding::Passed();
}

SFinding ParameterNames(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    std::map<std::string, std::string> firsts; // identifiers by name
    for (const SParameterInfo& info : instance->ListParameters())
    {
        if (info.mName.empty())
            return SFinding::Warning(fmt::format("The parameter '{}' has no name.", info.mID));
        if (const auto [first, isNew] = firsts.emplace(info.mName, info.mID); !isNew)
            return SFinding::Warning(fmt::format("The parameters '{}' and '{}' are both called '{}'.",
                                                 first->second, info.mID, info.mName));
    }
    return SFinding::Passed();
}

SFinding ShortNames(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    for (const SParameterInfo& info : instance->ListParameters())
        for (const std::int32_t length : {1, 4, 8, 16, 31})
        {
            CHostString name;
            // One that does not fit is cut by the surface; only an empty one is of no use.
            if (instance->Parameters().GetParameterNameOfLength(info.mID.c_str(), &name, length) !=
                    kAAX_Success ||
                (name.Length() == 0 && !info.mName.empty()))
                return SFinding::Failed(fmt::format("{} has no name for a display of {} characters.",
                                                    NameOfParameter(*instance, info.mID), length));
        }
    return SFinding::Passed();
}

SFinding Defaults(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    for (const SParameterInfo& info : instance->ListParameters())
    {
        if (!IsNormalized(info.mDefault))
            return SFinding::Failed(fmt::format("The default {} of {} is not one of 0 to 1.", info.mDefault,
                                                NameOfParameter(*instance, info.mID)));
        if (!IsNormalized(info.mValue))
            return SFinding::Failed(fmt::format("The value {} of {} is not one of 0 to 1.", info.mValue,
                                                NameOfParameter(*instance, info.mID)));
        if (std::abs(info.mValue - info.mDefault) > kRounding)
            return SFinding::Failed(fmt::format("{} starts at {:.4f} and not at its default of {:.4f}.",
                                                NameOfParameter(*instance, info.mID), info.mValue,
                                                info.mDefault));
    }
    return SFinding::Passed();
}

SFinding AtRest(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto before = instance.ListParameters();
    constexpr double seconds = 0.5;
    rig.RenderSeconds(seconds);
    (void)DeliverAll(instance); // the check of automation looks at whether it ends
    for (const SParameterInfo& info : before)
        if (std::abs(ValueOf(instance, info.mID) - info.mValue) > kRounding)
            return SFinding::Failed(fmt::format(
                "{} moves from {:.4f} to {:.4f} in {} seconds although nobody touches it.",
                NameOfParameter(instance, info.mID), info.mValue, ValueOf(instance, info.mID), seconds));
    return SFinding::Passed();
}

SFinding SetAndGet(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    std::string lost; // about the first; plug-ins that snap to steps tell so with a change of their own
    std::set<std::string> losers;
    const auto ids = Selected(ioContext, NeededParameters(*instance));
    for (const std::string& id : ids)
        for (const double value : {0.0, 0.25, 0.5, 1.0})
        {
            if (const AAX_Result result = instance->SetParameter(id, value))
                return SFinding::Failed(fmt::format("{} refuses the value {}: {}.",
                                                    NameOfParameter(*instance, id), value,
                                                    NameOfResult(result)));
            (void)DeliverAll(*instance); // looked at by another check
            const double now = ValueOf(*instance, id);
            if (!IsNormalized(now))
                return SFinding::Failed(
                    fmt::format("Set to {}, {} reads {}.", value, NameOfParameter(*instance, id), now));
            const bool isEnd = value == 0.0 || value == 1.0;
            if (!isEnd || std::abs(now - value) <= kRounding)
                continue;
            losers.insert(id);
            if (lost.empty())
                lost = fmt::format("{} does not keep the end of its range: it reads {:.4f} after {}",
                                   NameOfParameter(*instance, id), now, value);
        }
    if (!lost.empty())
        return SFinding::Warning(
            fmt::format("{}; {} of {} parameters that were set do so.", lost, losers.size(), ids.size()));
    return SFinding::Passed();
}

SFinding TextRoundTrip(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    AAX_IACFEffectParameters& parameters = instance->Parameters();
    for (const SParameterInfo& info : instance->ListParameters())
        for (const double value : {0.0, 0.25, 0.5, 1.0})
        {
            const auto says = [&](const std::string& sentence)
            { return SFinding::Failed(NameOfParameter(*instance, info.mID) + sentence); };
            CHostString text;
            if (parameters.GetParameterStringFromValue(info.mID.c_str(), value, &text, kTextLength) !=
                kAAX_Success)
                return says(fmt::format(" has no text for {}.", value));
            double back = std::numeric_limits<double>::quiet_NaN();
            if (parameters.GetParameterValueFromString(info.mID.c_str(), &back, text) != kAAX_Success)
                return says(fmt::format(" does not read its own text '{}'.", text.Text()));
            CHostString again;
            (void)parameters.GetParameterStringFromValue(info.mID.c_str(), back, &again,
                                                         kTextLength); // compared
            if (again.Text() != text.Text())
                return says(fmt::format(" reads its text '{}' as '{}'.", text.Text(), again.Text()));
        }
    return SFinding::Passed();
}

SFinding Texts(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    for (const SParameterInfo& info : instance->ListParameters())
        for (const std::int32_t length : {4, 8, 31})
        {
            CHostString text;
            if (instance->Parameters().GetParameterValueString(info.mID.c_str(), &text, length) !=
                    kAAX_Success ||
                text.Length() == 0)
                return SFinding::Failed(
                    fmt::format("{} has no text for its value of {:.4f} in {} characters.",
                                NameOfParameter(*instance, info.mID), info.mValue, length));
            if (std::ranges::any_of(text.Text(), [](char c) { return static_cast<unsigned char>(c) < ' '; }))
                return SFinding::Failed(fmt::format("The text of {} at {:.4f} has control characters.",
                                                    NameOfParameter(*instance, info.mID), info.mValue));
        }
    return SFinding::Passed();
}

SFinding Unknown(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    const auto before = instance->ListParameters();
    for (const char* id :
         {"nobody", "99999", "-0001", "00000x", "a very long identifier that no parameter has"})
    {
        double value = 0.0;
        if (instance->Parameters().GetParameterNormalizedValue(id, &value) == kAAX_Success)
            return SFinding::Failed(
                fmt::format("The identifier '{}' of no parameter has a value, {:.4f}.", id, value));
        (void)instance->Parameters().UpdateParameterNormalizedValue(id, 0.3, 0); // must change nothing
        (void)instance->Parameters().SetParameterNormalizedValue(id, 0.3);       // neither must this
    }
    (void)DeliverAll(*instance);
    for (const SParameterInfo& info : before)
        if (std::abs(ValueOf(*instance, info.mID) - info.mValue) > kRounding)
            return SFinding::Failed(
                fmt::format("A value of 0.3 for unknown identifiers changed {} from {:.4f} to {:.4f}.",
                            NameOfParameter(*instance, info.mID), info.mValue, ValueOf(*instance, info.mID)));
    return SFinding::Passed();
}

SFinding OutOfRange(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    for (const std::string& id : Selected(ioContext, NeededParameters(instance)))
    {
        for (const double value : {-1.0, 2.0, 1e30, -1e30})
        {
            (void)instance.SetParameter(id,
                                        value); // to refuse it is right, and so is to take the nearest end
            (void)DeliverAll(instance);
            if (!IsNormalized(ValueOf(instance, id)))
                return SFinding::Failed(fmt::format("Set to {}, {} reads {}.", value,
                                                    NameOfParameter(instance, id), ValueOf(instance, id)));
        }
        (void)instance.SetParameter(id, 0.5); // the next one is tried alone
    }
    rig.Play(0.05);
    return SFinding::Passed();
}

SFinding Sweep(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    for (const std::string& id : Selected(ioContext, NeededParameters(instance)))
    {
        const double before = ValueOf(instance, id);
        rig.Feed(Noise(0.25F));
        rig.Send(0, 0x90, 60, 100);
        for (int step = 0; step <= 10; ++step)
        {
            TrySet(instance, id, step / 10.0);
            rig.Render(256);
        }
        rig.Send(0, 0x80, 60, 64);
        (void)instance.SetParameter(id, before);
        rig.Render(256);
        rig.ExpectFinite(fmt::format("while {} moves from 0 to 1", NameOfParameter(instance, id)));
    }
    return SFinding::Passed();
}

SFinding Extremes(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = NeededParameters(instance);
    for (const double value : {0.0, 1.0})
    {
        for (const std::string& id : ids)
            TrySet(instance, id, value);
        rig.Play(0.2);
        rig.ExpectFinite(fmt::format("with all {} parameters at {}", ids.size(), value));
    }
    return SFinding::Passed();
}

SFinding RandomSettings(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = NeededParameters(instance);
    CSequence sequence(7);
    const int rounds = ioContext.Scaled(5, 200);
    for (int round = 0; round < rounds; ++round)
    {
        for (const std::string& id : ids)
            TrySet(instance, id, sequence.Fraction());
        rig.Play(0.04);
        rig.ExpectFinite(
            fmt::format("with random settings number {} of {} parameters", round + 1, ids.size()));
    }
    return SFinding::Passed();
}

SFinding SweepFromAnotherThread(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = NeededParameters(instance);
    rig.Feed(Noise(0.25F));
    CRenderThread render([&] { rig.RenderBlock(128); });
    const int fewestRounds = ioContext.Scaled(20, 2000);
    const int fewestBlocks = ioContext.Scaled(50, 2000); // on a busy machine only a few fall into the rounds
    CSequence sequence(11);
    int round = 0;
    for (; round < fewestRounds || render.BlocksDone() < fewestBlocks; ++round)
    {
        for (const std::string& id : ids)
            (void)instance.SetParameter(id, sequence.Fraction()); // what matters is what is rendered
        (void)instance.RunCycle();
    }
    render.WaitForBlocks(2);
    render.Stop();
    rig.ExpectFinite(fmt::format("while {} parameters move {} times on another thread", ids.size(), round));
    return SFinding::Passed();
}

SFinding Steps(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    for (const SParameterInfo& info : instance->ListParameters())
    {
        std::int32_t steps = -1;
        if (instance->Parameters().GetParameterNumberOfSteps(info.mID.c_str(), &steps) != kAAX_Success ||
            steps < 0)
            return SFinding::Failed(
                fmt::format("{} has no number of steps.", NameOfParameter(*instance, info.mID)));
        if (steps == 1)
            return SFinding::Warning(fmt::format("{} has a single step, so no control can move it.",
                                                 NameOfParameter(*instance, info.mID)));
    }
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> ParameterChecks()
{
    static constexpr SCheck kChecks[] = {
        {"parameters.list", "Every parameter has an identifier of its own that leads back to it.", 1, &List},
        {"parameters.names", "Every parameter has a name, and no two the same.", 1, &ParameterNames},
        {"parameters.short-names", "Every parameter has a name for the displays of control surfaces.", 1,
         &ShortNames},
        {"parameters.defaults", "Defaults are from 0 to 1, and an instance starts with them.", 1, &Defaults},
        {"parameters.at-rest", "No parameter moves by itself after the plug-in is loaded.", 1, &AtRest},
        {"parameters.steps", "Every parameter has a number of steps that a control can take.", 1, &Steps},
        {"parameters.set-and-get", "A parameter keeps what it is set to, from end to end.", 2, &SetAndGet},
        {"parameters.text-round-trip", "A value's text, typed in again, gives the same text.", 2,
         &TextRoundTrip},
        {"parameters.texts", "Every parameter's value has a printable text, for 4, 8 and 31 characters.", 1,
         &Texts},
        {"parameters.unknown", "Identifiers of no parameter have no value, and setting them changes nothing.",
         2, &Unknown},
        {"parameters.out-of-range", "Values outside 0 to 1 are refused or brought back into the range.", 3,
         &OutOfRange},
        {"parameters.sweep", "Moving each parameter from end to end leaves the sound finite.", 3, &Sweep},
        {"parameters.extremes", "The sound is finite with all parameters at either end.", 2, &Extremes},
        {"parameters.random", "The sound is finite with random settings.", 4, &RandomSettings},
        {"parameters.sweep-threads", "Parameters can be moved on one thread while another renders.", 4,
         &SweepFromAnotherThread},
    };
    return kChecks;
}
