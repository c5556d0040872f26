#include "Tools/aaxhost/lib/WrappedPlugin.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

std::string WrappedPlugin(const std::string& inModule)
{
    std::error_code ignored; // whatever cannot be asked is not there
    const fs::path module = fs::absolute(inModule, ignored);
    fs::path contents = module / "Contents";
    if (!fs::is_directory(contents, ignored))
        contents = module.parent_path().parent_path();
    return contents / "Resources" / "source.vst";
}
