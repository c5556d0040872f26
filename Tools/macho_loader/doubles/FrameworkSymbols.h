#pragma once
#include "Tools/macho_loader/SymbolTable.h"

// The doubles' functions; all of them work on CMacSystem::Current().
SymbolTable CoreFoundationSymbols();
SymbolTable CarbonSymbols();
SymbolTable ObjectiveCSymbols();
