#pragma once
#include "Tools/inspector/PluginFacts.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include <nlohmann/json_fwd.hpp>

/**
 * Loads a plug-in into this process and asks it what it is, answering its calls as a module does.
 *
 * A plug-in may crash, hang or end the process meanwhile: this is for a child process that its parent
 * watches. Everything found out is told at once, as one JSON object each, so that it outlives this process:
 * {"stage": text} before each step, {"askedVersion": true} when the entry function asks for the host's
 * version, and as the last either {"refused": text} or {"facts": SPluginFacts}. Texts are parts of a
 * sentence. On the main thread.
 */
class CPluginInspector
{
public:
    using Tell = std::function<void(const nlohmann::ordered_json&)>;

    /** @param inEntryVersion the host version answered inside the entry function. */
    CPluginInspector(std::int32_t inEntryVersion, Tell inTell);
    CPluginInspector(const CPluginInspector&) = delete;
    CPluginInspector& operator=(const CPluginInspector&) = delete;

    /** @param inPath absolute. The plug-in's code stays loaded. */
    void Run(const std::string& inPath);

private:
    // Called while the plug-in calls its host.
    void Hear(const SHostCall& inCall);
    /** Whether there was such a call; there is a place for it. */
    bool Heard(std::int32_t inOpcode) const;

    void ReadIdentity();
    void ReadPorts();
    void Start();
    void ReadParameters();
    void RenderBlocks();
    void Stage(const char* inText);

    Tell mTell;
    // Which host calls there were, by opcode; the plug-in's calls write on any thread.
    std::array<std::atomic<bool>, 64> mHeard{};
    CDrivenPlugin mPlugin; // behind what its calls use
    SPluginFacts mFacts;
};
