#include "Tools/aaxhost/check/EditorSteps.h"

std::unique_ptr<CHostWindow> NeedWindow()
{
    auto window = CHostWindow::Create("check");
    if (!window)
        throw SCheckEnd{SFinding::Skipped(window.Problem().mSentence)};
    return std::move(*window);
}

std::unique_ptr<CEditorView> OpenView(CInstance& ioInstance, CHostWindow& ioWindow)
{
    auto view = CEditorView::Open(ioInstance, ioWindow);
    if (!view)
        throw SCheckEnd{SFinding::Failed(view.Problem().mSentence)};
    return std::move(*view);
}

void Tick(CEditorView& ioView, int inBeats)
{
    for (int i = 0; i < inBeats; ++i)
        if (const auto ticked = ioView.Tick(); !ticked)
            throw SCheckEnd{SFinding::Failed(ticked.Problem().mSentence)};
}

void NeedEditor(CEditorView& ioView)
{
    constexpr int beats = 30; // about a second
    for (int i = 0; i < beats && ioView.Size().IsEmpty(); ++i)
        Tick(ioView, 1);
    if (ioView.Size().IsEmpty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no editor.")};
}
