#include "Tools/aaxhost/player/ParameterChoice.h"

#include "Tools/aaxhost/player/CInstance.h"

#include <array>
#include <gtest/gtest.h>

TEST(ParameterChoice, TheNarrowestReadingWinsAndASharedOrUnknownNameGetsASentence)
{
    std::vector<SParameterInfo> parameters;
    for (const auto& [id, name] : {std::pair{"1", "Cutoff"},
                                   {"2", "cutoff"},
                                   {"3", "1"},
                                   {"4", "Gain "},
                                   {"5", "Mix"},
                                   {"6", "Mix"},
                                   {"Res", "Q"}})
    {
        SParameterInfo& info = parameters.emplace_back();
        info.mID = id;
        info.mName = name;
    }
    const std::string ambiguous = "so write the identifier of one: ";
    for (const auto& [word, id, sentence] : std::vector<std::array<std::string, 3>>{
             {"1", "1", ""},
             {"Cutoff", "1", ""},
             {"cutoff", "2", ""},
             {"CUTOFF", "", "'CUTOFF' may be 2 parameters, " + ambiguous + "'1' (Cutoff), '2' (cutoff)."},
             {"gain", "4", ""},
             {"res", "Res", ""},
             {"Mix", "", "'Mix' may be 2 parameters, " + ambiguous + "'5' (Mix), '6' (Mix)."},
             {"Cutof", "", "The module has no parameter 'Cutof'; did you mean 'Cutoff' or 'cutoff'?"},
             {"zzz", "", "The module has no parameter 'zzz'; 'aaxhost describe' lists those that it has."}})
    {
        SCOPED_TRACE(word);
        const auto chosen = ChooseParameter(parameters, word);
        EXPECT_EQ(chosen ? *chosen : "", id);
        EXPECT_EQ(chosen ? "" : chosen.Problem().mSentence, sentence);
    }
}
