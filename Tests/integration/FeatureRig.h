#pragma once
#include "Tests/doubles/ScriptedModule.h"
#include "Tests/integration/HostedModule.h"
#include "Tests/integration/ModuleBundle.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>

/** The product that has one feature, or ALL of them. */
std::filesystem::path ModuleWith(const std::string& inFeature);

/** A scripted plug-in with two inputs and outputs, in a module and a host. */
struct SRig
{
    explicit SRig(const std::filesystem::path& inModule);
    ~SRig();

    SPluginScript& Script() { return mScript.Script(); }
    ScriptedEffect& Effect() { return *Script().mInstances.back(); }
    /** What the tests change of the script and the host comes before. */
    void Open();
    STransportState& Transport() { return mInstance->Host().Transport().State(); }
    /** A block, and what a host does between two on its main thread. */
    void Render(std::int32_t inFrames = 64);
    void Beat() { (void)mInstance->Parameters().TimerWakeup(); }
    /** What a plug-in does while it renders. */
    void InProcess(std::function<void(ScriptedEffect&)> inDo);

    const CModuleBundle mBundle;
    ScriptedModule mScript{mBundle.SourceVst()};
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<SRenderCall> mCall;
};

/** What is seen of a feature, in words, and what shall be seen. */
struct SFeatureRow
{
    const char* mFeature;
    std::string (*mSee)(SRig&); // gets a rig that is not open yet
    const char* mWith;
    const char* mWithout;
};

/** Each of the features alone, among all, and without it. */
void ExpectRows(std::span<const SFeatureRow> inRows);

/** Of the features that are about what the plug-in gets. */
std::span<const SFeatureRow> PluginSideRows();
