#include "Source/plugins/FileBytes.h"

#include <cstdio>
#include <memory>

namespace
{
struct SFileCloser
{
    void operator()(std::FILE* inFile) const { (void)std::fclose(inFile); } // of a file that was only read
};
using File = std::unique_ptr<std::FILE, SFileCloser>;
} // namespace

std::optional<std::vector<std::byte>> ReadFileBytes(const char* inPath)
{
    const File file(std::fopen(inPath, "rb"));
    if (file == nullptr)
        return std::nullopt;
    // In pieces instead of asking for the size: what opens like a file (a folder) may claim any size.
    constexpr std::size_t kPiece = 65536;
    std::vector<std::byte> bytes;
    std::size_t count = 0;
    do
    {
        const std::size_t old = bytes.size();
        bytes.resize(old + kPiece);
        count = std::fread(bytes.data() + old, 1, kPiece, file.get());
        bytes.resize(old + count);
    } while (count == kPiece);
    if (std::ferror(file.get()) != 0)
        return std::nullopt;
    return bytes;
}

bool WriteFileBytes(const char* inPath, std::span<const std::byte> inBytes)
{
    File file(std::fopen(inPath, "wb"));
    if (file == nullptr)
        return false;
    const bool isWritten = std::fwrite(inBytes.data(), 1, inBytes.size(), file.get()) == inBytes.size();
    return std::fclose(file.release()) == 0 && isWritten; // closing writes what is still buffered
}
