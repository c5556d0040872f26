#include "Source/CAaxEditor.h"

#include "Extensions/GUI/FrameGeometry.h"
#include "Interfaces/AAX/AAX_IEffectParameters.h"
#include "Interfaces/AAX/AAX_IViewContainer.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/ParameterId.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/CopyBounded.h"

#include <algorithm>
#include <utility>

AAX_IEffectGUI* CAaxEditor::Create() { return AAX_CreateContained<CAaxEditor>(); }

CAaxEditor::~CAaxEditor() { LeaveInstance(); }

void CAaxEditor::LeaveInstance() noexcept
{
    if (mInstance != nullptr)
        std::exchange(mInstance, nullptr)->ReleaseEditor(*this);
}

AAX_Result CAaxEditor::GetViewSize(AAX_Point* outSize) const
{
    if (outSize == nullptr)
        return kAAX_ErrorNullArgument;
    *outSize = {0.0F, 0.0F};
    if (mPlugin == nullptr)
    {
        if (const VSTGUI::CFrame* const ownFrame = getFrame())
            *outSize = ExtentOf(*ownFrame);
        return kAAX_Success;
    }
    if (!mPlugin->HasEditor())
        return kAAX_Success;
    return AAX_Contained(
        [&, this]
        {
            long x = 0;
            long y = 0;
            long width = 0;
            long height = 0;
            mPlugin->GetEditorSize(x, y, width, height);
            *outSize = {static_cast<float>(std::max(height, 0L)), static_cast<float>(std::max(width, 0L))};
            return kAAX_Success;
        });
}

AAX_Result CAaxEditor::Draw(AAX_Rect* inRect)
{
    VSTGUI::CFrame* const ownFrame = mPlugin == nullptr ? getFrame() : nullptr;
    if (ownFrame != nullptr && inRect != nullptr)
        ownFrame->drawRect(nullptr, RectOf(*inRect));
    return kAAX_Success;
}

AAX_Result CAaxEditor::TimerWakeup()
{
    if (mPlugin == nullptr)
        return kAAX_Success;
    if (mHost != nullptr && mGestureContainer.load(std::memory_order_relaxed) != nullptr)
        mHost->RefreshMouseMods();
    return AAX_Contained(
        [this]
        {
            mPlugin->Idle();
            return kAAX_Success;
        });
}

AAX_Result CAaxEditor::ParameterUpdated(AAX_CParamID) { return kAAX_Success; }

void CAaxEditor::SetParameter(long inIndex, float inValue)
{
    if (AAX_IEffectParameters* const parameters = GetEffectParameters())
        (void)parameters->SetParameterNormalizedValue(
            CParameterId(inIndex).Get(),
            static_cast<double>(inValue)); // as the interface has it
}

float CAaxEditor::GetParameter(long inIndex)
{
    const AAX_IEffectParameters* const parameters = GetEffectParameters();
    double value = 0.0;
    const bool isKnown = parameters != nullptr && parameters->GetParameterNormalizedValue(
                                                      CParameterId(inIndex).Get(), &value) == kAAX_Success;
    return isKnown ? static_cast<float>(value) : 0.0F;
}

std::int32_t CAaxEditor::HandleParameterMouseDown(long inIndex, unsigned long inModifiers)
{
    AAX_IViewContainer* const container = mGestureContainer.load(std::memory_order_acquire);
    return container == nullptr ? kAAX_ErrorUnsupported
                                : container->HandleParameterMouseDown(
                                      CParameterId(inIndex).Get(), static_cast<std::uint32_t>(inModifiers));
}

std::int32_t CAaxEditor::HandleParameterMouseDrag(long inIndex, unsigned long inModifiers)
{
    AAX_IViewContainer* const container = mGestureContainer.load(std::memory_order_acquire);
    return container == nullptr ? kAAX_ErrorUnsupported
                                : container->HandleParameterMouseDrag(
                                      CParameterId(inIndex).Get(), static_cast<std::uint32_t>(inModifiers));
}

std::int32_t CAaxEditor::HandleParameterMouseUp(long inIndex, unsigned long inModifiers)
{
    AAX_IViewContainer* const container = mGestureContainer.load(std::memory_order_acquire);
    return container == nullptr ? kAAX_ErrorUnsupported
                                : container->HandleParameterMouseUp(CParameterId(inIndex).Get(),
                                                                    static_cast<std::uint32_t>(inModifiers));
}

void CAaxEditor::SetHost(CVst2Host* inHost)
{
    mHost = inHost;
    if (mHost != nullptr)
        mHost->SetEditListener(this);
}

const char* CAaxEditor::IxToId(long inIndex)
{
    CopyBounded(mIdBuffer, CParameterId(inIndex).Get());
    return mIdBuffer.data();
}

long CAaxEditor::IdToIx(const char* inId) { return ParameterIndexFromId(inId); }

void CAaxEditor::ForgetInstance() noexcept
{
    mInstance = nullptr;
    mHost = nullptr;
    mPlugin = nullptr;
}

void CAaxEditor::CreateViewContainer()
{
    mGestureContainer.store(GetViewContainer(), std::memory_order_release);
    // The data model that the host gives back is the instance that this module made for it.
    auto* const instance = static_cast<AaxAdapter_Parameters*>(GetEffectParameters());
    if (instance == nullptr)
        return;
    mInstance = instance;
    mInstance->AttachEditor(*this);
    SetHost(&mInstance->Host());
    mHost->SetActualAAXHost();
    mHost->SetGestureViewer(true);
    mHost->RefreshMouseMods();
    mPlugin = mHost->Plugins().empty() ? nullptr : mHost->Plugins().front().get();
    if (mPlugin != nullptr && mPlugin->HasEditor())
        OpenEditor();
}

void CAaxEditor::OpenEditor()
{
    (void)AAX_Contained( // a plug-in that cannot open it shows nothing
        [this]
        {
            (void)mPlugin->OpenEditor(GetViewContainerPtr()); // plug-ins don't agree on what the result means
            return kAAX_Success;
        });
}

void CAaxEditor::DeleteViewContainer()
{
    mGestureContainer.store(nullptr, std::memory_order_release);
    if (mHost != nullptr)
        mHost->SetGestureViewer(false);
    if (mPlugin == nullptr)
        return;
    (void)AAX_Contained( // it counts as closed either way
        [this]
        {
            mPlugin->CloseEditor();
            return kAAX_Success;
        });
}
