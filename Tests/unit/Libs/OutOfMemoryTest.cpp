#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CEffectGUI.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Tests/doubles/FailingMemory.h"
#include "Tests/unit/Libs/TestParameters.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace
{
// Longer than what a string keeps without allocating.
constexpr const char* kLevel = "Level of the first oscillator";
constexpr const char* kText = "Text of some forty characters, or about";

/** A switch that needs memory to change. */
class CCopyingSwitch final : public BoolParameter
{
public:
    explicit CCopyingSwitch(const char* inId)
        : BoolParameter(inId, AAX_CString(inId), false, AAX_CBinaryTaperDelegate<bool>(),
                        AAX_CBinaryDisplayDelegate<bool>("off", "on"), true)
    {
    }
    bool SetValueWithBool(bool inValue) override
    {
        const AAX_CString copy(kText);
        return !copy.Empty() && BoolParameter::SetValueWithBool(inValue);
    }
};

AAX_Result AddParameters(CTestEffectParameters& ioInstance)
{
    auto level = MakeFloat(kLevel);
    level->SetName(kText);
    level->AddShortenedName(AAX_CString("A line that is rather long\nand another one, longer still"));
    ioInstance.Add(std::move(level));
    ioInstance.Add(std::make_unique<CTypedParameter>("Text", AAX_CString(kText)));
    ioInstance.Add(MakeBool(cDefaultMasterBypassID));
    ioInstance.Add(std::make_unique<CCopyingSwitch>(cPreviewID));
    return ioInstance.Packets().RegisterPacket(kLevel, 1);
}

/** A chunk with values for which there is no parameter, too. */
struct SChunk
{
    SChunk()
    {
        AAX_CChunkDataParser parser;
        parser.AddDouble("A name that no parameter has", 1.0);
        parser.AddString("Text", AAX_CString(kText));
        parser.AddInt32(cPreviewID, 1);
        parser.AddDouble(kLevel, 0.25);
        Get()->mChunkID = kAAX_ControlsChunkID;
        EXPECT_LT(static_cast<std::size_t>(parser.GetChunkDataSize()), mMemory.size() / 2);
        EXPECT_EQ(parser.GetChunkData(Get()), kAAX_Success);
    }
    AAX_SPlugInChunk* Get() { return reinterpret_cast<AAX_SPlugInChunk*>(mMemory.data()); }
    alignas(AAX_SPlugInChunk) std::array<char, 1024> mMemory{};
};

struct SCall
{
    const char* mName;
    std::function<AAX_Result(CTestEffectParameters&)> mCall;
};

/** Has the n-th allocation and all after it fail, for n from 0 on, until none does. */
template <class Call, class Check>
void WalkThroughFailures(Call inCall, Check inCheckAfterwards)
{
    bool failed = true;
    for (int working = 0; failed; ++working)
    {
        SCOPED_TRACE(working);
        ASSERT_LT(working, 1000);
        CFailingMemory memory(working);
        const AAX_Result result = inCall();
        failed = memory.Stop();
        EXPECT_EQ(result, failed ? kAAX_ErrorNullObject : kAAX_Success);
        inCheckAfterwards();
    }
}

void ExpectWorking(CTestEffectParameters& ioInstance)
{
    std::int32_t count = 0;
    EXPECT_EQ(ioInstance.GetNumberOfParameters(&count), kAAX_Success);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(ioInstance.UpdateParameterNormalizedValue(kLevel, 0.5, 0), kAAX_Success);
    EXPECT_EQ(ioInstance.ValueOf(kLevel), 0.5);
    SChunk chunk;
    AAX_CBoolean isEqual = 7;
    EXPECT_EQ(ioInstance.CompareActiveChunk(chunk.Get(), &isEqual), kAAX_Success);
    EXPECT_EQ(isEqual, 0);
}

TEST(OutOfMemory, CallOfAnInstanceFailsAndTheInstanceStaysUsable)
{
    CTestEffectParameters instance(AddParameters);
    ASSERT_EQ(instance.Initialize(nullptr), kAAX_Success);
    SChunk chunk;
    AAX_CString text;
    AAX_CBoolean isEqual = 0;
    double value = 0.0;
    std::uint32_t size = 0;
    const std::uint32_t on = 1;
    const AAX_CString number("0.25000000000000000000000000");
    // As a host that begins with a new string each time; a string that has grown would need no memory.
    const auto fresh = [&text] { return &(text = AAX_CString()); };
    for (const SCall& call :
         {SCall{"GetParameterName",
                [&](auto& ioInstance) { return ioInstance.GetParameterName(kLevel, fresh()); }},
          SCall{"GetParameterNameOfLength",
                [&](auto& ioInstance) { return ioInstance.GetParameterNameOfLength(kLevel, fresh(), 27); }},
          SCall{"GetParameterIDFromIndex",
                [&](auto& ioInstance) { return ioInstance.GetParameterIDFromIndex(0, fresh()); }},
          SCall{"GetMasterBypassParameter",
                [&](auto& ioInstance) { return ioInstance.GetMasterBypassParameter(fresh()); }},
          SCall{"GetParameterValueFromString", [&](auto& ioInstance)
                { return ioInstance.GetParameterValueFromString(kLevel, &value, number); }},
          SCall{"GetParameterStringFromValue", [&](auto& ioInstance)
                { return ioInstance.GetParameterStringFromValue(kLevel, 0.5, fresh(), 20); }},
          SCall{"GetParameterValueString",
                [&](auto& ioInstance) { return ioInstance.GetParameterValueString(kLevel, fresh(), 20); }},
          SCall{"SetParameterNormalizedValue",
                [&](auto& ioInstance) { return ioInstance.SetParameterNormalizedValue(kLevel, 0.75); }},
          SCall{"UpdateParameterNormalizedValue",
                [&](auto& ioInstance) { return ioInstance.UpdateParameterNormalizedValue(kLevel, 0.75, 0); }},
          SCall{"NotificationReceived", [&](auto& ioInstance)
                { return ioInstance.NotificationReceived(kAAX_NotificationPreview, &on, sizeof(on)); }},
          SCall{"GetChunkSize",
                [&](auto& ioInstance) { return ioInstance.GetChunkSize(kAAX_ControlsChunkID, &size); }},
          SCall{"GetChunk",
                [&](auto& ioInstance) { return ioInstance.GetChunk(kAAX_ControlsChunkID, chunk.Get()); }},
          SCall{"SetChunk",
                [&](auto& ioInstance) { return ioInstance.SetChunk(kAAX_ControlsChunkID, chunk.Get()); }},
          SCall{"CompareActiveChunk",
                [&](auto& ioInstance) { return ioInstance.CompareActiveChunk(chunk.Get(), &isEqual); }}})
    {
        SCOPED_TRACE(call.mName);
        WalkThroughFailures([&] { return call.mCall(instance); }, [&] { ExpectWorking(instance); });
    }
}

TEST(OutOfMemory, FailedInitialisationCanBeRepeated)
{
    CTestEffectParameters instance(AddParameters);
    WalkThroughFailures([&] { return instance.Initialize(nullptr); },
                        [&]
                        {
                            EXPECT_EQ(instance.Initialize(nullptr), kAAX_Success);
                            ExpectWorking(instance);
                        });
}

TEST(OutOfMemory, ParameterThatCouldNotBeAddedStaysTheCallers)
{
    CTestEffectParameters instance;
    std::int32_t count = 0;
    for (const std::string& id : {std::string("a"), std::string(31, 'b'), std::string(31, 'c')})
    {
        auto parameter = MakeFloat(id.c_str());
        WalkThroughFailures(
            [&]
            {
                return AAX_Contained(
                    [&]
                    {
                        instance.Add(std::move(parameter));
                        return kAAX_Success;
                    });
            },
            [&] { parameter = MakeFloat(id.c_str()); });
        EXPECT_EQ(instance.GetNumberOfParameters(&count), kAAX_Success);
        EXPECT_EQ(instance.ValueOf(id.c_str()), 0.5) << id;
    }
    EXPECT_EQ(count, 3);
}

TEST(OutOfMemory, ObjectThatCannotBeMadeIsNull)
{
    CFailingMemory memory(0);
    EXPECT_EQ(AAX_CreateContained<CTestEffectParameters>(), nullptr);
    EXPECT_TRUE(memory.Stop());
}

/** An editor whose every step needs memory. */
class CCopyingGui final : public AAX_CEffectGUI
{
public:
    AAX_Result ParameterUpdated(AAX_CParamID) override { return Copy(), kAAX_Success; }

private:
    static void Copy() { EXPECT_FALSE(AAX_CString(kText).Empty()); }
    void CreateViewContents() override { Copy(); }
    void CreateViewContainer() override { Copy(); }
    void DeleteViewContainer() override { Copy(); }
};

/** A host, and a view, that offers nothing but the instance. */
class CBareHost final : public IACFUnknown
{
public:
    explicit CBareHost(IACFUnknown* inParameters) : mParameters(inParameters) {}
    ACFRESULT QueryInterface(const acfIID& iid, void** out) override
    {
        *out = nullptr;
        return iid == IID_IAAXEffectParametersV1 ? mParameters->QueryInterface(iid, out) : ACF_E_NOINTERFACE;
    }
    acfUInt32 AddRef() override { return 1; }
    acfUInt32 Release() override { return 1; }

private:
    IACFUnknown* mParameters = nullptr;
};

TEST(OutOfMemory, CallOfAnEditorFailsAndTheEditorStaysUsable)
{
    auto* const parameters = new CTestEffectParameters; // owned by the reference
    const ACFPtr<AAX_IEffectParameters> reference(parameters);
    parameters->Add(MakeFloat("Level")); // one whose name cannot be had is left out, and the call succeeds
    CBareHost host(parameters->GetUnknown());
    CCopyingGui gui;
    WalkThroughFailures([&] { return gui.Initialize(&host); },
                        [&] { EXPECT_EQ(gui.Initialize(&host), kAAX_Success); });
    for (IACFUnknown* const view : {static_cast<IACFUnknown*>(&host), static_cast<IACFUnknown*>(nullptr)})
    {
        SCOPED_TRACE(view == nullptr ? "view goes" : "view comes");
        WalkThroughFailures([&] { return gui.SetViewContainer(view); },
                            [&]
                            {
                                EXPECT_EQ(gui.SetViewContainer(&host), kAAX_Success);
                                EXPECT_NE(gui.GetViewContainer(), nullptr);
                                EXPECT_EQ(gui.GetViewContainerType(), 0);
                            });
    }
}
} // namespace
