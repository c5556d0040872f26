#pragma once
#include "Tools/aaxhost/CommandSupport.h"

/** `editor`: opens an instance's editor in a window. */
void AddCommandEditor(CLI::App& ioApp, CommandAction& outAction);
