#pragma once
#include "Tools/aaxhost/survey/SurveyRow.h"

/** What stands above the table. */
struct SSurveyFacts
{
    std::size_t mTotal = 0; // plug-ins, of which some may not be done yet
    int mStrictness = 0;
    bool mWithFeatures = false;
};

/**
 * One HTML page that needs nothing else but the pages it links to: no file, no network. A script sorts the
 * table; without it the rows stand in their order.
 */
std::string SurveyPage(const std::vector<SSurveyRow>& inRows, const SSurveyFacts& inFacts);
