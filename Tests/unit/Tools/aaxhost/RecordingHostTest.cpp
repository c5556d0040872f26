#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tests/unit/Tools/aaxhost/FakeModule.h"
#include "Tools/aaxhost/host/CHost.h"
#include "Tools/aaxhost/host/CHostPropertyMap.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace
{
using Lines = std::vector<std::string>;

template <class Interface>
ACFPtr<Interface> Make(CHost& ioHost, const acfUID& inComponent, const acfIID& inIid)
{
    ACFPtr<Interface> object;
    (void)ioHost.CreateComponent(inComponent, nullptr, inIid, object.Receive()); // empty when refused
    return object;
}

ACFPtr<AAX_IACFEffectDescriptor> MakeEffect(CHost& ioHost)
{
    return Make<AAX_IACFEffectDescriptor>(ioHost, AAXCompID_AAXEffectDescriptor, IID_IAAXEffectDescriptorV1);
}

TEST(HostLog, NthCallFailsOnceAndHasNoEffect)
{
    CHostLog log;
    CHost host(log);
    const auto effect = MakeEffect(host);
    log.FailCall("AddName", 2, kAAX_ErrorNullObject);
    EXPECT_EQ(effect->AddName("one"), kAAX_Success);
    EXPECT_EQ(effect->AddCategory(1), kAAX_Success);
    EXPECT_EQ(effect->AddName("two"), kAAX_ErrorNullObject);
    EXPECT_EQ(effect->AddName("three"), kAAX_Success);
    EXPECT_EQ(log.Calls(), (Lines{"AddName(\"one\")", "AddCategory(0x1)", "AddName(\"two\") = -20004",
                                  "AddName(\"three\")"}));

    const auto collection = Make<AAX_IACFCollection>(host, AAXCompID_AAXCollection, IID_IAAXCollectionV1);
    ASSERT_EQ(collection->AddEffect("id", effect.Get()), kAAX_Success);
    EXPECT_EQ(host.Description().mEffects.front().mNames, (Lines{"one", "three"}));
}

TEST(Host, APropertyThatIsSetAgainHasTheNewValueOnly)
{
    CHostLog log;
    CHost host(log);
    const auto map = Make<AAX_IACFPropertyMap>(host, AAXCompID_AAXPropertyMap, IID_IAAXPropertyMapV1);
    for (const AAX_CPropertyValue value : {1, 2})
        EXPECT_EQ(map->AddProperty(kAAX_PropertyManufacturerID, value), kAAX_Success);
    PropertyList properties;
    ASSERT_TRUE(CopyProperties(map.Get(), properties));
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties.front().mValue, 2);
}

TEST(Host, ASwitchedOffInterfaceIsNeitherCreatedNorFound)
{
    CHostLog log;
    CHost host(log);
    CInstanceHost instance(log);
    log.SwitchOff(AAXCompID_AAXPropertyMap);
    log.SwitchOff(IID_IAAXCollectionV1);
    log.SwitchOff(IID_IAAXControllerV2);
    EXPECT_FALSE(Make<IACFUnknown>(host, AAXCompID_AAXPropertyMap, IID_IAAXPropertyMapV1));
    EXPECT_FALSE(Make<IACFUnknown>(host, AAXCompID_AAXCollection, IID_IAAXCollectionV1));
    EXPECT_TRUE(Make<IACFUnknown>(host, AAXCompID_AAXCollection, IID_IACFPluginDefinition));
    EXPECT_FALSE(ACFPtr<IACFUnknown>::Query(instance.Unknown(), IID_IAAXControllerV2));
    EXPECT_TRUE(ACFPtr<IACFUnknown>::Query(instance.Unknown(), IID_IAAXControllerV1));
    EXPECT_EQ(log.LiveObjects(), 0);
    EXPECT_EQ(instance.References(), 0);
}

