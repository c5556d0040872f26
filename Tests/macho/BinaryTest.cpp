#include "Tests/macho/TestBundles.h"
#include "Tests/support/FileContents.h"
#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/CMachOFile.h"
#include "Tools/macho_loader/MachOFormat.h"
#include "Tools/macho_slices/MachOSlices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using NameSet = std::set<std::string>;

// Of products and examples, and of what the tests load besides.
const std::string kProcessors = AAXADAPTER_MACOS_ARCHITECTURES;
const std::string kTestProcessors = kProcessors == "arm64" ? "arm64" : "x86_64";
const NameSet kSystemOnly = {"/usr/lib/libSystem.B.dylib"};
const NameSet kAllLibraries = {
    "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
    "/System/Library/Frameworks/Carbon.framework/Versions/A/Carbon",
    "/usr/lib/libobjc.A.dylib",
    "/usr/lib/libSystem.B.dylib",
};
const NameSet kEntryPoints = {"_ACFRegisterPlugin", "_ACFRegisterComponent", "_ACFGetClassFactory",
                              "_ACFCanUnloadNow",   "_ACFStartup",           "_ACFShutdown",
                              "_ACFGetSDKVersion"};

/** @return a number of a signature, which has the highest byte first. */
std::uint32_t SignatureNumber(std::span<const std::uint8_t> inBytes, std::size_t inOffset)
{
    CByteReader reader(inBytes, inOffset);
    std::uint32_t number = 0;
    for (int i = 0; i < 4; ++i)
        number = number << 8 | reader.Read<std::uint8_t>();
    return number;
}

/** A Mac with a processor of Apple's runs no code without a signature; one by nobody in particular does. */
void CheckOwnSignature(const CMachOFile& inFile)
{
    constexpr std::uint32_t codeDirectory = 0xFADE0C02;
    constexpr std::uint32_t byNobody = 2;
    const auto signature = inFile.Signature();
    ASSERT_GT(signature.size(), 20U);
    EXPECT_EQ(SignatureNumber(signature, 0), 0xFADE0CC0U);
    ASSERT_GT(SignatureNumber(signature, 8), 0U); // parts
    const std::uint32_t first = SignatureNumber(signature, 16);
    ASSERT_EQ(SignatureNumber(signature, first), codeDirectory);
    EXPECT_EQ(SignatureNumber(signature, first + 12) & byNobody, byNobody);
    EXPECT_EQ(SignatureNumber(signature, first + 32), inFile.SignatureOffset()) << "not all of it is signed";
}

/** What the system's loader, and the host's process around it, ask of a bundle's code for one processor. */
void CheckSlice(const CMachOFile& inFile, const NameSet& inExports, const NameSet& inLibraries)
{
    EXPECT_EQ(inFile.Type(), std::uint32_t{macho::kBundle});
    EXPECT_EQ(inFile.MinimumSystem(), "11.0");
    EXPECT_NE(inFile.Flags() & macho::kTwoLevelNames, 0U);
    EXPECT_NE(inFile.Flags() & macho::kNoUndefinedSymbols, 0U);
    // Else its C++ library would mix with the one of the host.
    EXPECT_EQ(inFile.Flags() & (macho::kWeakDefinitions | macho::kBindsToWeak), 0U);

    NameSet exports;
    for (const auto& [name, offset] : inFile.Exports())
        exports.insert(name);
    EXPECT_EQ(exports, inExports);
    EXPECT_EQ(NameSet(inFile.Libraries().begin(), inFile.Libraries().end()), inLibraries);
    EXPECT_FALSE(inFile.SectionContent("__unwind_info").empty());
}

/** ... and of all of it. @param inProcessors as "x86_64 and arm64". */
void CheckBundle(const std::string& inBundle, const std::string& inProcessors, const NameSet& inExports,
                 const NameSet& inLibraries)
{
    const std::string executable = ExecutableIn(inBundle);
    const SMachOSlices slices = ReadMachOSlices(executable);
    EXPECT_EQ(slices.mFault, "");
    EXPECT_EQ(slices.ProcessorNames(), inProcessors);
    for (const SMachOSlice& slice : slices.mSlices)
    {
        SCOPED_TRACE(slice.ProcessorName());
        const CMachOFile file(executable, slice.mProcessor);
        CheckSlice(file, inExports, inLibraries);
        if (slice.mProcessor == kMachOProcessorArm64)
            CheckOwnSignature(file);
    }
}

/** @return the texts in the code; shorter ones are a part of an instruction on some processors. */
NameSet LongTextsIn(const CMachOFile& inFile)
{
    constexpr std::size_t shortest = 17;
    const auto content = inFile.SectionContent("__cstring");
    CByteReader reader(content);
    NameSet texts;
    while (!reader.AtEnd())
        if (std::string text = reader.ReadText(); text.size() >= shortest)
            texts.insert(std::move(text));
    return texts;
}

