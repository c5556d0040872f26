#include "Tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <cctype>
#include <regex>
#include <set>
#include <sstream>

namespace
{
const std::filesystem::path kSources = AAXADAPTER_SOURCE_DIR;

/** What a heading is called in a link: small letters, digits and `-`. */
std::string AnchorOf(const std::string& inHeading)
{
    std::string anchor;
    for (const char sign : inHeading)
        if (const auto byte = static_cast<unsigned char>(sign); std::isalnum(byte) != 0 || sign == '-')
            anchor += static_cast<char>(std::tolower(byte));
        else if (sign == ' ')
            anchor += '-';
    return anchor;
}

std::set<std::string> AnchorsIn(const std::filesystem::path& inPage)
{
    std::set<std::string> anchors;
    std::istringstream lines(Contents(inPage));
    const std::regex heading("^#+ +(.*)$");
    std::smatch match;
    for (std::string line; std::getline(lines, line);)
        if (std::regex_match(line, match, heading))
            anchors.insert(AnchorOf(match[1]));
    return anchors;
}

TEST(Links, LeadFromEveryPageToFilesAndHeadingsThatAreThere)
{
    std::vector<std::filesystem::path> pages;
    for (const char* folder : {".", "docs", "Tests/macho", "Tools/macho_loader"})
        for (const auto& entry : std::filesystem::directory_iterator(kSources / folder))
            if (entry.path().extension() == ".md")
                pages.push_back(entry.path());
    std::size_t count = 0;
    const std::regex link(R"(\]\(([^)#\s]*)#?([^)\s]*)\))");
    for (const std::filesystem::path& page : pages)
    {
        const std::string text = Contents(page);
        for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found)
        {
            const std::string file = (*found)[1];
            if (file.starts_with("http"))
                continue;
            ++count;
            const auto target = file.empty() ? page : page.parent_path() / file;
            EXPECT_TRUE(std::filesystem::exists(target)) << page << ": " << found->str();
            const std::string anchor = (*found)[2];
            EXPECT_TRUE(anchor.empty() || AnchorsIn(target).contains(anchor)) << page << ": " << found->str();
        }
    }
    EXPECT_GT(count, 20U);
}
} // namespace
