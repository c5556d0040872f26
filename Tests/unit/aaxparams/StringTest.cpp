#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>

namespace
{
/** A host's string: everything but the slots of the interface is out of reach. */
class CForeignString : public AAX_IString
{
public:
    std::uint32_t Length() const override { return 99; } // of its own making
    std::uint32_t MaxLength() const override { return 7; }
    const char* Get() const override { return mText; }
    void Set(const char* inText) override { *this = inText; }
    AAX_IString& operator=(const AAX_IString& inOther) override { return *this = inOther.Get(); }
    AAX_IString& operator=(const char* inText) override
    {
        mStored = inText;
        return *this;
    }

    const char* mText = nullptr;
    std::string mStored;
};

AAX_CString WithNul(const char* inFirst, const char* inSecond)
{
    AAX_CString text(inFirst);
    const std::uint32_t position = text.Length();
    text.Append(" ").Append(inSecond);
    text[position] = '\0';
    return text;
}

TEST(AaxString, NullTextsAreEmpty)
{
    AAX_CString text(static_cast<const char*>(nullptr));
    EXPECT_TRUE(text.Empty());
    EXPECT_STREQ(text.Get(), "");
    EXPECT_EQ(text.MaxLength(), 4294967294U);
    text = "abc";
    text.Append(static_cast<const char*>(nullptr)).Insert(1, static_cast<const char*>(nullptr));
    EXPECT_STREQ(text.Get(), "abc");
    text.Replace(1, 1, static_cast<const char*>(nullptr));
    EXPECT_STREQ(text.Get(), "ac");
    text = CForeignString();
    EXPECT_TRUE(text == static_cast<const char*>(nullptr));
    EXPECT_FALSE(text.ToDouble(nullptr));
    text.SubString(0, 1, nullptr);
}

TEST(AaxString, CharactersBehindANulAreKeptByCopiesOfTheSameClassOnly)
{
    const AAX_CString text = WithNul("a", "b");
    ASSERT_EQ(text.Length(), 3U);
    AAX_CString assigned;
    assigned = text;
    EXPECT_EQ(AAX_CString(text).Length(), 3U);
    EXPECT_EQ(assigned.Length(), 3U);
    EXPECT_EQ(AAX_CString(static_cast<const AAX_IString&>(text)).Length(), 1U);
    EXPECT_EQ((AAX_CString("x") += text).Length(), 2U);
    EXPECT_EQ(AAX_CString("x").Insert(0, text).Length(), 2U);
    assigned = static_cast<const AAX_IString&>(assigned);
    EXPECT_EQ(assigned.Length(), 1U);

    EXPECT_TRUE(text == "a");
    EXPECT_FALSE(text != AAX_CString("a"));
    EXPECT_TRUE(AAX_CString("abc") < AAX_CString("abd"));
    EXPECT_TRUE(AAX_CString("\xC3") > AAX_CString("z")); // bytes are compared unsigned
}

TEST(AaxString, ArgumentsMayPointIntoTheStringItself)
{
    AAX_CString text("abcdefghijklmnopqrstuvwxyz");
    text.Append(text);
    EXPECT_EQ(text.Length(), 52U);
    text.Insert(1, text.Get() + 50);
    EXPECT_STREQ(text.Get() + 50, "wxyz");
    EXPECT_EQ(text[1], 'y');
    text.Replace(0, 50, text);
    EXPECT_EQ(text.Length(), 58U);
    text.Set(text.Get() + 54);
    EXPECT_STREQ(text.Get(), "wxyz");
    text.SubString(1, 2, &text);
    EXPECT_STREQ(text.Get(), "xy");
}

TEST(AaxString, EraseRemovesTheExcessOnlyWhenTooMuchIsAskedFor)
{
    struct SRow
    {
        std::uint32_t position, length;
        const char* left;
    };
    for (const SRow& row :
         {SRow{4, 3, "abcdf"}, SRow{2, 10, "ab"}, SRow{2, 5, "abdef"}, SRow{0, 6, ""}, SRow{6, 0, "abcdef"},
          SRow{6, 4, "abcdef"}, SRow{1, 2, "adef"}, SRow{0, 0xFFFFFFFFU, ""}})
    {
        SCOPED_TRACE(testing::Message() << row.position << ", " << row.length);
        EXPECT_STREQ(AAX_CString("abcdef").Erase(row.position, row.length).Get(), row.left);
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

TEST(AaxString, PartsReachAForeignStringThroughItsOwnSlot)
{
    CForeignString out;
    AAX_CString("abc").SubString(1, 100, &out);
    EXPECT_EQ(out.mStored, "bc");
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
        double number;
        std::uint32_t precision;
        const char* text;
    };
    const CCommaLocale locale;
    for (const SRow& row :
         {SRow{1.5, 2, "1.50"}, SRow{3, 0, "3"}, SRow{-0.004, 2, "-0.00"}, SRow{2.345, 2, "2.35"},
          SRow{2.5, 0, "2"}, SRow{1234567.5, 1, "1234567.5"}, SRow{1e-9, 3, "0.000"},
          SRow{std::numeric_limits<double>::infinity(), 1200, "inf"}})
    {
        SCOPED_TRACE(row.text);
        EXPECT_STREQ(AAX_CString("=").AppendNumber(row.number, row.precision).Get() + 1, row.text);
        EXPECT_STREQ(AAX_CString("=").InsertNumber(0, row.number, row.precision).Get(),
                     (std::string(row.text) + "=").c_str());
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
        const char* text;
        bool isDouble;
        double asDouble;
        bool isInteger;
        std::int32_t asInteger;
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
        SCOPED_TRACE(row.text);
        double real = -1;
        std::int32_t integer = -1;
        EXPECT_EQ(AAX_CString(row.text).ToDouble(&real), row.isDouble);
        EXPECT_EQ(real, row.asDouble);
        EXPECT_EQ(AAX_CString(row.text).ToInteger(&integer), row.isInteger);
        EXPECT_EQ(integer, row.asInteger);
    }
}

TEST(AaxString, StreamsTreatItAsAStandardString)
{
    std::ostringstream out;
    out << std::setfill('.') << std::setw(5) << WithNul("a", "b") << '|';
    EXPECT_EQ(out.str(), std::string("..a\0b|", 6));

    std::istringstream in(" \t abcdef gh");
    AAX_CString word("old");
    in >> std::setw(4) >> word;
    EXPECT_STREQ(word.Get(), "abcd");
    EXPECT_EQ(in.width(), 0);
    in >> word;
    EXPECT_STREQ(word.Get(), "ef");
    in >> word >> word;
    EXPECT_TRUE(in.fail());
    EXPECT_TRUE(in.eof());
}
} // namespace
