#include "Tools/support/UnnamedFile.h"

#include <fcntl.h>
#include <unistd.h>

namespace
{
std::string PathOf(int inFile) { return "/proc/self/fd/" + std::to_string(inFile); }
} // namespace

int OpenUnnamedFile(const std::string& inFolder)
{
    const int file = open(inFolder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
    if (file >= 0 && access(PathOf(file).c_str(), F_OK) != 0)
    {
        (void)close(file); // it could never get a name
        return -1;
    }
    return file;
}

bool NameFile(int inFile, const std::string& inPath)
{
    return linkat(AT_FDCWD, PathOf(inFile).c_str(), AT_FDCWD, inPath.c_str(), AT_SYMLINK_FOLLOW) == 0;
}
