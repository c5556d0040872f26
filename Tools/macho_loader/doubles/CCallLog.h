#pragma once
#include <string>
#include <vector>

/** Writes down the calls that a double gets, one line each, and tells it which of them to refuse. */
class CCallLog
{
public:
    void Add(const std::string& inLine) { mLines.push_back(inLine); }
    /** @return the lines, which are gone then. */
    std::vector<std::string> Take();

    /** @param inFunction refuses one call: the inWhich-th from now on, counted from 1. */
    void Refuse(const std::string& inFunction, int inWhich = 1);
    /** Asked once in each call of a function. @return whether to refuse it. */
    bool IsRefused(const std::string& inFunction);

private:
    std::vector<std::string> mLines;
    std::string mRefusedFunction;
    int mCallsUntilRefusal = 0; // 0: none is refused
};
