#pragma once
#include "Tools/aaxhost/host/HostDescription.h"
#include "Tools/aaxhost/player/CInstance.h"

#include <cstdint>
#include <string>
#include <vector>

/** What `describe` found out about a module and one instance of it. */
struct SModuleReport
{
    std::string mPath;
    std::uint64_t mInterfaceVersion = 0;
    SDescription mDescription;
    std::vector<std::string> mCalls; // of the module on the host, in order
    std::int32_t mLatency = 0;       // samples
    std::int32_t mInputChannels = 0;
    std::int32_t mOutputChannels = 0;
    std::vector<SParameterInfo> mParameters;
};

/** For reading; ends in a line feed. */
std::string ReportAsText(const SModuleReport& inReport);
/** One JSON object, in the order in which the module told it; bytes that are no UTF-8 are replaced. */
std::string ReportAsJson(const SModuleReport& inReport);
