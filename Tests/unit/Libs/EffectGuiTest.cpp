#include "Interfaces/AAX/AAX_IController.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Interfaces/AAX/AAX_IViewContainer.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CEffectGUI.h"
#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{
using Notes = std::vector<std::string>;

/** An instance that notes which index is asked for; the index `mUnknown` it refuses. */
class CAskedParameters final : public CTestEffectParameters
{
public:
    AAX_Result GetNumberOfParameters(std::int32_t* outCount) const override
    {
        const AAX_Result result = CTestEffectParameters::GetNumberOfParameters(outCount);
        if (mCountOverride != 0)
            *outCount = mCountOverride;
        return mCountResult != kAAX_Success ? mCountResult : result;
    }
    AAX_Result GetParameterIDFromIndex(std::int32_t inIndex, AAX_IString* outId) const override
    {
        mAsked.push_back(inIndex);
        return inIndex == mUnknown ? kAAX_ErrorUnknownParameter
                                   : CTestEffectParameters::GetParameterIDFromIndex(inIndex, outId);
    }
    mutable std::vector<std::int32_t> mAsked;
    std::int32_t mUnknown = -1;
    std::int32_t mCountOverride = 0;
    AAX_Result mCountResult = kAAX_Success;
};

class CNotingGui final : public AAX_CEffectGUI
{
public:
    explicit CNotingGui(Notes& outNotes) : mNotes(outNotes) {}
    AAX_Result ParameterUpdated(AAX_CParamID inId) override
    {
        mNotes.push_back(std::string("updated ") + inId);
        return kAAX_Success;
    }

private:
    void CreateViewContents() override { mNotes.emplace_back("contents"); }
    void CreateViewContainer() override
    {
        mNotes.push_back("container " + std::to_string(GetViewContainerType()));
    }
    void DeleteViewContainer() override
    {
        mNotes.push_back("no container " + std::to_string(GetViewContainerType()));
    }
    Notes& mNotes;
};

class EffectGui : public testing::Test
{
protected:
    EffectGui() { mHost.SetEffectParameters(mParameters->GetUnknown()); }
    void Start() { ASSERT_EQ(mGui->Initialize(mHost.Unknown()), kAAX_Success); }
    IACFUnknown* View() { return &mHost.ViewContainer(); }

    CHostLog mLog;
    CInstanceHost mHost{mLog};
    CAskedParameters* mParameters = new CAskedParameters; // owned by the reference
    ACFPtr<AAX_IEffectParameters> mParametersReference{mParameters};
    Notes mNotes;
    CNotingGui* mGui = new CNotingGui(mNotes); // owned by the reference
    ACFPtr<AAX_IEffectGUI> mGuiReference{mGui};
};

TEST_F(EffectGui, ViewThatComesIsFilledWithEveryParameterAndOneIndexMore)
{
    for (const char* const id : {"a", "b", "c"})
        mParameters->Add(MakeFloat(id));
    mParameters->mUnknown = 1;
    Start();
    EXPECT_EQ(mGui->SetViewContainer(View()), kAAX_Success);
    EXPECT_EQ(mNotes, (Notes{"contents", "container 1", "updated a", "updated c"}));
    EXPECT_EQ(mParameters->mAsked, (std::vector<std::int32_t>{0, 1, 2, 3}));
}

TEST_F(EffectGui, NumberOfParametersDecidesHowOftenTheLoopAsks)
{
    struct SRow
    {
        std::int32_t mCount;
        AAX_Result mResult;
        std::size_t mAsked;
    };
    Start();
    for (const SRow& row :
         {SRow{0, kAAX_Success, 1}, SRow{-1, kAAX_Success, 0}, SRow{0, kAAX_ErrorUnsupported, 0}})
    {
        SCOPED_TRACE(row.mCount);
        mParameters->mCountOverride = row.mCount;
        mParameters->mCountResult = row.mResult;
        mParameters->mAsked.clear();
        EXPECT_EQ(mGui->SetViewContainer(View()), kAAX_Success);
        EXPECT_EQ(mParameters->mAsked.size(), row.mAsked);
    }
}

TEST_F(EffectGui, ViewThatGoesIsGoneForTheSubclassEachTime)
{
    int view = 0;
    mHost.ViewContainer().SetView(1, &view);
    EXPECT_EQ(mGui->GetViewContainerType(), 0);
    EXPECT_EQ(mGui->GetViewContainerPtr(), nullptr);
    EXPECT_EQ(mGui->SetViewContainer(View()), kAAX_Success);
    EXPECT_EQ(mGui->GetViewContainerPtr(), &view);
    const AAX_IViewContainer* const container = mGui->GetViewContainer();
    EXPECT_EQ(mGui->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(mGui->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(mNotes, (Notes{"container 1", "no container 0", "no container 0"}));
    EXPECT_EQ(mGui->GetViewContainer(), nullptr);
    EXPECT_EQ(mGui->SetViewContainer(View()), kAAX_Success);
    EXPECT_NE(mGui->GetViewContainer(), container); // the earlier one lives on beside the new one
    mGuiReference.Reset();
    EXPECT_EQ(mHost.ViewContainer().References(), 2); // kept on purpose
}

TEST_F(EffectGui, LinksAreGivenBackOnceAndTheViewStays)
{
    Start();
    EXPECT_EQ(mGui->SetViewContainer(View()), kAAX_Success);
    EXPECT_EQ(mGui->GetEffectParameters(), mParameters);
    EXPECT_GT(mHost.References(), 0);
    for (int time = 0; time < 2; ++time)
    {
        EXPECT_EQ(mGui->Uninitialize(), kAAX_Success);
        EXPECT_EQ(mHost.References(), 0);
        EXPECT_EQ(mGui->GetController(), nullptr);
        EXPECT_EQ(mGui->Transport(), nullptr);
        EXPECT_EQ(mGui->GetEffectParameters(), nullptr);
        EXPECT_NE(mGui->GetViewContainer(), nullptr);
    }
    EXPECT_EQ(mGui->SetViewContainer(View()), kAAX_Success); // without parameters nothing is updated
    EXPECT_EQ(mParameters->mAsked.size(), 1U);
}

TEST_F(EffectGui, SecondInitialisationReleasesNothingOfTheFirstUntilTheEnd)
{
    Start();
    const int once = mHost.References();
    Start();
    EXPECT_EQ(mHost.References(), 2 * once);
    EXPECT_EQ(mGui->Uninitialize(), kAAX_Success);
    EXPECT_EQ(mHost.References(), once);
    mGuiReference.Reset();
    EXPECT_EQ(mHost.References(), 0);
}

TEST_F(EffectGui, NullControllerIsRefusedAndLeavesOneThatNobodyAnswers)
{
    EXPECT_EQ(mGui->Initialize(nullptr), kAAX_ErrorNullArgument);
    EXPECT_TRUE(mNotes.empty());
    ASSERT_NE(mGui->GetController(), nullptr);
    EXPECT_EQ(mGui->GetController()->SetSignalLatency(1), kAAX_ErrorNullObject);
    EXPECT_EQ(mGui->GetController()->SendNotification(1, nullptr, 0), kAAX_ErrorUnsupported);
    EXPECT_EQ(mGui->Transport(), nullptr);
}
} // namespace
