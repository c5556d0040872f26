#include "Tools/vst2probe/ProgramFile.h"

#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/FileBytes.h"
#include "Tools/inspector/ChildReport.h"
#include "Tools/support/CTemporaryFolder.h"
#include "Tools/support/CWholeFile.h"

#include <cstdlib>

#include <fmt/format.h>
#include <unistd.h>

namespace
{
using Json = nlohmann::ordered_json;

constexpr long kBlockFrames = 1024;
constexpr float kRate = 44100.0F; // Hz

std::string ParameterList(CVst2Plugin& inPlugin)
{
    std::string text;
    for (long i = 0; i < inPlugin.GetNumParameters(); ++i)
    {
        const std::string name = inPlugin.GetParameterName(i); // one buffer serves all texts
        const std::string display = inPlugin.GetParameterDisplay(i);
        text += fmt::format("  {:<16} {:.4f}  {} {}\n", name, inPlugin.GetParameter(i), display,
                            inPlugin.GetParameterLabel(i));
    }
    return text;
}

Json Do(const SProgramFileJob& inJob, const CChildReport& inReport)
{
    inReport.Send({{"stage", "it was being loaded"}});
    CVst2Host host;
    host.SetBufferSize(kBlockFrames);
    host.SetSampleRate(kRate);
    CVst2Plugin* const plugin = host.LoadPlugin(inJob.mPlugin.c_str());
    if (plugin == nullptr)
        return {{"refused", "it cannot be loaded"}};
    const char* const file = inJob.mFile.c_str();
    if (inJob.mIsLoad)
    {
        inReport.Send({{"stage", "it was being given the file"}});
        if (!(inJob.mIsBank ? plugin->ReadBank(file) : plugin->ReadPreset(file)))
            return {{"refused",
                     fmt::format("{} is missing, broken, another plug-in's or of the other kind", file)}};
        return {{"done", ParameterList(*plugin)}};
    }
    inReport.Send({{"stage", "it was being asked for its state"}});
    if (!(inJob.mIsBank ? plugin->WriteBank(file) : plugin->SavePreset(file)))
        return {{"refused", fmt::format("{} cannot be written", file)}};
    return {{"done", ""}};
}

COutcome<std::string> RunChild(const std::string& inProgram, const SProgramFileJob& inJob)
{
    const auto deadline = CChildProcess::Clock::now() + inJob.mLimit;
    const auto refused = [&](const std::string& inReason)
    { return SProblem{fmt::format("{}: {}.", inJob.mPlugin.string(), inReason)}; };
    CChildProcess child(inProgram,
                        {inJob.mIsBank ? "bank" : "preset", inJob.mIsLoad ? "load" : "save",
                         kProgramFileChildFlag, "--", inJob.mPlugin.string(), inJob.mFile.string()});
    std::string stage = "its process was started";
    while (const std::optional<std::string> line = child.ReadLine(deadline))
    {
        const Json told = Json::parse(*line, nullptr, false);
        if (told.contains("stage"))
            stage = told["stage"];
        else if (told.contains("refused"))
            return refused(told["refused"].get<std::string>());
        else if (told.contains("done"))
            return told["done"].get<std::string>();
    }
    return refused(HowChildEnded(child.Wait(deadline), stage, inJob.mLimit));
}
} // namespace

COutcome<std::string> RunProgramFileJob(const std::string& inProgram, const SProgramFileJob& inJob)
{
    if (inJob.mIsLoad)
        return RunChild(inProgram, inJob);
    auto file = CWholeFile::Open(inJob.mFile);
    if (!file)
        return file.Problem();
    // What the plug-in's process writes may be cut, so it goes elsewhere first.
    const CTemporaryFolder folder;
    SProgramFileJob job = inJob;
    job.mFile = std::filesystem::path(folder.Path()) / "programs";
    if (auto text = RunChild(inProgram, job); !text)
        return text;
    const auto bytes = ReadFileBytes(job.mFile.c_str());
    if (!bytes)
        return SProblem{fmt::format("'{}' cannot be read.", job.mFile.string())};
    auto done = file->Write(*bytes);
    if (done)
        done = file->Keep();
    if (!done)
        return done.Problem();
    return fmt::format("Wrote {}\n", inJob.mFile.string());
}

void RunProgramFileChild(const SProgramFileJob& inJob)
{
    const CChildReport report(inJob.mLimit);
    report.Send(Do(inJob, report));
    _exit(EXIT_SUCCESS); // what the plug-in does at an ordinary exit is not asked
}
