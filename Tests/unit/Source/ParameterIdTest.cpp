#include "Source/ParameterId.h"

#include <gtest/gtest.h>

TEST(ParameterId, TextOfIndex)
{
    EXPECT_STREQ(CParameterId(0).Get(), "00000");
    EXPECT_STREQ(CParameterId(123456).Get(), "123456");
    EXPECT_STREQ(CParameterId(-3).Get(), "-0003");
}

TEST(ParameterId, IndexOfTextIsRefusedUnlessAllDigits)
{
    struct SRow
    {
        const char* mId;
        long mIndex;
    };
    for (const SRow& row : {SRow{"00012", 12}, SRow{"12a", -1}, SRow{"", 0}, SRow{"-1", -1}, SRow{" 1", -1},
                            SRow{"MasterBypassID", -1}, SRow{"Gain", -1},
                            SRow{"0000000000000000000000042", 42}, SRow{"99999999999999999999999999", -1}})
    {
        SCOPED_TRACE(row.mId);
        EXPECT_EQ(ParameterIndexFromId(row.mId), row.mIndex);
    }
    EXPECT_EQ(ParameterIndexFromId(nullptr), -1);
}
