#pragma once
#include "Source/CAaxEditor.h"
#include "Source/features/CFeaturedParameters.h"
#include "Source/features/PixelSize.h"

#include <optional>

/**
 * The editor of an instance with features: with RESIZE the host's view follows the plug-in's size, whether
 * the plug-in asks for another one or simply has it.
 *
 * Threads: the host's GUI thread.
 */
class CFeaturedEditor final : public CAaxEditor
{
public:
    static AAX_IEffectGUI* Create();

    CFeaturedEditor() = default;
    ~CFeaturedEditor() override { LeaveInstance(); }

    /** The size that the view was given for the plug-in, as soon as it was. */
    AAX_Result GetViewSize(AAX_Point* outSize) const override;
    AAX_Result TimerWakeup() override;
    bool Resize(std::int32_t inWidth, std::int32_t inHeight) noexcept override;

private:
    void CreateViewContainer() override;
    void DeleteViewContainer() override;
    /** Nothing where the plug-in has no rectangle. */
    std::optional<SPixelSize> Rectangle() const;
    void FollowRectangle();

    std::optional<SPixelSize> mViewSize;      // that the host's view was given
    std::optional<SPixelSize> mLastRectangle; // of the plug-in
};
