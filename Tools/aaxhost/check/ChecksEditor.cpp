#include "Tools/aaxhost/check/CRenderThread.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/EditorSteps.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/check/StateSteps.h"

#include <cmath>
#include <fmt/format.h>

namespace
{
SFinding ObjectAlone(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    const auto instance = ioContext.MakeInstance();
    for (int i = 0; i < 3; ++i)
    {
        if (const auto made = instance->OpenGUI(); !made)
            return SFinding::Failed(made.Problem().mSentence);
        (void)instance->GUI()->TimerWakeup(); // whatever it answers without a window
        AAX_Point size{};
        (void)instance->GUI()->GetViewSize(&size);
        instance->CloseGUI();
    }
    return SFinding::Passed();
}

SFinding OpensEditor(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    const auto instance = ioContext.MakeInstance();
    const auto view = OpenView(*instance, *window);
    NeedEditor(*view);
    Tick(*view, 5);
    constexpr int largest = 8192; // no screen shows more
    if (view->Size().mWidth > largest || view->Size().mHeight > largest)
        return SFinding::Failed(fmt::format("The editor wants {} by {} pixels, more than {}.",
                                            view->Size().mWidth, view->Size().mHeight, largest));
    return SFinding::Passed();
}

SFinding ReopensEditor(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    const auto instance = ioContext.MakeInstance();
    const int times = ioContext.Scaled(2, 30);
    for (int i = 0; i < times; ++i)
    {
        const auto view = OpenView(*instance, *window);
        NeedEditor(*view);
        Tick(*view, 2);
    }
    return SFinding::Passed();
}

SFinding DeletedOpen(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    auto instance = ioContext.MakeInstance();
    {
        const auto view = OpenView(*instance, *window);
        NeedEditor(*view);
    }
    if (const auto made = instance->OpenGUI(); !made)
        return SFinding::Failed(made.Problem().mSentence);
    CHostViewContainer& container = instance->Host().ViewContainer();
    container.SetView(window->ViewType(), window->View());
    (void)instance->GUI()->SetViewContainer(&container); // was possible just now
    (void)instance->GUI()->TimerWakeup();
    instance.reset(); // with the editor still in the window
    window->HandleEvents(std::chrono::milliseconds(50));
    if (const int live = ioContext.Module().LiveObjects(); live != 0)
        return SFinding::Failed(
            fmt::format("After an instance was deleted with its editor open, {} of the module {} left.",
                        Counted(live, "object"), live == 1 ? "is" : "are"));
    CRig rig(ioContext);
    rig.Play(0.05);
    return SFinding::Passed();
}

SFinding WindowTaken(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    const auto instance = ioContext.MakeInstance();
    const auto view = OpenView(*instance, *window);
    NeedEditor(*view);
    for (int i = 0; i < 3; ++i)
    {
        if (const auto taken = view->TakeWindowAway(); !taken)
            return SFinding::Failed(taken.Problem().mSentence);
        Tick(*view, 2); // a host goes on waking it
        if (const auto given = view->GiveWindow(); !given)
            return SFinding::Failed(given.Problem().mSentence);
        Tick(*view, 2);
    }
    return SFinding::Passed();
}

SFinding Gestures(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    {
        const auto view = OpenView(instance, *window);
        NeedEditor(*view);
        for (const std::string& id : AutomatableParameters(instance))
            TrySet(instance, id, 0.4);
        rig.Play(0.1);
        Tick(*view, 3);
    }
    const std::size_t begun = ioContext.Log().Count("HandleParameterMouseDown");
    const std::size_t ended = ioContext.Log().Count("HandleParameterMouseUp");
    if (begun == ended)
        return SFinding::Passed();
    return SFinding::Failed(
        begun > ended ? fmt::format("The plug-in begins {} and ends {} of them, so a control stays held.",
                                    Counted(static_cast<std::int64_t>(begun), "edit"), ended)
                      : fmt::format("The plug-in ends {} and began {} of them.",
                                    Counted(static_cast<std::int64_t>(ended), "edit"), begun));
}

SFinding ChangesNothing(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    const auto instance = ioContext.MakeInstance();
    const auto before = instance->ListParameters();
    {
        const auto view = OpenView(*instance, *window);
        NeedEditor(*view);
        Tick(*view, 5);
    }
    for (const SParameterInfo& info : before)
        if (std::abs(ValueOf(*instance, info.mID) - info.mValue) > 1e-4)
            return SFinding::Failed(fmt::format("Opening the editor moves {} from {:.4f} to {:.4f}.",
                                                NameOfParameter(*instance, info.mID), info.mValue,
                                                ValueOf(*instance, info.mID)));
    return SFinding::Passed();
}

SFinding WhileRendering(CCheckContext& ioContext)
{
    const auto window = NeedWindow(ioContext);
    CRig rig(ioContext);
    rig.Feed(Noise(0.25F));
    CRenderThread render([&] { rig.RenderBlock(128); });
    const auto view = OpenView(rig.Instance(), *window);
    NeedEditor(*view);
    for (const std::string& id : AutomatableParameters(rig.Instance()))
        TrySet(rig.Instance(), id, 0.6);
    Tick(*view, 5);
    render.WaitForBlocks(2);
    render.Stop();
    rig.ExpectFinite("while the editor is open");
    return SFinding::Passed();
}

SFinding Two(CCheckContext& ioContext)
{
    const auto firstWindow = NeedWindow(ioContext);
    const auto secondWindow = NeedWindow(ioContext);
    const auto first = ioContext.MakeInstance();
    const auto second = ioContext.MakeInstance();
    auto firstView = OpenView(*first, *firstWindow);
    NeedEditor(*firstView);
    const auto secondView = OpenView(*second, *secondWindow);
    NeedEditor(*secondView);
    Tick(*firstView, 2);
    firstView.reset();
    Tick(*secondView, 3);
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> EditorChecks()
{
    static constexpr SCheck kChecks[] = {
        {"editor.opens", "The editor opens and says a size that a screen can show.", 1, &OpensEditor},
        {"editor.object", "The editor's object lives without a window.", 1, &ObjectAlone},
        {"editor.reopens", "The editor opens and closes again and again.", 3, &ReopensEditor},
        {"editor.window-taken", "The editor survives that its window is taken away and given back.", 3,
         &WindowTaken},
        {"editor.deleted-open", "An instance can be deleted while its editor is open.", 3, &DeletedOpen},
        {"editor.gestures", "Every edit that the plug-in begins it ends.", 2, &Gestures},
        {"editor.changes-nothing", "Opening and closing the editor moves no parameter.", 2, &ChangesNothing},
        {"editor.while-rendering", "The editor opens while another thread renders.", 4, &WhileRendering},
        {"editor.two", "Two instances have their editors open at once.", 4, &Two},
    };
    return kChecks;
}
