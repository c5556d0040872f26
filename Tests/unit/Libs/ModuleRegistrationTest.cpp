#include "Interfaces/AAX/AAX_ICollection.h"
#include "Interfaces/AAX/AAX_IComponentDescriptor.h"
#include "Interfaces/AAX/AAX_IEffectDescriptor.h"
#include "Interfaces/AAX/AAX_IPropertyMap.h"
#include "Interfaces/AAX/AAX_Module.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Interfaces/ACF/CACFUnknown.h"
#include "Libs/AAXLibrary/source/AAX_CHostServices.h"
#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/host/CHost.h"

#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" ACFRESULT ACFRegisterPlugin(IACFUnknown*, IACFPluginDefinition**);
extern "C" ACFRESULT ACFStartup(IACFUnknown*);

namespace
{
// What the module under test describes; set by each test.
std::function<AAX_Result(AAX_ICollection&)> gDescribe;
} // namespace

AAX_Result GetEffectDescriptions(AAX_ICollection* outCollection) { return gDescribe(*outCollection); }

namespace
{
void Process(void* const[], const void*) {}

/** Uses every operation of every description object. */
AAX_Result DescribeEverything(AAX_ICollection& outCollection)
{
    const auto effect = outCollection.NewDescriptor();
    const auto component = effect->NewComponentDescriptor();
    const auto properties = component->NewPropertyMap();
    const AAX_CTypeID meter = AAX_FourCharCode("mtr1");
    AAX_CSelector selector = 0;
    AAX_CPropertyValue value = 0;
    EXPECT_EQ(properties->AddProperty(60, 1), kAAX_Success);
    EXPECT_EQ(properties->AddProperty(61, 2), kAAX_Success);
    EXPECT_EQ(properties->RemoveProperty(61), kAAX_Success);
    EXPECT_EQ(properties->GetProperty(60, &value), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(component->Clear(), kAAX_Success);
    ExpectEach(kAAX_Success, component->AddReservedField(1, 2), component->AddAudioIn(2),
               component->AddAudioOut(3), component->AddAudioBufferLength(4), component->AddSampleRate(5),
               component->AddClock(6), component->AddSideChainIn(7), component->AddDataInPort(8, 4, 0),
               component->AddAuxOutputStem(0, AAX_eStemFormat_Stereo, "Aux"),
               component->AddPrivateData(9, 8, 0), component->AddDmaInstance(10, 1),
               component->AddMIDINode(11, AAX_eMIDINodeType_Global, "Node", 15),
               component->AddMeters(12, &meter, 1),
               component->AddProcessProc_Native(&Process, properties.get(), nullptr, nullptr, &selector));
    ExpectEach(kAAX_Success, effect->AddComponent(component.get()), effect->AddName("Effect"),
               effect->AddCategory(0x800), effect->AddCategoryBypassParameter(1, "MasterBypassID"),
               effect->AddProcPtr(&gDescribe, kAAX_ProcPtrEffectGUI),
               effect->SetProperties(effect->NewPropertyMap().get()),
               effect->AddResourceInfo(1, "page table"),
               effect->AddMeterDescription(meter, "Meter", properties.get()));
    ExpectEach(kAAX_Success, outCollection.AddEffect("com.maker.effect", effect.get()),
               outCollection.SetManufacturerName("Maker"), outCollection.AddPackageName("Package"),
               outCollection.SetPackageVersion(3),
               outCollection.SetProperties(outCollection.NewPropertyMap().get()));
    // The host has no such processors; what counts is that it is asked.
    EXPECT_EQ(component->AddProcessProc_TI("dll", "process", properties.get(), nullptr, nullptr, &selector),
              kAAX_ErrorUnsupported);
    return kAAX_Success;
}

AAX_Result DescribeOneEffect(AAX_ICollection& outCollection)
{
    const auto effect = outCollection.NewDescriptor();
    if (effect == nullptr || effect->NewComponentDescriptor() == nullptr ||
        effect->NewPropertyMap() == nullptr)
        return kAAX_ErrorNullObject;
    return outCollection.AddEffect("com.maker.effect", effect.get());
}

class ModuleRegistration : public testing::Test
{
protected:
    ~ModuleRegistration() override { EXPECT_EQ(AAXShutdown(mHost.Unknown()), kAAX_Success); }

    CHostLog mLog;
    CHost mHost{mLog};
};

TEST_F(ModuleRegistration, EveryDescriptionCallReachesItsOwnOperationAndNothingStaysBehind)
{
    gDescribe = DescribeEverything;
    IACFPluginDefinition* definition = nullptr;
    EXPECT_EQ(AAXRegisterPlugin(mHost.Unknown(), &definition), kAAX_Success);
    ASSERT_NE(definition, nullptr);
    definition->Release();
    EXPECT_EQ(mLog.LiveObjects(), 0);
    EXPECT_EQ(mHost.References(), 0);

    std::multiset<std::string> names;
    for (const std::string& line : mLog.Calls())
        names.insert(line.substr(0, line.find('(')));
    std::istringstream expected(
        "Clear AddReservedField AddAudioIn AddAudioOut AddAudioBufferLength AddSampleRate AddClock "
        "AddSideChainIn AddDataInPort AddAuxOutputStem AddPrivateData AddDmaInstance AddMIDINode AddMeters "
        "AddProperty AddProperty RemoveProperty GetProperty AddProcessProc_Native AddComponent AddName "
        "AddCategory AddCategoryBypassParameter AddProcPtr SetProperties AddResourceInfo AddMeterDescription "
        "AddEffect SetManufacturerName AddPackageName SetPackageVersion SetProperties AddProcessProc_TI");
    EXPECT_EQ(names, std::multiset<std::string>(std::istream_iterator<std::string>(expected), {}));
    // What is handed over as an object arrives as that object.
    ASSERT_EQ(mHost.Description().mEffects.size(), 1U);
    const SEffect& effect = mHost.Description().mEffects[0];
    ASSERT_EQ(effect.mComponents.size(), 1U);
    EXPECT_EQ(effect.mComponents[0].mProcs.at(0).mProperties.at(0).mProperty, 60);
    EXPECT_EQ(effect.mMeters.at(0).mProperties.at(0).mProperty, 60);
}

TEST_F(ModuleRegistration, HostThatLacksSomethingGetsACodeAndNoDefinition)
{
    struct SRow
    {
        const char* mName;
        std::vector<acfUID> mMissing;
        AAX_Result mDescribed;
        AAX_Result mExpected;
    };
    for (const SRow& row :
         {SRow{"everything there", {}, kAAX_Success, kAAX_Success},
          SRow{"no factory", {IID_IACFComponentFactory}, kAAX_Success, kAAX_ErrorNullObject},
          SRow{"no collection", {AAXCompID_AAXCollection}, kAAX_Success, kAAX_ErrorNullObject},
          SRow{"no effect descriptor", {AAXCompID_AAXEffectDescriptor}, kAAX_Success, kAAX_ErrorNullObject},
          SRow{"no component descriptor",
               {AAXCompID_AAXComponentDescriptor},
               kAAX_Success,
               kAAX_ErrorNullObject},
          SRow{"no property map", {AAXCompID_AAXPropertyMap}, kAAX_Success, kAAX_ErrorNullObject},
          SRow{"no definition", {IID_IACFPluginDefinition}, kAAX_Success, kAAX_ErrorNullObject},
          SRow{"failed description", {}, kAAX_ErrorUnsupported, kAAX_ErrorUnsupported}})
    {
        SCOPED_TRACE(row.mName);
        CHostLog log;
        CHost host(log);
        for (const acfUID& id : row.mMissing)
            log.SwitchOff(id);
        gDescribe = [&](AAX_ICollection& outCollection)
        { return DescribeOneEffect(outCollection) | row.mDescribed; };
        IACFPluginDefinition* definition = nullptr;
        EXPECT_EQ(AAXRegisterPlugin(host.Unknown(), &definition), row.mExpected);
        EXPECT_EQ(definition != nullptr, row.mExpected == kAAX_Success);
        if (definition != nullptr)
            definition->Release();
        EXPECT_EQ(log.LiveObjects(), 0);
        EXPECT_EQ(host.References(), 0);
    }
    gDescribe = DescribeOneEffect;
    IACFPluginDefinition* definition = nullptr;
    EXPECT_EQ(AAXRegisterPlugin(nullptr, &definition), kAAX_ErrorNullObject);
}

TEST_F(ModuleRegistration, NullResultPointersAreRefused)
{
    gDescribe = DescribeOneEffect;
    ExpectEach(kAAX_ErrorNullArgument, AAXRegisterPlugin(mHost.Unknown(), nullptr),
               AAXRegisterComponent(mHost.Unknown(), 0, nullptr),
               AAXGetClassFactory(mHost.Unknown(), {}, {}, nullptr), AAXGetSDKVersion(nullptr));
}

TEST_F(ModuleRegistration, ModuleMayBeUnloadedOnceItsObjectsAreGone)
{
    EXPECT_EQ(AAXCanUnloadNow(mHost.Unknown()), 0);
    {
        const CACFUnknown object;
        EXPECT_EQ(AAXCanUnloadNow(mHost.Unknown()), 1);
    }
    EXPECT_EQ(AAXCanUnloadNow(mHost.Unknown()), 0);
}

TEST_F(ModuleRegistration, ExceptionOfTheDescriptionStopsAtTheEntryPoint)
{
    gDescribe = [](AAX_ICollection&) -> AAX_Result { throw std::runtime_error("description"); };
    IACFPluginDefinition* definition = nullptr;
    EXPECT_EQ(ACFRegisterPlugin(mHost.Unknown(), &definition), ACF_E_UNEXPECTED);
    EXPECT_EQ(mLog.LiveObjects(), 0);
    EXPECT_EQ(mHost.References(), 0);
}

TEST_F(ModuleRegistration, ServicesLastFromTheFirstStartToTheShutdown)
{
    EXPECT_EQ(AAX_CHostServices::Assert("file", 1, "note"), kAAX_ErrorNullObject);
    EXPECT_EQ(AAXStartup(mHost.Unknown()), kAAX_Success);
    EXPECT_EQ(AAXStartup(mHost.Unknown()), kAAX_Success);
    EXPECT_EQ(mLog.LiveObjects(), 1);
    mLog.Clear();
    EXPECT_EQ(AAX_CHostServices::Assert("file", 1, "note"), kAAX_Success);
    EXPECT_EQ(AAX_CHostServices::Trace(2, "%d %s", 5, std::string(1000, 'x').c_str()), kAAX_Success);
    EXPECT_EQ(mLog.Calls(), (std::vector<std::string>{R"(Assert("file", 1, "note"))",
                                                      "Trace(2, \"5 " + std::string(509, 'x') + "\")"}));
    EXPECT_EQ(AAXShutdown(mHost.Unknown()), kAAX_Success);
    EXPECT_EQ(AAXShutdown(mHost.Unknown()), kAAX_Success);
    EXPECT_EQ(mLog.LiveObjects(), 0);
    EXPECT_EQ(mHost.References(), 0);
    EXPECT_EQ(AAX_CHostServices::Trace(2, "nobody"), kAAX_ErrorNullObject);
}

TEST_F(ModuleRegistration, HostThatPromisesAFactoryAndGivesNoneIsAnsweredWithAnUnexpectedError)
{
    mLog.FailCall("QueryInterface", 1, ACF_FALSE); // a success code, and a null factory
    EXPECT_EQ(ACFStartup(mHost.Unknown()), ACF_E_UNEXPECTED);
    EXPECT_EQ(AAX_CHostServices::Trace(2, "nobody"), kAAX_ErrorNullObject);
    mLog.SwitchOff(AAXCompID_HostServices); // refused services are no error
    EXPECT_EQ(ACFStartup(mHost.Unknown()), ACF_OK);
    EXPECT_EQ(AAX_CHostServices::Trace(2, "nobody"), kAAX_ErrorNullObject);
}
} // namespace
