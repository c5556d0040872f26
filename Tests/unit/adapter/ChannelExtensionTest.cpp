#include "Source/CChannelExtension.h"

#include <gtest/gtest.h>

namespace
{
constexpr std::int32_t kFrames = 16;
}

TEST(ChannelExtension, HasAsManyChannelsAsWhoeverHasMore)
{
    struct SRow
    {
        long mHost, mPlugin;
        long mCount;
    };
    for (const SRow& row :
         {SRow{2, 2, 2}, SRow{2, 1, 2}, SRow{0, 0, 0}, SRow{2, -3, 2}, SRow{1, 2, 2}, SRow{0, 64, 64}})
    {
        SCOPED_TRACE(testing::Message() << row.mHost << " of the host, " << row.mPlugin << " of the plug-in");
        CChannelExtension channels;
        channels.Prepare(row.mHost, row.mPlugin, kFrames);
        EXPECT_EQ(channels.ChannelCount(), row.mCount);
    }
}

TEST(ChannelExtension, HostBuffersAreHandedOnUncopiedAndExtraOnesAreTheirOwnAndSilentAgain)
{
    CChannelExtension channels;
    channels.Prepare(1, 3, kFrames);
    float hostBuffer[kFrames] = {};
    float* host[] = {hostBuffer};
    float** all = channels.Extend(host, 4);
    EXPECT_EQ(all[0], hostBuffer + 4);
    EXPECT_NE(all[1], all[2]);
    for (int channel : {1, 2})
        std::fill_n(all[channel], kFrames, 1.0F);
    hostBuffer[0] = 1.0F;

    channels.Silence(kFrames);
    for (int channel : {1, 2})
        EXPECT_EQ(std::vector<float>(all[channel], all[channel] + kFrames),
                  std::vector<float>(kFrames, 0.0F));
    EXPECT_EQ(hostBuffer[0], 1.0F);
}
