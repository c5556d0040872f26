#include "Source/features/CFeaturedEditor.h"

#include "Interfaces/AAX/AAX_IViewContainer.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductFeatures.h"

#include <utility>

AAX_IEffectGUI* CFeaturedEditor::Create() { return AAX_CreateContained<CFeaturedEditor>(); }

AAX_Result CFeaturedEditor::GetViewSize(AAX_Point* outSize) const
{
    if (outSize == nullptr || !mViewSize)
        return CAaxEditor::GetViewSize(outSize);
    *outSize = {static_cast<float>(mViewSize->mHeight), static_cast<float>(mViewSize->mWidth)};
    return kAAX_Success;
}

void CFeaturedEditor::CreateViewContainer()
{
    mViewSize.reset();
    mLastRectangle.reset();
    CAaxEditor::CreateViewContainer();
    if (kProductFeatures.mResize)
        (void)AAX_Contained( // one without a rectangle now may have one later
            [this]
            {
                mLastRectangle = Rectangle();
                return kAAX_Success;
            });
}

void CFeaturedEditor::DeleteViewContainer()
{
    CAaxEditor::DeleteViewContainer();
    mViewSize.reset();
    if (Instance() != nullptr)
        static_cast<CFeaturedParameters*>(Instance())->EndGestures();
}

AAX_Result CFeaturedEditor::TimerWakeup()
{
    const AAX_Result result = CAaxEditor::TimerWakeup();
    if (!kProductFeatures.mResize || GetViewContainer() == nullptr || Plugin() == nullptr)
        return result;
    auto* const instance = static_cast<CFeaturedParameters*>(Instance());
    if (const std::optional<SPixelSize> asked = instance->TakeRequestedSize())
        (void)Resize(asked->mWidth, asked->mHeight); // the plug-in was not told that it was taken
    const AAX_Result followed = AAX_Contained(
        [this]
        {
            FollowRectangle();
            return kAAX_Success;
        });
    return result != kAAX_Success ? result : followed;
}

bool CFeaturedEditor::Resize(std::int32_t inWidth, std::int32_t inHeight) noexcept
{
    AAX_IViewContainer* const container = GetViewContainer();
    if (container == nullptr)
        return false;
    // Ahead of the call: a host may ask for the size in it.
    const std::optional<SPixelSize> before = std::exchange(mViewSize, SPixelSize{inWidth, inHeight});
    AAX_Point size{static_cast<float>(inHeight), static_cast<float>(inWidth)};
    const bool isTaken = container->SetViewSize(size) == kAAX_Success;
    if (!isTaken)
        mViewSize = before;
    return isTaken;
}

std::optional<SPixelSize> CFeaturedEditor::Rectangle() const
{
    if (Plugin() == nullptr || !Plugin()->HasEditor())
        return std::nullopt;
    long x = 0;
    long y = 0;
    long width = 0;
    long height = 0;
    Plugin()->GetEditorSize(x, y, width, height);
    const SPixelSize size{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
    return size.IsSensible() ? std::optional(size) : std::nullopt;
}

void CFeaturedEditor::FollowRectangle()
{
    const std::optional<SPixelSize> rectangle = Rectangle();
    if (!rectangle || rectangle == mLastRectangle)
        return;
    mLastRectangle = rectangle;
    if (rectangle != mViewSize)
        (void)Resize(rectangle->mWidth, rectangle->mHeight); // a host that refuses it shows what it can
}
