#pragma once
#include "Tools/aaxhost/check/CDirectRig.h"
#include "Tools/aaxhost/check/SoundDifference.h"
#include "Tools/aaxhost/check/StateSteps.h"

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

// What a module does, beside what the same plug-in does when it is called directly.

inline constexpr const char* kUnsteady =
    "The plug-in does not do the same twice, so there is nothing to compare with.";

/** What came of a performance. */
struct SHeard
{
    Sound mSound;
    std::vector<char> mChunk;   // the plug-in's own; empty where it keeps none
    bool mAskedForTime = false; // of the plug-in called directly
    bool operator==(const SHeard&) const = default;
};

/** Out of what the module saves. */
std::vector<char> PluginChunkOf(const SInstanceState& inState);

template <class Perform>
SHeard HearPlugin(CCheckContext& ioContext, const SServices& inServices, const SStart& inStart,
                  Perform inPerform)
{
    CDirectRig rig(ioContext, inServices, inStart);
    inPerform(rig);
    const bool keepsChunk = (rig.Plugin().Effect().flags & effFlagsProgramChunks) != 0;
    return {rig.Recording(), keepsChunk ? rig.Plugin().GetChunk(0) : std::vector<char>(),
            rig.Plugin().HasAskedForTime()};
}

template <class Perform>
SHeard HearModule(CCheckContext& ioContext, Perform inPerform)
{
    std::srand(1); // some plug-ins draw from the C library's numbers
    CRig rig(ioContext);
    rig.Record();
    inPerform(rig);
    return {rig.Recording(), PluginChunkOf(Take(ioContext, rig.Instance())), false};
}

/** @return where the module's sound differs, as the part of a sentence; empty where it does not. The plug-in
 * may have outputs that the module does not describe. */
std::string OtherSound(const Sound& inPlugin, const Sound& inModule);

/** Three performances; the module's has to be as that with the feature. */
struct SComparison
{
    std::function<SHeard()> mWith;    // of the plug-in called directly that gets what the feature promises
    std::function<SHeard()> mWithout; // of one that does not
    std::function<SHeard()> mModule;
    const char* mSameAnyway; // why there is nothing to see where both are the same
    const char* mDiffers;    // ahead of what differs
};

SFinding Compare(const SComparison& inComparison);
