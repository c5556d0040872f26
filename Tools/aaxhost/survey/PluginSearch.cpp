#include "Tools/aaxhost/survey/PluginSearch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fmt/format.h>
#include <map>
#include <set>

#include <fnmatch.h>

namespace
{
namespace fs = std::filesystem;

bool IsBundle(const fs::path& inPath) { return inPath.extension() == ".vst"; }

/** Which hold executables that are no VST 2 plug-ins. */
bool IsOtherBundle(const fs::path& inPath)
{
    constexpr std::array kExtensions{".vst3", ".lv2", ".clap", ".component", ".aaxplugin"};
    return std::ranges::find(kExtensions, inPath.extension()) != kExtensions.end();
}

class CSearch
{
public:
    COutcome<SDone> Look(const fs::path& inPlace)
    {
        std::error_code error;
        if (!fs::exists(inPlace, error))
            return SProblem{fmt::format("There is no '{}'.", inPlace.string())};
        if (!fs::is_directory(inPlace, error) || IsBundle(WithoutSlash(inPlace)))
            Add(inPlace);
        else
            LookInto(inPlace, error);
        if (error)
            return SProblem{
                fmt::format("The folder '{}' cannot be read: {}.", inPlace.string(), error.message())};
        return SDone{};
    }
    const std::set<fs::path>& Plugins() const { return mPlugins; }

private:
    static fs::path WithoutSlash(const fs::path& inPath)
    {
        return inPath.has_filename() ? inPath : inPath.parent_path();
    }
    /** By its real path: a folder of links to another one is no second one. */
    void Add(const fs::path& inPath)
    {
        std::error_code error;
        const fs::path real = fs::canonical(inPath, error);
        if (!error)
            mPlugins.insert(WithoutSlash(real));
    }
    void LookInto(const fs::path& inFolder, std::error_code& outError)
    {
        std::error_code none;
        if (!mFolders.insert(fs::canonical(inFolder, none)).second)
            return; // a link that leads back
        for (fs::directory_iterator entry(inFolder, outError), end; !outError && entry != end;
             entry.increment(outError))
        {
            const fs::path& path = entry->path();
            std::error_code unreadable; // one below is left out
            if (!fs::is_directory(path, unreadable))
            {
                if (path.extension() == ".so")
                    Add(path);
            }
            else if (IsBundle(path))
                Add(path);
            else if (!IsOtherBundle(path))
                LookInto(path, unreadable);
        }
    }

    std::set<fs::path> mPlugins;
    std::set<fs::path> mFolders;
};
} // namespace

COutcome<std::vector<SFoundPlugin>> FindPlugins(const std::vector<std::string>& inPlaces,
                                                const std::string& inPattern)
{
    CSearch search;
    for (const std::string& place : inPlaces)
        if (const auto looked = search.Look(place); !looked)
            return looked.Problem();
    std::vector<SFoundPlugin> plugins;
    std::map<std::string, int> count;
    for (const fs::path& path : search.Plugins())
    {
        const std::string stem = path.stem();
        if (!inPattern.empty() && fnmatch(inPattern.c_str(), stem.c_str(), 0) != 0)
            continue;
        plugins.push_back({stem, path});
        ++count[stem];
    }
    std::set<std::string> taken;
    for (SFoundPlugin& plugin : plugins)
    {
        // The folder tells two of one name apart, a number where that does not.
        if (count[plugin.mName] > 1)
            plugin.mName += fmt::format(" ({})", plugin.mPath.parent_path().filename().string());
        const std::string first = plugin.mName;
        for (int number = 2; !taken.insert(plugin.mName).second; ++number)
            plugin.mName = fmt::format("{} {}", first, number);
    }
    std::ranges::sort(plugins, {}, [](const SFoundPlugin& plugin) { return plugin.mName; });
    return plugins;
}

std::string StampOf(const fs::path& inPath)
{
    std::uintmax_t size = 0;
    fs::file_time_type newest = fs::file_time_type::min();
    const auto add = [&](const fs::path& path)
    {
        std::error_code none;
        if (!fs::is_regular_file(path, none))
            return;
        size += fs::file_size(path, none);
        newest = std::max(newest, fs::last_write_time(path, none));
    };
    std::error_code error;
    add(inPath);
    for (fs::recursive_directory_iterator entry(inPath, error), end; !error && entry != end;
         entry.increment(error))
        add(entry->path());
    return newest == fs::file_time_type::min()
               ? std::string()
               : fmt::format("{} bytes of {}", size, newest.time_since_epoch().count());
}
