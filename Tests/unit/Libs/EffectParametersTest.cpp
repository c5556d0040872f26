#include "Interfaces/AAX/AAX_IController.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace
{
AAX_Result AddGainAndBypass(CTestEffectParameters& ioInstance)
{
    ioInstance.Add(MakeFloat("Gain"));
    ioInstance.Add(MakeBool(cDefaultMasterBypassID));
    return ioInstance.Packets().RegisterPacket("Gain", 4);
}

/** Fills a packet whether or not there is a parameter. */
struct SAlwaysFull
{
    AAX_Result Fill(AAX_CParamID, AAX_CPacket& outPacket)
    {
        outPacket.mDataSize = 8;
        ++mCalls;
        return kAAX_Success;
    }
    int mCalls = 0;
};

class EffectParameters : public testing::Test
{
protected:
    void Start() { ASSERT_EQ(mInstance.Initialize(mHost.Unknown()), kAAX_Success); }

    CHostLog mLog;
    CInstanceHost mHost{mLog};
    CTestEffectParameters mInstance{AddGainAndBypass};
};

TEST_F(EffectParameters, ValueChangesOnlyWhenTheHostConfirmsIt)
{
    Start();
    ASSERT_EQ(mInstance.GenerateCoefficients(), kAAX_Success); // the first one posts every packet
    mLog.Clear();
    EXPECT_EQ(mInstance.SetParameterNormalizedValue("Gain", 0.75), kAAX_Success);
    EXPECT_EQ(mLog.Calls(),
              (std::vector<std::string>{R"(PostTouchRequest("Gain"))", R"(PostSetValueRequest("Gain", 0.75))",
                                        R"(PostReleaseRequest("Gain"))"}));
    EXPECT_EQ(mInstance.ValueOf("Gain"), 0.5);
    std::int32_t changes = -1;
    EXPECT_EQ(mInstance.GetNumberOfChanges(&changes), kAAX_Success);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(mInstance.GenerateCoefficients(), kAAX_Success);
    EXPECT_EQ(mLog.Count("PostPacket"), 0U);

    EXPECT_EQ(mHost.DeliverUpdates(mInstance), kAAX_Success);
    EXPECT_EQ(mInstance.ValueOf("Gain"), 0.75);
    EXPECT_EQ(mLog.Count("PostCurrentValue"), 1U);
    EXPECT_EQ(mLog.Count("PostPacket"), 1U);
    EXPECT_EQ(mInstance.GetNumberOfChanges(&changes), kAAX_Success);
    EXPECT_EQ(changes, 1);
}

TEST_F(EffectParameters, RelativeChangesStopAtTheEndsOfTheRange)
{
    Start();
    struct SRow
    {
        double mDelta;
        double mExpected;
    };
    for (const SRow& row : {SRow{0.25, 0.75}, SRow{0.75, 1.0}, SRow{-2.0, 0.0}})
    {
        SCOPED_TRACE(row.mDelta);
        EXPECT_EQ(mInstance.SetParameterNormalizedRelative("Gain", row.mDelta), kAAX_Success);
        EXPECT_EQ(mHost.DeliverUpdates(mInstance), kAAX_Success);
        EXPECT_EQ(mInstance.ValueOf("Gain"), row.mExpected);
        EXPECT_EQ(mInstance.UpdateParameterNormalizedValue("Gain", 0.5, 0), kAAX_Success);
        EXPECT_EQ(mInstance.UpdateParameterNormalizedRelative("Gain", row.mDelta), kAAX_Success);
        EXPECT_EQ(mInstance.ValueOf("Gain"), row.mExpected);
    }
}

TEST_F(EffectParameters, UnknownIdentifierOrIndexIsRefusedByEveryCallThatNeedsOne)
{
    Start();
    for (const AAX_CParamID id : {AAX_CParamID{"Nothing"}, AAX_CParamID{nullptr}})
    {
        SCOPED_TRACE(id == nullptr ? "null" : id);
        CHostString text("old");
        AAX_CBoolean flag = 7;
        std::int32_t number = 7;
        double real = 7.0;
        AAX_EParameterType type{};
        AAX_IParameter* parameter = mInstance.Add(MakeFloat("Other"));
        ExpectEach(
            kAAX_ErrorUnknownParameter, mInstance.GetParameterIsAutomatable(id, &flag),
            mInstance.GetParameterNumberOfSteps(id, &number),
            mInstance.GetParameterDefaultNormalizedValue(id, &real),
            mInstance.SetParameterDefaultNormalizedValue(id, 0.0), mInstance.GetParameterType(id, &type),
            mInstance.GetParameterOrientation(id, &number), mInstance.GetParameter(id, &parameter),
            mInstance.GetParameterIndex(id, &number), mInstance.GetParameterIDFromIndex(99, &text),
            mInstance.GetParameterValueFromString(id, &real, CHostString("0.5")),
            mInstance.GetParameterStringFromValue(id, 0.5, &text, 8),
            mInstance.GetParameterValueString(id, &text, 8), mInstance.GetParameterNormalizedValue(id, &real),
            mInstance.SetParameterNormalizedValue(id, 0.5), mInstance.SetParameterNormalizedRelative(id, 0.5),
            mInstance.TouchParameter(id), mInstance.ReleaseParameter(id),
            mInstance.UpdateParameterNormalizedValue(id, 0.5, 0),
            mInstance.UpdateParameterNormalizedRelative(id, 0.5));
        EXPECT_EQ(flag, 0);
        EXPECT_EQ(parameter, nullptr);
        EXPECT_EQ(text.Text(), "");
        EXPECT_EQ(mInstance.GetParameterName(id, &text), kAAX_Success);
        EXPECT_EQ(mInstance.GetParameterNameOfLength(id, &text, 4), kAAX_Success);
        EXPECT_EQ(text.Text(), "");
    }
}

TEST_F(EffectParameters, NullResultPointerIsRefusedByEveryCall)
{
    Start();
    const AAX_SPlugInChunk chunk{};
    AAX_CBoolean flag = 0;
    ExpectEach(
        kAAX_ErrorNullArgument, mInstance.GetNumberOfParameters(nullptr),
        mInstance.GetMasterBypassParameter(nullptr), mInstance.GetParameterIsAutomatable("Gain", nullptr),
        mInstance.GetParameterNumberOfSteps("Gain", nullptr), mInstance.GetParameterName("Gain", nullptr),
        mInstance.GetParameterNameOfLength("Gain", nullptr, 4),
        mInstance.GetParameterDefaultNormalizedValue("Gain", nullptr),
        mInstance.GetParameterType("Gain", nullptr), mInstance.GetParameterOrientation("Gain", nullptr),
        mInstance.GetParameter("Gain", nullptr), mInstance.GetParameterIndex("Gain", nullptr),
        mInstance.GetParameterIDFromIndex(0, nullptr), mInstance.GetParameterValueInfo("Gain", 0, nullptr),
        mInstance.GetParameterValueFromString("Gain", nullptr, CHostString("0.5")),
        mInstance.GetParameterStringFromValue("Gain", 0.5, nullptr, 8),
        mInstance.GetParameterValueString("Gain", nullptr, 8),
        mInstance.GetParameterNormalizedValue("Gain", nullptr), mInstance.ResetFieldData(0, nullptr, 8),
        mInstance.GetNumberOfChunks(nullptr), mInstance.GetChunkIDFromIndex(0, nullptr),
        mInstance.GetChunkSize(kAAX_ControlsChunkID, nullptr),
        mInstance.GetChunk(kAAX_ControlsChunkID, nullptr), mInstance.SetChunk(kAAX_ControlsChunkID, nullptr),
        mInstance.CompareActiveChunk(nullptr, &flag), mInstance.CompareActiveChunk(&chunk, nullptr),
        mInstance.GetNumberOfChanges(nullptr), mInstance.GetCustomData(0, 0, nullptr, nullptr));
}

TEST_F(EffectParameters, LongestSpellingThatFitsIsTaken)
{
    const std::string longLine(300, 'x');
    struct SRow
    {
        std::string mShortened;
        std::int32_t mLength;
        std::string mExpected;
    };
    for (const SRow& row :
         {SRow{"Volume\nVol", 4, "Vol"}, SRow{"Volume\nVol", 6, "Volume"},
          SRow{"Volume\nVol", 2, "Volume\nVol"}, SRow{"Abc\nDef\n", 3, "Abc"}, SRow{"\n\nab", 1, "\n\nab"},
          SRow{"Vol", -1, "Vol"}, SRow{longLine + "\nab", 4, longLine + "\nab"},
          SRow{longLine, 255, longLine.substr(0, 255)}})
    {
        SCOPED_TRACE(row.mShortened.substr(0, 10) + " " + std::to_string(row.mLength));
        CTestEffectParameters instance;
        auto parameter = MakeFloat("Gain");
        parameter->SetName(std::string(400, 'n').c_str());
        parameter->AddShortenedName(row.mShortened.c_str()); // the only one: taken for every length
        instance.Add(std::move(parameter));
        CHostString name;
        EXPECT_EQ(instance.GetParameterNameOfLength("Gain", &name, row.mLength), kAAX_Success);
        EXPECT_EQ(name.Text(), row.mExpected);
    }
}

TEST_F(EffectParameters, RefusedTextOrValueLeavesTheCallersResultAlone)
{
    Start();
    double value = 7.0;
    CHostString text("old");
    EXPECT_EQ(mInstance.GetParameterValueFromString("Gain", &value, CHostString("1.5")),
              kAAX_ErrorTextNotConvertible);
    EXPECT_EQ(mInstance.GetParameterValueFromString("Gain", &value, CHostString("abc")),
              kAAX_ErrorTextNotConvertible);
    EXPECT_EQ(value, 7.0);
    EXPECT_EQ(mInstance.GetParameterValueFromString("Gain", &value, CHostString("0.25")), kAAX_Success);
    EXPECT_EQ(value, 0.25);
    EXPECT_EQ(mInstance.GetParameterStringFromValue("Gain", 0.25, &text, 3), kAAX_Success);
    EXPECT_EQ(text.Text(), "0.2");
    EXPECT_EQ(mInstance.GetParameterValueString("Gain", &text, 3), kAAX_Success);
    EXPECT_EQ(text.Text(), "0.50"); // the value's own text has no limit
}

TEST_F(EffectParameters, PreviewFollowsOnlyACompleteNotificationOfItsKind)
{
    const std::uint32_t on = 5;
    struct SRow
    {
        const char* mName;
        AAX_CTypeID mType;
        const void* mData;
        std::uint32_t mSize;
        bool mExpected;
    };
    for (const SRow& row :
         {SRow{"on", 0x41535076, &on, 4, true}, SRow{"no data", 0x41535076, nullptr, 4, false},
          SRow{"short data", 0x41535076, &on, 3, false}, SRow{"another kind", 0x41535077, &on, 4, false}})
    {
        SCOPED_TRACE(row.mName);
        CTestEffectParameters instance;
        EXPECT_EQ(instance.NotificationReceived(row.mType, row.mData, row.mSize), kAAX_Success);
        const BoolParameter* const preview = instance.Add(MakeBool("PreviewID"));
        EXPECT_EQ(instance.NotificationReceived(row.mType, row.mData, row.mSize), kAAX_Success);
        bool value = false;
        EXPECT_TRUE(preview->GetValueAsBool(&value));
        EXPECT_EQ(value, row.mExpected);
    }
}

TEST_F(EffectParameters, FailedInitialisationIsAnsweredAndCanBeRepeated)
{
    AAX_Result answer = kAAX_ErrorUnsupported;
    CTestEffectParameters instance([&](CTestEffectParameters& ioInstance)
                                   { return AddGainAndBypass(ioInstance) | answer; });
    EXPECT_EQ(instance.Initialize(mHost.Unknown()), kAAX_ErrorUnsupported);
    answer = kAAX_Success;
    EXPECT_EQ(instance.Initialize(mHost.Unknown()), kAAX_Success);
    std::int32_t count = 0;
    EXPECT_EQ(instance.GetNumberOfParameters(&count), kAAX_Success);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(instance.Uninitialize(), kAAX_Success);
    EXPECT_EQ(mHost.References(), 0);
}

TEST_F(EffectParameters, SecondInitialisationHasNothingOfTheFirst)
{
    for (const bool uninitialize : {true, false})
    {
        SCOPED_TRACE(uninitialize);
        SAlwaysFull full[2];
        int turn = 0;
        const auto init = [&](CTestEffectParameters& ioInstance)
        {
            ioInstance.Add(MakeFloat("Gain"));
            ioInstance.FilterParameterIDOnSave(turn == 0 ? "Gain" : "Other");
            const AAX_CPacketHandler<SAlwaysFull> handler(&full[turn], &SAlwaysFull::Fill);
            return ioInstance.Packets().RegisterPacket("Gain", 5, &handler);
        };
        CTestEffectParameters instance(init);
        std::uint32_t size = 0;
        std::int32_t changes = 0;
        for (; turn < 2; ++turn)
        {
            mLog.Clear();
            ASSERT_EQ(instance.Initialize(mHost.Unknown()), kAAX_Success);
            EXPECT_EQ(instance.GenerateCoefficients(), kAAX_Success);
            EXPECT_EQ(mLog.Count("PostPacket"), 1U);
            std::vector<char> memory(sizeof(AAX_SPlugInChunk) + 64);
            EXPECT_EQ(
                instance.GetChunk(kAAX_ControlsChunkID, reinterpret_cast<AAX_SPlugInChunk*>(memory.data())),
                kAAX_ErrorChunkSize); // no size was asked for in this turn
            EXPECT_EQ(instance.GetChunkSize(kAAX_ControlsChunkID, &size), kAAX_Success);
            EXPECT_EQ(size, turn == 0 ? 4U : 20U);
            EXPECT_EQ(instance.UpdateParameterNormalizedValue("Gain", 0.25, 0), kAAX_Success);
            EXPECT_EQ(instance.GetNumberOfChanges(&changes), kAAX_Success);
            EXPECT_EQ(changes, turn + 1);
            EXPECT_TRUE(!uninitialize || instance.Uninitialize() == kAAX_Success);
        }
        EXPECT_EQ(full[0].mCalls, 1);
        EXPECT_EQ(full[1].mCalls, 1);
    }
}

TEST_F(EffectParameters, NothingOfTheHostIsHeldOrUsedAfterTheEnd)
{
    for (const bool uninitialize : {true, false})
    {
        SCOPED_TRACE(uninitialize);
        {
            SAlwaysFull full;
            CTestEffectParameters instance(AddGainAndBypass);
            const AAX_CPacketHandler<SAlwaysFull> handler(&full, &SAlwaysFull::Fill);
            ASSERT_EQ(instance.Packets().RegisterPacket("full", 5, &handler), kAAX_Success);
            ASSERT_EQ(instance.Initialize(mHost.Unknown()), kAAX_Success);
            EXPECT_TRUE(mHost.Automation().IsRegistered("Gain"));
            EXPECT_GT(mHost.References(), 0);
            if (uninitialize)
            {
                EXPECT_EQ(instance.Uninitialize(), kAAX_Success);
                EXPECT_EQ(instance.GenerateCoefficients(), kAAX_Success);
                EXPECT_EQ(mLog.Count("PostPacket"), 0U);
                EXPECT_EQ(instance.Controller(), nullptr);
                EXPECT_FALSE(instance.IsParameterTouched("Gain"));
                EXPECT_EQ(mHost.References(), 0);
            }
        }
        EXPECT_FALSE(mHost.Automation().IsRegistered("Gain"));
        EXPECT_EQ(mHost.References(), 0);
    }
}

TEST_F(EffectParameters, HostWithoutAnyInterfaceIsEndured)
{
    for (const acfIID& iid : {IID_IAAXControllerV1, IID_IAAXControllerV2, IID_IAAXAutomationDelegateV1,
                              IID_IAAXTransportV1, IID_IAAXTransportV2})
        mLog.SwitchOff(iid);
    for (IACFUnknown* const host : {mHost.Unknown(), static_cast<IACFUnknown*>(nullptr)})
    {
        CTestEffectParameters instance(AddGainAndBypass);
        EXPECT_EQ(instance.Initialize(host), kAAX_Success);
        EXPECT_EQ(instance.SetParameterNormalizedValue("Gain", 1.0), kAAX_Success);
        EXPECT_EQ(instance.UpdateParameterNormalizedValue("Gain", 0.25, 0), kAAX_Success);
        EXPECT_EQ(instance.GenerateCoefficients(), kAAX_ErrorNullObject);
        EXPECT_FALSE(instance.IsParameterTouched("Gain"));
        EXPECT_EQ(instance.ValueOf("Gain"), 0.25);
        EXPECT_EQ(instance.Controller()->SetSignalLatency(1), kAAX_ErrorNullObject);
        EXPECT_EQ(instance.Transport()->GetCurrentTempo(nullptr), kAAX_ErrorNullObject);
    }
}

TEST_F(EffectParameters, LinkIsReadyWhileTheHostSaysTouchedAndForOrdinaryUpdatesOnly)
{
    Start();
    EXPECT_FALSE(mInstance.IsParameterLinkReady("Gain", 0));
    EXPECT_EQ(mInstance.TouchParameter("Gain"), kAAX_Success);
    EXPECT_TRUE(mInstance.IsParameterLinkReady("Gain", 0));
    EXPECT_FALSE(mInstance.IsParameterLinkReady("Gain", 1));
    EXPECT_EQ(mInstance.ReleaseParameter("Gain"), kAAX_Success);
    EXPECT_FALSE(mInstance.IsParameterTouched("Gain"));
}

TEST_F(EffectParameters, TaperThatMovesTheValueHasThePacketSentAgain)
{
    Start();
    AAX_CLinearTaperDelegate<float, 0> taper(0.0F, 2.0F);
    for (const bool preserve : {true, false})
    {
        SCOPED_TRACE(preserve);
        ASSERT_EQ(mInstance.GenerateCoefficients(), kAAX_Success);
        mLog.Clear();
        EXPECT_EQ(mInstance.SetTaperDelegate("Gain", taper, preserve), kAAX_Success);
        EXPECT_EQ(mInstance.GenerateCoefficients(), kAAX_Success);
        EXPECT_EQ(mLog.Count("PostPacket"), preserve ? 0U : 1U);
    }
    EXPECT_EQ(mInstance.SetTaperDelegate("Nothing", taper, false), kAAX_ErrorUnknownParameter);
}

TEST(NormalizedValues, IntegersCoverTheWholeRangeAndNothingOverflows)
{
    struct SRow
    {
        double mNormalized;
        std::int32_t mInteger;
    };
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    for (const SRow& row : {SRow{0.0, lowest}, SRow{1.0, highest}, SRow{0.5, 0}, SRow{-1.0, lowest},
                            SRow{1e300, highest}, SRow{std::nan(""), lowest}})
    {
        SCOPED_TRACE(row.mNormalized);
        EXPECT_EQ(NormalizedToInt32(row.mNormalized), row.mInteger);
    }
    for (const std::int32_t value : {lowest, -1, 0, 1, highest})
        EXPECT_EQ(NormalizedToInt32(Int32ToNormalized(value)), value);
    EXPECT_EQ(Int32ToNormalized(highest), 1.0);
}
} // namespace
