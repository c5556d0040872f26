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

void CValueTexts::Note(std::size_t inParameter, float inValue, const std::string& inText)
{
    const std::lock_guard lock(mMutex);
    if (inParameter >= mParameters.size())
        mParameters.resize(inParameter + 1);
    STexts& texts = mParameters[inParameter];
    const auto known = std::ranges::find(texts.mAll, inValue, &SText::mValue);
    if (known != texts.mAll.end())
    {
        known->mText = inText;
    }
    else if (texts.mAll.size() < kMostTexts)
    {
        texts.mAll.push_back({inValue, inText});
    }
    else
    {
        texts.mAll[texts.mOldest] = {inValue, inText};
        texts.mOldest = (texts.mOldest + 1) % kMostTexts;
    }
}

std::optional<std::string> CValueTexts::TextOf(std::size_t inParameter, float inValue) const
{
    const std::lock_guard lock(mMutex);
    if (inParameter >= mParameters.size())
        return std::nullopt;
    const std::vector<SText>& texts = mParameters[inParameter].mAll;
    const auto known = std::ranges::find(texts, inValue, &SText::mValue);
    return known != texts.end() ? std::optional(known->mText) : std::nullopt;
}

std::optional<float> CValueTexts::ValueOf(std::size_t inParameter, std::string_view inText) const
{
    const std::lock_guard lock(mMutex);
    if (inParameter >= mParameters.size())
        return std::nullopt;
    const std::vector<SText>& texts = mParameters[inParameter].mAll;
    auto found = std::ranges::find(texts, inText, &SText::mText);
    if (const std::optional<double> number = NumberIn(inText); found == texts.end() && number)
        found =
            std::ranges::find_if(texts, [&](const SText& inOne) { return NumberIn(inOne.mText) == number; });
    return found != texts.end() ? std::optional(found->mValue) : std::nullopt;
}
