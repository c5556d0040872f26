#include "Tests/doubles/faulty/CBlankEditor.h"
#include "Tests/doubles/faulty/CPlainEffect.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

// What a state is lost, changed or given to others by.
namespace faults
{
/** Forgets its state: every chunk leaves it with zeros. */
void Memory(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall) -> VstIntPtr
    {
        if (inCall.mOpcode != effSetChunk)
            return ioEffect.Answer(inCall);
        for (const std::int32_t index : {kGain, kBalance})
            ioEffect.Set(index, 0.0F);
        return 1;
    };
}

/** Has its gain loud or soft and nothing between, and says which; what it saves is one of the two. */
void Switch(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall) -> VstIntPtr
    {
        const float value = ioEffect.Get(kGain);
        if (inCall.mOpcode == effGetParamDisplay && inCall.mIndex == kGain)
        {
            std::strcpy(static_cast<char*>(inCall.mPointer), value >= 0.5F ? "loud" : "soft");
            return 1;
        }
        if (inCall.mOpcode != effGetChunk)
            return ioEffect.Answer(inCall);
        ioEffect.Set(kGain, value >= 0.5F ? 1.0F : 0.0F);
        const VstIntPtr size = ioEffect.Answer(inCall);
        ioEffect.Set(kGain, value);
        return size;
    };
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        const float value = ioEffect.Get(kGain);
        ioEffect.Set(kGain, value >= 0.5F ? 1.0F : 0.1F);
        ioEffect.Render(inBlock);
        ioEffect.Set(kGain, value);
    };
}

/** Saves its gain as loud or soft, and writes nothing else; one hears what lies between. */
void Coarse(CPlainEffect& ioEffect)
{
    Switch(ioEffect);
    ioEffect.mOnBlock = nullptr;
}

/** Loads its state in two steps, and moves a value in the second: when it is next asked for its state. */
void Load(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect, isHalfLoaded = false](const SCall& inCall) mutable
    {
        if (inCall.mOpcode == effGetChunk && isHalfLoaded)
        {
            isHalfLoaded = false;
            ioEffect.Set(kGain, 1.0F - ioEffect.Get(kGain));
        }
        isHalfLoaded = isHalfLoaded || inCall.mOpcode == effSetChunk;
        return ioEffect.Answer(inCall);
    };
}

/** Begins afresh with its first block: what was set before, other than by a state, is lost. */
void Start(CPlainEffect& ioEffect)
{
    const auto hasStarted = std::make_shared<bool>(false);
    ioEffect.Before(effSetChunk, [hasStarted] { *hasStarted = true; });
    ioEffect.mOnBlock = [&ioEffect, hasStarted](const SBlock& inBlock)
    {
        if (!*hasStarted)
        {
            *hasStarted = true;
            ioEffect.Set(kGain, 0.8F);
            ioEffect.Set(kBalance, 0.5F);
        }
        ioEffect.Render(inBlock);
    };
}

/** Gives the gain of a state that any instance loads to all of them, each in its next block. */
void Copies(CPlainEffect& ioEffect)
{
    static std::atomic<int> load = 0;
    static std::atomic<float> gain = 0.0F;
    const auto known = std::make_shared<std::atomic<int>>(load.load()); // the last one that it heard of
    ioEffect.mOnCall = [&ioEffect, known](const SCall& inCall)
    {
        const VstIntPtr result = ioEffect.Answer(inCall);
        if (inCall.mOpcode == effSetChunk)
        {
            gain = ioEffect.Get(kGain);
            *known = ++load;
        }
        return result;
    };
    ioEffect.mOnBlock = [&ioEffect, known](const SBlock& inBlock)
    {
        if (known->exchange(load) != load)
            ioEffect.Set(kGain, gain);
        ioEffect.Render(inBlock);
    };
}

/** Leaks a megabyte with each instance. */
void Leak(CPlainEffect&)
{
    static std::vector<std::unique_ptr<std::vector<char>>> leaked;
    leaked.push_back(std::make_unique<std::vector<char>>(1U << 20, '\1'));
}

