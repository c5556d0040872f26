#include "Tools/support/UnnamedFile.h"

#include <cerrno>

int OpenUnnamedFile(const std::string&) { return -1; }

bool NameFile(int, const std::string&)
{
    errno = ENOTSUP;
    return false;
}
