#include "Examples/synth/editor/CSynthEditor.h"

#include "Examples/synth/editor/IPanelView.h"

namespace
{
// In the order of the parameters, all of them.
constexpr SKnobGroup kGroups[] = {
    {"Filter", 3}, {"Oscillators", 3}, {"Envelope", 4}, {"Wheels", 2}, {"Out", 1}};
} // namespace

CSynthEditor::CSynthEditor(IEditedEffect& ioSynth) : mPanel(ioSynth, "Example Synth", kGroups) {}

CSynthEditor::~CSynthEditor() = default;

ERect CSynthEditor::Rectangle() const noexcept
{
    return {0, 0, static_cast<std::int16_t>(mPanel.Height()), static_cast<std::int16_t>(mPanel.Width())};
}

bool CSynthEditor::Open(void* inParent)
{
    Close();
    mView = IPanelView::Create(inParent, mPanel);
    return mView != nullptr;
}

void CSynthEditor::Close() noexcept
{
    mPanel.Release();
    mView.reset();
}

void CSynthEditor::Idle()
{
    if (mView != nullptr)
        mView->Idle();
}