TEST(MachOBinary, TestBundlesAndExamplesShowTheirListedFunctionsOnly)
{
    struct SRow
    {
        const char* mBundle;
        NameSet mExports;
        NameSet mLibraries;
    };
    const SRow rows[] = {
        {"runtime_subject.bundle", {"_MakeRuntimeSubject"}, kSystemOnly},
        {"platform_subject.bundle", {"_MakePlatformSubject"}, kAllLibraries},
        {"scripted_plugin.vst", {"_GetPluginScript", "_VSTPluginMain"}, kSystemOnly},
        {"scripted_plugin_main_macho.vst", {"_GetPluginScript", "_main_macho"}, kSystemOnly},
        {"scripted_plugin_no_entry.vst", {"_GetPluginScript"}, kSystemOnly},
        {"../examples/ExampleSynth.vst", {"_VSTPluginMain"}, kSystemOnly},
        {"../examples/ExampleDelay.vst", {"_VSTPluginMain"}, kSystemOnly},
        {"../examples/ExampleDelayOldEntry.vst", {"_main_macho"}, kSystemOnly},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mBundle);
        const std::string bundle = TestBundle(row.mBundle);
        const bool isProduct = std::string_view(row.mBundle).starts_with("../examples/");
        CheckBundle(bundle, isProduct ? kProcessors : kTestProcessors, row.mExports, row.mLibraries);
        EXPECT_EQ(Contents(bundle + "/Contents/PkgInfo"), "BNDL????");
    }
}

/** @return the classes that a file defines; all files in a process share one space of their names. */
NameSet ObjectiveCClassesIn(const std::string& inFile)
{
    const std::string start = "_OBJC_CLASS_$_";
    NameSet classes;
    for (const SMachOSlice& slice : ReadMachOSlices(inFile).mSlices)
        for (const SMachOSymbol& symbol : CMachOFile(inFile, slice.mProcessor).Symbols())
            if (symbol.mName.starts_with(start))
                classes.insert(symbol.mName.substr(start.size()));
    return classes;
}

TEST(MachOBinary, NoTwoFilesInAProcessDefineOneObjectiveCClass)
{
    // The adapter defines none. That of the synthesizer's editor is in the object that this build links
    // nowhere.
    for (const char* const product : {"SynthAdapter", "DelayAdapter", "OldEntryAdapter"})
    {
        SCOPED_TRACE(product);
        const std::string bundle = AAXADAPTER_MACOS_BUILD + std::string("/modules/") + product + ".aaxplugin";
        EXPECT_EQ(ObjectiveCClassesIn(ExecutableIn(bundle)), NameSet());
    }
    const NameSet editor = ObjectiveCClassesIn(
        AAXADAPTER_MACOS_BUILD
        "/Examples/synth/editor/CMakeFiles/example_synth_cocoa_view.dir/PanelView_mac.mm.o");
    EXPECT_FALSE(editor.empty());
    for (const std::string& name : editor)
        EXPECT_TRUE(name.starts_with("ExampleSynth")) << name;
}

TEST(MachOBinary, ModulesShowTheSevenEntryPointsOnly)
{
    int modules = 0;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(AAXADAPTER_MACOS_BUILD) / "modules"))
    {
        SCOPED_TRACE(entry.path());
        CheckBundle(entry.path(), kProcessors, kEntryPoints, kAllLibraries);
        EXPECT_EQ(Contents(entry.path() / "Contents/PkgInfo"), "TDMwPTul");
        EXPECT_TRUE(fs::exists(entry.path() / "Contents/Resources/source.vst/Contents/Info.plist"));
        const std::string properties = Contents(entry.path() / "Contents/Info.plist");
        for (const char* const text :
             {"<string>TDMw</string>", "<string>PTul</string>", "<string>11.0</string>"})
            EXPECT_NE(properties.find(text), std::string::npos) << text;
        ++modules;
    }
    EXPECT_GT(modules, 0);
}

TEST(MachOBinary, EverySliceOfAModuleIsProtectedAndSaysTheSame)
{
    for (const char* const product : {"SynthAdapter", "DelayAdapter", "FeaturedAdapter"})
    {
        SCOPED_TRACE(product);
        const std::string executable =
            ExecutableIn(AAXADAPTER_MACOS_BUILD + std::string("/modules/") + product + ".aaxplugin");
        std::set<NameSet> texts;
        for (const SMachOSlice& slice : ReadMachOSlices(executable).mSlices)
        {
            SCOPED_TRACE(slice.ProcessorName());
            const CMachOFile file(executable, slice.mProcessor);
            NameSet imports;
            for (const SMachOBinding& binding : file.Bindings())
                imports.insert(binding.mSymbol);
            EXPECT_TRUE(imports.contains("___stack_chk_fail"));
            EXPECT_TRUE(imports.contains("___stack_chk_guard"));
            texts.insert(LongTextsIn(file));
            EXPECT_FALSE(texts.begin()->empty());
        }
        EXPECT_EQ(texts.size(), 1U) << "the slices were made of different sources";
    }
}
} // namespace
