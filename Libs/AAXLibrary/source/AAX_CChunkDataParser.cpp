#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <numeric>
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

constexpr std::size_t kAlignment = 4;

constexpr std::size_t Align4(std::size_t inSize) { return (inSize + kAlignment - 1) & ~(kAlignment - 1); }

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

std::uint64_t ReadBigEndian(std::string_view inData)
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

/** @param inBuckets   a power of two. */
std::size_t BucketOf(std::string_view inName, std::size_t inBuckets)
{
    return std::hash<std::string_view>()(inName) & (inBuckets - 1);
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
    if (mLastFoundIndex >= static_cast<std::int32_t>(mDataValues.size()) - 1)
        mLastFoundIndex = -1;
    if (mDataValues.empty())
        return -1;
    const auto hasName = [&, this](std::uint32_t inPosition)
    { return mDataValues[inPosition].mDataName == inName; };
    const auto start = static_cast<std::uint32_t>(mLastFoundIndex + 1);
    if (hasName(start))
        return mLastFoundIndex = static_cast<std::int32_t>(start);

    if (mNameIndex.mPositions.size() != mDataValues.size())
        BuildNameIndex();
    const std::size_t bucket = BucketOf(inName.CString(), mNameIndex.mBucketStarts.size() - 1);
    const auto first = mNameIndex.mPositions.begin() + mNameIndex.mBucketStarts[bucket];
    const auto last = mNameIndex.mPositions.begin() + mNameIndex.mBucketStarts[bucket + 1];
    const auto middle = std::lower_bound(first, last, start);
    auto found = std::find_if(middle, last, hasName);
    if (found == last)
    {
        found = std::find_if(first, middle, hasName);
        if (found == middle)
            return -1;
    }
    return mLastFoundIndex = static_cast<std::int32_t>(*found);
}

void AAX_CChunkDataParser::BuildNameIndex()
{
    const std::size_t buckets = std::bit_ceil(mDataValues.size());
    SNameIndex index{std::vector<std::uint32_t>(buckets + 1), std::vector<std::uint32_t>(mDataValues.size())};
    for (const DataValue& entry : mDataValues)
        ++index.mBucketStarts[BucketOf(entry.mDataName.CString(), buckets)];
    std::partial_sum(index.mBucketStarts.begin(), index.mBucketStarts.end(), index.mBucketStarts.begin());
    // Each start is its bucket's end until the last entry of the bucket has been put in, from the back.
    for (std::size_t position = mDataValues.size(); position-- > 0;)
    {
        const std::size_t bucket = BucketOf(mDataValues[position].mDataName.CString(), buckets);
        index.mPositions[--index.mBucketStarts[bucket]] = static_cast<std::uint32_t>(position);
    }
    mNameIndex = std::move(index);
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

std::optional<AAX_CChunkDataParser::SStoredEntry> AAX_CChunkDataParser::ReadEntry(std::string_view inData,
                                                                                  std::size_t inPosition)
{
    const std::string_view rest = inData.substr(inPosition);
    const std::string_view keyRoom = rest.substr(0, kMaxKeyLength);
    const std::string_view key = keyRoom.substr(0, keyRoom.find('\0'));
    if (key.size() == rest.size())
        return std::nullopt;

    const SType& type = TypeOfTag(key.empty() ? '\0' : key.front());
    const std::size_t valueStart = Align4(inPosition + key.size() + 1);
    SStoredEntry entry{type.mType, key.substr(std::min(key.size(), kTagLength)), {}, valueStart};
    if (type.mType == kTypeNone)
        return entry;
    if (valueStart > inData.size())
        return std::nullopt;
    const std::string_view value = inData.substr(valueStart);
    if (type.mType == kTypeString)
    {
        const std::size_t length = value.find('\0');
        if (length == value.npos)
            return std::nullopt;
        entry.mValue = value.substr(0, length);
        // Not aligned: what follows reads the padding of the text as an entry without name and value.
        entry.mEnd += length + 1;
        return entry;
    }
    if (value.size() < type.mSpace)
        return std::nullopt;
    entry.mValue = value.substr(0, type.mBytes);
    entry.mEnd += type.mSpace;
    return entry;
}

template <class Visit>
void AAX_CChunkDataParser::VisitEntries(std::string_view inData, Visit inVisit)
{
    bool wasEmpty = false; // the entry before
    for (std::size_t position = kMarker.size(); position < inData.size();)
    {
        const std::optional<SStoredEntry> entry = ReadEntry(inData, position);
        if (!entry)
            return;
        const bool isEmpty = entry->mDataType == kTypeNone && entry->mName.empty();
        if (!isEmpty || !wasEmpty)
            inVisit(*entry);
        wasEmpty = isEmpty;
        position = entry->mEnd;
        // A writer leaves one word of padding at most; damaged data may be nothing else.
        while (isEmpty && position < inData.size() && inData[position] == '\0')
            position += kAlignment;
    }
}

void AAX_CChunkDataParser::LoadChunk(const AAX_SPlugInChunk* inChunk)
{
    Clear();
    if (inChunk == nullptr)
        return;
    mChunkVersion = inChunk->mVersion;
    if (inChunk->mSize < static_cast<std::int32_t>(kMarker.size()))
        return;
    const std::string_view data(inChunk->mData, static_cast<std::size_t>(inChunk->mSize));
    if (!std::ranges::equal(data.substr(0, kMarker.size()), kMarker))
        return;
    std::size_t count = 0;
    VisitEntries(data, [&](const SStoredEntry&) { ++count; });
    mDataValues.reserve(count); // a list that grows needs the memory twice
    VisitEntries(data,
                 [this](const SStoredEntry& inEntry)
                 {
                     DataValue& entry = mDataValues.emplace_back();
                     entry.mDataType = inEntry.mDataType;
                     entry.mDataName.Set(std::string(inEntry.mName).c_str());
                     if (inEntry.mDataType == kTypeString)
                         entry.mStringValue.Set(inEntry.mValue.data()); // it ends with a NUL there
                     else
                         entry.mIntValue = NumberOfType(inEntry.mDataType, ReadBigEndian(inEntry.mValue));
                 });
}

void AAX_CChunkDataParser::Clear()
{
    mDataValues = std::vector<DataValue>();
    mNameIndex = SNameIndex();
    mLastFoundIndex = -1;
    mChunkVersion = -1;
}

bool AAX_CChunkDataParser::IsEmpty() const { return mDataValues.empty(); }
