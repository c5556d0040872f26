#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <cstdlib>
#include <memory>

// What goes wrong with editors.
namespace faults
{
/** Has an editor that opens once. */
void OpensOnce(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.Before(effEditOpen,
                    [hasOpened = false]() mutable
                    {
                        if (hasOpened)
                            std::abort();
                        hasOpened = true;
                    });
}

/** Has one editor for all instances. */
void OneEditor(CPlainEffect& ioEffect)
{
    static int open = 0;
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        open += inCall.mOpcode == effEditOpen ? 1 : inCall.mOpcode == effEditClose ? -1 : 0;
        if (open > 1)
            std::abort();
        return ioEffect.Answer(inCall);
    };
}

/** Wants an editor larger than any screen. */
void HugeEditor(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        const VstIntPtr result = ioEffect.Answer(inCall);
        if (inCall.mOpcode == effEditGetRect)
            (*static_cast<ERect**>(inCall.mPointer))->right = 30000;
        return result;
    };
}

/** Moves a parameter to where its editor has a place for it. */
void Snaps(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.Before(effEditOpen, [&ioEffect] { ioEffect.Set(kGain, 0.75F); });
}
} // namespace faults
