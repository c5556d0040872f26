#pragma once
#include "Interfaces/ACF/ACFPtr.h"
#include "Source/AAX_SInstrumentRenderInfo.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Tests/doubles/ScriptedModule.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CHostMidiNode.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Lines = std::vector<std::string>;

/** One instance of the adapter around the scripted plug-in, between a recording host and the plug-in's
 * script. */
class AdapterTest : public testing::Test
{
protected:
    AdapterTest();
    ~AdapterTest() override;

    SPluginScript& Script() { return mModule.Script(); }
    /** Makes the instance and initialises it as a host does; what both sides logged meanwhile is forgotten.
     */
    void Start();
    /** The same without the first coefficients. */
    AAX_Result StartWithoutCoefficients();
    void Stop();
    AaxAdapter_Parameters& Instance() { return *mInstance; }
    ScriptedEffect& Effect() { return *Script().mInstances.back(); }

    /** The calls that reached the plug-in, without questions. */
    Lines TakePluginCalls();
    /** The calls that reached the host. */
    Lines TakeHostCalls();
    /** The plug-in changes a parameter of its own and tells the host. */
    void Automate(std::int32_t inIndex, float inValue);

    ScriptedModule mModule;
    CHostLog mLog;
    CInstanceHost mHost{mLog};

private:
    ACFPtr<IACFUnknown> mReference;
    AaxAdapter_Parameters* mInstance = nullptr;
};

/** A render record with buffers of its own, each channel followed by samples that stay untouched. */
class CRenderBlock
{
public:
    static constexpr std::int32_t kFrames = 64;
    static constexpr float kUntouched = -99.0F;

    CRenderBlock(AaxAdapter_Parameters& inInstance, std::size_t inInputs, std::size_t inOutputs,
                 std::int32_t inFrames = kFrames);
    void Render();

    AAX_SInstrumentRenderInfo mInfo{};
    std::vector<std::vector<float>> mInputs;
    std::vector<std::vector<float>> mOutputs;
    std::int32_t mFrames;

private:
    AAX_CInstrumentParameters* mInstance;
    std::vector<float*> mInputPointers;
    std::vector<float*> mOutputPointers;
};
