#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <stdexcept>
#include <string>

namespace
{
TEST(AaxString, EraseRemovesTheExcessOnlyWhenTooMuchIsAskedFor)
{
    struct SRow
    {
        std::uint32_t mPosition, mLength;
        const char* mLeft;
    };
    for (const SRow& row :
         {SRow{4, 3, "abcdf"}, SRow{2, 10, "ab"}, SRow{2, 5, "abdef"}, SRow{0, 6, ""}, SRow{6, 0, "abcdef"},
          SRow{6, 4, "abcdef"}, SRow{1, 2, "adef"}, SRow{0, 0xFFFFFFFFU, ""}})
    {
        SCOPED_TRACE(testing::Message() << row.mPosition << ", " << row.mLength);
        EXPECT_STREQ(AAX_CString("abcdef").Erase(row.mPosition, row.mLength).Get(), row.mLeft);
    }
    AAX_CString text("abcdef");
    EXPECT_THROW(text.Erase(7, 0), std::out_of_range);
    EXPECT_THROW(text.Insert(7, "x"), std::out_of_range);
    EXPECT_THROW(text.Replace(7, 0, "x"), std::out_of_range);
    EXPECT_THROW(text.SubString(7, 0, &text), std::out_of_range);
    EXPECT_STREQ(text.Replace(4, 99, "x").Get(), "abcdx");
    EXPECT_EQ(text.FindFirst("a"), -1);
    EXPECT_EQ(text.FindLast('a'), -1);
}

/** A locale that writes 1.234,5 for 1234.5. */
class CCommaLocale
{
public:
    CCommaLocale() : mBefore(std::locale::global(std::locale(std::locale::classic(), new SFacet))) {}
    CCommaLocale(const CCommaLocale&) = delete;
    CCommaLocale& operator=(const CCommaLocale&) = delete;
    ~CCommaLocale() { std::locale::global(mBefore); }

private:
    struct SFacet : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale mBefore;
};

TEST(AaxString, NumbersAreWrittenInTheClassicLocaleWithExactPrecision)
{
    struct SRow
    {
        double mNumber;
        std::uint32_t mPrecision;
        const char* mText;
    };
    const CCommaLocale locale;
    for (const SRow& row :
         {SRow{1.5, 2, "1.50"}, SRow{3, 0, "3"}, SRow{-0.004, 2, "-0.00"}, SRow{2.345, 2, "2.35"},
          SRow{2.5, 0, "2"}, SRow{1234567.5, 1, "1234567.5"}, SRow{1e-9, 3, "0.000"},
          SRow{std::numeric_limits<double>::infinity(), 1200, "inf"}})
    {
        SCOPED_TRACE(row.mText);
        EXPECT_STREQ(AAX_CString("=").AppendNumber(row.mNumber, row.mPrecision).Get() + 1, row.mText);
        EXPECT_STREQ(AAX_CString("=").InsertNumber(0, row.mNumber, row.mPrecision).Get(),
                     (std::string(row.mText) + "=").c_str());
    }
    EXPECT_STREQ(AAX_CString().AppendNumber(-7).AppendNumber(12345).InsertNumber(2, 0).Get(), "-7012345");
    const AAX_CString digits = AAX_CString().AppendNumber(0.5, 20'000'000);
    EXPECT_EQ(digits.Length(), 20'000'002U);
    EXPECT_EQ(digits[digits.Length() - 1], '0');
}

TEST(AaxString, NumbersAreReadFromTheStartOfTheTextElseZeroIsStored)
{
    struct SRow
    {
        const char* mText;
        bool mIsDouble;
        double mAsDouble;
        bool mIsInteger;
        std::int32_t mAsInteger;
    };
    const CCommaLocale locale;
    for (const SRow& row :
         {SRow{"  42", true, 42, true, 42}, SRow{"12abc", true, 12, true, 12}, SRow{"", false, 0, false, 0},
          SRow{"abc", false, 0, false, 0}, SRow{"-", false, 0, false, 0},
          SRow{"3000000000", true, 3e9, false, 0}, SRow{"-2147483648", true, -2147483648.0, true, INT32_MIN},
          SRow{"1e3", true, 1000, true, 1}, SRow{"1e999", false, 0, true, 1},
          SRow{"-6 dB", true, -6, true, -6}, SRow{".5f", true, 0.5, false, 0},
          SRow{"1.234,5", true, 1.234, true, 1}, SRow{"0x10", true, 0, true, 0},
          SRow{"+7-", true, 7, true, 7}, SRow{"inf", false, 0, false, 0}})
    {
        SCOPED_TRACE(row.mText);
        double real = -1;
        std::int32_t integer = -1;
        EXPECT_EQ(AAX_CString(row.mText).ToDouble(&real), row.mIsDouble);
        EXPECT_EQ(real, row.mAsDouble);
        EXPECT_EQ(AAX_CString(row.mText).ToInteger(&integer), row.mIsInteger);
        EXPECT_EQ(integer, row.mAsInteger);
    }
}
} // namespace
