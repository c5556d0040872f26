#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
using namespace std::string_view_literals;

struct SFree
{
    void operator()(AAX_SPlugInChunk* inChunk) const { std::free(inChunk); }
};
using ChunkPtr = std::unique_ptr<AAX_SPlugInChunk, SFree>;

/** A chunk whose memory ends with its data (of four bytes at least), so that an over-read is seen. */
ChunkPtr MakeChunk(std::string_view inData, std::int32_t inSize)
{
    const std::size_t room =
        std::max(sizeof(AAX_SPlugInChunk), offsetof(AAX_SPlugInChunk, mData) + inData.size());
    void* const memory = std::calloc(1, room);
    if (memory == nullptr)
        throw std::bad_alloc();
    ChunkPtr chunk(new (memory) AAX_SPlugInChunk{});
    std::ranges::copy(inData, static_cast<char*>(memory) + offsetof(AAX_SPlugInChunk, mData));
    chunk->mSize = inSize;
    chunk->mVersion = 9;
    return chunk;
}

class COpenParser : public AAX_CChunkDataParser
{
public:
    using Entry = std::pair<std::int32_t, std::string>; // type, name

    explicit COpenParser(std::string_view inData) { Load(inData); }
    COpenParser() = default;
    void Load(std::string_view inData)
    {
        LoadChunk(MakeChunk(inData, static_cast<std::int32_t>(inData.size())).get());
    }

    std::string Data() const
    {
        const std::string room(static_cast<std::size_t>(GetChunkDataSize()), '\xAA');
        const ChunkPtr chunk = MakeChunk(room, -1);
        EXPECT_EQ(GetChunkData(chunk.get()), kAAX_Success);
        EXPECT_EQ(chunk->mSize, GetChunkDataSize());
        EXPECT_EQ(chunk->mVersion, 9);
        const char* const data =
            reinterpret_cast<const char*>(chunk.get()) + offsetof(AAX_SPlugInChunk, mData);
        return {data, room.size()};
    }

    std::vector<Entry> Entries() const
    {
        std::vector<Entry> entries;
        for (const DataValue& value : mDataValues)
            entries.emplace_back(value.mDataType, value.mDataName.Get());
        return entries;
    }

    using AAX_CChunkDataParser::mChunkVersion;
    using AAX_CChunkDataParser::mDataValues;
};
using Entries = std::vector<COpenParser::Entry>;

constexpr std::string_view kAllTypes = "\1\1\1\1"
                                       "f_Gain\0\0\x3F\x80\0\0"
                                       "s_n\0\xFF\xFE\0\0"
                                       "l_ab\0\0\0\0\x80\0\0\1"
                                       "d_x\0\xC0\x09\x21\xFB\x54\x44\x2D\x18"
                                       "r_t\0abc\0"
                                       "r_u\0ab\0\0"
                                       "f_z\0\x80\0\0\0"sv;

COpenParser MakeAllTypes()
{
    COpenParser parser;
    parser.AddFloat("Gain", 1.0F);
    parser.AddInt16("n", -2);
    parser.AddInt32("ab", -2147483647);
    parser.AddDouble("x", -3.141592653589793);
    parser.AddString("t", AAX_CString("abc"));
    parser.AddString("u", AAX_CString("ab"));
    parser.AddFloat("z", -0.0F);
    return parser;
}

TEST(ChunkParser, DataIsBigEndianAndPaddedToFourBytes)
{
    EXPECT_EQ(COpenParser().Data(), "\1\1\1\1"sv);
    EXPECT_EQ(MakeAllTypes().Data(), kAllTypes);
    COpenParser cut;
    AAX_CString text("a-d_x");
    text[1] = '\0';
    cut.AddString("", text);
    EXPECT_EQ(cut.Data(), "\1\1\1\1r_\0\0a\0\0\0"sv);
    EXPECT_EQ(cut.GetChunkData(nullptr), kAAX_ErrorNullArgument);
}

