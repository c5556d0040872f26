#include "Tests/doubles/faulty/CPlainEffect.h"

// What the build names: a fault of the plain effect, or an entry that makes its plug-in itself.
namespace faults
{
#ifdef FAULTY_ENTRY
AEffect* FAULTY_ENTRY(audioMasterCallback inHost);
#else
void FAULT(CPlainEffect& ioEffect);
#endif
} // namespace faults

EXAMPLE_EXPORT AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost);
EXAMPLE_EXPORT AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost)
{
#ifdef FAULTY_ENTRY
    return faults::FAULTY_ENTRY(inHost);
#else
    CPlainEffect& effect = MakePlain(inHost);
    faults::FAULT(effect);
    return effect.Effect();
#endif
}
