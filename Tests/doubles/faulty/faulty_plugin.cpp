#include "Interfaces/VST2/AEffect.h"

// It is compiled for each plug-in of the folder, and so includes next to nothing.
class CPlainEffect;
AEffect* MakeFaulty(audioMasterCallback inHost, void (*inFault)(CPlainEffect&));

// What the build names: a fault of the plain effect, or an entry that makes its plug-in itself.
namespace faults
{
#ifdef FAULTY_ENTRY
AEffect* FAULTY_ENTRY(audioMasterCallback inHost);
#else
void FAULT(CPlainEffect& ioEffect);
#endif
} // namespace faults

extern "C" __attribute__((visibility("default"))) AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost);
extern "C" AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost)
{
#ifdef FAULTY_ENTRY
    return faults::FAULTY_ENTRY(inHost);
#else
    return MakeFaulty(inHost, &faults::FAULT);
#endif
}
