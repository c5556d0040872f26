#pragma once
#include "Tools/aaxhost/report/Material.h"

#include <string>

/** Takes all of it, each part in a process of its own, so that a crash costs that part only. */
SReportMaterial TakeMaterial(const std::string& inModule);
