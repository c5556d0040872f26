#include "Tools/support/WriteAll.h"

#include <cerrno>

#include <unistd.h>

bool WriteAll(int inFile, std::string_view inBytes)
{
    while (!inBytes.empty())
    {
        const ssize_t count = write(inFile, inBytes.data(), inBytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        inBytes.remove_prefix(static_cast<std::size_t>(count > 0 ? count : 0));
    }
    return true;
}
