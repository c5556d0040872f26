#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <array>
#include <atomic>
#include <memory>

// What goes wrong with the values of parameters and the gestures that move them.
namespace faults
{
/** Changes a parameter by itself as soon as it is loaded and renders. */
void Rest(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect, hasMoved = false](const SBlock& inBlock) mutable
    {
        if (!hasMoved)
            ioEffect.Edited().PerformEdit(kGain, 0.3F);
        hasMoved = true;
        ioEffect.Render(inBlock);
    };
}

/** Reports a value for ever: once a parameter was set, it tells its gain in each block. */
void Reports(CPlainEffect& ioEffect)
{
    const auto wasSet = std::make_shared<std::atomic<bool>>(false);
    ioEffect.mOnSet = [&ioEffect, wasSet](std::int32_t inIndex, float inValue)
    {
        ioEffect.Set(inIndex, inValue);
        *wasSet = true;
    };
    ioEffect.mOnBlock = [&ioEffect, wasSet](const SBlock& inBlock)
    {
        if (*wasSet)
            ioEffect.Edited().PerformEdit(kGain, ioEffect.Get(kGain));
        ioEffect.Render(inBlock);
    };
}

/** Begins an edit that it never ends. */
void Gestures(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.Before(effEditOpen, [&ioEffect] { ioEffect.Edited().BeginEdit(kGain); });
}

/** Has its first parameter turned in each idle time of an editor that it does not have. */
void DragInIdle(CPlainEffect& ioEffect)
{
    ioEffect.Set(kGain, 0.25F);
    ioEffect.Before(effEditIdle, [&ioEffect] { ioEffect.Turn(kGain); });
}

/** Keeps the values of all instances in one place. */
void Shared(CPlainEffect& ioEffect)
{
    static std::array<std::atomic<float>, 2> values{0.8F, 0.5F};
    ioEffect.Effect()->flags &= ~effFlagsProgramChunks;
    ioEffect.mOnSet = [&ioEffect](std::int32_t inIndex, float inValue)
    {
        ioEffect.Set(inIndex, inValue);
        if (inIndex >= 0 && inIndex < 2)
            values[static_cast<std::size_t>(inIndex)] = inValue;
    };
    ioEffect.Effect()->getParameter = [](AEffect*, std::int32_t inIndex)
    { return inIndex >= 0 && inIndex < 2 ? values[static_cast<std::size_t>(inIndex)].load() : 0.0F; };
}
} // namespace faults