TEST(ChunkParser, ValuesComeBackAndPaddingOfATextIsAnEmptyEntry)
{
    COpenParser parser(kAllTypes);
    EXPECT_EQ(parser.Entries(),
              Entries({{1, "Gain"}, {4, "n"}, {2, "ab"}, {3, "x"}, {5, "t"}, {5, "u"}, {0, ""}, {1, "z"}}));
    EXPECT_EQ(parser.mChunkVersion, 9);
    EXPECT_EQ(parser.mDataValues[1].mIntValue, -2);
    float real = 0;
    std::int16_t small = 0;
    std::int32_t integer = 0;
    double wide = 0;
    AAX_CString text;
    EXPECT_TRUE(parser.FindInt16("n", &small) && small == -2);
    EXPECT_TRUE(parser.FindFloat("Gain", &real) && real == 1.0F);
    EXPECT_TRUE(parser.FindDouble("x", &wide) && wide == -3.141592653589793);
    EXPECT_TRUE(parser.FindInt32("ab", &integer) && integer == -2147483647);
    EXPECT_TRUE(parser.FindString("u", &text) && text == "ab");
    EXPECT_TRUE(parser.FindString("t", &text) && text == "abc");
    EXPECT_EQ(parser.Data(), kAllTypes); // and so a state does not grow from save to save

    EXPECT_FALSE(
        parser.FindFloat("ab", &real) || parser.FindDouble("z", &wide) || parser.FindInt32("n", &integer) ||
        parser.FindInt16("ab", &small) || parser.FindString("", &text) || parser.FindFloat(nullptr, &real) ||
        parser.FindFloat("Gain", nullptr) || parser.ReplaceDouble("z", 1) || parser.ReplaceDouble("?", 1));
    EXPECT_TRUE(real == 1.0F && wide == -3.141592653589793 && integer == -2147483647 && small == -2);
    EXPECT_TRUE(parser.ReplaceDouble("x", 2.0) && parser.FindDouble("x", &wide));
    EXPECT_EQ(wide, 2.0);
    parser.Clear();
    EXPECT_TRUE(parser.IsEmpty());
    EXPECT_EQ(parser.mChunkVersion, -1);
}

TEST(ChunkParser, EntryThatIsCutShortIsDroppedAndNoByteBehindTheDataIsRead)
{
    // The length from which on each entry is complete; the empty one ends with the padding of "ab".
    constexpr std::size_t complete[] = {16, 24, 36, 48, 56, 63, 64, 72};
    for (std::size_t length = 0; length <= kAllTypes.size(); ++length)
    {
        SCOPED_TRACE(length);
        COpenParser parser(kAllTypes.substr(0, length));
        const auto count = std::ranges::count_if(complete, [length](auto end) { return end <= length; });
        Entries expected = COpenParser(kAllTypes).Entries();
        expected.resize(static_cast<std::size_t>(count));
        EXPECT_EQ(parser.Entries(), expected);
        EXPECT_EQ(parser.mChunkVersion, 9);
    }
}

TEST(ChunkParser, OddDataIsReadByTheRulesElseNotAtAll)
{
    struct SRow
    {
        const char* mFault;
        std::string_view mData;
        Entries mExpected;
    };
    const std::string longKey = "\1\1\1\1f_" + std::string(254, 'k') + std::string("\0\0\0\1", 4);
    for (const SRow& row :
         {SRow{"marker", "\1\1\1\0f_a\0\0\0\0\0"sv, {}},
          SRow{"unknown tag keeps its name", "\1\1\1\1x_ab\0\0\0\0l_c\0\0\0\0\1"sv, {{0, "ab"}, {2, "c"}}},
          SRow{"key of a tag alone", "\1\1\1\1l\0\0\0\0\0\0\1"sv, {{2, ""}}},
          SRow{"other second character", "\1\1\1\1l?a\0\0\0\0\1"sv, {{2, "a"}}},
          SRow{"padding only", "\1\1\1\1\0\0\0\0\0\0"sv, {{0, ""}}},
          SRow{"empty entries of every kind in a row",
               "\1\1\1\1\0\0\0\0x\0\0\0\0abcx_\0\0\0\0\0\0l_c\0\0\0\0\1\0\0\0\0"sv,
               {{0, ""}, {2, "c"}, {0, ""}}},
          SRow{"key without an end", "\1\1\1\1x_ab"sv, {}},
          SRow{"key of 256 characters ends after 255", longKey, {{1, std::string(253, 'k')}}}})
    {
        SCOPED_TRACE(row.mFault);
        EXPECT_EQ(COpenParser(row.mData).Entries(), row.mExpected);
    }
    for (const std::int32_t size : {INT32_MIN, -1, 0, 3, 4})
    {
        SCOPED_TRACE(size);
        COpenParser parser(kAllTypes); // and what it held is gone
        parser.LoadChunk(MakeChunk("\1\1\1\1"sv, size).get());
        EXPECT_TRUE(parser.IsEmpty());
    }
    COpenParser parser(kAllTypes);
    parser.LoadChunk(nullptr);
    EXPECT_TRUE(parser.IsEmpty());
}

