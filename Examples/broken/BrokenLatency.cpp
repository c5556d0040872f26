#include "Examples/broken/CPlainEffect.h"

/** Misreports its latency: says 64 samples and has none. */
class CBrokenLatency final : public CPlainEffect
{
public:
    explicit CBrokenLatency(audioMasterCallback inHost) : CPlainEffect(inHost, {.latency = 64}) {}
};

BROKEN_PLUGIN(CBrokenLatency)
