#include "Tools/macho_loader/LibSystem.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/LibSystemParts.h"

SymbolTable LibSystemSymbols()
{
    SymbolTable symbols;
    for (SymbolTable (*part)() :
         {&SameSymbols, &ThreadSymbols, &LocaleSymbols, &CharacterSymbols, &LoaderSymbols, &HelperSymbols})
        symbols.merge(part());
    for (const auto& [name, address] : symbols)
        if (address == nullptr)
            throw CMachOError("this machine has no " + name);
    return symbols;
}
