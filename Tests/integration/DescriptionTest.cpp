#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <dlfcn.h>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace
{
bool Has(const std::vector<std::string>& inLines, std::string_view inStart)
{
    return std::ranges::any_of(
        inLines, [&](const std::string& inLine) { return inLine.starts_with(inStart); });
}

TEST(Description, ModuleExportsTheSevenEntryPointsAndNothingElse)
{
    for (const fs::path& module : {kPlainModule, kOptionsModule})
    {
        const SToolRun run = RunShell("nm --dynamic --defined-only --format=posix '" + module.string() + "'");
        std::set<std::string> names;
        std::istringstream lines(run.mOutput);
        for (std::string line; std::getline(lines, line);)
            names.insert(line.substr(0, line.find(' ')));
        EXPECT_EQ(names, (std::set<std::string>{"ACFRegisterPlugin", "ACFRegisterComponent",
                                                "ACFGetClassFactory", "ACFCanUnloadNow", "ACFStartup",
                                                "ACFShutdown", "ACFGetSDKVersion"}));
    }
}

TEST(Description, TheSynthesizerIsDescribedCallByCall)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    CHostLog log;
    auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    const std::vector<std::string> calls = log.Calls();
    for (const char* call : {"AddName(\"Example Synth\")",
                             "AddCategory(",
                             "AddMIDINode(5, global, \"GlobalMIDI\", 0x0003)",
                             "AddMIDINode(4, local input, ",
                             "AddMIDINode(6, transport, \"Transport\", 0xFFFF)",
                             "AddPrivateData(7, 4, 0)",
                             "AddAudioIn(0)",
                             "AddAudioOut(1)",
                             "AddAudioBufferLength(2)",
                             "AddClock(3)",
                             "AddPrivateData(23, 4, 0)",
                             "AddAuxOutputStem(0, ",
                             "AddPrivateData(22, 8, 0)",
                             "AddProperty(",
                             "AddProcessProc_Native(",
                             "AddComponent(",
                             "AddProcPtr(",
                             "AddEffect(\"com.example.test\"",
                             "SetManufacturerName(\"Example Audio\")",
                             "AddPackageName(\"Example Synth\")",
                             "SetPackageVersion("})
        EXPECT_TRUE(Has(calls, call)) << call;
    for (const std::string& call : calls)
        EXPECT_EQ(call.find("local output"), std::string::npos) << "a node that nothing is posted to";
    const SEffect& effect = (*module)->Effect();
    EXPECT_EQ(effect.mCategories, (std::vector<std::uint32_t>{kAAX_CategorySoftwareInstrument}));
    EXPECT_EQ(effect.mComponents.front().mAuxStems.size(), 2U);
}

TEST(Description, APluginThatCannotBeLoadedIsRefusedAndLeavesNothingBehind)
{
    const auto replaceWith = [](const fs::path& inFile, const std::string& inBytes)
    { std::ofstream(inFile, std::ios::binary) << inBytes; };
    const std::string whole = Contents(kSynthPlugin);
    std::string otherMachine = whole;
    otherMachine[18] = whole[18] == '\xB7' ? '\x3E' : '\xB7'; // ELF's numbers for x86-64 and 64-bit ARM
    const std::pair<const char*, std::string> rows[] = {{"missing", ""},
                                                        {"text", "no plug-in"},
                                                        {"cut", whole.substr(0, 5000)},
                                                        {"cut in its header", whole.substr(0, 40)},
                                                        {"of another machine", otherMachine},
                                                        {"folder", ""}};
    for (const auto& [what, bytes] : rows)
    {
        SCOPED_TRACE(what);
        const CModuleBundle bundle(kPlainModule, {});
        if (!bytes.empty())
            replaceWith(bundle.SourceVst(), bytes);
        else if (std::string_view(what) == "folder")
            fs::create_directory(bundle.SourceVst());
        CHostLog log;
        auto module = CModule::Open(bundle.Path().string(), log);
        ASSERT_FALSE(module);
        EXPECT_NE(module.Problem().mSentence.find("-20004"), std::string::npos) << module.Problem().mSentence;
        EXPECT_NE(module.Problem().mSentence.find("vst2probe"), std::string::npos);
        EXPECT_FALSE(Has(log.Calls(), "AddEffect("));
        EXPECT_EQ(log.LiveObjects(), 0);
    }
}

TEST(Description, EachHostCallMayFailWithoutAnEffectOrALeak)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    std::vector<std::string> names;
    {
        CHostLog log;
        ASSERT_TRUE(CModule::Open(bundle.Path().string(), log));
        for (const std::string& call : log.Calls())
            names.push_back(call.substr(0, call.find('(')));
    }
    ASSERT_GT(names.size(), 30U);
    std::set<std::pair<std::string, int>> done;
    for (const std::string& name : names)
    {
        int nth = 1;
        while (!done.emplace(name, nth).second)
            ++nth;
        if (name == "SetManufacturerName" || name == "AddPackageName" || name == "SetPackageVersion")
            continue; // tried next
        SCOPED_TRACE(name + " " + std::to_string(nth));
        CHostLog log;
        log.FailCall(name, nth, -12345);
        EXPECT_FALSE(CModule::Open(bundle.Path().string(), log));
        EXPECT_EQ(log.LiveObjects(), 0);
        EXPECT_EQ(Has(log.Calls(), "AddEffect("), name == "AddEffect");
        EXPECT_TRUE(Has(log.Calls(), "SetManufacturerName(")) << "named all the same";
    }
    for (const char* name : {"SetManufacturerName", "AddPackageName", "SetPackageVersion"})
    {
        CHostLog log;
        log.FailCall(name, 1, -12345);
        EXPECT_TRUE(CModule::Open(bundle.Path().string(), log)) << name;
    }
}

TEST(Description, InstancesShareNothingAndTheModuleKnowsWhenItMayGo)
{
    const CModuleBundle bundle(kPlainModule, kDelayPlugin);
    CHostLog log;
    auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    auto first = CInstance::Create(**module, 48000.0);
    auto second = CInstance::Create(**module, 44100.0);
    ASSERT_TRUE(first && second);
    EXPECT_GT((*module)->LiveObjects(), 0);
    EXPECT_EQ((*first)->Host().Controller().State().mSignalLatency, 64);
    const double before = (*second)->ListParameters().front().mValue;
    EXPECT_EQ((*first)->SetParameter("00000", before < 0.5 ? 1.0 : 0.0), kAAX_Success);
    EXPECT_EQ((*second)->ListParameters().front().mValue, before);
    first = SProblem{};
    second = SProblem{};
    EXPECT_EQ((*module)->LiveObjects(), 0);
}

TEST(Description, AModuleThatGoesAheadOfItsObjectsStaysLoaded)
{
    const CModuleBundle bundle(kPlainModule, kDelayPlugin);
    CHostLog log;
    auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    const auto make =
        reinterpret_cast<IACFUnknown* (*)()>(FindProcPtr((*module)->Effect(), kAAX_ProcPtrEffectParameters));
    const auto inModule = reinterpret_cast<void*>((*module)->Entries().mShutdown);
    const ACFPtr<IACFUnknown> object(make());
    module = SProblem{};
    Dl_info info{};
    EXPECT_NE(dladdr(inModule, &info), 0);
}
} // namespace
