#include "Libs/AAXLibrary/source/AAX_VAutomationDelegate.h"
#include "Tests/doubles/CallGuard.h"
#include "Tests/unit/aaxlib/TestParameters.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

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

TEST_F(ParameterManager, IndexOrIdentifierOutOfRangeFindsNothing)
{
    EXPECT_EQ(mManager.ControlIndexFromID("a"), -1);
    Add("a");
    EXPECT_EQ(mManager.GetParameter(-1), nullptr);
    EXPECT_EQ(mManager.GetParameter(1), nullptr);
    EXPECT_EQ(mManager.GetParameterByID(nullptr), nullptr);
    EXPECT_EQ(mManager.ControlIndexFromID(nullptr), -1);
    EXPECT_EQ(mManager.ControlIndexFromID("ab"), -1);
    EXPECT_EQ(mManager.GetParameterByID("ab"), nullptr);
}

TEST_F(ParameterManager, ParametersGoInTheirOrderAndTheHostHearsOfEach)
{
    Add("b");
    Add("a");
    mLog.Clear();
    mManager.RemoveAllParameters();
    EXPECT_EQ(mLog.Calls(),
              (std::vector<std::string>{R"(UnregisterParameter("b"))", R"(UnregisterParameter("a"))"}));
    EXPECT_EQ(mManager.NumParameters(), 0);
    EXPECT_EQ(mManager.GetParameterByID("a"), nullptr);
}

TEST_F(ParameterManager, LookUpOfALongIdentifierAllocatesNothing)
{
    const char* const id = "an identifier of 31 characters."; // beyond any string's own storage
    AAX_IParameter* const parameter = Add(id);
    CCallGuard guard;
    const bool found =
        std::as_const(mManager).GetParameterByID(id) == parameter && mManager.ControlIndexFromID(id) == 0;
    EXPECT_EQ(guard.Stop(), SGuardedCalls());
    EXPECT_TRUE(found);
}
} // namespace
