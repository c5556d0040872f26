#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <array>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <stdexcept>

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

/** Turns a knob while its editor opens, and begins an edit in the idle time after it is closed. */
void Clings(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        if (inCall.mOpcode == effEditOpen)
            ioEffect.Turn(kGain);
        if (inCall.mOpcode == effEditClose)
            (void)ioEffect.CallHost(audioMasterNeedIdle);
        if (inCall.mOpcode == effIdle)
            ioEffect.Edited().BeginEdit(kGain);
        return ioEffect.Answer(inCall);
    };
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

/** Looks a value up in a table that has no place for 1, the end of the range. */
void Table(CPlainEffect& ioEffect)
{
    ioEffect.mOnSet = [&ioEffect](std::int32_t inIndex, float inValue)
    {
        if (inValue == 1.0F)
            throw std::out_of_range("table");
        ioEffect.Set(inIndex, inValue);
    };
}

/** Trusts its host to give it values of 0 to 1. */
void Trusts(CPlainEffect& ioEffect)
{
    ioEffect.mOnSet = [&ioEffect](std::int32_t inIndex, float inValue)
    {
        if (!(inValue >= 0.0F && inValue <= 1.0F))
            std::abort();
        ioEffect.Set(inIndex, inValue);
    };
}

/** Never reaches the ends of its range. */
void Ends(CPlainEffect& ioEffect)
{
    ioEffect.mOnSet = [&ioEffect](std::int32_t inIndex, float inValue)
    { ioEffect.Set(inIndex, 0.05F + 0.9F * inValue); };
}

/** Takes the root of what is negative where one parameter is below the other, and never forgets it. */
void Root(CPlainEffect& ioEffect)
{
    const auto level = std::make_shared<std::atomic<float>>(1.0F);
    ioEffect.mOnSet = [&ioEffect, level](std::int32_t inIndex, float inValue)
    {
        ioEffect.Set(inIndex, inValue);
        *level = 0.5F * (*level + std::sqrt(ioEffect.Get(kGain) - ioEffect.Get(kBalance) - 0.01F));
    };
    ioEffect.mOnBlock = [&ioEffect, level](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        inBlock.mOutputs[0][0] *= std::isnan(level->load()) ? level->load() : 1.0F;
    };
}

/** Gives both of its parameters one name. */
void Names(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        SCall call = inCall;
        call.mIndex = inCall.mOpcode == effGetParamName ? 0 : inCall.mIndex;
        return ioEffect.Answer(call);
    };
}
} // namespace faults
