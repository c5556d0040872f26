#pragma once
#include "Tools/aaxhost/report/HtmlChart.h"

#include <vector>

using Points = std::vector<CHtmlChart::SPoint>;

/** A tick every half second. */
std::vector<STick> SecondTicks(double inSeconds);
