#include "Tools/aaxhost/check/CallWatch.h"

std::string CallWatchObstacle()
{
    return "The calls of a thread cannot be watched here: the system offers no way, or the sanitizer of this "
           "build has taken it.";
}

void WatchCalls(const std::string&, SCallWatch&, const std::function<void()>& inRun) { inRun(); }

std::string NameOfSystemCall(int inNumber) { return std::to_string(inNumber); }

std::size_t ResidentBytes() { return 0; }
