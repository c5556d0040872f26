#include "Tests/unit/Source/AdapterTest.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <map>

namespace
{
using Bytes = std::vector<std::uint8_t>;

constexpr AAX_CTypeID kControls = AAX_FourCharCode("elck");
constexpr AAX_CTypeID kPlugin = AAX_FourCharCode("0001");
const Bytes kTrailer{'E', 'D', 'I', 'D', 0, 3, 0, 0, 0}; // program 3

Bytes operator+(Bytes inLeft, const Bytes& inRight)
{
    inLeft.insert(inLeft.end(), inRight.begin(), inRight.end());
    return inLeft;
}

/** A chunk record whose data ends exactly where its memory does. */
class CChunk
{
public:
    explicit CChunk(std::size_t inDataSize) : mMemory(kHeader + inDataSize, 0xEE)
    {
        Record().mSize = static_cast<std::int32_t>(inDataSize);
    }
    explicit CChunk(const Bytes& inData) : CChunk(inData.size())
    {
        std::copy(inData.begin(), inData.end(), mMemory.begin() + kHeader);
    }
    AAX_SPlugInChunk& Record() { return *reinterpret_cast<AAX_SPlugInChunk*>(mMemory.data()); }
    Bytes Data() const { return {mMemory.begin() + kHeader, mMemory.end()}; }

private:
    static constexpr std::ptrdiff_t kHeader = offsetof(AAX_SPlugInChunk, mData);
    Bytes mMemory;
};

class Chunk : public AdapterTest
{
protected:
    void StartWithChunk(Bytes inChunk)
    {
        Script().mShape.flags |= effFlagsProgramChunks;
        Script().mBankChunk = std::move(inChunk);
        Start();
    }
    /** Every chunk that the instance reports, as a host asks for it. */
    std::vector<std::pair<AAX_CTypeID, CChunk>> Save()
    {
        std::int32_t count = 0;
        EXPECT_EQ(Instance().GetNumberOfChunks(&count), kAAX_Success);
        std::vector<std::pair<AAX_CTypeID, CChunk>> chunks;
        for (std::int32_t i = 0; i < count; ++i)
        {
            AAX_CTypeID id = 0;
            std::uint32_t size = 0;
            EXPECT_EQ(Instance().GetChunkIDFromIndex(i, &id), kAAX_Success);
            EXPECT_EQ(Instance().GetChunkSize(id, &size), kAAX_Success);
            chunks.emplace_back(id, CChunk(size));
            EXPECT_EQ(Instance().GetChunk(id, &chunks.back().second.Record()), kAAX_Success);
        }
        return chunks;
    }
    void Load(std::vector<std::pair<AAX_CTypeID, CChunk>>& ioChunks)
    {
        for (auto& [id, chunk] : ioChunks)
            EXPECT_EQ(Instance().SetChunk(id, &chunk.Record()), kAAX_Success);
    }
    Bytes PluginChunk()
    {
        void* data = nullptr;
        const VstIntPtr size =
            Effect().Effect().dispatcher(&Effect().Effect(), effGetChunk, 0, 0, &data, 0.0F);
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        return {bytes, bytes + size};
    }
    /** What the plug-in holds after it was given this data. */
    std::pair<Bytes, VstIntPtr> Given(const Bytes& inData)
    {
        Effect().Effect().dispatcher(&Effect().Effect(), effSetProgram, 0, 7, nullptr, 0.0F);
        CChunk chunk(inData);
        EXPECT_EQ(Instance().SetChunk(kPlugin, &chunk.Record()), kAAX_Success);
        return {PluginChunk(),
                Effect().Effect().dispatcher(&Effect().Effect(), effGetProgram, 0, 0, nullptr, 0.0F)};
    }
};

TEST_F(Chunk, ThePluginsChunkIsFollowedByMarkAndProgram)
{
    StartWithChunk(Bytes(100, 0x5A));
    Effect().Effect().dispatcher(&Effect().Effect(), effSetProgram, 0, 3, nullptr, 0.0F);
    auto chunks = Save();
    ASSERT_EQ(chunks.size(), 2U);
    EXPECT_EQ(chunks[0].first, kControls);
    EXPECT_EQ(chunks[1].first, kPlugin);
    AAX_SPlugInChunk& record = chunks[1].second.Record();
    EXPECT_EQ(record.mSize, 109);
    EXPECT_EQ(record.mVersion, 0);
    EXPECT_EQ(record.mChunkID, kPlugin);
    EXPECT_STREQ(record.mName, "0001");
    EXPECT_EQ(record.mProductID, 0xEEEEEEEEU); // the host's
    EXPECT_EQ(chunks[1].second.Data(), Bytes(100, 0x5A) + kTrailer);
}

TEST_F(Chunk, TheTrailerIsTakenOffOnlyWhereItIsOne)
{
    StartWithChunk({1});
    const Bytes data{1, 2, 3};
    struct SRow
    {
        const char* mWhat;
        Bytes mGiven;
        Bytes mKept;
        VstIntPtr mProgram; // 7 where it does not change
    };
    const Bytes otherMark{'E', 'D', 'I', 'E', 0, 3, 0, 0, 0};
    const Bytes noZero{'E', 'D', 'I', 'D', 1, 3, 0, 0, 0};
    const Bytes negative{'E', 'D', 'I', 'D', 0, 0xFF, 0xFF, 0xFF, 0xFF};
    const SRow rows[] = {
        {"trailer", data + kTrailer, data, 3},
        {"the first program", data + Bytes{'E', 'D', 'I', 'D', 0, 0, 0, 0, 0}, data, 0},
        {"of an old version", data, data, 7},
        {"empty", {}, {}, 7},
        {"a trailer alone", kTrailer, kTrailer, 7},
        {"one byte and a trailer", Bytes{9} + kTrailer, {9}, 3},
        {"another mark", data + otherMark, data + otherMark, 7},
        {"no zero behind the mark", data + noZero, data + noZero, 7},
        {"a negative program", data + negative, data + negative, 7},
        {"a trailer in the middle", data + kTrailer + data, data + kTrailer + data, 7},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mWhat);
        EXPECT_EQ(Given(row.mGiven), std::pair(row.mKept, row.mProgram));
    }
}

