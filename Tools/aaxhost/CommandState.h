#pragma once
#include "Tools/aaxhost/CommandSupport.h"

/** `state`: saves an instance's state into a file, loads one, or explains it. */
void AddCommandState(CLI::App& ioApp, CommandAction& outAction);
