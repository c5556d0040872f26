#pragma once
#include "Tools/macho_loader/SymbolTable.h"

constexpr const char* kLibSystemName = "/usr/lib/libSystem.B.dylib";

/**
 * The C library of macOS, as far as images under test need it: functions of this machine's library that have
 * the same binary interface, and functions written here where the interfaces differ. A name that is not among
 * them can't be imported, so nothing with another interface passes through unseen. Only the locale "C"
 * exists.
 *
 * Throws CMachOError when this machine lacks one of the functions.
 */
SymbolTable LibSystemSymbols();