TEST_F(Chunk, AfterALoadTheHostHasThePluginsValuesAndThePluginNoEcho)
{
    Script().mParameters = {0.25F, 0.5F};
    Script().mShape.numPrograms = 4;
    Script().mHooks[effSetChunk] = [](ScriptedEffect& ioEffect, const SDispatch&)
    {
        ioEffect.Parameters() = {0.75F, 1.0F};
        ioEffect.CallHost(audioMasterAutomate, 0); // not heard: the values are read when it is done
        ioEffect.CallHost(audioMasterUpdateDisplay);
    };
    Script().mShape.flags |= effFlagsProgramChunks;
    ASSERT_EQ(StartWithoutCoefficients(), kAAX_Success); // a host may load before it generates anything
    CChunk chunk(Bytes{1, 2} + kTrailer);
    (void)TakeHostCalls(); // of the start
    EXPECT_EQ(Instance().SetChunk(kPlugin, &chunk.Record()), kAAX_Success);
    EXPECT_EQ(mLog.Count("PostSetValueRequest"), 2U);
    EXPECT_EQ(TakePluginCalls(), (Lines{"effSetChunk 0", "effSetProgram 3"}));
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{});
    double value = 0.0;
    EXPECT_EQ(Instance().GetParameterNormalizedValue("00000", &value), kAAX_Success);
    EXPECT_EQ(value, 0.75);
}

TEST_F(Chunk, TheControlsOfAPluginWithAChunkDoNotComeBackWhenTheirAnswersDo)
{
    Script().mParameters = {0.25F, 0.5F};
    StartWithChunk({1, 2});
    auto saved = Save();
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.0, 0), kAAX_Success);
    Script().mHooks[effSetChunk] = [](ScriptedEffect& ioEffect, const SDispatch&)
    {
        ioEffect.Parameters() = {0.75F, 1.0F}; // what the controls say is not what the plug-in's own state is
        ioEffect.CallHost(audioMasterAutomate, 0);
    };
    Load(saved);
    EXPECT_EQ(TakePluginCalls(),
              (Lines{"setParameter 0 0", "setParameter 0 0.25", "effSetChunk 0", "effSetProgram 0"}));
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{});
    EXPECT_EQ(Effect().Parameters(), (std::vector{0.75F, 1.0F}));
}

