#pragma once
#include "Tools/aaxhost/CommandSupport.h"

/** `render`: plays an instance offline into a WAV file. */
void AddCommandRender(CLI::App& ioApp, CommandAction& outAction);
