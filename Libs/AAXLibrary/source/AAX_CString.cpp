#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <istream>
#include <limits>
#include <locale>
#include <ostream>
#include <sstream>
#include <string_view>
#include <utility>

namespace
{
/** The smallest double's last digit: all digits further behind the point are zeros. */
constexpr std::uint32_t kMaxFractionDigits = 1074;
constexpr std::int32_t kNotFound = -1;

const char* OrEmpty(const char* inText) noexcept { return inText != nullptr ? inText : ""; }

std::string FormatNumber(double inNumber, std::uint32_t inPrecision)
{
    // A stream needs stack in proportion to the precision, so it gets no more than what can differ from 0.
    const std::uint32_t streamed = std::min(inPrecision, kMaxFractionDigits);
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios_base::badbit); // a stream keeps to itself that memory has run out
    stream.setf(std::ios_base::fixed, std::ios_base::floatfield);
    stream.precision(static_cast<std::streamsize>(streamed));
    stream << inNumber;
    std::string text = std::move(stream).str();
    if (std::isfinite(inNumber))
        text.append(inPrecision - streamed, '0');
    return text;
}

std::string FormatNumber(std::int32_t inNumber)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios_base::badbit); // a stream keeps to itself that memory has run out
    stream << inNumber;
    return std::move(stream).str();
}

/** The part of a text that a decimal number can take: [sign] digits [. digits] [e [sign] digits]. */
std::string_view DecimalPrefix(std::string_view inText)
{
    std::size_t end = 0;
    const auto skip = [&](std::string_view inSet, std::size_t inLimit)
    {
        for (; inLimit > 0 && end < inText.size() && inSet.find(inText[end]) != inSet.npos; --inLimit)
            ++end;
    };
    constexpr std::string_view digits = "0123456789";
    constexpr std::size_t all = std::string_view::npos;
    skip(" \t\n\v\f\r", all);
    skip("+-", 1);
    skip(digits, all);
    skip(".", 1);
    skip(digits, all);
    const std::size_t mantissaEnd = end;
    skip("eE", 1);
    if (end != mantissaEnd)
    {
        skip("+-", 1);
        skip(digits, all);
    }
    return inText.substr(0, end);
}

template <typename T>
bool ExtractNumber(std::string_view inText, T* outValue)
{
    if (outValue == nullptr)
        return false;
    std::istringstream stream{std::string(inText)};
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios_base::badbit); // a stream keeps to itself that memory has run out
    T value{};
    stream >> value;
    const bool extracted = !stream.fail();
    *outValue = extracted ? value : T{};
    return extracted;
}

int Compare(const AAX_CString& inFirst, const char* inSecond)
{
    return std::strcmp(inFirst.CString(), OrEmpty(inSecond));
}
} // namespace

AAX_CString::AAX_CString(const char* inText) : mString(OrEmpty(inText)) {}

AAX_CString::AAX_CString(const AAX_CString& inOther) = default;

AAX_CString::AAX_CString(AAX_CString&& inOther) noexcept = default;

AAX_CString::AAX_CString(const AAX_IString& inOther) : mString(OrEmpty(inOther.Get())) {}

std::uint32_t AAX_CString::Length() const { return static_cast<std::uint32_t>(mString.size()); }

std::uint32_t AAX_CString::MaxLength() const { return 0xFFFFFFFEU; }

const char* AAX_CString::Get() const { return mString.c_str(); }

void AAX_CString::Set(const char* inText) { mString.assign(OrEmpty(inText)); }

AAX_CString& AAX_CString::operator=(const AAX_IString& inOther)
{
    Set(inOther.Get());
    return *this;
}

AAX_CString& AAX_CString::operator=(const char* inText)
{
    Set(inText);
    return *this;
}

AAX_CString& AAX_CString::operator=(const AAX_CString& inOther)
{
    mString = inOther.mString;
    return *this;
}

AAX_CString& AAX_CString::operator=(AAX_CString&& inOther) noexcept
{
    mString = std::move(inOther.mString);
    return *this;
}

bool AAX_CString::Empty() const { return mString.empty(); }

char AAX_CString::operator[](std::uint32_t inIndex) const { return mString[inIndex]; }

char& AAX_CString::operator[](std::uint32_t inIndex) { return mString[inIndex]; }

AAX_CString& AAX_CString::Clear()
{
    mString.clear();
    return *this;
}