TEST(HostTransport, PositionsFollowTempoMeterAndRate)
{
    CHostLog log;
    CHostTransport transport(log);
    STransportState& state = transport.State();
    state = {.mTempo = 90.0, .mMeterNumerator = 3, .mMeterDenominator = 8, .mSampleRate = 48000.0};
    state.mSamplePosition = 96000; // two seconds: three quarters, six eighths, two bars
    std::int64_t ticks = -1;
    std::int32_t bars = -1;
    std::int32_t beats = -1;
    ASSERT_EQ(transport.GetCurrentTickPosition(&ticks), kAAX_Success);
    EXPECT_EQ(ticks, 3 * 960000);
    ASSERT_EQ(transport.GetBarBeatPosition(&bars, &beats, &ticks, 112000), kAAX_Success); // 7 eighths
    EXPECT_EQ(bars, 3);
    EXPECT_EQ(beats, 2);
    EXPECT_EQ(ticks, 0);
    state.mSampleRate = 0.0;
    ASSERT_EQ(transport.GetCurrentTickPosition(&ticks), kAAX_Success);
    EXPECT_EQ(ticks, 0);
}

TEST(HostTransport, TicksBarsAndBeatsAgreeAcrossChangesOfTempoAndMeter)
{
    CHostLog log;
    CHostTransport transport(log);
    STransportState& state = transport.State();
    // Four quarters in the first two seconds; the second meter cuts the second bar short.
    state.mTimeline = CTimeline({{0.0, 120.0}, {2.0, 60.0}}, {{0.0, {3, 4}}, {2.5, {6, 8}}});
    state.mSampleRate = 1000.0;
    struct SRow
    {
        std::int64_t mSample;
        double mTempo;
        SMeter mMeter;
        std::int64_t mTicks;
        SBarBeat mPlace;
    };
    for (const SRow& row :
         {SRow{-500, 120, {3, 4}, -960000, {0, 3, 0}}, SRow{0, 120, {3, 4}, 0, {1, 1, 0}},
          SRow{1999, 120, {3, 4}, 3838080, {2, 1, 958080}}, SRow{2000, 60, {3, 4}, 3840000, {2, 2, 0}},
          SRow{2500, 60, {6, 8}, 4320000, {3, 1, 0}}, SRow{3750, 60, {6, 8}, 5520000, {3, 3, 240000}},
          SRow{5500, 60, {6, 8}, 7200000, {4, 1, 0}}})
    {
        SCOPED_TRACE(row.mSample);
        state.mSamplePosition = row.mSample;
        double tempo = 0.0;
        SMeter meter{0, 0};
        std::int64_t ticks = -1;
        std::int64_t custom = -1;
        std::int64_t display = -1;
        std::int32_t bar = -1;
        std::int32_t beat = -1;
        std::uint32_t perBeat = 0;
        ASSERT_EQ(transport.GetCurrentTempo(&tempo), kAAX_Success);
        ASSERT_EQ(transport.GetCurrentMeter(&meter.mNumerator, &meter.mDenominator), kAAX_Success);
        ASSERT_EQ(transport.GetCurrentTickPosition(&ticks), kAAX_Success);
        ASSERT_EQ(transport.GetCustomTickPosition(&custom, row.mSample), kAAX_Success);
        ASSERT_EQ(transport.GetBarBeatPosition(&bar, &beat, &display, row.mSample), kAAX_Success);
        ASSERT_EQ(transport.GetCurrentTicksPerBeat(&perBeat), kAAX_Success);
        EXPECT_EQ(tempo, row.mTempo);
        EXPECT_EQ(meter, row.mMeter);
        EXPECT_EQ(ticks, row.mTicks);
        EXPECT_EQ(custom, row.mTicks);
        EXPECT_EQ((SBarBeat{bar, beat, display}), row.mPlace);
        EXPECT_EQ(perBeat, 3840000U / static_cast<std::uint32_t>(row.mMeter.mDenominator));
        EXPECT_NEAR(state.mTimeline->SecondsAt(static_cast<double>(ticks) / 960000), row.mSample / 1000.0,
                    1e-9);
    }
}

