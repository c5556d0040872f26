#include "Tools/support/CTemporaryFolder.h"

#include "Tools/support/Watcher.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>

namespace fs = std::filesystem;

CTemporaryFolder::CTemporaryFolder() : mPath(fs::temp_directory_path() / UniqueName("aaxadapter-"))
{
    WatchFolder(mPath);
    if (mkdir(mPath.c_str(), 0700) == 0)
        return;
    const std::error_code error(errno, std::generic_category());
    Unwatch(mPath);
    throw fs::filesystem_error("No temporary folder can be made", mPath, error);
}

CTemporaryFolder::~CTemporaryFolder()
{
    std::error_code ignored; // what cannot be removed is tried again by the watcher
    (void)fs::remove_all(mPath, ignored);
    if (!ignored)
        Unwatch(mPath);
}
