#include "Tools/aaxhost/lib/WrappedPlugin.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

std::string WrappedPlugin(const std::string& inModule)
{
    std::error_code ignored; // whatever cannot be asked is not there
    fs::path contents = fs::path(inModule) / "Contents";
    if (!fs::is_directory(contents, ignored))
        contents = fs::path(inModule).parent_path().parent_path();
    const fs::path plugin = contents / "Resources" / "source.vst";
    if (!fs::is_directory(plugin, ignored))
        return fs::is_regular_file(plugin, ignored) ? plugin.string() : std::string();
    for (const fs::path& folder : {plugin / "Contents" / "x86_64-linux", plugin})
        for (const auto& entry : fs::directory_iterator(folder, ignored))
            if (entry.path().extension() == ".so")
                return entry.path().string();
    return {};
}
