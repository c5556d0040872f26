#include "Tools/macho_loader/LibSystemParts.h"

#include <cerrno>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <string_view>

#include <locale.h>

// There a null locale stands for "C"; here it is an error.
namespace
{
locale_t OrC(locale_t inLocale)
{
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    return inLocale != nullptr ? inLocale : c;
}

// The categories' bits come in another order there, and no locale but "C" exists here: they don't matter.
locale_t NewLocale(int, const char* inName, locale_t)
{
    const std::string_view name = inName != nullptr ? inName : "";
    if (name.empty() || name == "C" || name == "POSIX")
        return newlocale(LC_ALL_MASK, "C", nullptr);
    errno = ENOENT;
    return nullptr;
}

long ToLong(const char* inText, char** outEnd, int inBase, locale_t inLocale)
{
    return strtol_l(inText, outEnd, inBase, OrC(inLocale));
}
unsigned long ToUnsignedLong(const char* inText, char** outEnd, int inBase, locale_t inLocale)
{
    return strtoul_l(inText, outEnd, inBase, OrC(inLocale));
}
float ToFloat(const char* inText, char** outEnd, locale_t inLocale)
{
    return strtof_l(inText, outEnd, OrC(inLocale));
}
double ToDouble(const char* inText, char** outEnd, locale_t inLocale)
{
    return strtod_l(inText, outEnd, OrC(inLocale));
}
long double ToLongDouble(const char* inText, char** outEnd, locale_t inLocale)
{
    return strtold_l(inText, outEnd, OrC(inLocale));
}
int Collate(const char* inFirst, const char* inSecond, locale_t inLocale)
{
    return strcoll_l(inFirst, inSecond, OrC(inLocale));
}
std::size_t Transform(char* outText, const char* inText, std::size_t inSize, locale_t inLocale)
{
    return strxfrm_l(outText, inText, inSize, OrC(inLocale));
}
int CollateWide(const wchar_t* inFirst, const wchar_t* inSecond, locale_t inLocale)
{
    return wcscoll_l(inFirst, inSecond, OrC(inLocale));
}
std::size_t TransformWide(wchar_t* outText, const wchar_t* inText, std::size_t inSize, locale_t inLocale)
{
    return wcsxfrm_l(outText, inText, inSize, OrC(inLocale));
}
std::size_t FormatTime(char* outText, std::size_t inSize, const char* inFormat, const std::tm* inTime,
                       locale_t inLocale)
{
    return strftime_l(outText, inSize, inFormat, inTime, OrC(inLocale));
}

// This machine has these without a locale only; the program's own is "C" as well.
// NOLINTBEGIN(clang-analyzer-valist.Uninitialized): the check does not see what va_start does
std::lconv* LocaleConventions(void*) { return std::localeconv(); }
int LongestCharacter(void*) { return 1; }

int Format(char* outText, std::size_t inSize, void*, const char* inFormat, ...)
{
    std::va_list arguments;
    va_start(arguments, inFormat);
    const int count = std::vsnprintf(outText, inSize, inFormat, arguments);
    va_end(arguments);
    return count;
}
int FormatAllocated(char** outText, void*, const char* inFormat, ...)
{
    std::va_list arguments;
    va_start(arguments, inFormat);
    const int count = vasprintf(outText, inFormat, arguments);
    va_end(arguments);
    return count;
}
int Scan(const char* inText, void*, const char* inFormat, ...)
{
    std::va_list arguments;
    va_start(arguments, inFormat);
    const int count = std::vsscanf(inText, inFormat, arguments);
    va_end(arguments);
    return count;
}

// NOLINTEND(clang-analyzer-valist.Uninitialized)

/** A function of this machine with one argument more at its end, which it does without. */
template <auto kFunction, class Signature = decltype(kFunction)>
struct SWithLocale;
template <auto kFunction, class Result, class... Arguments>
struct SWithLocale<kFunction, Result (*)(Arguments...)>
{
    static Result Call(Arguments... inArguments, void*) { return kFunction(inArguments...); }
};
template <auto kFunction, class Result, class... Arguments>
struct SWithLocale<kFunction, Result (*)(Arguments...) noexcept>
{
    static Result Call(Arguments... inArguments, void*) { return kFunction(inArguments...); }
};
} // namespace

SymbolTable LocaleSymbols()
{
    return {
        {"newlocale", AddressOf(NewLocale)},
        {"strtol_l", AddressOf(ToLong)},
        {"strtoll_l", AddressOf(ToLong)},
        {"strtoul_l", AddressOf(ToUnsignedLong)},
        {"strtoull_l", AddressOf(ToUnsignedLong)},
        {"strtof_l", AddressOf(ToFloat)},
        {"strtod_l", AddressOf(ToDouble)},
        {"strtold_l", AddressOf(ToLongDouble)},
        {"strcoll_l", AddressOf(Collate)},
        {"strxfrm_l", AddressOf(Transform)},
        {"wcscoll_l", AddressOf(CollateWide)},
        {"wcsxfrm_l", AddressOf(TransformWide)},
        {"strftime_l", AddressOf(FormatTime)},
        {"localeconv_l", AddressOf(LocaleConventions)},
        {"___mb_cur_max_l", AddressOf(LongestCharacter)},
        {"snprintf_l", AddressOf(Format)},
        {"asprintf_l", AddressOf(FormatAllocated)},
        {"sscanf_l", AddressOf(Scan)},
        {"mbrtowc_l", AddressOf(SWithLocale<&mbrtowc>::Call)},
        {"wcrtomb_l", AddressOf(SWithLocale<&wcrtomb>::Call)},
        {"mbrlen_l", AddressOf(SWithLocale<&mbrlen>::Call)},
        {"mbtowc_l", AddressOf(SWithLocale<&mbtowc>::Call)},
        {"mbsrtowcs_l", AddressOf(SWithLocale<&mbsrtowcs>::Call)},
        {"mbsnrtowcs_l", AddressOf(SWithLocale<&mbsnrtowcs>::Call)},
        {"wcsnrtombs_l", AddressOf(SWithLocale<&wcsnrtombs>::Call)},
        {"btowc_l", AddressOf(SWithLocale<&btowc>::Call)},
        {"wctob_l", AddressOf(SWithLocale<&wctob>::Call)},
    };
}
