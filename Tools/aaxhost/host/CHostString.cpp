#include "Tools/aaxhost/host/CHostString.h"

#include <limits>
#include <utility>

CHostString::CHostString(std::string inText) : mText(std::move(inText)) {}

CHostString::CHostString(const CHostString& inOther) : AAX_IString(inOther), mText(inOther.mText) {}

CHostString& CHostString::operator=(const CHostString& inOther)
{
    if (this != &inOther)
        mText = inOther.mText;
    return *this;
}

std::uint32_t CHostString::Length() const { return static_cast<std::uint32_t>(mText.size()); }

std::uint32_t CHostString::MaxLength() const { return std::numeric_limits<std::uint32_t>::max(); }

const char* CHostString::Get() const { return mText.c_str(); }

void CHostString::Set(const char* text)
{
    // A copy first: the text may be part of this one.
    mText = std::string(text != nullptr ? text : "");
}

AAX_IString& CHostString::operator=(const AAX_IString& other)
{
    Set(other.Get());
    return *this;
}

AAX_IString& CHostString::operator=(const char* text)
{
    Set(text);
    return *this;
}
