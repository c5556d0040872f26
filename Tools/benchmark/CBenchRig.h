#pragma once
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/bench/CFixedMidiNode.h"
#include "Tools/aaxhost/bench/CFixedTransport.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"

#include <cstdint>
#include <memory>
#include <vector>

/**
 * A module with a plug-in of the benchmark's choice, any number of instances of it, and the means to render
 * them with a host that takes next to no time itself.
 *
 * Throws std::runtime_error when the module or an instance does not start. Threads: the main thread.
 */
class CBenchRig
{
public:
    static constexpr double kRate = 48000.0; // Hz

    CBenchRig(const std::filesystem::path& inModuleFile, const std::filesystem::path& inPlugin,
              int inInstances = 1);

    CModule& Module() { return *mModule; }
    CInstance& Instance() { return *mInstances.front()->mInstance; }
    const CModuleBundle& Bundle() const { return mBundle; }

    /** What every instance gets from the next call on. Noise at the inputs. */
    void SetBlock(std::int32_t inFrames, std::size_t inPackets);
    /** One call of the module for all instances. */
    void Render() { mProcess(mContexts.data(), mContexts.data() + mContexts.size()); }

private:
    struct SVoice
    {
        std::unique_ptr<CInstance> mInstance;
        std::unique_ptr<SRenderCall> mCall;
        std::unique_ptr<CFixedMidiNode> mNode;
    };
    void AddInstance();

    CModuleBundle mBundle;
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    CFixedTransport mTransport;
    std::vector<std::unique_ptr<SVoice>> mInstances;
    std::vector<void*> mContexts;
    AAX_CProcessProc mProcess = nullptr;
};
