#pragma once
#include "Tools/support/COutcome.h" // what the tools share lies there