TEST(HostTransport, AnswersWhatNoHostShouldAndFailsSingleCalls)
{
    CHostLog log;
    CHostTransport transport(log);
    STransportState& state = transport.State();
    state = {.mSamplePosition = 66150, .mTickOffset = -500000, .mDisplayTicksPerQuarter = 960}; // 3 quarters
    struct SRow
    {
        double mTempo;
        SMeter mMeter;
        std::int64_t mTicks;
        SBarBeat mPlace;
    };
    for (const SRow& row :
         {SRow{120.0, {4, 3}, 2380000, {1, 2, 1100}}, SRow{0.0, {0, 0}, -500000, {0, 1, 460}},
          SRow{std::nan(""), {0, 0}, -500000, {0, 1, 460}}})
    {
        SCOPED_TRACE(row.mTempo);
        state.mTempo = row.mTempo;
        state.mMeterNumerator = row.mMeter.mNumerator;
        state.mMeterDenominator = row.mMeter.mDenominator;
        std::int64_t ticks = -1;
        std::int64_t display = -1;
        std::int32_t bar = -1;
        std::int32_t beat = -1;
        ASSERT_EQ(transport.GetCurrentTickPosition(&ticks), kAAX_Success);
        ASSERT_EQ(transport.GetBarBeatPosition(&bar, &beat, &display, 66150), kAAX_Success);
        EXPECT_EQ(ticks, row.mTicks);
        EXPECT_EQ((SBarBeat{bar, beat, display}), row.mPlace);
    }
    const std::pair<const char*, std::function<AAX_Result()>> calls[] = {
        {"GetCurrentTempo", [&] { return transport.GetCurrentTempo(nullptr); }},
        {"GetCurrentMeter", [&] { return transport.GetCurrentMeter(nullptr, nullptr); }},
        {"IsTransportPlaying", [&] { return transport.IsTransportPlaying(nullptr); }},
        {"GetCurrentTickPosition", [&] { return transport.GetCurrentTickPosition(nullptr); }},
        {"GetCurrentLoopPosition",
         [&] { return transport.GetCurrentLoopPosition(nullptr, nullptr, nullptr); }},
        {"GetBarBeatPosition", [&] { return transport.GetBarBeatPosition(nullptr, nullptr, nullptr, 0); }},
        {"GetTicksPerQuarter", [&] { return transport.GetTicksPerQuarter(nullptr); }}};
    for (const auto& [failing, ignored] : calls)
    {
        log.FailCall(failing, 1, kAAX_ErrorUnsupported);
        for (const auto& [name, call] : calls)
            EXPECT_EQ(call(), name == failing ? kAAX_ErrorUnsupported : kAAX_Success) << failing << name;
    }
}

TEST(HostMidiNode, TakesAsManyPacketsAsItHasRoomForAndCountsTheRest)
{
    CHostLog log;
    CHostMidiNode node(log);
    AAX_CMidiPacket packet{};
    ASSERT_EQ(node.PostMIDIPacket(&packet), kAAX_Success);
    const AAX_CMidiPacket* const begin = node.Posted().data();
    while (node.Posted().size() < 65536)
        ASSERT_EQ(node.PostMIDIPacket(&packet), kAAX_Success);
    EXPECT_EQ(node.PostMIDIPacket(&packet), ACF_E_OUTOFMEMORY);
    EXPECT_EQ(node.Refused(), 1U);
    EXPECT_EQ(node.Posted().data(), begin) << "memory was allocated";
}

