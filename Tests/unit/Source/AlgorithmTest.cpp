#include "Source/AaxAdapter_Alg.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

namespace
{
struct SRun
{
    std::int32_t mBypass;
    float mGain;
    std::int32_t mFrames;
    std::vector<float> mOutput;
    std::array<float, 2> mPeaks; // input, output; both start at 0.25
};

/** Processes -0.5, 0.75, 0.125 with and returns output and peaks; the output is 9 where nothing was written.
 */
void Check(const SRun& inRun)
{
    std::vector<float> input{-0.5F, 0.75F, 0.125F};
    std::vector<float> output(3, 9.0F);
    std::array<float, 2> peaks{0.25F, 0.25F};
    float* in = input.data();
    float* out = output.data();
    float* meters = peaks.data();
    SRun run = inRun;
    SAaxAdapter_Alg_Context context{&run.mBypass, &run.mGain, &in, &out, &run.mFrames, &meters};
    SAaxAdapter_Alg_Context* const contexts[] = {&context, &context};
    AaxAdapter_AlgorithmProcessFunction(contexts, contexts + 1); // the second stands outside
    EXPECT_EQ(output, run.mOutput);
    EXPECT_EQ(peaks, run.mPeaks);
}
} // namespace

TEST(Algorithm, GainBypassAndPeaks)
{
    const SRun rows[] = {
        {0, 0.5F, 3, {-0.25F, 0.375F, 0.0625F}, {0.75F, 0.375F}}, // both peaks from absolute values
        {1, 0.5F, 3, {-0.5F, 0.75F, 0.125F}, {0.75F, 0.75F}},     // bypass: input as it is, peaks alike
        {0, 0.1F, 3, {-0.05F, 0.075F, 0.0125F}, {0.75F, 0.25F}},  // an older, higher peak stays
        {0, 0.5F, 1, {-0.25F, 9.0F, 9.0F}, {0.5F, 0.25F}},        // no frame too many
        {0, 0.5F, 0, {9.0F, 9.0F, 9.0F}, {0.25F, 0.25F}},
        {0, 0.5F, -4, {9.0F, 9.0F, 9.0F}, {0.25F, 0.25F}},
    };
    for (const SRun& row : rows)
    {
        SCOPED_TRACE(testing::Message() << "bypass " << row.mBypass << ", " << row.mFrames << " frames");
        Check(row);
    }
}
