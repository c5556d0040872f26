#pragma once
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** What several checks do with the values and the states of instances. What takes a context ends the check as
 * failed where the module refuses. */

SInstanceState Take(CCheckContext& ioContext, CInstance& inInstance);
/** As a host loads it; its answers are left to the next cycle. */
void Load(CCheckContext& ioContext, CInstance& ioInstance, const SInstanceState& inState);
/** Loads it and answers all that is asked. */
void Give(CCheckContext& ioContext, CInstance& ioInstance, const SInstanceState& inState);
/** Checks of their own look whether the module takes it. */
void TrySet(CInstance& ioInstance, const std::string& inID, double inValue);
void TryUpdate(CInstance& ioInstance, const std::string& inID, double inValue);
/** Sets every parameter to a value of its own that is away from the present one. */
void MoveAll(CInstance& ioInstance, std::uint32_t inSeed);

/** What a chunk restores, and single precision, may differ. */
inline constexpr double kSameValue = 1e-4;
/** The plug-in's own values, in the order of `PluginParameters`. */
std::vector<double> Values(CInstance& inInstance);
/** Gives the instance those that differ from its own, as automation does. */
void SetValues(CInstance& ioInstance, const std::vector<double>& inValues);

struct SMoved
{
    std::int32_t mIndex = 0;
    std::string mName;
    double mBefore = 0.0;
    double mNow = 0.0; // not a number for a parameter that is gone
};
/** The parameters that are elsewhere now. */
std::vector<SMoved> MovedParameters(CInstance& inInstance, const std::vector<double>& inBefore);
/** The first of them. */
std::optional<SMoved> FirstMoved(CInstance& inInstance, const std::vector<double>& inBefore);
/** @return where the second state has other bytes, in words; empty where it has the same. */
std::string OtherBytes(const SInstanceState& inBefore, const SInstanceState& inNow);
