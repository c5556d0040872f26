#pragma once
#include "Interfaces/AAX/AAX_IString.h"

#include <string>

/** Text that the host hands to a module or has it fill. */
class CHostString final : public AAX_IString
{
public:
    CHostString() = default;
    explicit CHostString(std::string inText);
    CHostString(const CHostString& inOther);
    CHostString& operator=(const CHostString& inOther);

    std::uint32_t Length() const override;
    std::uint32_t MaxLength() const override;
    const char* Get() const override;
    void Set(const char* text) override; // null empties the text
    AAX_IString& operator=(const AAX_IString& other) override;
    AAX_IString& operator=(const char* text) override;

    const std::string& Text() const noexcept { return mText; }

private:
    std::string mText;
};