TEST(HostViewContainer, ASizeIsTakenMadeAnotherOrRefused)
{
    CHostLog log;
    CHostViewContainer container(log);
    AAX_Point size{200.5F, 300.5F};
    EXPECT_EQ(container.SetViewSize(size), kAAX_Success);
    container.SetResizeHandler(
        [](AAX_Point& ioSize)
        {
            ioSize.mVertical = 200.0F;
            return ioSize.mHorizontal > 300.0F ? kAAX_ErrorUnsupported : kAAX_Success;
        });
    EXPECT_EQ(container.SetViewSize(size), kAAX_ErrorUnsupported);
    size.mHorizontal = 300.0F;
    EXPECT_EQ(container.SetViewSize(size), kAAX_Success);
    EXPECT_EQ(size.mVertical, 200.0F);
}

/** An instance of the fake module whose host answers in that way. */
struct SAnswered
{
    explicit SAnswered(EAnswers inAnswers)
        : mModule(std::move(*CModule::Open(FakeModuleFile(), mLog))),
          mInstance(std::move(*CInstance::Create(*mModule, 44100.0, {.mAnswers = inAnswers})))
    {
    }
    CHostAutomation& Automation() { return mInstance->Host().Automation(); }
    /** All that the host sent. */
    std::string Sent() { return mInstance->ListParameters().front().mValueText; }
    double Level() { return mInstance->ListParameters().front().mValue; }

    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
};

TEST(HostAutomation, EachKindOfHostAnswersAtItsTimeAndInItsOrder)
{
    constexpr const char* all = "touch Level, Level 10%, Other 30%, Level 25%, release Level";
    struct SRow
    {
        EAnswers mAnswers;
        const char* mBefore; // the cycle
        const char* mAfter;
    };
    for (const SRow& row : {SRow{EAnswers::AtOnce, all, all}, SRow{EAnswers::Late, "", all},
                            SRow{EAnswers::Last, "", "touch Level, Other 30%, Level 25%, release Level"}})
    {
        SCOPED_TRACE(NameOfAnswers(row.mAnswers));
        SAnswered answered(row.mAnswers);
        CHostAutomation& automation = answered.Automation();
        ASSERT_EQ(automation.PostTouchRequest("Level"), kAAX_Success);
        ASSERT_EQ(automation.PostSetValueRequest("Level", 0.1), kAAX_Success);
        ASSERT_EQ(automation.PostSetValueRequest("Other", 0.3), kAAX_Success);
        ASSERT_EQ(answered.mInstance->SetParameter("Level", 0.25), kAAX_Success);
        EXPECT_TRUE(automation.IsTouched("Level"));
        ASSERT_EQ(automation.PostReleaseRequest("Level"), kAAX_Success);
        EXPECT_EQ(answered.Sent(), row.mBefore);
        EXPECT_EQ(automation.PendingRequests(), row.mAnswers == EAnswers::AtOnce ? 0U : 5U);
        EXPECT_EQ(answered.Level(), 1.0) << "coefficients before the cycle";

        EXPECT_EQ(answered.mInstance->RunCycle(), kAAX_Success);
        EXPECT_EQ(answered.Sent(), row.mAfter);
        EXPECT_EQ(answered.Level(), 0.25) << "no coefficients";
        EXPECT_EQ(automation.PendingRequests(), 0U);
        EXPECT_EQ(automation.ValueRequests(), 3U);
    }
}

TEST(HostAutomation, AModuleThatAsksAgainInsideEachAnswerDoesNotUseUpTheStack)
{
    const CFakeFault fault("echo");
    SAnswered answered(EAnswers::AtOnce);
    for (std::size_t cycle = 1; cycle <= 3; ++cycle)
    {
        if (cycle == 1)
            ASSERT_EQ(answered.mInstance->SetParameter("Level", 0.5), kAAX_Success);
        else
            ASSERT_EQ(answered.mInstance->RunCycle(), kAAX_Success);
        EXPECT_EQ(answered.Automation().ValueRequests(), cycle * (CHostAutomation::kMostNested + 1));
        EXPECT_EQ(answered.Automation().PendingRequests(), 1U);
    }
}
} // namespace
