#pragma once
#include "Source/CForwardedAutomation.h"

#include <atomic>
#include <cstddef>
#include <memory>

/**
 * The host's automation of one instance, with the plug-in's gestures in it. A gesture and each request hold
 * a parameter. The host sees a touch when the first holder comes, and a release when the last one goes.
 *
 * It also knows the value that the host knows of each of the plug-in's parameters. Threads: `Attach`
 * while nobody asks; everything else on any.
 */
class CGestures final : public CForwardedAutomation
{
public:
    /** @param inHost not owned. */
    void Attach(AAX_IAutomationDelegate& inHost, std::size_t inParameters);

    /** The plug-in begins or ends a gesture; twice is once, and a parameter that there is not has none. */
    void Begin(long inIndex);
    void End(long inIndex);
    void EndAll();

    /** The host knows this value of a parameter of the plug-in. Normalized. */
    void NoteKnown(long inIndex, float inValue) noexcept;
    /** @param inValue as the plug-in has it, which may be out of range. */
    bool IsKnown(long inIndex, float inValue) const noexcept;

    AAX_Result PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostTouchRequest(AAX_CParamID inId) override;
    AAX_Result PostReleaseRequest(AAX_CParamID inId) override;

private:
    // Any thread writes and reads each. The exchanges and additions alone say who is the first and the last;
    // no other memory hangs on them.
    struct SParameter
    {
        std::atomic<int> mHolders{0};
        std::atomic<bool> mIsInGesture{false};
        std::atomic<float> mKnown{0.0F};
    };

    /** Null where the plug-in has no such parameter. */
    SParameter* Find(long inIndex) const noexcept;

    std::unique_ptr<SParameter[]> mParameters;
    std::size_t mCount = 0;
};
