#include "Examples/broken/CPlainEffect.h"

/** Has no identity: its unique number is 0, as that of every plug-in whose maker forgot to choose one. */
class CBrokenIdentity final : public CPlainEffect
{
public:
    explicit CBrokenIdentity(audioMasterCallback inHost) : CPlainEffect(inHost, {.uniqueId = 0}) {}
};

BROKEN_PLUGIN(CBrokenIdentity)
