#include "Tools/vst2probe/ProgramFile.h"

#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Tools/vst2probe/CChildProcess.h"
#include "Tools/vst2probe/ChildReport.h"

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
    CVst2Plugin* const plugin = host.LoadPlugin(inJob.plugin.c_str());
    if (plugin == nullptr)
        return {{"refused", "it cannot be loaded"}};
    const char* const file = inJob.file.c_str();
    if (inJob.isLoad)
    {
        inReport.Send({{"stage", "it was being given the file"}});
        if (!(inJob.isBank ? plugin->ReadBank(file) : plugin->ReadPreset(file)))
            return {{"refused",
                     fmt::format("{} is missing, broken, another plug-in's or of the other kind", file)}};
        return {{"done", ParameterList(*plugin)}};
    }
    inReport.Send({{"stage", "it was being asked for its state"}});
    if (!(inJob.isBank ? plugin->WriteBank(file) : plugin->SavePreset(file)))
        return {{"refused", fmt::format("{} cannot be written", file)}};
    return {{"done", fmt::format("Wrote {}\n", file)}};
}
} // namespace

std::optional<std::string> RunProgramFileJob(const std::string& inProgram, const SProgramFileJob& inJob,
                                             std::string& outText)
{
    const auto deadline = CChildProcess::Clock::now() + inJob.limit;
    CChildProcess child(inProgram, {inJob.isBank ? "bank" : "preset", inJob.isLoad ? "load" : "save",
                                    kProgramFileChildFlag, "--", inJob.plugin.string(), inJob.file.string()});
    std::string stage = "its process was started";
    while (const std::optional<std::string> line = child.ReadLine(deadline))
    {
        const Json told = Json::parse(*line, nullptr, false);
        if (told.contains("stage"))
            stage = told["stage"];
        else if (told.contains("refused"))
            return told["refused"].get<std::string>();
        else if (told.contains("done"))
        {
            outText = told["done"];
            return std::nullopt;
        }
    }
    return HowChildEnded(child.Wait(deadline), stage, inJob.limit);
}

void RunProgramFileChild(const SProgramFileJob& inJob)
{
    const CChildReport report(inJob.limit);
    report.Send(Do(inJob, report));
    _exit(EXIT_SUCCESS); // what the plug-in does at an ordinary exit is not asked
}
