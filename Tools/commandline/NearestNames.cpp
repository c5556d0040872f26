#include "Tools/commandline/NearestNames.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace
{
std::string LowerCase(std::string inText)
{
    for (char& letter : inText)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return inText;
}

/** How many letters have to be put in, left out or replaced, or neighbours swapped. */
std::size_t CountEdits(const std::string& inFrom, const std::string& inTo)
{
    std::vector<std::size_t> beforeLast(inTo.size() + 1);
    std::vector<std::size_t> last(inTo.size() + 1);
    std::vector<std::size_t> row(inTo.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t i = 1; i <= inFrom.size(); ++i)
    {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= inTo.size(); ++j)
        {
            const std::size_t replaced = last[j - 1] + (inFrom[i - 1] == inTo[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && inFrom[i - 1] == inTo[j - 2] && inFrom[i - 2] == inTo[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row.back();
}
} // namespace

bool EqualsWithoutCase(const std::string& inOne, const std::string& inOther)
{
    return LowerCase(inOne) == LowerCase(inOther);
}

std::vector<std::string> NearestNames(const std::string& inWord, const std::vector<std::string>& inNames)
{
    constexpr std::size_t kMostNames = 3;
    constexpr std::size_t kLongestWord = 256; // what is longer is no slip of the finger
    const std::string word = LowerCase(inWord.substr(0, kLongestWord));
    std::vector<std::pair<std::size_t, std::string>> near; // edits, name
    for (const std::string& name : inNames)
    {
        const std::string lower = LowerCase(name.substr(0, kLongestWord));
        const std::size_t edits = CountEdits(word, lower);
        const bool begins = word.size() >= 2 && lower.compare(0, word.size(), word) == 0;
        if (begins || 3 * edits <= std::max(word.size(), lower.size()))
            near.emplace_back(edits, name);
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(near.size(), kMostNames); ++i)
        names.push_back(near[i].second);
    return names;
}

std::string JoinNames(const std::vector<std::string>& inNames)
{
    std::string text;
    for (std::size_t i = 0; i < inNames.size(); ++i)
        text += (i == 0 ? "'" : i + 1 == inNames.size() ? " or '" : ", '") + inNames[i] + "'";
    return text;
}
