#include "Examples/broken/CPlainEffect.h"

/** Leaks notes: a released one sounds on. */
class CBrokenNotes final : public CPlainEffect
{
public:
    explicit CBrokenNotes(audioMasterCallback inHost) : CPlainEffect(inHost, {.isSynth = true}) {}

private:
    void EndNote(int) noexcept override {}
};

BROKEN_PLUGIN(CBrokenNotes)
