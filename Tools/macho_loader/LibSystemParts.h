#pragma once
#include "Tools/macho_loader/SymbolTable.h"

// The parts of LibSystemSymbols(), by what differs between the two systems.
/** Nothing differs, but for the name of a few. */
SymbolTable SameSymbols();
/** Mutexes, conditions and keys of other sizes, with other initial values and error numbers. */
SymbolTable ThreadSymbols();
/** Locale arguments that may be null, and functions with one that this machine does not have. */
SymbolTable LocaleSymbols();
/** The table of character classes. */
SymbolTable CharacterSymbols();
/** What the system's loader does for an image: its path, its end, its thread-local variables. */
SymbolTable LoaderSymbols();
/** Helpers that the compiler calls, and functions that only the BSD systems have. */
SymbolTable HelperSymbols();
