#include "Tests/macho/subjects/LiveObject.h"
#include "Tests/macho/subjects/RuntimeExceptions.h"
#include "Tests/macho/subjects/RuntimeSubject.h"

#include <string>

int ThrowThroughDwarfFrames(int inDepth, int& ioLiveObjects)
{
    // Two directives without effect, for which the compact form has no word: the function gets a DWARF entry.
    asm volatile(".cfi_remember_state\n.cfi_restore_state");
    const CLiveObject object(ioLiveObjects);
    const std::string text(30, 'k');
    if (inDepth == 0)
        throw int{kThrowThroughDwarfFrames};
    return ThrowThroughDwarfFrames(inDepth - 1, ioLiveObjects) + static_cast<int>(text.size());
}
