#include "Tools/aaxhost/check/StateSteps.h"

#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

SInstanceState Take(CCheckContext& ioContext, CInstance& inInstance)
{
    auto state = TakeState(ioContext.Module(), inInstance);
    if (!state)
        throw SCheckEnd{SFinding::Failed(state.Problem().mSentence)};
    return std::move(*state);
}

void Load(CCheckContext& ioContext, CInstance& ioInstance, const SInstanceState& inState)
{
    const auto given = GiveState(ioContext.Module(), ioInstance, inState);
    if (!given)
        throw SCheckEnd{SFinding::Failed(given.Problem().mSentence)};
}

void Give(CCheckContext& ioContext, CInstance& ioInstance, const SInstanceState& inState)
{
    Load(ioContext, ioInstance, inState);
    (void)DeliverAll(ioInstance); // looked at by the checks of automation
}

void TrySet(CInstance& ioInstance, const std::string& inID, double inValue)
{
    (void)ioInstance.SetParameter(inID, inValue);
}

void TryUpdate(CInstance& ioInstance, const std::string& inID, double inValue)
{
    (void)ioInstance.UpdateParameter(inID, inValue);
}

void MoveAll(CInstance& ioInstance, std::uint32_t inSeed)
{
    CSequence sequence(inSeed);
    for (const std::string& id : PluginParameters(ioInstance))
    {
        const double value = 0.1 + 0.8 * sequence.Fraction();
        (void)ioInstance.SetParameter(
            id, std::abs(value - ValueOf(ioInstance, id)) < 0.1 ? 1.0 - value : value); // read back later
    }
    (void)DeliverAll(ioInstance);
}

std::vector<double> Values(CInstance& inInstance)
{
    std::vector<double> values;
    for (const std::string& id : PluginParameters(inInstance))
        values.push_back(ValueOf(inInstance, id));
    return values;
}

void SetValues(CInstance& ioInstance, const std::vector<double>& inValues)
{
    const auto ids = PluginParameters(ioInstance);
    for (std::size_t i = 0; i < std::min(ids.size(), inValues.size()); ++i)
        if (ValueOf(ioInstance, ids[i]) != inValues[i])
            TryUpdate(ioInstance, ids[i], inValues[i]);
    (void)ioInstance.FinishUpdates();
}

std::vector<SMoved> MovedParameters(CInstance& inInstance, const std::vector<double>& inBefore)
{
    const auto ids = PluginParameters(inInstance);
    const auto now = Values(inInstance);
    std::vector<SMoved> moved;
    for (std::size_t i = 0; i < inBefore.size(); ++i)
    {
        const auto index = static_cast<std::int32_t>(i);
        if (i >= now.size())
            moved.push_back(
                {index, "A parameter that is gone", inBefore[i], std::numeric_limits<double>::quiet_NaN()});
        else if (!(std::abs(now[i] - inBefore[i]) <= kSameValue))
            moved.push_back({index, NameOfParameter(inInstance, ids[i]), inBefore[i], now[i]});
    }
    return moved;
}

std::optional<SMoved> FirstMoved(CInstance& inInstance, const std::vector<double>& inBefore)
{
    const auto moved = MovedParameters(inInstance, inBefore);
    return moved.empty() ? std::nullopt : std::optional(moved.front());
}

std::string OtherBytes(const SInstanceState& inBefore, const SInstanceState& inNow)
{
    for (std::size_t i = 0; i < inBefore.mChunks.size(); ++i)
    {
        const auto before = inBefore.mChunks[i].Data();
        const auto now = i < inNow.mChunks.size() ? inNow.mChunks[i].Data() : std::span<const std::byte>();
        if (!std::ranges::equal(before, now))
            return fmt::format("the chunk {} of {} bytes has {} bytes and differs from byte {} on",
                               NameOfFourCharCode(inBefore.mChunks[i].Record().mChunkID), before.size(),
                               now.size(), std::ranges::mismatch(before, now).in1 - before.begin());
    }
    return {};
}
