#pragma once
#include "Interfaces/AAX/AAX_IString.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/**
 * The string that this module owns: bytes without an encoding of their own, always NUL-terminated.
 *
 * Arguments are read as C strings, up to their first NUL; a null pointer counts as the empty text, and
 * nothing is stored through a null result pointer. A position beyond the end raises std::out_of_range.
 *
 * What no module calls: `Empty`, `Append`, what inserts and replaces, the searches, `SubString`, `ToInteger`,
 * the comparisons but for equality, and the streams. They are for effects that are written with this class.
 *
 * Threads: concurrent reads are safe.
 */
class AAX_CString : public AAX_IString
{
public:
    AAX_CString() = default;
    AAX_CString(const char* inText); // implicit: names are given as literals everywhere
    AAX_CString(const AAX_CString& inOther);
    AAX_CString(AAX_CString&& inOther) noexcept;
    AAX_CString(const AAX_IString& inOther);
    ~AAX_CString() override = default;

    std::uint32_t Length() const override;
    std::uint32_t MaxLength() const override; // the same for every string, whatever its storage
    const char* Get() const override;
    void Set(const char* inText) override;
    AAX_CString& operator=(const AAX_IString& inOther) override;
    AAX_CString& operator=(const char* inText) override;
    AAX_CString& operator=(const AAX_CString& inOther); // all characters, also behind a NUL
    AAX_CString& operator=(AAX_CString&& inOther) noexcept;

    const char* CString() const { return Get(); }
    bool Empty() const;
    char operator[](std::uint32_t inIndex) const; // unchecked
    char& operator[](std::uint32_t inIndex);      // unchecked

    AAX_CString& Clear();
    AAX_CString& Append(const AAX_CString& inText);
    AAX_CString& Append(const char* inText);
    AAX_CString& operator+=(const AAX_CString& inText);
    AAX_CString& operator+=(const char* inText);
    /** Fixed-point notation of the C locale with exactly `inPrecision` digits after the point. */
    AAX_CString& AppendNumber(double inNumber, std::uint32_t inPrecision);
    AAX_CString& AppendNumber(std::int32_t inNumber);
    AAX_CString& Insert(std::uint32_t inPosition, const AAX_CString& inText);
    AAX_CString& Insert(std::uint32_t inPosition, const char* inText);
    AAX_CString& InsertNumber(std::uint32_t inPosition, double inNumber, std::uint32_t inPrecision);
    AAX_CString& InsertNumber(std::uint32_t inPosition, std::int32_t inNumber);
    AAX_CString& Replace(std::uint32_t inPosition, std::uint32_t inLength, const AAX_CString& inText);
    AAX_CString& Replace(std::uint32_t inPosition, std::uint32_t inLength, const char* inText);
    /**
     * Removes `inLength` characters where that many remain behind `inPosition`. Where fewer remain, it
     * removes only the number by which the request exceeds them: Erase(4, 3) makes "abcdf" of "abcdef".
     */
    AAX_CString& Erase(std::uint32_t inPosition, std::uint32_t inLength);

    /** The searches find nothing: -1, whatever the arguments. */
    std::int32_t FindFirst(const AAX_CString& inText) const;
    std::int32_t FindFirst(const char* inText) const;
    std::int32_t FindFirst(char inCharacter) const;
    std::int32_t FindLast(const AAX_CString& inText) const;
    std::int32_t FindLast(const char* inText) const;
    std::int32_t FindLast(char inCharacter) const;
    /** Up to `inLength` characters; fewer where the text ends before. */
    void SubString(std::uint32_t inPosition, std::uint32_t inLength, AAX_IString* outText) const;

    /**
     * The number at the start of the text, in the C locale; leading blanks are skipped, and what follows the
     * number is ignored. @return false, with 0 stored, when there is none or it is out of range.
     */
    bool ToDouble(double* outValue) const;
    bool ToInteger(std::int32_t* outValue) const;

    /** Byte by byte, up to the first NUL of either. */
    bool operator==(const AAX_CString& inOther) const;
    bool operator==(const char* inOther) const;
    bool operator!=(const AAX_CString& inOther) const;
    bool operator!=(const char* inOther) const;
    bool operator<(const AAX_CString& inOther) const;
    bool operator>(const AAX_CString& inOther) const;

    /** As the standard string's: all characters, in the stream's width; one blank-delimited word. */
    friend std::ostream& operator<<(std::ostream& ioStream, const AAX_CString& inText);
    friend std::istream& operator>>(std::istream& ioStream, AAX_CString& outText);

private:
    std::string mString;
};
