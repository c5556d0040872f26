#pragma once
#include <cstddef>
#include <cstdint>

/** Scalars and records that cross the border between an AAX host and this module. */

using AAX_Result = std::int32_t;
using AAX_CParamID = const char*;
using AAX_CTypeID = std::uint32_t; // four-character code, first character most significant
using AAX_CBoolean = std::uint8_t;
using AAX_CFieldIndex = std::uint32_t;
using AAX_CSampleRate = float; // Hz
using AAX_CPropertyValue = std::int32_t;
using AAX_CProcPtrID = std::int32_t;
using AAX_CSelector = std::uint32_t;
using AAX_CTimeOfDay = std::int64_t;
using AAX_CTransportCounter = std::int64_t;

inline constexpr AAX_Result kAAX_Success = 0;
inline constexpr AAX_Result kAAX_ErrorUnknownParameter = -20001; // identifier or index
inline constexpr AAX_Result kAAX_ErrorTextNotConvertible = -20002;
inline constexpr AAX_Result kAAX_ErrorNullObject = -20004; // a needed object or interface is missing
inline constexpr AAX_Result kAAX_ErrorChunkIndex = -20006;
inline constexpr AAX_Result kAAX_ErrorUnknownChunk = -20007;
inline constexpr AAX_Result kAAX_ErrorChunkSize = -20008; // differs from the size reported before
inline constexpr AAX_Result kAAX_ErrorUnsupported = -20009;
inline constexpr AAX_Result kAAX_ErrorNullArgument = -20011;

/** The 32-bit number whose most significant byte is the first character. */
consteval AAX_CTypeID AAX_FourCharCode(const char (&inText)[5])
{
    AAX_CTypeID code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(inText[i]);
    return code;
}

/** A 16-bit ordinal in the upper half, the number of channels in the lower half. */
enum AAX_EStemFormat : std::int32_t
{
    AAX_eStemFormat_Mono = 0x00000001,
    AAX_eStemFormat_Stereo = 0x00010002,
    AAX_eStemFormat_None = static_cast<std::int32_t>(0xFF9C0000U)
};

/** How many audio channels a stem has; a stem that is none has 0. */
constexpr std::int32_t AAX_StemChannelCount(std::int32_t inFormat) noexcept { return inFormat & 0xFFFF; }

enum AAX_EMIDINodeType : std::int32_t
{
    AAX_eMIDINodeType_LocalInput = 0,
    AAX_eMIDINodeType_LocalOutput = 1,
    AAX_eMIDINodeType_Global = 2,
    AAX_eMIDINodeType_Transport = 3
};

enum AAX_EParameterType : std::int32_t
{
    AAX_eParameterType_Discrete = 0,
    AAX_eParameterType_Continuous = 1
};

/** Where a parameter update comes from; 0 is the ordinary one. */
using AAX_EUpdateSource = std::int32_t;

using AAX_EProperty = std::int32_t;
inline constexpr AAX_EProperty kAAX_PropertyManufacturerID = 11;
inline constexpr AAX_EProperty kAAX_PropertyProductID = 12;
inline constexpr AAX_EProperty kAAX_PropertyPluginID = 13;
inline constexpr AAX_EProperty kAAX_PropertyInputStemFormat = 51;
inline constexpr AAX_EProperty kAAX_PropertyOutputStemFormat = 52;
inline constexpr AAX_EProperty kAAX_PropertyCanBypass = 60;

inline constexpr std::uint32_t kAAX_CategorySoftwareInstrument = 0x800;
inline constexpr std::uint32_t kAAX_CategoryEffect = 0x1000;

/** Which factory or procedure a process pointer is. */
inline constexpr AAX_CProcPtrID kAAX_ProcPtrEffectParameters = 0;
inline constexpr AAX_CProcPtrID kAAX_ProcPtrEffectGUI = 1;

struct AAX_CMidiPacket
{
    std::uint32_t mTimestamp; // samples from the start of the block
    std::uint32_t mLength;    // bytes of mData in use
    std::uint8_t mData[4];    // status byte first
    AAX_CBoolean mIsImmediate;
};
static_assert(sizeof(AAX_CMidiPacket) == 16 && offsetof(AAX_CMidiPacket, mData) == 8);
static_assert(offsetof(AAX_CMidiPacket, mIsImmediate) == 12);

struct AAX_CMidiStream
{
    std::uint32_t mCount;
    AAX_CMidiPacket* mPackets;
};
static_assert(sizeof(AAX_CMidiStream) == 16 && offsetof(AAX_CMidiStream, mPackets) == 8);

/** One saved piece of an instance's state; the host allocates the record with room for `mSize` bytes of data.
 */
struct AAX_SPlugInChunk
{
    std::int32_t mSize; // bytes of mData
    std::int32_t mVersion;
    AAX_CTypeID mManufacturerID;
    AAX_CTypeID mProductID;
    AAX_CTypeID mPlugInID;
    AAX_CTypeID mChunkID;
    char mName[32];
    char mData[1];
};
static_assert(offsetof(AAX_SPlugInChunk, mChunkID) == 20 && offsetof(AAX_SPlugInChunk, mName) == 24);
static_assert(offsetof(AAX_SPlugInChunk, mData) == 56);

/** Pixels, the vertical extent first. */
struct AAX_Point
{
    float mVertical;
    float mHorizontal;
};

/** Pixels. */
struct AAX_Rect
{
    float mTop;
    float mLeft;
    float mWidth;
    float mHeight;
};

struct AAX_SHybridRenderInfo;

class IACFUnknown;
/** Makes one object and returns it with no references. */
using AAX_CFactoryProc = IACFUnknown* (*)();
/** Renders the instances whose contexts stand from `begin` up to, not including, `end`. */
using AAX_CProcessProc = void (*)(void* const begin[], const void* end);
using AAX_CInstanceInitProc = AAX_Result (*)(const void* context, std::int32_t action);
using AAX_CBackgroundProc = AAX_Result (*)();
