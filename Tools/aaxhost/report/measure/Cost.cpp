#include "Tools/aaxhost/bench/ModuleBench.h"
#include "Tools/aaxhost/report/measure/Parts.h"

SReportCost MeasureCost(const std::string& inModule)
{
    SReportCost cost;
    const auto results = MeasureBlocks({.mModule = inModule});
    if (!results)
    {
        cost.mProblem = results.Problem().mSentence;
        return cost;
    }
    for (const SBlockCost& block : results->mBlocks)
    {
        cost.mBlocks.push_back(block.mFrames);
        cost.mModule.push_back(block.mModule);
        if (block.mBare)
            cost.mBare.push_back(*block.mBare);
    }
    if (cost.mBare.empty() && !results->mNotes.empty())
        cost.mBareProblem = results->mNotes.front();
    return cost;
}
