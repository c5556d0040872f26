#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/check/CallWatch.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <cmath>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{
using namespace std::string_literals;

constexpr std::size_t kHeaderSize = offsetof(AAX_SPlugInChunk, mData);

/** A chunk in a block of exactly its size, so that a read past its end is seen. */
class CChunk
{
public:
    explicit CChunk(const std::string& inData, AAX_CTypeID inId = 0x656C636B)
        : mBytes(kHeaderSize + inData.size())
    {
        Write(offsetof(AAX_SPlugInChunk, mSize), static_cast<std::int32_t>(inData.size()));
        Write(offsetof(AAX_SPlugInChunk, mChunkID), inId);
        std::memcpy(mBytes.data() + kHeaderSize, inData.data(), inData.size());
    }
    AAX_SPlugInChunk* Get() { return reinterpret_cast<AAX_SPlugInChunk*>(mBytes.data()); }
    std::string Data() const { return {mBytes.data() + kHeaderSize, mBytes.size() - kHeaderSize}; }
    std::string Name() const { return {mBytes.data() + offsetof(AAX_SPlugInChunk, mName), 32}; }
    std::int32_t Version() const
    {
        std::int32_t version = 0;
        std::memcpy(&version, mBytes.data() + offsetof(AAX_SPlugInChunk, mVersion), sizeof(version));
        return version;
    }

private:
    template <class Value>
    void Write(std::size_t inOffset, Value inValue)
    {
        std::memcpy(mBytes.data() + inOffset, &inValue, sizeof(inValue));
    }
    std::vector<char> mBytes;
};

// Written by hand: a real as a double, a switch as an integer.
const std::string kGainAndSwitch = "\1\1\1\1"
                                   "d_Gain\0\0\x3F\xE0\0\0\0\0\0\0"
                                   "l_On\0\0\0\0\0\0\0\1"s;

AAX_Result AddGainBypassAndSwitch(CTestEffectParameters& ioInstance)
{
    ioInstance.Add(MakeFloat("Gain"));
    ioInstance.Add(MakeBool(cDefaultMasterBypassID, true));
    ioInstance.Add(MakeBool("On", true));
    return kAAX_Success;
}

class ControlsChunk : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(mInstance.Initialize(mHost.Unknown()), kAAX_Success); }
    bool IsEqual(CChunk inChunk)
    {
        AAX_CBoolean isEqual = 7;
        EXPECT_EQ(mInstance.CompareActiveChunk(inChunk.Get(), &isEqual), kAAX_Success);
        EXPECT_LE(isEqual, 1);
        return isEqual != 0;
    }

    CHostLog mLog;
    CInstanceHost mHost{mLog};
    CTestEffectParameters mInstance{AddGainBypassAndSwitch};
};

TEST_F(ControlsChunk, HoldsEveryParameterButTheMasterBypass)
{
    std::uint32_t size = 0;
    ASSERT_EQ(mInstance.GetChunkSize(kAAX_ControlsChunkID, &size), kAAX_Success);
    ASSERT_EQ(size, kGainAndSwitch.size());
    CChunk chunk(std::string(size, 'x'));
    ASSERT_EQ(mInstance.GetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_Success);
    EXPECT_EQ(chunk.Data(), kGainAndSwitch);
    EXPECT_EQ(chunk.Version(), -1);
    EXPECT_EQ(chunk.Name(), "Complete Controls State\0\0\0\0\0\0\0\0\0"s);
}

TEST_F(ControlsChunk, IsRefusedWhenItsSizeIsNotTheOneReported)
{
    CChunk chunk(std::string(256, 'x'));
    EXPECT_EQ(mInstance.GetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_ErrorChunkSize);
    std::uint32_t size = 0;
    EXPECT_EQ(mInstance.GetChunkSize(kAAX_ControlsChunkID, &size), kAAX_Success);
    mInstance.Add(MakeFloat("Late"));
    EXPECT_EQ(mInstance.GetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_ErrorChunkSize);
    EXPECT_EQ(chunk.Data(), std::string(256, 'x'));
}

TEST_F(ControlsChunk, OtherIdentifiersAndIndicesAreRefused)
{
    CChunk chunk(kGainAndSwitch);
    std::uint32_t size = 7;
    AAX_CTypeID id = 7;
    ExpectEach(kAAX_ErrorUnknownChunk, mInstance.GetChunkSize(1, &size), mInstance.GetChunk(1, chunk.Get()),
               mInstance.SetChunk(1, chunk.Get()));
    EXPECT_EQ(mInstance.GetChunkIDFromIndex(1, &id), kAAX_ErrorChunkIndex);
    EXPECT_EQ(size + id, 0U);
    EXPECT_EQ(mInstance.GetChunkIDFromIndex(0, &id), kAAX_Success);
    EXPECT_EQ(id, 0x656C636BU);
}

