#include "Source/plugins/IRoutingObject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace
{
class CNode : public IRoutingObject
{
public:
    using IRoutingObject::ChannelBuffers;
    using IRoutingObject::ReserveChannels;
    using IRoutingObject::SetChannelCounts;
};

TEST(Routing, LinkThatWouldCloseACircleIsRefusedAndChangesNothing)
{
    CNode a;
    CNode b;
    CNode c;
    ASSERT_TRUE(a.SetOutput(&b, 1.0F, nullptr));
    ASSERT_TRUE(b.SetOutput(&c, 1.0F, nullptr));
    EXPECT_FALSE(a.SetOutput(&a, 1.0F, nullptr));
    EXPECT_FALSE(b.SetOutput(&a, 1.0F, nullptr));
    EXPECT_FALSE(c.SetOutput(&a, 1.0F, nullptr)); // two nodes upstream
    EXPECT_TRUE(c.Outputs().empty());
    EXPECT_TRUE(a.Inputs().empty());
    EXPECT_TRUE(a.SetOutput(&c, 1.0F, nullptr)); // a shortcut is no circle
}

TEST(Routing, SecondLinkToATargetUpdatesTheFirst)
{
    CNode a;
    CNode b;
    const std::string longName(600, 'n');
    ASSERT_TRUE(a.SetOutput(&b, -0.5F, nullptr)); // a new link keeps even a negative volume
    ASSERT_EQ(a.Outputs().size(), 1U);
    EXPECT_EQ(a.Outputs()[0].mVolume, -0.5F);
    EXPECT_FALSE(a.Outputs()[0].mHasName);

    EXPECT_TRUE(a.SetOutput(&b, 0.0F, longName.c_str()));
    EXPECT_TRUE(a.SetOutput(&b, 0.25F, nullptr)); // and without a name the old one stays
    ASSERT_EQ(a.Outputs().size(), 1U);
    EXPECT_EQ(b.Inputs().size(), 1U);
    EXPECT_EQ(a.Outputs()[0].mVolume, 0.25F);
    EXPECT_TRUE(a.Outputs()[0].mHasName);
    EXPECT_EQ(std::string(a.Outputs()[0].mName.data()), longName.substr(0, 511));
}

TEST(Routing, NegativeAndNaNVolumesUnlinkBothEnds)
{
    for (const float volume : {-1.0F, std::numeric_limits<float>::quiet_NaN()})
    {
        SCOPED_TRACE(volume);
        CNode a;
        CNode b;
        ASSERT_TRUE(a.SetOutput(&b, 1.0F, nullptr));
        EXPECT_TRUE(a.SetOutput(&b, volume, nullptr));
        EXPECT_TRUE(a.Outputs().empty());
        EXPECT_TRUE(b.Inputs().empty());
    }
}

TEST(Routing, RemovingANodeThatIsNoInputAddsIt)
{
    CNode a;
    CNode b;
    a.SetInput(&b, true);
    ASSERT_EQ(a.Inputs().size(), 1U);
    a.SetInput(&b, false);
    EXPECT_EQ(a.Inputs().size(), 1U);
    a.SetInput(&b, true);
    EXPECT_TRUE(a.Inputs().empty());
}

TEST(Routing, VolumesExistForExactlyTheChannelsThatBuffersWereMadeFor)
{
    CNode node;
    node.SetChannelCounts(2, 3);
    EXPECT_FALSE(node.SetInputChannelVolume(0.5F, 0)); // no buffers yet
    node.CreateMyOutputs(16);
    struct SRow
    {
        long mChannel;
        bool mInput;
        bool mOutput;
    };
    for (const SRow& row :
         {SRow{-1, false, false}, SRow{1, true, true}, SRow{2, false, true}, SRow{3, false, false}})
    {
        SCOPED_TRACE(row.mChannel);
        EXPECT_EQ(node.SetInputChannelVolume(0.5F, row.mChannel), row.mInput);
        EXPECT_EQ(node.SetOutputChannelVolume(0.5F, row.mChannel), row.mOutput);
    }
    EXPECT_EQ(node.InputVolumes()[0], 1.0F);
    EXPECT_EQ(node.InputVolumes()[1], 0.5F);
}

TEST(Routing, BuffersAreSeparateSilentAndGoneAfterDelete)
{
    CNode node;
    node.SetChannelCounts(1, 2);
    node.ReserveChannels(4);
    node.CreateMyOutputs(8);
    node.ChannelBuffers()[0][7] = 1.0F;
    node.CreateMyOutputs(64);
    float** const buffers = node.ChannelBuffers();
    ASSERT_NE(buffers, nullptr);
    for (int channel = 0; channel < 4; ++channel)
        for (int i = 0; i < 64; ++i)
            EXPECT_EQ(buffers[channel][i], 0.0F);
    EXPECT_GE(std::abs(buffers[1] - buffers[0]), 64);
    EXPECT_GE(std::abs(buffers[2] - buffers[1]), 64); // reserved channels don't overlap counted ones
    EXPECT_EQ(buffers[4], nullptr);
    node.DeleteMyOutputs();
    EXPECT_EQ(node.ChannelBuffers(), nullptr);
}

TEST(Routing, NameIsCutAt254CharactersAndAShorterOneLeavesNoRest)
{
    CNode node;
    node.SetRoutingObjectName(std::string(300, 'x').c_str());
    EXPECT_EQ(std::string(node.GetRoutingObjectName()), std::string(254, 'x'));
    node.SetRoutingObjectName("short");
    EXPECT_STREQ(node.GetRoutingObjectName(), "short");
}
} // namespace
