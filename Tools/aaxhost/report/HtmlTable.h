#pragma once
#include <string>
#include <vector>

/** A table of numbers, each column with its head; cells are text. The first column is the head of its row. */
struct SHtmlTable
{
    std::vector<std::string> mHead;
    std::vector<std::vector<std::string>> mRows;

    std::string Html() const;
    /** Behind a line that opens it: what a picture shows, for those who read. */
    std::string Folded(const std::string& inSummary = "Numbers") const;
};
