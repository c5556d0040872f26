#pragma once
#include "Tools/benchmark/EmptyPlugin.h"

#include <filesystem>
#include <memory>

inline const std::filesystem::path kEmptyPlugin = EMPTY_PLUGIN_FILE;

/**
 * Makes the host calls of the empty plug-in's instances.
 *
 * Threads: the main thread. Instances must be alive while their calls are made.
 */
class CEmptyPluginCalls
{
public:
    /** @param inFile the very file that the instances were loaded from. Throws std::runtime_error. */
    explicit CEmptyPluginCalls(const std::filesystem::path& inFile);

    /** The instance's question for the time. @return what its host answers. */
    VstIntPtr AskForTime(int inInstance) const
    {
        return mHost(mAccess->mEffectAt(inInstance), audioMasterGetTime, 0, 0, nullptr, 0.0F);
    }
    /** The instance tells its host of a parameter's value. */
    void Automate(int inInstance, std::int32_t inParameter) const
    {
        (void)mHost(mAccess->mEffectAt(inInstance), audioMasterAutomate, inParameter, 0, nullptr, 0.0F); // 0
    }
    /** The text of a parameter's value and its unit, as a host asks for them. */
    void WriteText(int inInstance, std::int32_t inParameter) const
    {
        AEffect& effect = *mAccess->mEffectAt(inInstance);
        char text[64];
        for (const std::int32_t opcode : {effGetParamDisplay, effGetParamLabel})
            (void)effect.dispatcher(&effect, opcode, inParameter, 0, text, 0.0F); // always writes
    }

private:
    struct SImageCloser
    {
        void operator()(void* inImage) const;
    };
    std::unique_ptr<void, SImageCloser> mImage;
    const SEmptyPluginAccess* mAccess = nullptr;
    audioMasterCallback mHost = nullptr;
};
