#pragma once
#include <cstdint>
#include <cstring>

/** Identifies an interface, a class or a component; the layout is the component model's own. */
struct acfUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
static_assert(sizeof(acfUID) == 16);

using acfIID = acfUID;
using acfCLSID = acfUID;
using acfWChar = std::uint16_t;
using acfUInt32 = std::uint32_t;

enum acfBool : std::int32_t
{
    acfFalse = 0,
    acfTrue = 1
};

inline bool operator==(const acfUID& inLeft, const acfUID& inRight) noexcept
{
    return std::memcmp(&inLeft, &inRight, sizeof(acfUID)) == 0;
}

using ACFRESULT = std::int32_t;

inline constexpr ACFRESULT ACF_OK = 0;
inline constexpr ACFRESULT ACF_FALSE = 1;
inline constexpr ACFRESULT ACF_E_NOTIMPL = static_cast<ACFRESULT>(0x80000001U);
inline constexpr ACFRESULT ACF_E_OUTOFMEMORY = static_cast<ACFRESULT>(0x80000002U);
inline constexpr ACFRESULT ACF_E_INVALIDARG = static_cast<ACFRESULT>(0x80000003U);
inline constexpr ACFRESULT ACF_E_NOINTERFACE = static_cast<ACFRESULT>(0x80000004U);
inline constexpr ACFRESULT ACF_E_POINTER = static_cast<ACFRESULT>(0x80000005U);
inline constexpr ACFRESULT ACF_E_UNEXPECTED = static_cast<ACFRESULT>(0x8000FFFFU);

inline constexpr bool ACFSucceeded(ACFRESULT inResult) noexcept { return inResult >= 0; }
inline constexpr bool ACFFailed(ACFRESULT inResult) noexcept { return inResult < 0; }
