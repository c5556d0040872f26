#pragma once
#include "Tests/integration/Expect.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/Renderer.h"

#include <memory>
#include <string>
#include <vector>

using Channels = std::vector<std::vector<float>>;

inline constexpr double kHostedRate = 48'000.0; // Hz
inline constexpr std::int64_t kHostedFrames = 24'000;

/**
 * Half a second of quiet noise on two channels and of a chord that is released in part, while parameter
 * "00003" moves; always the same.
 */
SRenderJob MakeHostedJob();

/** @return all output channels. Throws as Expect does. */
Channels RenderAll(CInstance& ioInstance, const SRenderJob& inJob);
/** The absolute values' sum: 0 says silence. */
double LoudnessOf(const Channels& inChannels);
/** The data of all chunks in a row. Throws as Expect does. */
std::string StateOf(const CModule& inModule, CInstance& ioInstance);

/** A module and one instance of it, in a host. Throws as Expect does when they can't be made. */
class CHostedModule
{
public:
    /** @param inLog the module's; outlives this. */
    CHostedModule(const CHostLog& inLog, COutcome<std::unique_ptr<CModule>> inModule);

    CModule& Module() { return *mModule; }
    CInstance& Instance() { return *mInstance; }
    /** The host calls of the description. */
    const std::vector<std::string>& Describing() const { return mDescribing; }
    Channels Render() { return RenderAll(*mInstance, MakeHostedJob()); }
    std::string State() { return StateOf(*mModule, *mInstance); }

private:
    std::unique_ptr<CModule> mModule;
    std::vector<std::string> mDescribing;
    std::unique_ptr<CInstance> mInstance;
};

/** All that a host gets of two modules of one process. */
struct STwoProducts
{
    std::vector<std::string> mDescribing[2];
    Channels mSound[2];
};

/** Renders both at the same time, each on a thread of its own. */
STwoProducts UseTogether(CHostedModule& ioFirst, CHostedModule& ioSecond);
