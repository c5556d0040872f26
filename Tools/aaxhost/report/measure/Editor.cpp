#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/report/Base64.h"
#include "Tools/aaxhost/report/measure/Parts.h"
#include "Tools/aaxhost/window/CEditorView.h"
#include "Tools/aaxhost/window/SPicture.h"

SReportEditor PictureEditor(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    SReportEditor editor;
    const auto window = CHostWindow::Create("editor");
    if (!window)
        throw SCheckEnd{SFinding::Skipped(window.Problem().mSentence)};
    const auto instance = context.MakeInstance();
    const auto view = CEditorView::Open(*instance, **window);
    if (!view)
        throw SCheckEnd{SFinding::Failed(view.Problem().mSentence)};
    (*window)->MoveTo(0, 0);
    for (int beat = 0; beat < 40; ++beat) // time to draw everything once
        if (const auto ticked = (*view)->Tick(); !ticked)
            throw SCheckEnd{SFinding::Failed(ticked.Problem().mSentence)};
    if ((*view)->Size().IsEmpty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no editor.")};
    const auto picture = (*window)->TakePicture();
    if (!picture)
        throw SCheckEnd{SFinding::Skipped(picture.Problem().mSentence)};
    const auto bytes = EncodePng(*picture);
    if (!bytes)
        throw SCheckEnd{SFinding::Skipped("No picture can be made: " + bytes.Problem().mSentence + ".")};
    editor.mPngBase64 = Base64(*bytes);
    editor.mWidth = picture->mWidth;
    editor.mHeight = picture->mHeight;
    return editor;
}
