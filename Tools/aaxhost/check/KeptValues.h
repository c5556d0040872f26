#pragma once
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <string>
#include <vector>

/**
 * Says whether a state that was loaded brought back the values that it was saved with.
 *
 * A value that comes back as another number is lost only where the plug-in, given the one and the other once
 * more, writes or sounds otherwise: a switch that was at 0.78 comes back at 1.
 *
 * @param ioInstance has loaded `inSaved`; its values are compared.
 * @param inBefore   the values at which it was saved.
 * @param inWhere    ahead of the sentence about a lost value: "In a new instance: ".
 */
SFinding KeptOrLost(CCheckContext& ioContext, CInstance& ioInstance, const SInstanceState& inSaved,
                    const std::vector<double>& inBefore, const std::string& inWhere);
