#pragma once
#include "Tools/aaxhost/host/CHostAutomation.h"
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/** What one block costs through the module and without it. Times are medians, in microseconds. */
struct SBlockCost
{
    std::int32_t mFrames = 0;
    double mModule = 0.0;
    std::optional<double> mBare;  // the plug-in's own processReplacing; none where it does not load by itself
    std::optional<double> mRatio; // module over bare, the median of pairs measured in turns
};

struct SPacketCost
{
    int mPackets = 0;
    double mModule = 0.0; // microseconds a block of 64 frames
};

struct SInstancesCost
{
    int mInstances = 0;
    double mModule = 0.0; // microseconds a block of 64 frames and instance, all in one call
};

/** What a module costs; where a figure is missing, `mNotes` says why. */
struct SBenchResults
{
    std::string mName;
    std::vector<SBlockCost> mBlocks;
    std::vector<SPacketCost> mPackets;
    std::vector<SInstancesCost> mInstances;
    double mDescription = 0.0; // milliseconds, from loading the module to having it described
    double mCreation = 0.0;    // milliseconds an instance
    double mDeletion = 0.0;    // milliseconds an instance
    int mParameters = 0;
    std::optional<double> mUpdate;       // microseconds a parameter
    std::optional<double> mCoefficients; // microseconds
    std::uint64_t mStateBytes = 0;
    double mSave = 0.0;                // milliseconds
    double mLoad = 0.0;                // milliseconds
    std::optional<double> mMemory;     // bytes an instance, with what this host keeps of it
    std::optional<double> mBareMemory; // bytes an instance of the plug-in alone
    std::vector<std::string> mNotes;
};

struct SBenchJob
{
    std::string mModule;
    int mMostInstances = 512;
    int mTurns = 101; // how often each time is taken
    EAnswers mAnswers = EAnswers::Late;
};

/** Called with the share of the work that is done, from 0 to 1. */
using BenchProgress = std::function<void(double)>;

/** Loads the module and measures it. Blocks for seconds, or minutes where instances are large. */
COutcome<SBenchResults> MeasureModule(const SBenchJob& inJob, const BenchProgress& inProgress);

/** The same, but only the description and the blocks; a few seconds at most unless a block takes
 * milliseconds. */
COutcome<SBenchResults> MeasureBlocks(const SBenchJob& inJob);

/** For people. */
std::string BenchAsText(const SBenchResults& inResults);
std::string BenchAsJson(const SBenchResults& inResults);
