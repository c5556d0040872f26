#pragma once
#include <cstdint>

/** The numbers of the Mach-O file format that the loader and the checks of a built file use. */
namespace macho
{
constexpr std::uint32_t kMagic64 = 0xFEEDFACF;

enum EFileType : std::uint32_t
{
    kDylib = 6,
    kBundle = 8
};

enum EHeaderFlag : std::uint32_t
{
    kNoUndefinedSymbols = 0x1,
    kTwoLevelNames = 0x80,
    kWeakDefinitions = 0x8000,
    kBindsToWeak = 0x10000
};

constexpr std::uint32_t kMustUnderstand = 0x80000000;
enum ELoadCommand : std::uint32_t
{
    kSymbolTable = 0x2,
    kDynamicSymbolTable = 0xB,
    kLoadDylib = 0xC,
    kIdDylib = 0xD,
    kSegment64 = 0x19,
    kUuid = 0x1B,
    kCodeSignature = 0x1D,
    kDyldInfo = 0x22,
    kFunctionStarts = 0x26,
    kDataInCode = 0x29,
    kSourceVersion = 0x2A,
    kLinkerHints = 0x2E,
    kBuildVersion = 0x32,
    kLoadWeakDylib = 0x18 | kMustUnderstand,
    kReexportDylib = 0x1F | kMustUnderstand,
    kDyldInfoOnly = 0x22 | kMustUnderstand,
    kLoadUpwardDylib = 0x23 | kMustUnderstand,
    kChainedFixups = 0x34 | kMustUnderstand
};

constexpr std::uint32_t kPlatformMacOs = 1;

enum ESectionType : std::uint32_t
{
    kInitializerPointers = 0x9,
    kThreadLocalData = 0x11,
    kThreadLocalZeroes = 0x12,
    kThreadLocalVariables = 0x13,
    kInitializerOffsets = 0x16
};
constexpr std::uint32_t kSectionTypeMask = 0xFF;

enum EProtection : std::uint32_t
{
    kRead = 1,
    kWrite = 2,
    kExecute = 4
};

// A byte of a fixup stream: the operation above, an immediate value below.
constexpr std::uint8_t kOperationMask = 0xF0;
constexpr std::uint8_t kImmediateMask = 0x0F;
constexpr std::uint8_t kPointerFixup = 1;

enum ERebaseOperation : std::uint8_t
{
    kRebaseDone = 0x00,
    kRebaseSetType = 0x10,
    kRebaseSetSegmentAndOffset = 0x20,
    kRebaseAddAddress = 0x30,
    kRebaseAddAddressScaled = 0x40,
    kRebaseTimes = 0x50,
    kRebaseTimesUleb = 0x60,
    kRebaseAndAddAddress = 0x70,
    kRebaseTimesSkipping = 0x80
};

enum EBindOperation : std::uint8_t
{
    kBindDone = 0x00,
    kBindSetOrdinal = 0x10,
    kBindSetOrdinalUleb = 0x20,
    kBindSetSpecialOrdinal = 0x30,
    kBindSetSymbol = 0x40,
    kBindSetType = 0x50,
    kBindSetAddend = 0x60,
    kBindSetSegmentAndOffset = 0x70,
    kBindAddAddress = 0x80,
    kBind = 0x90,
    kBindAndAddAddress = 0xA0,
    kBindAndAddAddressScaled = 0xB0,
    kBindTimesSkipping = 0xC0
};
constexpr std::uint8_t kWeakImportFlag = 1;

// An exported name that is another library's, or goes through a resolver function.
constexpr std::uint64_t kExportElsewhere = 0x18;
} // namespace macho