/** Tears down with any instance what all of them need to render. */
void Static(CPlainEffect& ioEffect)
{
    static std::atomic<bool> isReady = false;
    isReady = true;
    ioEffect.mOnClose = [] { isReady = false; };
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        if (!isReady)
            std::abort();
        ioEffect.Render(inBlock);
    };
}

/** Writes into each state how many were saved. */
void Counts(CPlainEffect& ioEffect)
{
    static char saved = 0;
    ioEffect.mOnCall = [&ioEffect, chunk = std::vector<char>()](const SCall& inCall) mutable
    {
        SCall call = inCall;
        call.mValue -= inCall.mOpcode == effSetChunk && inCall.mValue > 0 ? 1 : 0;
        const VstIntPtr result = ioEffect.Answer(call);
        if (inCall.mOpcode != effGetChunk || result <= 0)
            return result;
        void** const data = static_cast<void**>(inCall.mPointer);
        chunk.assign(static_cast<const char*>(*data), static_cast<const char*>(*data) + result);
        chunk.push_back(++saved);
        *data = chunk.data();
        return result + 1;
    };
}

/** Begins to modulate where the last load has left the phase, which all instances share. */
void Phases(CPlainEffect& ioEffect)
{
    static int loads = 0;
    const auto factor = std::make_shared<float>(1.0F);
    ioEffect.mOnCall = [&ioEffect, factor](const SCall& inCall)
    {
        if (inCall.mOpcode == effSetChunk)
            *factor = 1.0F - 0.1F * static_cast<float>(++loads % 7);
        return ioEffect.Answer(inCall);
    };
    ioEffect.mOnBlock = [&ioEffect, factor](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        for (float* output : {inBlock.mOutputs[0], inBlock.mOutputs[1]})
            std::transform(output, output + inBlock.mFrames, output,
                           [&](float inSample) { return *factor * inSample; });
    };
}

/** Has more to save each time that it is asked. */
void Grows(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect, chunk = std::vector<char>()](const SCall& inCall) mutable
    {
        if (inCall.mOpcode != effGetChunk)
            return ioEffect.Answer(inCall);
        chunk.push_back('+');
        *static_cast<void**>(inCall.mPointer) = chunk.data();
        return static_cast<VstIntPtr>(chunk.size());
    };
}

/** Rounds its gain as soon as it is saved. */
void Rounds(CPlainEffect& ioEffect)
{
    ioEffect.Before(
        effGetChunk, [&ioEffect] { ioEffect.Set(kGain, ioEffect.Get(kGain) >= 0.5F ? 0.75F : 0.25F); });
}

/** Keeps what it is set to with the thread that sets it: another one renders with what nobody has set. */
void Threads(CPlainEffect& ioEffect)
{
    ioEffect.SetEditor(std::make_unique<CBlankEditor>());
    static thread_local bool isOfThread = false;
    const auto isSet = std::make_shared<std::atomic<bool>>(false);
    ioEffect.Before(effSetChunk, [isSet] { *isSet = isOfThread = true; });
    ioEffect.mOnSet = [&ioEffect, isSet](std::int32_t inIndex, float inValue)
    {
        ioEffect.Set(inIndex, inValue);
        *isSet = isOfThread = true;
    };
    ioEffect.mOnBlock = [&ioEffect, isSet](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        if (*isSet && !isOfThread)
            inBlock.mOutputs[0][0] = std::numeric_limits<float>::quiet_NaN();
    };
}

/** Has slots for ten instances, and frees none. */
void Slots(CPlainEffect& ioEffect)
{
    static int taken = 0;
    ioEffect.mOnBlock = [&ioEffect, slot = taken++](const SBlock& inBlock)
    {
        constexpr int slots = 10;
        if (slot >= slots)
            std::abort();
        ioEffect.Render(inBlock);
    };
}

/** Frees what all instances share with the last of them, and makes it for the first one only. */
void Last(CPlainEffect& ioEffect)
{
    static int alive = 0;
    static bool isThere = true;
    ++alive;
    ioEffect.mOnClose = [] { isThere = isThere && --alive > 0; };
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        if (!isThere)
            std::abort();
        ioEffect.Render(inBlock);
    };
}
} // namespace faults
