#include "Tools/macho_slices/MacBundle.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <vector>

namespace
{
namespace fs = std::filesystem;

/** @return empty where the list is not written as text, names none or names a file elsewhere. */
std::string NamedExecutable(const fs::path& inPropertyList)
{
    constexpr std::streamsize enough = 65536;
    std::string text(enough, '\0');
    std::ifstream file(inPropertyList, std::ios::binary);
    file.read(text.data(), enough);
    text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    for (const std::string_view mark : {"<key>CFBundleExecutable</key>", "<string>"})
    {
        const std::size_t place = text.find(mark);
        if (place == std::string::npos)
            return {};
        text.erase(0, place + mark.size());
    }
    const std::string name = text.substr(0, text.find('<'));
    return name.find('/') == std::string::npos ? name : std::string();
}
} // namespace

std::string FindMacExecutable(const std::string& inPlugin)
{
    std::error_code error;
    if (fs::is_regular_file(inPlugin, error))
        return inPlugin;
    const fs::path contents = fs::path(inPlugin) / "Contents";
    const std::string name = NamedExecutable(contents / "Info.plist");
    if (!name.empty() && fs::is_regular_file(contents / "MacOS" / name, error))
        return (contents / "MacOS" / name).string();
    std::vector<std::string> files;
    for (fs::directory_iterator entry(contents / "MacOS", error), end; !error && entry != end;
         entry.increment(error))
    {
        std::error_code typeError;
        if (entry->is_regular_file(typeError))
            files.push_back(entry->path().string());
    }
    const auto first = std::ranges::min_element(files);
    return first != files.end() ? *first : std::string();
}
