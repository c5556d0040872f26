#pragma once
#include "Tools/aaxhost/CommandSupport.h"

/** `describe`: prints what a module tells the host, and the parameters of an instance. */
void AddCommandDescribe(CLI::App& ioApp, CommandAction& outAction);
