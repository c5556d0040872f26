#include "Source/features/HostQuestions.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
TEST(HostQuestions, ARateThatIsNoneIsTheSameOnEachProcessor)
{
    struct SRow
    {
        float mRate;
        VstIntPtr mAnswer;
    };
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const SRow& row : {SRow{44100.0F, 44100}, SRow{22050.5F, 22050}, SRow{0.5F, 0}, SRow{0.0F, 0},
                            SRow{-48000.0F, 0}, SRow{1e9F, 1000000000}, SRow{1e20F, 0}, SRow{infinity, 0},
                            SRow{-infinity, 0}, SRow{std::numeric_limits<float>::quiet_NaN(), 0}})
    {
        SCOPED_TRACE(row.mRate);
        const SHostCall call{EHostCaller::kLoaded, audioMasterGetSampleRate, 0, 0, nullptr, 0.0F};
        EXPECT_EQ(AnswerQuestion(call, {.mSampleRate = row.mRate}), row.mAnswer);
    }
}
} // namespace