TEST(ChunkParser, SearchGoesOnBehindTheLastHitAndWraps)
{
    COpenParser parser;
    EXPECT_EQ(parser.FindName("a"), -1);
    for (const char* name : {"a", "b", "a", "c"})
        parser.AddInt32(name, 0);
    struct SRow
    {
        const char* mName;
        std::int32_t mIndex;
    };
    for (const SRow& row : {SRow{"c", 3}, SRow{"a", 0}, SRow{"a", 2}, SRow{"?", -1}, SRow{"b", 1},
                            SRow{"b", 1}, SRow{"a", 2}, SRow{"a", 0}})
    {
        SCOPED_TRACE(row.mName);
        EXPECT_EQ(parser.FindName(row.mName), row.mIndex);
    }
}

/** What a search finds when it compares one entry after the other. */
std::int32_t FindByWalking(const std::vector<std::string>& inNames, const std::string& inName,
                           std::int32_t& ioLast)
{
    const auto count = static_cast<std::int32_t>(inNames.size());
    if (ioLast >= count - 1)
        ioLast = -1;
    for (std::int32_t i = 0; i < count; ++i)
    {
        const std::int32_t index = (ioLast + 1 + i) % count;
        if (inNames[static_cast<std::size_t>(index)] == inName)
            return ioLast = index;
    }
    return -1;
}

TEST(ChunkParser, SearchFindsWhatComparingOneEntryAfterTheOtherFinds)
{
    std::mt19937 random(20240612);
    for (int round = 0; round < 300; ++round)
    {
        COpenParser parser;
        std::vector<std::string> names;
        std::int32_t last = -1;
        const auto kinds = random() % 20 + 1;
        for (int step = 0; step < 100; ++step)
        {
            const std::string name = std::to_string(random() % kinds);
            if (random() % 3 == 0)
            {
                parser.AddInt32(name.c_str(), step);
                names.push_back(name);
            }
            else
            {
                ASSERT_EQ(parser.FindName(name.c_str()), FindByWalking(names, name, last)) << round;
            }
        }
    }
}

TEST(ChunkParser, SearchesForNamesThatAreNotThereTakeNoTimeEach)
{
    std::string data = "\1\1\1\1";
    for (int i = 0; i < 500'000; ++i)
        data += "l_x\0\0\0\0\1"sv;
    COpenParser parser(data);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 10'000; ++i)
        ASSERT_EQ(parser.FindName(std::to_string(i).c_str()), -1);
    // A walk through all entries for each would be five thousand million comparisons.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST(ChunkParser, WhateverIsReadIsReadTheSameAfterWritingIt)
{
    std::mt19937 random(20240611);
    constexpr std::string_view alphabet = "fldsrx__ab\0\0\0\1\x7F\xFF"sv;
    for (int round = 0; round < 20000; ++round)
    {
        std::string data = "\1\1\1\1";
        for (auto left = random() % 60; left > 0; --left)
            data += alphabet[random() % alphabet.size()];
        const COpenParser first(data);
        const std::string written = first.Data();
        Entries named = first.Entries();
        std::erase_if(named, [](const auto& entry) { return entry.first == 0; });
        const COpenParser second(written);
        Entries again = second.Entries();
        std::erase_if(again, [](const auto& entry) { return entry.first == 0; });
        ASSERT_EQ(again, named) << round;
        ASSERT_EQ(second.Data(), written) << round;
    }
}
} // namespace
