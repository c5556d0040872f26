#pragma once
#include "Tools/aaxhost/CommandSupport.h"

/** `aaxhost check`: says whether a module is fit to ship, and what is wrong with it. */
void AddCommandCheck(CLI::App& ioApp, CommandAction& outAction);
