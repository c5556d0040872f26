#pragma once
#include "Interfaces/VST2/AEffect.h"
#include "Tools/vst2probe/PluginFacts.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <nlohmann/json_fwd.hpp>

class IPluginImage;

/**
 * Loads a plug-in into this process and asks it what it is, answering its calls as a module does.
 *
 * A plug-in may crash, hang or end the process meanwhile: this is for a child process that its parent
 * watches. Everything found out is told at once, as one JSON object each, so that it outlives this process:
 * {"stage": text} before each step, {"askedVersion": true} when the entry function asks for the host's
 * version, and as the last either {"refused": text} or {"facts": SPluginFacts}. Texts are parts of a
 * sentence. One inspector at a time in a process, on the main thread.
 */
class CPluginInspector
{
public:
    using Tell = std::function<void(const nlohmann::ordered_json&)>;

    /** @param inEntryVersion the host version answered inside the entry function. */
    CPluginInspector(std::int32_t inEntryVersion, Tell inTell);
    CPluginInspector(const CPluginInspector&) = delete;
    CPluginInspector& operator=(const CPluginInspector&) = delete;
    ~CPluginInspector();

    /** @param inPath absolute. The plug-in's code stays loaded. */
    void Run(const std::string& inPath);

private:
    static VstIntPtr HostCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                  VstIntPtr inValue, void* inPointer, float inOpt);
    VstIntPtr AnswerUnmatched(std::int32_t inOpcode, void* inPointer);
    VstIntPtr Answer(std::int32_t inOpcode, void* inPointer);

    VstIntPtr Dispatch(std::int32_t inOpcode, std::int32_t inIndex = 0, VstIntPtr inValue = 0,
                       void* inPointer = nullptr, float inOpt = 0.0F);
    std::string Text(std::int32_t inOpcode, std::int32_t inIndex = 0);

    // Each step says in the result why it cannot go on; empty when it can.
    std::string Load(const std::string& inPath);
    std::string Enter();
    void ReadIdentity();
    void ReadPorts();
    void Open();
    void ReadParameters();
    void RenderBlocks();
    void Close();
    void Stage(const char* inText);

    std::int32_t mEntryVersion = 0;
    Tell mTell;
    std::unique_ptr<IPluginImage> mImage;
    VstPluginEntryProc mEntry = nullptr;
    std::atomic<AEffect*> mEffect = nullptr; // main thread writes, the plug-in's calls read on any
    std::atomic<bool> mWantsMidi = false;    // the plug-in's calls write on any thread
    VstTimeInfo mTimeInfo{};
    SPluginFacts mFacts;
};
