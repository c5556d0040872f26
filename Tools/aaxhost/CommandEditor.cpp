#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/EditorReport.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/window/CEditorView.h"
#include "Tools/aaxhost/window/SPicture.h"
#include "Tools/support/CStage.h"
#include "Tools/support/CWholeFile.h"

#include <cstdio>
#include <fmt/format.h>
#include <memory>
#include <optional>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr double kEditorRate = 44100.0; // Hz; nothing is played
// Plug-ins that learn their size only while they are open know it after the first idle calls.
constexpr std::chrono::seconds kLongestWaitForSize{2};

struct SEditorOptions
{
    std::string mModule;
    std::optional<double> mSeconds;
    std::string mScreenshot;
    bool mRefusesResize = false;
    EAnswers mAnswers = EAnswers::Late;
};

std::string TitleOf(const CModule& inModule)
{
    const SEffect& effect = inModule.Effect();
    return effect.mNames.empty() ? "Editor" : effect.mNames.front();
}

void TellSize(const CEditorView& inView, SViewSize& ioTold)
{
    if (inView.Size() == ioTold)
        return;
    ioTold = inView.Size();
    fmt::print("The editor is {} by {}\n", ioTold.mWidth, ioTold.mHeight);
}

/** Keeps the editor open until the time is over or the window closed, and tells what comes of it. */
COutcome<SDone> Run(CEditorView& ioView, CHostWindow& inWindow, CHostLog& ioLog,
                    const CEditorReport& inReport, std::optional<Clock::time_point> inEnd)
{
    const auto sizeDeadline = Clock::now() + kLongestWaitForSize;
    SViewSize told;
    while (!inWindow.IsClosed() && !(inEnd && Clock::now() >= *inEnd))
    {
        if (auto ticked = ioView.Tick(); !ticked)
            return ticked;
        if (told.IsEmpty()) // ahead of what is done in it at once
            TellSize(ioView, told);
        for (const std::string& line : ioLog.TakeLines())
            if (const std::string words = inReport.Describe(line); !words.empty())
                fmt::print("{}\n", words);
        TellSize(ioView, told);
        std::fflush(stdout); // as it comes, also into a pipe
        if (told.IsEmpty() && Clock::now() >= sizeDeadline)
            break;
    }
    if (told.IsEmpty())
        return SProblem{"The plug-in has no editor, or gives it no size."};
    return SDone{};
}

COutcome<SDone> SavePicture(CHostWindow& inWindow, const std::string& inPath)
{
    const auto picture = inWindow.TakePicture();
    if (!picture)
        return picture.Problem();
    if (const auto written = WritePng(inPath, *picture); !written)
        return written.Problem();
    fmt::print("Wrote {}: {} by {}\n", inPath, picture->mWidth, picture->mHeight);
    return SDone{};
}

int ShowEditor(const SEditorOptions& inOptions)
{
    if (const auto writable = CheckWritable(inOptions.mScreenshot); !writable)
        return Fail(writable.Problem());
    CHostLog log;
    const auto module = CModule::Open(inOptions.mModule, log);
    if (!module)
        return Fail(module.Problem());
    // Before the instance: plug-ins that get no answer from a window system end the process.
    const auto window = CHostWindow::Create(TitleOf(**module));
    if (!window)
        return Fail(window.Problem());
    const auto instance = CInstance::Create(**module, kEditorRate, {.mAnswers = inOptions.mAnswers});
    if (!instance)
        return Fail(instance.Problem());
    const CStage stage("its editor was open");
    const CEditorReport report((*instance)->ListParameters());
    const auto view = CEditorView::Open(**instance, **window,
                                        inOptions.mRefusesResize ? EResizing::Refused : EResizing::Followed);
    if (!view)
        return Fail(view.Problem());
    (void)log.TakeLines(); // of getting here

    std::optional<Clock::time_point> end;
    if (inOptions.mSeconds)
        end = Clock::now() +
              std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*inOptions.mSeconds));
    if (const auto shown = Run(**view, **window, log, report, end); !shown)
        return Fail(shown.Problem());
    if (!inOptions.mScreenshot.empty())
        if (const auto saved = SavePicture(**window, inOptions.mScreenshot); !saved)
            return Fail(saved.Problem());
    return kExitSuccess;
}
} // namespace

void AddCommandEditor(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SEditorOptions>();
    CLI::App* command = ioApp.add_subcommand("editor", "Open the plug-in's editor and tell what it does");
    command->add_option("MODULE", options->mModule, "Bundle folder or module file")->required();
    command->add_option("--seconds", options->mSeconds, "How long; otherwise until the window is closed")
        ->check(NumberFrom(0.1, 86400.0));
    command
        ->add_option("--screenshot", options->mScreenshot,
                     "PNG file to write with what the window shows at the end")
        ->type_name("FILE");
    command->add_flag("--refuse-resize", options->mRefusesResize,
                      "Refuse every other size that the editor asks for, as some hosts do");
    AddAnswersOption(*command, options->mAnswers);
    command->callback([options, &outAction] { outAction = [options] { return ShowEditor(*options); }; });
}
