#pragma once
#include "Tools/support/CChildProcess.h"

#include <chrono>
#include <string>

#include <nlohmann/json.hpp>

/**
 * The way from a child process that holds a plug-in to its parent: lines of JSON, on the standard output
 * where no other way is named. This object takes that for itself; what the plug-in writes goes nowhere.
 */
class CChildReport
{
public:
    /** Crashes end this process with their signal from now on, and a hang ends it soon after the limit. */
    explicit CChildReport(std::chrono::milliseconds inLimit);
    /** As above, but the lines go to that descriptor, and all standard files lead nowhere. */
    CChildReport(int inOutput, std::chrono::milliseconds inLimit);
    /** Ends the process when nobody listens. */
    void Send(const nlohmann::ordered_json& inMessage) const;

private:
    const int mOutput;
};

/** @return the part of a sentence behind the plug-in's name. */
std::string HowChildEnded(const SChildEnd& inEnd, const std::string& inStage,
                          std::chrono::milliseconds inLimit);