TEST_F(ControlsChunk, ValuesArriveAsRequestsAndFilteredOnesNotAtAll)
{
    CChunk chunk("\1\1\1\1"
                 "d_Gain\0\0\x3F\xD0\0\0\0\0\0\0"
                 "l_MasterBypassID\0\0\0\0\0\0\0\0"
                 "l_On\0\0\0\0\0\0\0\0"s);
    mLog.Clear();
    EXPECT_EQ(mInstance.SetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_Success);
    EXPECT_EQ(mLog.Count("PostSetValueRequest"), 2U);
    EXPECT_EQ(mInstance.ValueOf("Gain"), 0.5);
    EXPECT_EQ(mHost.DeliverUpdates(mInstance), kAAX_Success);
    EXPECT_EQ(mInstance.ValueOf("Gain"), 0.25);
    EXPECT_EQ(mInstance.ValueOf("On"), 0.0);
    EXPECT_EQ(mInstance.ValueOf(cDefaultMasterBypassID), 1.0);
}

std::string WithByte(std::size_t inOffset, char inByte)
{
    std::string bytes = kGainAndSwitch;
    bytes[inOffset] = inByte;
    return bytes;
}

TEST_F(ControlsChunk, ComparisonSeesEachDifference)
{
    struct SRow
    {
        const char* mName;
        CChunk mChunk;
        bool mIsEqual;
    };
    for (const SRow& row :
         {SRow{"same", CChunk(kGainAndSwitch), true}, SRow{"another identifier", CChunk("", 1), true},
          SRow{"switch stored as 5", CChunk(WithByte(31, '\5')), true},
          SRow{"another real", CChunk(WithByte(13, '\xE1')), false},
          SRow{"real beyond a float's precision", CChunk(WithByte(19, '\1')), true},
          SRow{"another switch", CChunk(WithByte(31, '\0')), false},
          SRow{"missing switch", CChunk(kGainAndSwitch.substr(0, 20)), false},
          SRow{"real stored as another type", CChunk(WithByte(4, 'l')), false},
          SRow{"nothing", CChunk(""), false}})
    {
        SCOPED_TRACE(row.mName);
        EXPECT_EQ(IsEqual(row.mChunk), row.mIsEqual);
    }
}

/** A parameter whose owner is asked for a chunk while it takes a value. */
class CAskingParameter final : public BoolParameter
{
public:
    CAskingParameter(AAX_CEffectParameters& ioOwner, const char* inId)
        : BoolParameter(inId, AAX_CString(inId), false, AAX_CBinaryTaperDelegate<bool>(),
                        AAX_CBinaryDisplayDelegate<bool>("off", "on"), true),
          mOwner(ioOwner)
    {
    }
    bool SetValueWithBool(bool inValue) override
    {
        std::uint32_t size = 0;
        EXPECT_EQ(mOwner.GetChunkSize(kAAX_ControlsChunkID, &size), kAAX_Success);
        CChunk chunk(std::string(size, 'x'));
        EXPECT_EQ(mOwner.GetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_Success);
        return BoolParameter::SetValueWithBool(inValue);
    }

private:
    AAX_CEffectParameters& mOwner;
};

TEST(ControlsChunkLoad, GoesOnAfterTheHostHasAskedForAChunkFromInsideARequest)
{
    CTestEffectParameters instance;
    for (const char* id : {"a", "b", "c"})
        instance.Add(std::make_unique<CAskingParameter>(instance, id));
    CChunk chunk("\1\1\1\1"
                 "l_a\0\0\0\0\1l_b\0\0\0\0\1l_c\0\0\0\0\1"s);
    EXPECT_EQ(instance.SetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_Success);
    for (const char* id : {"a", "b", "c"})
        EXPECT_EQ(instance.ValueOf(id), 1.0) << id;
}

TEST(ControlsChunkLoad, LargeChunkTakesLittleTimeAndNothingOfItIsKept)
{
    CTestEffectParameters instance;
    for (int i = 0; i < 1000; ++i)
        instance.Add(MakeFloat(std::to_string(i).c_str()));
    std::string doubles = "\1\1\1\1";
    while (doubles.size() < 8U << 20)
        doubles += "d_x\0\x3F\xE0\0\0\0\0\0\0"s;
    struct SRow
    {
        const char* mName;
        std::string mData;
    };
    for (const SRow& row : {SRow{"zeros behind the marker", "\1\1\1\1" + std::string(64U << 20, '\0')},
                            SRow{"zeros", std::string(64U << 20, '\0')}, SRow{"values", doubles}})
    {
        SCOPED_TRACE(row.mName);
        CChunk chunk(row.mData);
        AAX_CBoolean isEqual = 7;
        [[maybe_unused]] const std::clock_t start = std::clock(); // the process's own, not the machine's
        SCallWatch watch;
        WatchCalls("", watch,
                   [&]
                   {
                       EXPECT_EQ(instance.SetChunk(kAAX_ControlsChunkID, chunk.Get()), kAAX_Success);
                       EXPECT_EQ(instance.CompareActiveChunk(chunk.Get(), &isEqual), kAAX_Success);
                   });
#ifndef AAXADAPTER_SANITIZED                                 // whose own work it would be
        EXPECT_LT(std::clock() - start, 4 * CLOCKS_PER_SEC); // half a minute once
#endif
        EXPECT_EQ(watch.mHost.Of(EForbiddenKind::kAllocation), watch.mHost.Of(EForbiddenKind::kRelease))
            << watch;
        EXPECT_EQ(isEqual, 0);
    }
}
} // namespace
