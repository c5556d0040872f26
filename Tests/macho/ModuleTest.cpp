#include "Tests/macho/TestBundles.h"
#include "Tests/macho/doubles/CMacSystem.h"
#include "Tests/macho/loader/CrashTrace.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/lib/CInstance.h"
#include "Tools/aaxhost/lib/CModule.h"
#include "Tools/aaxhost/lib/Renderer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
using Channels = std::vector<std::vector<float>>;

constexpr double kRate = 48'000.0;
constexpr std::int64_t kFrames = 24'000;
constexpr std::int32_t kBlock = 480;

template <class Value>
Value Expect(COutcome<Value> inOutcome)
{
    if (!inOutcome)
        throw std::runtime_error(inOutcome.Problem().mSentence);
    return std::move(*inOutcome);
}

SModuleEntries EntriesOf(const CMachOImage& inImage)
{
    SModuleEntries entries;
    const auto find = [&](auto& outEntry, const char* inName)
    {
        outEntry =
            ImportFrom<std::remove_pointer_t<std::remove_reference_t<decltype(outEntry)>>>(inImage, inName);
    };
    find(entries.mRegisterPlugin, "ACFRegisterPlugin");
    find(entries.mRegisterComponent, "ACFRegisterComponent");
    find(entries.mGetClassFactory, "ACFGetClassFactory");
    find(entries.mCanUnloadNow, "ACFCanUnloadNow");
    find(entries.mStartup, "ACFStartup");
    find(entries.mShutdown, "ACFShutdown");
    find(entries.mGetSDKVersion, "ACFGetSDKVersion");
    return entries;
}

/** A module and one instance of it, in a host. Throws std::runtime_error when they can't be made. */
class CHostedModule
{
public:
    CHostedModule(CHostLog& inLog, COutcome<std::unique_ptr<CModule>> inModule)
        : mLog(inLog),
          mModule(Expect(std::move(inModule))),
          mDescribing(mLog.Calls()),
          mInstance(Expect(CInstance::Create(*mModule, kRate)))
    {
    }

    CInstance& Instance() { return *mInstance; }
    /** The host calls of the description. */
    const std::vector<std::string>& Describing() const { return mDescribing; }
    Channels Render(const SRenderJob& inJob)
    {
        Channels rendered(static_cast<std::size_t>(mInstance->OutputChannels()));
        const auto keep = [&](std::span<const float* const> inChannels,
                              std::int32_t inFrames) -> COutcome<SDone>
        {
            for (std::size_t i = 0; i < inChannels.size(); ++i)
                rendered.at(i).insert(rendered[i].end(), inChannels[i], inChannels[i] + inFrames);
            return SDone{};
        };
        (void)Expect(RenderOffline(*mInstance, inJob, keep)); // throws on a problem
        return rendered;
    }
    /** The data of all chunks in a row. */
    std::string State()
    {
        std::string state;
        std::int32_t count = 0;
        AAX_IACFEffectParameters& parameters = mInstance->Parameters();
        EXPECT_EQ(parameters.GetNumberOfChunks(&count), kAAX_Success);
        for (std::int32_t i = 0; i < count; ++i)
        {
            AAX_CTypeID type = 0;
            std::uint32_t size = 0;
            EXPECT_EQ(parameters.GetChunkIDFromIndex(i, &type), kAAX_Success);
            EXPECT_EQ(parameters.GetChunkSize(type, &size), kAAX_Success);
            std::vector<char> memory(sizeof(AAX_SPlugInChunk) + size);
            auto* const chunk = reinterpret_cast<AAX_SPlugInChunk*>(memory.data());
            EXPECT_EQ(parameters.GetChunk(type, chunk), kAAX_Success);
            state.append(chunk->mData, static_cast<std::size_t>(chunk->mSize));
        }
        return state;
    }

private:
    CHostLog& mLog;
    std::unique_ptr<CModule> mModule;
    std::vector<std::string> mDescribing;
    std::unique_ptr<CInstance> mInstance;
};

std::string ModuleBundle(const std::string& inFolder, const std::string& inName)
{
    return inFolder + "/modules/" + inName + ".aaxplugin";
}

/** The same product as built for both systems. */
class CBothModules
{
public:
    explicit CBothModules(const std::string& inName)
        : mMac(mMacLog, CModule::Start(EntriesOf(mSystem.Loader().Load(
                                           ExecutableIn(ModuleBundle(AAXADAPTER_MACOS_BUILD, inName)))),
                                       mMacLog)),
          mLinux(mLinuxLog, CModule::Open(ModuleBundle(AAXADAPTER_LINUX_BUILD, inName), mLinuxLog))
    {
    }

