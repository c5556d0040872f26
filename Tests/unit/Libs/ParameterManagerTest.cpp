#include "Libs/AAXLibrary/source/AAX_VAutomationDelegate.h"
#include "Tests/unit/Libs/TestParameters.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>

namespace
{
class ParameterManager : public testing::Test
{
protected:
    ParameterManager() { mManager.Initialize(&mDelegate); }
    AAX_IParameter* Add(const char* inId)
    {
        auto parameter = MakeFloat(inId);
        return mManager.AddParameter(parameter.get()) ? parameter.release() : nullptr;
    }

    CHostLog mLog;
    CInstanceHost mHost{mLog};
    AAX_VAutomationDelegate mDelegate{mHost.Unknown()};
    AAX_CParameterManager mManager;
};

TEST_F(ParameterManager, SecondParameterOfAnIdentifierStaysTheCallersAndUnknownToTheHost)
{
    AAX_IParameter* const first = Add("Gain");
    const auto second = MakeFloat("Gain", 0.25F);
    EXPECT_FALSE(mManager.AddParameter(second.get()));
    EXPECT_FALSE(mManager.AddParameter(nullptr));
    EXPECT_EQ(mManager.NumParameters(), 1);
    EXPECT_EQ(mManager.GetParameterByID("Gain"), first);
    EXPECT_EQ(mLog.Count("RegisterParameter"), 1U);
}

TEST_F(ParameterManager, RemovalMovesLaterParametersDownInBothLookUps)
{
    Add("a");
    AAX_IParameter* const b = Add("b");
    AAX_IParameter* const c = Add("c");
    mManager.RemoveParameterByID("a");
    mManager.RemoveParameterByID("a");
    mManager.RemoveParameterByID(nullptr);
    EXPECT_EQ(mManager.GetParameter(0), b);
    EXPECT_EQ(mManager.GetParameterByID("a"), nullptr);
    EXPECT_EQ(mManager.ControlIndexFromID("c"), 1);
    mManager.RemoveParameter(b); // its identifier goes with it
    EXPECT_EQ(mManager.GetParameter(0), c);
    EXPECT_EQ(mManager.NumParameters(), 1);
}
} // namespace
