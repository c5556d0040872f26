#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

const fs::path kRoot = AAXADAPTER_SOURCE_DIR;

/** Calls `inVisit` with each line of each source file below a folder. */
template <class Visit>
void VisitLines(const fs::path& inFolder, Visit inVisit)
{
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kRoot / inFolder))
    {
        const fs::path extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp" && extension != ".mm")
            continue;
        std::ifstream file(entry.path());
        const std::string name = entry.path().lexically_relative(kRoot).generic_string();
        for (std::string line; std::getline(file, line); ++count)
            inVisit(name, line);
    }
    EXPECT_GT(count, 0U) << "nothing was looked at in " << inFolder;
}

bool StartsWithOneOf(const std::string& inText, const std::vector<std::string>& inPrefixes)
{
    return std::ranges::any_of(
        inPrefixes, [&](const std::string& inPrefix) { return inText.starts_with(inPrefix); });
}

TEST(Layering, IncludesGoDownOnly)
{
    struct SLayer
    {
        std::string mFolder; // without those below it that have a row of their own further down
        std::vector<std::string> mMayInclude;
        std::vector<std::string> mButNot = {}; // of these
    };
    const std::vector<std::string> aax = {"Interfaces/AAX/", "Interfaces/ACF/"};
    const SLayer layers[] = {
        {"Interfaces/", {"Interfaces/"}},
        {"Platform/", {"Platform/"}},
        {"Libs/AAXLibrary/", {aax[0], aax[1], "Platform/", "Libs/AAXLibrary/"}},
        {"Extensions/GUI/", {aax[0], "Libs/AAXLibrary/", "Extensions/GUI/", "vstgui/"}},
        {"Extensions/GUI/stand_in/", {"vstgui/", "vstgui_stand_in.h"}},
        // What only some products have knows the adapter, and the adapter nothing of it.
        {"Source/",
         {"Interfaces/", "Libs/", "Extensions/", "Platform/", "Source/"},
         {"Source/features/", "Source/guard/"}},
        {"Source/features/", {"Interfaces/", "Libs/", "Source/"}, {"Source/guard/"}},
        {"Source/guard/", {"Platform/", "Source/"}, {"Source/features/"}},
        {"Source/plugins/", {"Interfaces/VST2/", "Platform/", "Source/plugins/"}},
        {"Tools/commandline/", {"Tools/commandline/"}},
        {"Tools/support/", {"Tools/support/"}},
        {"Tools/aaxhost/",
         {aax[0], aax[1], "Tools/aaxhost/", "Tools/commandline/", "Tools/inspector/", "Tools/support/"}},
        // The forbidden calls are those that the products' real-time guard counts.
        {"Tools/aaxhost/check/",
         {aax[0], "Tools/aaxhost/", "Tools/support/", "Tools/vst2driver/",
          "Source/guard/ForbiddenFunctions.h"}},
        // The plug-in's own texts.
        {"Tools/aaxhost/report/",
         {"Interfaces/VST2/", "Tools/aaxhost/", "Tools/commandline/", "Tools/inspector/", "Tools/support/",
          "Tools/vst2driver/"}},
        // The plug-in called directly in a module's place.
        {"Tools/aaxhost/direct/",
         {aax[0], aax[1], "Interfaces/VST2/", "Tools/aaxhost/", "Tools/vst2driver/"}},
        {"Tools/aaxhost/bench/", {aax[0], "Tools/aaxhost/", "Tools/support/", "Tools/vst2driver/"}},
        {"Tools/aaxhost/survey/", {"Tools/aaxhost/", "Tools/support/"}},
        // A product without a plug-in, which is as much of the adapter as a generated source.
        {"Tools/survey_module/",
         {"Source/AaxAdapter_Product.h", "Source/SourceVstPath.h", "Source/plugins/ProductFeatures.h"}},
        // What the module is compared with: the plug-in called directly, and nothing of the module's.
        {"Tools/vst2driver/", {"Interfaces/VST2/", "Platform/", "Tools/macho_slices/", "Tools/vst2driver/"}},
        // Loads a plug-in as a module does, and of the adapter knows only how many ports that takes.
        {"Tools/inspector/",
         {"Interfaces/VST2/", "Platform/", "Source/plugins/PortList.h", "Source/AAX_SInstrumentSetupInfo.h",
          "Tools/inspector/", "Tools/macho_slices/", "Tools/support/", "Tools/vst2driver/"}},
        {"Tools/vst2probe/",
         {"Interfaces/VST2/", "Source/plugins/", "Tools/commandline/", "Tools/inspector/", "Tools/support/",
          "Tools/vst2driver/", "Tools/vst2probe/"}},
        {"Tools/macho_loader/", {"Tools/macho_loader/", "Tools/macho_slices/"}},
        {"Tools/macho_slices/", {"Tools/macho_slices/"}},
        {"Tools/macos-sysroot/", {}},
        // These work on the tests' modules and plug-ins.
        {"Tools/benchmark/",
         {"Interfaces/VST2/", "Tests/integration/", "Tools/aaxhost/", "Tools/benchmark/",
          "Tools/vst2driver/"}},
        {"Tools/fuzz/",
         {aax[0], aax[1], "Libs/AAXLibrary/", "Source/", "Tests/doubles/", "Tools/aaxhost/", "Tools/fuzz/"}},
        {"Examples/", {"Interfaces/VST2/", "Examples/"}},
    };
    const std::regex include(R"re(^\s*#\s*include\s*"([^"]+)")re");
    for (const char* folder : {"Examples", "Extensions", "Interfaces", "Libs", "Platform", "Source", "Tools"})
        VisitLines(folder,
                   [&](const std::string& inFile, const std::string& inLine)
                   {
                       std::smatch match;
                       if (!std::regex_search(inLine, match, include))
                           return;
                       const auto layer = std::find_if(std::rbegin(layers), std::rend(layers),
                                                       [&](const SLayer& inLayer)
                                                       { return inFile.starts_with(inLayer.mFolder); });
                       ASSERT_TRUE(layer != std::rend(layers)) << inFile << ": its folder has no row";
                       EXPECT_TRUE(StartsWithOneOf(match[1], layer->mMayInclude) &&
                                   !StartsWithOneOf(match[1], layer->mButNot))
                           << inFile << ": " << inLine;
                   });
    for (const SLayer& layer : layers)
        EXPECT_TRUE(fs::exists(kRoot / layer.mFolder)) << layer.mFolder;
}

TEST(Layering, TheVst2HostKnowsNoAaxName)
{
    const std::regex name(R"(\bk?AAX_|\bIACF|AaxAdapter)");
    VisitLines("Source/plugins", [&](const std::string& inFile, const std::string& inLine)
               { EXPECT_FALSE(std::regex_search(inLine, name)) << inFile << ": " << inLine; });
}

TEST(Layering, ThePagesNameSourcesThatAreThere)
{
    std::set<std::string> sources = {"ProductFeatures.h", "ProductOptions.h"}; // made in the build folder
    for (const char* folder :
         {"Examples", "Extensions", "Interfaces", "Libs", "Platform", "Source", "Tests", "Tools"})
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kRoot / folder))
            sources.insert(entry.path().filename().string());
    const std::regex source(R"re([`/](\w+\.(h|cpp|mm))`)re");
    for (const char* page : {"docs/architecture.md", "CONTRIBUTING.md"})
    {
        SCOPED_TRACE(page);
        std::ifstream file(kRoot / page);
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const std::sregex_iterator first(text.begin(), text.end(), source);
        EXPECT_NE(first, std::sregex_iterator()) << "nothing was looked at";
        for (std::sregex_iterator match = first; match != std::sregex_iterator(); ++match)
            EXPECT_TRUE(sources.contains((*match)[1])) << (*match)[1];
    }
}

TEST(Layering, OnlyThePlatformFolderNamesAnOperatingSystem)
{
    const std::regex conditional(R"(^\s*#.*(__APPLE__|__linux|_WIN32|TARGET_OS_|__MACH__|__unix))");
    const std::regex systemHeader(
        R"(^\s*#\s*include\s*<(dlfcn|unistd|X11|xcb|CoreFoundation|Carbon|objc|sys)[./])");
    for (const char* folder : {"Interfaces", "Libs", "Source"})
        VisitLines(folder,
                   [&](const std::string& inFile, const std::string& inLine)
                   {
                       EXPECT_FALSE(std::regex_search(inLine, conditional)) << inFile << ": " << inLine;
                       EXPECT_FALSE(std::regex_search(inLine, systemHeader)) << inFile << ": " << inLine;
                   });
    for (const char* folder : {"Examples", "Extensions", "Tools"})
        VisitLines(folder, [&](const std::string& inFile, const std::string& inLine)
                   { EXPECT_FALSE(std::regex_search(inLine, conditional)) << inFile << ": " << inLine; });
}
} // namespace
