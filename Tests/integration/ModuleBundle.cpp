#include "Tests/integration/ModuleBundle.h"

#include <string>

namespace fs = std::filesystem;

fs::path InstalledPlugin(const char* inName)
{
    for (const char* folder : {TEST_PLUGIN_ROOT "/usr/lib/vst", TEST_PLUGIN_ROOT "/usr/lib/lxvst"})
        if (const fs::path file = fs::path(folder) / (std::string(inName) + "-vst.so"); fs::exists(file))
            return file;
    return {};
}

CModuleBundle::CModuleBundle(const fs::path& inModuleFile, const fs::path& inPlugin)
    : mBundle(mFolder.Path() / (inModuleFile.stem().string() + ".aaxplugin"))
{
    const fs::path code = mBundle / "Contents" / AAXADAPTER_EXECUTABLE_FOLDER;
    fs::create_directories(code);
    fs::create_directories(SourceVst().parent_path());
    fs::copy_file(inModuleFile, code / inModuleFile.filename());
    if (!inPlugin.empty())
        fs::copy(inPlugin, SourceVst(), fs::copy_options::recursive);
}
