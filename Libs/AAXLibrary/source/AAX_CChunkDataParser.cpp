#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <utility>

namespace
{
constexpr std::int32_t kTypeNone = 0; // padding, or a tag that is not known
constexpr std::int32_t kTypeFloat = 1;
constexpr std::int32_t kTypeInt32 = 2;
constexpr std::int32_t kTypeDouble = 3;
constexpr std::int32_t kTypeInt16 = 4;
constexpr std::int32_t kTypeString = 5;

struct SType
{
    std::int32_t mType;
    char mTag;
    std::size_t mBytes; // of the number itself
    std::size_t mSpace; // of the number with its padding
};
constexpr std::array<SType, 6> kTypes{{{kTypeNone, '\0', 0, 0},
                                       {kTypeFloat, 'f', 4, 4},
                                       {kTypeInt32, 'l', 4, 4},
                                       {kTypeDouble, 'd', 8, 8},
                                       {kTypeInt16, 's', 2, 4},
                                       {kTypeString, 'r', 0, 0}}};

constexpr std::array<char, 4> kMarker{1, 1, 1, 1};
constexpr std::size_t kMaxKeyLength = 255; // that the reader takes in
constexpr std::size_t kTagLength = 2;      // the letter and '_'

constexpr std::size_t Align4(std::size_t inSize) { return (inSize + 3) & ~std::size_t{3}; }

const SType& TypeOfCode(std::int32_t inType) { return kTypes[static_cast<std::size_t>(inType)]; }

const SType& TypeOfTag(char inTag)
{
    const auto found = std::ranges::find(kTypes, inTag, &SType::mTag);
    return found != kTypes.end() ? *found : kTypes.front();
}

/** The last `inBytes` bytes of the number, most significant first. */
void WriteBigEndian(std::uint64_t inNumber, std::size_t inBytes, char* outData)
{
    for (std::size_t i = inBytes; i-- > 0; inNumber >>= 8)
        outData[i] = static_cast<char>(inNumber & 0xFF);
}

std::uint64_t ReadBigEndian(std::span<const char> inData)
{
    std::uint64_t number = 0;
    for (const char byte : inData)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

std::int64_t NumberOfType(std::int32_t inType, std::uint64_t inBits)
{
    switch (inType)
    {
    case kTypeInt16: return static_cast<std::int16_t>(inBits);
    case kTypeInt32: return static_cast<std::int32_t>(inBits);
    default: return static_cast<std::int64_t>(inBits);
    }
}
} // namespace

void AAX_CChunkDataParser::AddNumber(const char* inName, std::int32_t inType, std::int64_t inBits)
{
    mDataValues.push_back({inType, inName, inBits, {}});
}

void AAX_CChunkDataParser::AddFloat(const char* inName, float inValue)
{
    AddNumber(inName, kTypeFloat, std::bit_cast<std::uint32_t>(inValue));
}

void AAX_CChunkDataParser::AddDouble(const char* inName, double inValue)
{
    AddNumber(inName, kTypeDouble, std::bit_cast<std::int64_t>(inValue));
}

void AAX_CChunkDataParser::AddInt32(const char* inName, std::int32_t inValue)
{
    AddNumber(inName, kTypeInt32, inValue);
}

void AAX_CChunkDataParser::AddInt16(const char* inName, std::int16_t inValue)
{
    AddNumber(inName, kTypeInt16, inValue);
}

void AAX_CChunkDataParser::AddString(const char* inName, AAX_CString inValue)
{
    // Cut at its first NUL: a reader would take what stands behind it for further entries.
    inValue.Set(inValue.CString());
    mDataValues.push_back({kTypeString, inName, 0, std::move(inValue)});
}

AAX_CChunkDataParser::DataValue* AAX_CChunkDataParser::FindValue(const char* inName, std::int32_t inType)
{
    const std::int32_t index = FindName(AAX_CString(inName));
    if (index < 0)
        return nullptr;
    DataValue& entry = mDataValues[static_cast<std::size_t>(index)];
    return entry.mDataType == inType ? &entry : nullptr;
}

bool AAX_CChunkDataParser::FindFloat(const char* inName, float* outValue)
{
    const DataValue* const entry = FindValue(inName, kTypeFloat);
    if (entry == nullptr || outValue == nullptr)
        return false;
    *outValue = std::bit_cast<float>(static_cast<std::uint32_t>(entry->mIntValue));
    return true;
}

bool AAX_CChunkDataParser::FindDouble(const char* inName, double* outValue)
{
    const DataValue* const entry = FindValue(inName, kTypeDouble);
    if (entry == nullptr || outValue == nullptr)
        return false;
    *outValue = std::bit_cast<double>(entry->mIntValue);
    return true;
}

bool AAX_CChunkDataParser::FindInt32(const char* inName, std::int32_t* outValue)
{
    const DataValue* const entry = FindValue(inName, kTypeInt32);
    if (entry == nullptr || outValue == nullptr)
        return false;
    *outValue = static_cast<std::int32_t>(entry->mIntValue);
    return true;
}

bool AAX_CChunkDataParser::FindInt16(const char* inName, std::int16_t* outValue)
{
    const DataValue* const entry = FindValue(inName, kTypeInt16);
    if (entry == nullptr || outValue == nullptr)
        return false;
    *outValue = static_cast<std::int16_t>(entry->mIntValue);
    return true;
}

bool AAX_CChunkDataParser::FindString(const char* inName, AAX_CString* outValue)
{
    const DataValue* const entry = FindValue(inName, kTypeString);
    if (entry == nullptr || outValue == nullptr)
        return false;
    outValue->Set(entry->mStringValue.CString());
    return true;
}

bool AAX_CChunkDataParser::ReplaceDouble(const char* inName, double inValue)
{
    DataValue* const entry = FindValue(inName, kTypeDouble);
    if (entry == nullptr)
        return false;
    entry->mIntValue = std::bit_cast<std::int64_t>(inValue);
    return true;
}

std::int32_t AAX_CChunkDataParser::FindName(const AAX_CString& inName)
{
    const auto count = static_cast<std::int32_t>(mDataValues.size());
    if (mLastFoundIndex >= count - 1)
        mLastFoundIndex = -1;
    const std::int32_t start = mLastFoundIndex + 1;
    for (std::int32_t i = 0; i < count; ++i)
    {
        const std::int32_t index = (start + i) % count;
        if (mDataValues[static_cast<std::size_t>(index)].mDataName == inName)
        {
            mLastFoundIndex = index;
            return index;
        }
    }
    return -1;
}

std::size_t AAX_CChunkDataParser::EntrySize(const DataValue& inEntry)
{
    if (inEntry.mDataType == kTypeNone)
        return 0;
    const std::size_t keySize = Align4(kTagLength + inEntry.mDataName.Length() + 1);
    if (inEntry.mDataType == kTypeString)
        return keySize + Align4(std::size_t{inEntry.mStringValue.Length()} + 1);
    return keySize + TypeOfCode(inEntry.mDataType).mSpace;
}

std::int32_t AAX_CChunkDataParser::GetChunkDataSize() const
{
    std::size_t size = kMarker.size();
    for (const DataValue& entry : mDataValues)
        size += EntrySize(entry);
    return static_cast<std::int32_t>(size);
}

char* AAX_CChunkDataParser::WriteEntry(const DataValue& inEntry, char* outData)
{
    // An entry without a value has no tag to write, and read again it would not be the same.
    if (inEntry.mDataType == kTypeNone)
        return outData;
    const SType& type = TypeOfCode(inEntry.mDataType);
    outData[0] = type.mTag;
    outData[1] = '_';
    const std::size_t nameLength = inEntry.mDataName.Length();
    std::copy_n(inEntry.mDataName.CString(), nameLength, outData + kTagLength);
    char* const value = outData + Align4(kTagLength + nameLength + 1);
    if (inEntry.mDataType == kTypeString)
        std::copy_n(inEntry.mStringValue.CString(), inEntry.mStringValue.Length(), value);
    else
        WriteBigEndian(static_cast<std::uint64_t>(inEntry.mIntValue), type.mBytes, value);
    return outData + EntrySize(inEntry);
}

AAX_Result AAX_CChunkDataParser::GetChunkData(AAX_SPlugInChunk* outChunk) const
{
    if (outChunk == nullptr)
        return kAAX_ErrorNullArgument;
    outChunk->mSize = GetChunkDataSize();
    char* const data = outChunk->mData;
    std::fill_n(data, outChunk->mSize, '\0'); // every padding byte
    char* out = std::ranges::copy(kMarker, data).out;
    for (const DataValue& entry : mDataValues)
        out = WriteEntry(entry, out);
    return kAAX_Success;
}

std::optional<std::size_t> AAX_CChunkDataParser::ReadEntry(std::span<const char> inData,
                                                           std::size_t inPosition, DataValue& outEntry)
{
    const std::span<const char> rest = inData.subspan(inPosition);
    const std::span<const char> keyRoom = rest.first(std::min(rest.size(), kMaxKeyLength));
    const std::string key(keyRoom.begin(), std::ranges::find(keyRoom, '\0'));
    if (key.size() == rest.size())
        return std::nullopt;

    const SType& type = TypeOfTag(key.empty() ? '\0' : key.front());
    outEntry.mDataType = type.mType;
    if (key.size() > kTagLength)
        outEntry.mDataName.Set(key.c_str() + kTagLength);

    const std::size_t valueStart = Align4(inPosition + key.size() + 1);
    if (type.mType == kTypeNone)
        return valueStart;
    if (valueStart > inData.size())
        return std::nullopt;
    const std::span<const char> value = inData.subspan(valueStart);
    if (type.mType == kTypeString)
    {
        const auto end = std::ranges::find(value, '\0');
        if (end == value.end())
            return std::nullopt;
        outEntry.mStringValue.Set(value.data());
        // Not aligned: what follows reads the padding of the text as an entry without name and value.
        return valueStart + outEntry.mStringValue.Length() + 1;
    }
    if (value.size() < type.mSpace)
        return std::nullopt;
    outEntry.mIntValue = NumberOfType(type.mType, ReadBigEndian(value.first(type.mBytes)));
    return valueStart + type.mSpace;
}

void AAX_CChunkDataParser::LoadChunk(const AAX_SPlugInChunk* inChunk)
{
    Clear();
    if (inChunk == nullptr)
        return;
    mChunkVersion = inChunk->mVersion;
    if (inChunk->mSize < static_cast<std::int32_t>(kMarker.size()))
        return;
    const std::span<const char> data(inChunk->mData, static_cast<std::size_t>(inChunk->mSize));
    if (!std::ranges::equal(data.first(kMarker.size()), kMarker))
        return;
    std::size_t position = kMarker.size();
    while (position < data.size())
    {
        DataValue entry;
        const std::optional<std::size_t> end = ReadEntry(data, position, entry);
        if (!end)
            return;
        mDataValues.push_back(std::move(entry));
        position = *end;
    }
}

void AAX_CChunkDataParser::Clear()
{
    mDataValues.clear();
    mLastFoundIndex = -1;
    mChunkVersion = -1;
}

bool AAX_CChunkDataParser::IsEmpty() const { return mDataValues.empty(); }
