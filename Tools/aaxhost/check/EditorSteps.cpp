#include "Tools/aaxhost/check/EditorSteps.h"

#include "Tools/vst2driver/CDrivenPlugin.h"

namespace
{
const char kNoEditor[] = "The plug-in has no editor.";

/** By its own account, before it is opened; true where it cannot be asked. */
bool MayHaveEditor(CCheckContext& ioContext)
{
    CDrivenPlugin plugin(kHostVersion);
    return !plugin.Load(ioContext.Module().PluginPath()).empty() || !plugin.Enter().empty() ||
           (plugin.Effect().flags & effFlagsHasEditor) != 0;
}
} // namespace

std::unique_ptr<CHostWindow> NeedWindow(CCheckContext& ioContext)
{
    if (!MayHaveEditor(ioContext))
        throw SCheckEnd{SFinding::Skipped(kNoEditor)};
    auto window = CHostWindow::Create("check");
    if (!window)
        throw SCheckEnd{SFinding::Unseen(window.Problem().mSentence)};
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
        throw SCheckEnd{SFinding::Skipped(kNoEditor)};
}
