#include "Tools/benchmark/CountMarks.h"

#include <deque>
#include <valgrind/callgrind.h>

void BeginCount()
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
}

void EndCount(const std::string& inName)
{
    // Read by callgrind some time after the request: kept until the end.
    static std::deque<std::string> names;
    const std::string& name = names.emplace_back(inName);
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}
