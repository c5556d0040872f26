#include "Tools/macho_loader/LibSystemParts.h"

#include <array>
#include <cctype>
#include <cstddef>

namespace
{
constexpr int kCharacters = 256;
constexpr int kAsciiCharacters = 128;

/** The system's table for the locale "C", as its headers read it. */
struct SCharacterTable
{
    std::array<char, 40> mNames{};
    std::array<void*, 2> mConverters{};
    int mInvalid = 0;
    std::array<unsigned, kCharacters> mClasses{};
    std::array<int, kCharacters> mLower{};
    std::array<int, kCharacters> mUpper{};
    std::array<char, 128> mFurtherRanges{}; // more than there is, all empty

    SCharacterTable();
};
static_assert(offsetof(SCharacterTable, mClasses) == 60 && offsetof(SCharacterTable, mLower) == 1084 &&
              offsetof(SCharacterTable, mUpper) == 2108);

unsigned ClassesOf(int inCharacter)
{
    constexpr unsigned kDigit = 0x400; // the value of the digit stands in the lowest bits
    constexpr unsigned kBlank = 0x20000;
    struct SClass
    {
        int (*mIsMember)(int);
        unsigned mBit;
    };
    constexpr SClass kClasses[] = {
        {std::isalpha, 0x100},  {std::iscntrl, 0x200},    {std::isgraph, 0x800},
        {std::islower, 0x1000}, {std::ispunct, 0x2000},   {std::isspace, 0x4000},
        {std::isupper, 0x8000}, {std::isxdigit, 0x10000}, {std::isprint, 0x40000},
    };
    unsigned classes = 0;
    for (const SClass& one : kClasses)
        classes |= one.mIsMember(inCharacter) != 0 ? one.mBit : 0U;
    if (std::isdigit(inCharacter) != 0)
        classes |= kDigit | static_cast<unsigned>(inCharacter - '0');
    if (inCharacter == ' ' || inCharacter == '\t')
        classes |= kBlank;
    return classes;
}

int ToUpper(int inCharacter)
{
    return inCharacter >= 0 && inCharacter < kAsciiCharacters ? std::toupper(inCharacter) : inCharacter;
}
int ToLower(int inCharacter)
{
    return inCharacter >= 0 && inCharacter < kAsciiCharacters ? std::tolower(inCharacter) : inCharacter;
}

SCharacterTable::SCharacterTable()
{
    for (int character = 0; character < kCharacters; ++character)
    {
        const auto place = static_cast<std::size_t>(character);
        mClasses[place] = character < kAsciiCharacters ? ClassesOf(character) : 0;
        mLower[place] = ToLower(character);
        mUpper[place] = ToUpper(character);
    }
}

// Images refer to it as data. Nobody writes it.
SCharacterTable gCharacterTable;

int Classify(int inCharacter, unsigned long inClasses)
{
    if (inCharacter < 0 || inCharacter >= kCharacters)
        return 0;
    return static_cast<int>(gCharacterTable.mClasses[static_cast<std::size_t>(inCharacter)] & inClasses);
}
int ClassifyInLocale(int inCharacter, unsigned long inClasses, void*)
{
    return Classify(inCharacter, inClasses);
}
int ToUpperInLocale(int inCharacter, void*) { return ToUpper(inCharacter); }
int ToLowerInLocale(int inCharacter, void*) { return ToLower(inCharacter); }
} // namespace

SymbolTable CharacterSymbols()
{
    return {
        {"_DefaultRuneLocale", &gCharacterTable},
        {"__maskrune", AddressOf(Classify)},
        {"__maskrune_l", AddressOf(ClassifyInLocale)},
        {"__toupper", AddressOf(ToUpper)},
        {"__tolower", AddressOf(ToLower)},
        {"___toupper_l", AddressOf(ToUpperInLocale)},
        {"___tolower_l", AddressOf(ToLowerInLocale)},
    };
}
