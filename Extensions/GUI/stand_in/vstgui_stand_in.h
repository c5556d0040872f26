#pragma once
#include <string>
#include <vector>

/** What the stand-in was asked to do, one line a call ("drawRect 0 0 40 30"). Main thread. */
std::vector<std::string> TakeVstguiCalls(); // and forgets them
