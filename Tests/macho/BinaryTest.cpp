#include "Tests/macho/TestBundles.h"
#include "Tools/macho_loader/CMachOFile.h"
#include "Tools/macho_loader/MachOFormat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using NameSet = std::set<std::string>;

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

std::string TextOf(const fs::path& inFile)
{
    std::ifstream file(inFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/** What the system's loader, and the host's process around it, ask of a bundle. */
void CheckBundle(const std::string& inBundle, const NameSet& inExports, const NameSet& inLibraries)
{
    const CMachOFile file(ExecutableIn(inBundle));
    EXPECT_EQ(file.Type(), std::uint32_t{macho::kBundle});
    EXPECT_EQ(file.MinimumSystem(), "11.0");
    EXPECT_NE(file.Flags() & macho::kTwoLevelNames, 0U);
    EXPECT_NE(file.Flags() & macho::kNoUndefinedSymbols, 0U);
    // Else its C++ library would mix with the one of the host.
    EXPECT_EQ(file.Flags() & (macho::kWeakDefinitions | macho::kBindsToWeak), 0U);

    NameSet exports;
    for (const auto& [name, offset] : file.Exports())
        exports.insert(name);
    EXPECT_EQ(exports, inExports);
    EXPECT_EQ(NameSet(file.Libraries().begin(), file.Libraries().end()), inLibraries);
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
        CheckBundle(bundle, row.mExports, row.mLibraries);
        EXPECT_EQ(TextOf(bundle + "/Contents/PkgInfo"), "BNDL????");
    }
}

/** @return the classes that a file defines; all files in a process share one space of their names. */
NameSet ObjectiveCClassesIn(const std::string& inFile)
{
    const std::string start = "_OBJC_CLASS_$_";
    NameSet classes;
    for (const SMachOSymbol& symbol : CMachOFile(inFile).Symbols())
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
        CheckBundle(entry.path(), kEntryPoints, kAllLibraries);
        EXPECT_EQ(TextOf(entry.path() / "Contents/PkgInfo"), "TDMwPTul");
        EXPECT_TRUE(fs::exists(entry.path() / "Contents/Resources/source.vst/Contents/Info.plist"));
        const std::string properties = TextOf(entry.path() / "Contents/Info.plist");
        for (const char* const text :
             {"<string>TDMw</string>", "<string>PTul</string>", "<string>11.0</string>"})
            EXPECT_NE(properties.find(text), std::string::npos) << text;
        ++modules;
    }
    EXPECT_GT(modules, 0);
}
} // namespace