TEST_F(Chunk, AHostThatLooksAtTheStateInsideARequestFindsTheNewOneWhole)
{
    Script().mParameters = {0.25F, 0.5F, 0.75F};
    Start();
    auto saved = Save();
    for (const char* id : {"00000", "00001", "00002"})
        EXPECT_EQ(Instance().UpdateParameterNormalizedValue(id, 0.0, 0), kAAX_Success);
    Bytes seen;
    mLog.InsideCall("PostSetValueRequest",
                    [&]
                    {
                        if (seen.empty())
                            seen = Save()[0].second.Data();
                    });
    Load(saved);
    EXPECT_TRUE(seen == saved[0].second.Data());
    EXPECT_EQ(Effect().Parameters(), (std::vector{0.25F, 0.5F, 0.75F}));
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(Effect().Parameters(), (std::vector{0.25F, 0.5F, 0.75F}));
}

TEST_F(Chunk, OfControlsThatThePluginRoundsTheHostIsToldTheOutcome)
{
    Script().mParameters = {0.3F, std::nanf(""), 0.5F};
    Start();
    auto saved = Save();
    Script().mSteps = 4;
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 1.0, 0), kAAX_Success);
    (void)TakeHostCalls();        // of that
    Script().mReportsSets = true; // not heard while it is given the controls
    Load(saved);
    Lines requests = TakeHostCalls();
    std::erase_if(requests, [](const std::string& inLine) { return !inLine.starts_with("PostSetValue"); });
    ASSERT_EQ(requests.size(),
              5U); // one for each that was saved, the gain with them, and what became of the first
    EXPECT_EQ(requests.back(), "PostSetValueRequest(\"00000\", 0.25)");
    (void)TakePluginCalls(); // of the load
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{});
}

TEST_F(Chunk, SizesThatNoChunkHasAreRefused)
{
    StartWithChunk({1});
    for (const AAX_CTypeID id : {kControls, kPlugin})
    {
        CChunk chunk(Bytes{1});
        chunk.Record().mSize = -1;
        EXPECT_EQ(Instance().SetChunk(id, &chunk.Record()), kAAX_ErrorChunkSize);
        AAX_CBoolean isEqual = 0;
        EXPECT_EQ(Instance().CompareActiveChunk(&chunk.Record(), &isEqual), kAAX_ErrorChunkSize);
    }
    Script().mHooks[effGetChunk] = [](ScriptedEffect& ioEffect, const SDispatch& inCall)
    { *static_cast<void**>(inCall.mPointer) = &ioEffect; };
    Script().mResults[effGetChunk] = VstIntPtr{0x7FFFFFFF} - 8;
    std::uint32_t size = 1;
    EXPECT_EQ(Instance().GetChunkSize(kPlugin, &size), kAAX_ErrorChunkSize);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(TakePluginCalls(), Lines{});
}

TEST_F(Chunk, ValuesThatAreNoneAreNotTakenOver)
{
    Script().mParameters = {0.25F, 0.25F, 0.25F};
    Start();
    Effect().Parameters() = {440.0F, std::nanf(""), -1.0F};
    (void)Save();
    const std::map<std::string, double> values = mHost.Automation().CurrentValues();
    EXPECT_EQ(values, (std::map<std::string, double>{{"00000", 1.0}, {"00002", 0.0}}));
}

TEST_F(Chunk, APluginWithoutAChunkComesBackThroughTheControlsChunk)
{
    Script().mParameters = {0.25F, 0.5F};
    Start();
    EXPECT_EQ(Instance().UpdateParameterNormalizedValue("00000", 0.75, 0), kAAX_Success);
    Effect().Parameters()[1] = 0.125F; // changed without a word
    auto chunks = Save();
    ASSERT_EQ(chunks.size(), 1U);
    Stop();
    ASSERT_EQ(StartWithoutCoefficients(), kAAX_Success);
    Load(chunks);
    EXPECT_EQ(Effect().Parameters(), (std::vector{0.75F, 0.125F}));
    (void)TakePluginCalls(); // of that
    EXPECT_EQ(mHost.DeliverUpdates(Instance()), kAAX_Success);
    EXPECT_EQ(TakePluginCalls(), Lines{});
    EXPECT_EQ(Save()[0].second.Data(), chunks[0].second.Data());
}

