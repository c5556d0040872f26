#include "Source/features/CValueTexts.h"

#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <algorithm>

namespace
{
/** The first number in it; "+3.5 dB" is 3.5. */
std::optional<double> NumberIn(std::string_view inText)
{
    const std::size_t digit = inText.find_first_of("0123456789");
    if (digit == std::string_view::npos)
        return std::nullopt;
    std::size_t begin = digit;
    if (begin > 0 && inText[begin - 1] == '.')
        --begin;
    if (begin > 0 && inText[begin - 1] == '-')
        --begin;
    double number = 0.0;
    const std::string rest(inText.substr(begin));
    return AAX_CString(rest.c_str()).ToDouble(&number) ? std::optional(number) : std::nullopt;
}
} // namespace

CValueTexts::SParameter& CValueTexts::MakeRoomFor(std::size_t inParameter)
{
    if (inParameter >= mParameters.size())
        mParameters.resize(inParameter + 1);
    return mParameters[inParameter];
}

const CValueTexts::SParameter& CValueTexts::Find(std::size_t inParameter) const noexcept
{
    static const SParameter none;
    return inParameter < mParameters.size() ? mParameters[inParameter] : none;
}

void CValueTexts::Note(std::size_t inParameter, float inValue, const std::string& inText)
{
    const std::lock_guard lock(mMutex);
    std::vector<SText>& texts = MakeRoomFor(inParameter).mTexts;
    const auto known = std::ranges::find(texts, inValue, &SText::mValue);
    if (known != texts.end())
    {
        known->mText = inText;
        return;
    }
    if (texts.size() == kMostTexts)
        texts.erase(texts.begin());
    texts.push_back({inValue, inText});
}

void CValueTexts::NoteNumber(std::size_t inParameter, const std::string& inText)
{
    const std::lock_guard lock(mMutex);
    std::set<std::string, std::less<>>& numbers = MakeRoomFor(inParameter).mNumbers;
    if (numbers.size() < kMostTexts)
        numbers.insert(inText);
}

std::optional<std::string> CValueTexts::TextOf(std::size_t inParameter, float inValue) const
{
    const std::lock_guard lock(mMutex);
    const std::vector<SText>& texts = Find(inParameter).mTexts;
    const auto known = std::ranges::find(texts, inValue, &SText::mValue);
    return known != texts.end() ? std::optional(known->mText) : std::nullopt;
}

std::optional<float> CValueTexts::ValueOf(std::size_t inParameter, std::string_view inText) const
{
    const std::lock_guard lock(mMutex);
    const auto& [texts, numbers] = Find(inParameter);
    auto found = std::ranges::find(texts, inText, &SText::mText);
    // A host reads what it has shown; a number without a text was none of the plug-in's unit.
    const std::optional<double> number = NumberIn(inText);
    if (found == texts.end() && number && !numbers.contains(inText))
        found =
            std::ranges::find_if(texts, [&](const SText& text) { return NumberIn(text.mText) == number; });
    return found != texts.end() ? std::optional(found->mValue) : std::nullopt;
}