    CMacSystem mSystem;
    CHostLog mMacLog;
    CHostLog mLinuxLog;
    CHostedModule mMac;
    CHostedModule mLinux;
};

/** A second of quiet noise on two channels, the same every time. */
SAudio Noise()
{
    std::minstd_rand random(1);
    SAudio audio;
    audio.mRate = static_cast<int>(kRate);
    audio.mChannels.assign(2, std::vector<float>(kFrames));
    for (std::vector<float>& channel : audio.mChannels)
        for (float& sample : channel)
            sample = static_cast<float>(random()) / static_cast<float>(std::minstd_rand::max()) - 0.5F;
    return audio;
}

/** A chord, part of it released. */
std::vector<SMidiEvent> Chord()
{
    return {
        {0.01, {0x90, 60, 100}, 3}, {0.02, {0x90, 64, 90}, 3}, {0.05, {0x90, 67, 80}, 3},
        {0.20, {0x80, 64, 0}, 3},   {0.30, {0xB0, 1, 64}, 3},
    };
}

void ExpectSameSound(const Channels& inMac, const Channels& inLinux)
{
    // The two builds are two compilers' and two libraries of mathematics': not bit for bit the same.
    constexpr float kTolerance = 1e-4F;
    ASSERT_EQ(inMac.size(), inLinux.size());
    double energy = 0.0;
    for (std::size_t channel = 0; channel < inMac.size(); ++channel)
    {
        ASSERT_EQ(inMac[channel].size(), static_cast<std::size_t>(kFrames));
        for (std::size_t i = 0; i < inMac[channel].size(); ++i)
        {
            ASSERT_NEAR(inMac[channel][i], inLinux[channel][i], kTolerance) << channel << " " << i;
            energy += std::abs(inMac[channel][i]);
        }
    }
    EXPECT_GT(energy, 1.0) << "both are silent";
}

class MacModule : public testing::TestWithParam<const char*>
{
protected:
    static void SetUpTestSuite() { InstallCrashTrace(); }
};

TEST_P(MacModule, DescribesItselfAsTheLinuxBuildDoes)
{
    CBothModules modules(GetParam());
    EXPECT_FALSE(modules.mMac.Describing().empty());
    EXPECT_EQ(modules.mMac.Describing(), modules.mLinux.Describing());
}

TEST_P(MacModule, SoundsLikeTheLinuxBuild)
{
    CBothModules modules(GetParam());
    const SAudio noise = Noise();
    SRenderJob job;
    job.mFrames = kFrames;
    job.mRate = kRate;
    job.mBlockFrames = kBlock;
    job.mInput = &noise;
    job.mMidi = Chord();
    for (CHostedModule* const module : {&modules.mMac, &modules.mLinux})
        EXPECT_EQ(module->Instance().SetParameter("00000", 0.3), kAAX_Success);
    ExpectSameSound(modules.mMac.Render(job), modules.mLinux.Render(job));
}

TEST_P(MacModule, KeepsItsStateAsTheLinuxBuildDoes)
{
    CBothModules modules(GetParam());
    const std::string untouched = modules.mMac.State();
    for (CHostedModule* const module : {&modules.mMac, &modules.mLinux})
        EXPECT_EQ(module->Instance().SetParameter("00000", 0.3), kAAX_Success);
    EXPECT_NE(modules.mMac.State(), untouched);
    EXPECT_EQ(modules.mMac.State(), modules.mLinux.State());
}

TEST_P(MacModule, FindsItsPluginBesideItselfAndLeavesNothingOpen)
{
    const std::string bundle = ModuleBundle(AAXADAPTER_MACOS_BUILD, GetParam());
    CMacSystem system;
    CHostLog log;
    {
        CHostedModule module(log, CModule::Start(EntriesOf(system.Loader().Load(ExecutableIn(bundle))), log));
        const std::vector<std::string> calls = system.Calls().Take();
        EXPECT_EQ(std::ranges::count(calls, "CFStringCreateWithCString " + bundle +
                                                "/Contents/Resources/source.vst -> string1"),
                  1);
        (void)Expect(module.Instance().OpenGUI()); // throws on a problem
        EXPECT_TRUE(system.Pools().empty());
    }
    EXPECT_EQ(log.LiveObjects(), 0);
    EXPECT_TRUE(system.Pools().empty());
    EXPECT_EQ(system.Objects().Count(), 1U) << "the bundle that stays loaded, and nothing else";
}

INSTANTIATE_TEST_SUITE_P(Products, MacModule, testing::Values("SynthAdapter", "DelayAdapter"),
                         [](const auto& inInfo) { return std::string(inInfo.param); });
} // namespace
