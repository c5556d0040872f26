#include "Source/features/CValueTexts.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{
TEST(ValueTexts, TheOldestGoesFirst)
{
    CValueTexts texts;
    const auto value = [](std::size_t number) { return static_cast<float>(number) / 1024.0F; };
    for (std::size_t i = 0; i < CValueTexts::kMostTexts; ++i)
        texts.Note(2, value(i), "old");
    texts.Note(2, value(0), "newer"); // in its place
    texts.Note(2, value(CValueTexts::kMostTexts), "one more");
    EXPECT_EQ(texts.TextOf(2, value(0)), std::nullopt);
    EXPECT_EQ(texts.TextOf(2, value(1)), "old");
    EXPECT_EQ(texts.ValueOf(2, "one more"), value(CValueTexts::kMostTexts));
    EXPECT_EQ(texts.TextOf(1, value(1)), std::nullopt);
    EXPECT_EQ(texts.ValueOf(3, "old"), std::nullopt);
}

TEST(ValueTexts, FindsATypedValueByTheWholeTextElseByItsNumber)
{
    CValueTexts texts;
    texts.Note(0, 0.0F, "Off");
    texts.Note(0, 0.125F, "-3 dB");
    texts.Note(0, 0.25F, "0.50 dB");
    texts.Note(0, 0.5F, "3 dB");
    texts.Note(0, 1.0F, "Saw 2");
    texts.NoteNumber(0, "0.50"); // shown for 0.5 before its text was known
    texts.NoteNumber(0, "Off");  // the plug-in's own go before
    struct SRow
    {
        const char* mTyped;
        std::optional<float> mValue;
    };
    for (const SRow& row : {SRow{"3 dB", 0.5F},
                            {"3", 0.5F},
                            {"+3.0", 0.5F},
                            {"-3", 0.125F},
                            {".5", 0.25F},
                            {"0.50", std::nullopt},
                            {"0.5", 0.25F},
                            {"Off", 0.0F},
                            {"Saw 2", 1.0F},
                            {"", std::nullopt},
                            {"7", std::nullopt},
                            {"On", std::nullopt},
                            {"-", std::nullopt}})
        EXPECT_EQ(texts.ValueOf(0, row.mTyped), row.mValue) << row.mTyped;
}
} // namespace
