#pragma once
#include "Tools/support/COutcome.h"

#include <string>
#include <string_view>
#include <vector>

/** A value at its time. */
struct SPoint
{
    double mSeconds = 0.0;
    double mValue = 0.0;
};

/** What the lines of a file of points hold. */
struct SPointForm
{
    const char* mFile;    // "automation file"
    const char* mValue;   // what the second column is, "value"
    const char* mExample; // a line, "1.5,0.25"
    double mLowest;
    double mHighest;
};

/**
 * @param inText one point a line, `seconds,value`, as UTF-8 with or without its mark; empty lines, lines that
 * begin with # and a first line of two words, the columns' names, are skipped. Times are at least 0 and never
 * fall.
 * @return at least one point; else a sentence with the line that is wrong.
 */
COutcome<std::vector<SPoint>> ParsePoints(std::string_view inText, const SPointForm& inForm);
/** The same of a file, which the sentence names. */
COutcome<std::vector<SPoint>> ReadPointFile(const std::string& inPath, const SPointForm& inForm);