AAX_CString& AAX_CString::Append(const AAX_CString& inText) { return Append(inText.CString()); }

AAX_CString& AAX_CString::Append(const char* inText)
{
    mString.append(OrEmpty(inText));
    return *this;
}

AAX_CString& AAX_CString::operator+=(const AAX_CString& inText) { return Append(inText); }

AAX_CString& AAX_CString::operator+=(const char* inText) { return Append(inText); }

AAX_CString& AAX_CString::AppendNumber(double inNumber, std::uint32_t inPrecision)
{
    mString += FormatNumber(inNumber, inPrecision);
    return *this;
}

AAX_CString& AAX_CString::AppendNumber(std::int32_t inNumber)
{
    mString += FormatNumber(inNumber);
    return *this;
}

AAX_CString& AAX_CString::Insert(std::uint32_t inPosition, const AAX_CString& inText)
{
    return Insert(inPosition, inText.CString());
}

AAX_CString& AAX_CString::Insert(std::uint32_t inPosition, const char* inText)
{
    mString.insert(inPosition, OrEmpty(inText));
    return *this;
}

AAX_CString& AAX_CString::InsertNumber(std::uint32_t inPosition, double inNumber, std::uint32_t inPrecision)
{
    mString.insert(inPosition, FormatNumber(inNumber, inPrecision));
    return *this;
}

AAX_CString& AAX_CString::InsertNumber(std::uint32_t inPosition, std::int32_t inNumber)
{
    mString.insert(inPosition, FormatNumber(inNumber));
    return *this;
}

AAX_CString& AAX_CString::Replace(std::uint32_t inPosition, std::uint32_t inLength, const AAX_CString& inText)
{
    return Replace(inPosition, inLength, inText.CString());
}

AAX_CString& AAX_CString::Replace(std::uint32_t inPosition, std::uint32_t inLength, const char* inText)
{
    mString.replace(inPosition, inLength, OrEmpty(inText));
    return *this;
}

AAX_CString& AAX_CString::Erase(std::uint32_t inPosition, std::uint32_t inLength)
{
    const std::uint32_t remaining = Length() - inPosition; // wraps where the position is refused below
    const std::uint32_t cut = remaining < inLength ? remaining : 0;
    mString.erase(inPosition, inLength - cut);
    return *this;
}

std::int32_t AAX_CString::FindFirst(const AAX_CString&) const { return kNotFound; }

std::int32_t AAX_CString::FindFirst(const char*) const { return kNotFound; }

std::int32_t AAX_CString::FindFirst(char) const { return kNotFound; }

std::int32_t AAX_CString::FindLast(const AAX_CString&) const { return kNotFound; }

std::int32_t AAX_CString::FindLast(const char*) const { return kNotFound; }

std::int32_t AAX_CString::FindLast(char) const { return kNotFound; }

void AAX_CString::SubString(std::uint32_t inPosition, std::uint32_t inLength, AAX_IString* outText) const
{
    const std::string part = mString.substr(inPosition, inLength);
    if (outText != nullptr)
        *outText = part.c_str();
}

bool AAX_CString::ToDouble(double* outValue) const
{
    // Some stream libraries take letters of hexadecimal numbers in, and then refuse "12abc".
    return ExtractNumber(DecimalPrefix(mString), outValue);
}

bool AAX_CString::ToInteger(std::int32_t* outValue) const { return ExtractNumber(mString, outValue); }

bool AAX_CString::operator==(const AAX_CString& inOther) const
{
    return Compare(*this, inOther.CString()) == 0;
}

bool AAX_CString::operator==(const char* inOther) const { return Compare(*this, inOther) == 0; }

bool AAX_CString::operator!=(const AAX_CString& inOther) const { return !(*this == inOther); }

bool AAX_CString::operator!=(const char* inOther) const { return !(*this == inOther); }

bool AAX_CString::operator<(const AAX_CString& inOther) const
{
    return Compare(*this, inOther.CString()) < 0;
}

bool AAX_CString::operator>(const AAX_CString& inOther) const
{
    return Compare(*this, inOther.CString()) > 0;
}

std::ostream& operator<<(std::ostream& ioStream, const AAX_CString& inText)
{
    return ioStream << inText.mString;
}

std::istream& operator>>(std::istream& ioStream, AAX_CString& outText) { return ioStream >> outText.mString; }
