#pragma once
#include "vstgui/lib/crect.h"

#include <vector>

/** What frames were asked to draw, which nothing else tells: they draw nothing then. Main thread. */
std::vector<VSTGUI::CRect> TakeVstguiDrawCalls(); // and forgets them