TEST_F(Chunk, AChunkThatGrowsBetweenTheTwoRequestsIsNotWrittenBehindTheHostsRoom)
{
    StartWithChunk(Bytes(100, 1));
    std::uint32_t size = 0;
    EXPECT_EQ(Instance().GetChunkSize(kPlugin, &size), kAAX_Success);
    Bytes longer(101, 2);
    Effect().Effect().dispatcher(&Effect().Effect(), effSetChunk, 0, 101, longer.data(), 0.0F);
    CChunk chunk(size);
    EXPECT_EQ(Instance().GetChunk(kPlugin, &chunk.Record()), kAAX_ErrorChunkSize);
    Bytes shorter(50, 3);
    Effect().Effect().dispatcher(&Effect().Effect(), effSetChunk, 0, 50, shorter.data(), 0.0F);
    EXPECT_EQ(Instance().GetChunk(kPlugin, &chunk.Record()), kAAX_Success);
    EXPECT_EQ(chunk.Record().mSize, 59);
    const Bytes data = chunk.Data();
    EXPECT_EQ(data[49], 3);
    EXPECT_EQ(data[50], 'E');
}

TEST_F(Chunk, UnknownAndMissingChunksAnswerAsTheyMust)
{
    Script().mParameters = {0.25F};
    StartWithChunk({1});
    const AAX_CTypeID foreign = AAX_FourCharCode("zzzz");
    CChunk chunk(Bytes{1});
    std::uint32_t size = 9;
    EXPECT_EQ(Instance().GetChunkSize(0, &size), kAAX_Success);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(Instance().GetChunkSize(foreign, &size), kAAX_ErrorUnknownChunk);
    EXPECT_EQ(Instance().GetChunk(foreign, &chunk.Record()), kAAX_ErrorUnknownChunk);
    EXPECT_EQ(Instance().SetChunk(foreign, &chunk.Record()), kAAX_Success);
    EXPECT_EQ(Instance().SetChunk(0, nullptr), kAAX_Success);
    for (const AAX_CTypeID id : {kControls, kPlugin})
    {
        EXPECT_EQ(Instance().GetChunkSize(id, nullptr), kAAX_ErrorNullArgument);
        EXPECT_EQ(Instance().GetChunk(id, nullptr), kAAX_ErrorNullArgument);
        EXPECT_EQ(Instance().SetChunk(id, nullptr), kAAX_ErrorNullArgument);
    }
    AAX_CTypeID id = 1;
    EXPECT_EQ(Instance().GetChunkIDFromIndex(2, &id), kAAX_ErrorChunkIndex);
    AAX_CBoolean isEqual = 0;
    chunk.Record().mChunkID = kPlugin;
    EXPECT_EQ(Instance().CompareActiveChunk(&chunk.Record(), &isEqual), kAAX_Success);
    EXPECT_EQ(isEqual, 1);
    (void)TakePluginCalls(); // of the above
    Stop();
    Script().mShape.flags = 0;
    Start();
    EXPECT_EQ(Instance().SetChunk(kPlugin, &chunk.Record()), kAAX_Success); // a plug-in without a chunk
    EXPECT_EQ(TakePluginCalls(), Lines{});
}

TEST_F(Chunk, CallsFromInsideAndExceptionsLeaveTheInstanceReady)
{
    Script().mParameters = {0.25F};
    Script().mShape.numPrograms = 2;
    Script().mHooks[effSetChunk] = [](ScriptedEffect& ioEffect, const SDispatch& inCall)
    {
        ioEffect.CallHost(audioMasterAutomate, 0);
        ioEffect.CallHost(audioMasterGetTime);
        if (inCall.mValue == 2)
            throw 5;
    };
    StartWithChunk({1});
    CChunk throwing(Bytes{1, 2});
    EXPECT_EQ(Instance().SetChunk(kPlugin, &throwing.Record()), kAAX_ErrorNullObject);
    (void)TakeHostCalls(); // of that
    EXPECT_EQ(Effect().CallHost(audioMasterUpdateDisplay), 1);
    EXPECT_EQ(mLog.Count("PostSetValueRequest"), 1U); // heard again
    Script().mFaults.insert(effGetChunk);
    std::uint32_t size = 0;
    EXPECT_EQ(Instance().GetChunkSize(kPlugin, &size), kAAX_ErrorNullObject);
}
} // namespace
