#include "Source/StemLayout.h"
#include "Source/DescribedShape.h"

#include "Source/plugins/SIOPortDef.h"

#include <gtest/gtest.h>
#include <vector>

namespace
{
constexpr std::int32_t kNone = AAX_eStemFormat_None;
constexpr std::int32_t kMono = AAX_eStemFormat_Mono;
constexpr std::int32_t kStereo = AAX_eStemFormat_Stereo;

std::vector<SIOPortDef> Ports(const std::vector<long>& inChannels)
{
    std::vector<SIOPortDef> ports;
    for (const long channels : inChannels)
        ports.push_back({{}, channels});
    return ports;
}

TEST(DescribedShape, TheFirstDescriptionIsTheOneThatTheHostKnows)
{
    RememberDescription({1, 2, true});
    RememberDescription({3, 4, false});
    EXPECT_EQ(RememberedDescription().value().mOutputChannels, 2);
}
} // namespace

TEST(StemLayout, MainStemsComeFromTheFirstPortsElseFromTheOtherDirection)
{
    struct SRow
    {
        std::vector<long> mInputs, mOutputs;
        std::int32_t mInputStem, mOutputStem;
        long mInputChannels, mOutputChannels;
    };
    const SRow rows[] = {
        {{}, {2}, kStereo, kStereo, 2, 2},  {{1}, {2}, kMono, kStereo, 1, 2},
        {{2}, {0}, kStereo, kStereo, 2, 2}, {{2}, {}, kStereo, kStereo, 2, 2},
        {{}, {}, kNone, kNone, 0, 0},       {{6}, {1}, kMono, kMono, 1, 1},
        {{6}, {0}, kNone, kNone, 0, 0},     {{2, 2}, {1}, kStereo, kMono, 2, 1},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(testing::PrintToString(row.mInputs) + " in, " + testing::PrintToString(row.mOutputs) +
                     " out");
        const SStemLayout layout = StemLayoutOfPorts(Ports(row.mInputs), Ports(row.mOutputs));
        EXPECT_EQ(layout.mInputStem, row.mInputStem);
        EXPECT_EQ(layout.mOutputStem, row.mOutputStem);
        EXPECT_EQ(layout.InputChannelCount(), row.mInputChannels);
        EXPECT_EQ(layout.OutputChannelCount(), row.mOutputChannels);
        EXPECT_EQ(layout.mNumAuxStems, 0);
    }
}

TEST(StemLayout, FurtherOutputPortsAreAuxiliaryStemsUpToTheMost)
{
    const SStemLayout three = StemLayoutOfPorts({}, Ports({2, 1, 2}));
    EXPECT_EQ(three.mNumAuxStems, 2);
    EXPECT_EQ(three.mAuxStems[0], kMono);
    EXPECT_EQ(three.mAuxStems[1], kStereo);
    EXPECT_EQ(three.OutputChannelCount(), 5);

    const SStemLayout many = StemLayoutOfPorts({}, Ports(std::vector<long>(40, 1)));
    EXPECT_EQ(many.mNumAuxStems, kMaxAuxOutputStems);
    EXPECT_EQ(many.OutputChannelCount(), 33);
}
