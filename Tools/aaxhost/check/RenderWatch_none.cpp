#include "Tools/aaxhost/check/RenderWatch.h"

std::string RenderWatchObstacle() { return "This system offers no way to watch the calls of a thread."; }

void WatchRender(const std::string&, SRenderWatch&, const std::function<void()>& inRender) { inRender(); }

std::string NameOfSystemCall(int inNumber) { return std::to_string(inNumber); }

std::size_t ResidentBytes() { return 0; }
