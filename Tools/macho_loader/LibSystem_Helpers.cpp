#include "Tools/macho_loader/LibSystemParts.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace
{
/** Returned in two vector registers, as the compiler expects of these helpers. */
struct SSineAndCosine
{
    double mSine;
    double mCosine;
};
struct SSineAndCosineFloat
{
    float mSine;
    float mCosine;
};
SSineAndCosine SineAndCosine(double inAngle) { return {std::sin(inAngle), std::cos(inAngle)}; }
SSineAndCosineFloat SineAndCosineFloat(float inAngle) { return {std::sin(inAngle), std::cos(inAngle)}; }
double PowerOfTen(double inExponent) { return std::pow(10.0, inExponent); }
float PowerOfTenFloat(float inExponent) { return std::pow(10.0F, inExponent); }

template <std::size_t kSize>
void FillWithPattern(void* outBytes, const void* inPattern, std::size_t inCount)
{
    auto* const bytes = static_cast<char*>(outBytes);
    const auto* const pattern = static_cast<const char*>(inPattern);
    for (std::size_t i = 0; i < inCount; ++i)
        bytes[i] = pattern[i % kSize];
}

/** @return the length of the text wanted; what is written always ends with a NUL, where there is room at all.
 */
std::size_t CopyText(char* outText, const char* inText, std::size_t inSize)
{
    const std::size_t length = std::strlen(inText);
    if (inSize > 0)
    {
        const std::size_t count = std::min(length, inSize - 1);
        std::memcpy(outText, inText, count);
        outText[count] = '\0';
    }
    return length;
}
std::size_t AppendToText(char* ioText, const char* inText, std::size_t inSize)
{
    const std::size_t length = strnlen(ioText, inSize);
    return length + CopyText(ioText + length, inText, inSize - length);
}

[[noreturn]] void FailAssertion(const char* inFunction, const char* inFile, int inLine,
                                const char* inCondition)
{
    (void)std::fprintf(stderr, "%s:%d: %s: assertion failed: %s\n", inFile, inLine,
                       inFunction != nullptr ? inFunction : "?", inCondition);
    std::abort();
}
[[noreturn]] void FailStackCheck()
{
    (void)std::fputs("an image overran a buffer on the stack\n", stderr);
    std::abort();
}
// Read by images at the start and the end of functions; never written.
unsigned long gStackCanary = 0x00D9C3A5B7F1E249;

int GetClock(int inClock, timespec* outTime)
{
    constexpr int kRealTime = 0; // the same number in both; the others differ
    return clock_gettime(inClock == kRealTime ? CLOCK_REALTIME : CLOCK_MONOTONIC, outTime);
}
unsigned long long AbsoluteTime()
{
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC, &now); // always there
    return static_cast<unsigned long long>(now.tv_sec) * 1'000'000'000ULL +
           static_cast<unsigned long long>(now.tv_nsec);
}
/** The unit of AbsoluteTime() is a nanosecond. */
int AbsoluteTimeUnit(unsigned* outFraction)
{
    outFraction[0] = 1;
    outFraction[1] = 1;
    return 0;
}
} // namespace

SymbolTable HelperSymbols()
{
    return {
        {"__sincos_stret", AddressOf(SineAndCosine)},
        {"__sincosf_stret", AddressOf(SineAndCosineFloat)},
        {"__exp10", AddressOf(PowerOfTen)},
        {"__exp10f", AddressOf(PowerOfTenFloat)},
        {"memset_pattern4", AddressOf(FillWithPattern<4>)},
        {"memset_pattern8", AddressOf(FillWithPattern<8>)},
        {"memset_pattern16", AddressOf(FillWithPattern<16>)},
        {"strlcpy", AddressOf(CopyText)},
        {"strlcat", AddressOf(AppendToText)},
        {"__assert_rtn", AddressOf(FailAssertion)},
        {"__stack_chk_fail", AddressOf(FailStackCheck)},
        {"__stack_chk_guard", &gStackCanary},
        {"__stderrp", &stderr},
        {"__stdoutp", &stdout},
        {"__stdinp", &stdin},
        {"clock_gettime", AddressOf(GetClock)},
        {"mach_absolute_time", AddressOf(AbsoluteTime)},
        {"mach_timebase_info", AddressOf(AbsoluteTimeUnit)},
    };
}
