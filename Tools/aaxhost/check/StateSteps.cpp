#include "Tools/aaxhost/check/StateSteps.h"

#include <cmath>
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

void MoveAll(CInstance& ioInstance, std::uint32_t inSeed)
{
    CSequence sequence(inSeed);
    for (const std::string& id : AutomatableParameters(ioInstance))
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
    for (const std::string& id : AutomatableParameters(inInstance))
        values.push_back(ValueOf(inInstance, id));
    return values;
}

std::optional<SMoved> FirstMoved(CInstance& inInstance, const std::vector<double>& inBefore)
{
    const auto ids = AutomatableParameters(inInstance);
    const auto now = Values(inInstance);
    for (std::size_t i = 0; i < inBefore.size(); ++i)
        if (i >= now.size())
            return SMoved{"A parameter that is gone", inBefore[i], std::numeric_limits<double>::quiet_NaN()};
        else if (!(std::abs(now[i] - inBefore[i]) <= kSameValue))
            return SMoved{NameOfParameter(inInstance, ids[i]), inBefore[i], now[i]};
    return std::nullopt;
}
