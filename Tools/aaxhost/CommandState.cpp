#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/ChunkReport.h"
#include "Tools/aaxhost/player/StateFile.h"
#include "Tools/support/CWholeFile.h"

#include <fmt/format.h>
#include <memory>

namespace
{
constexpr double kStateRate = 44100.0; // Hz; a state does not depend on it

struct SStateOptions
{
    std::string mModule;
    std::string mFile;
    EAnswers mAnswers = EAnswers::Late;
};

/** A module and one instance of it. */
struct SSubject
{
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
};

COutcome<SDone> Open(const SStateOptions& inOptions, SSubject& outSubject)
{
    auto module = CModule::Open(inOptions.mModule, outSubject.mLog);
    if (!module)
        return module.Problem();
    outSubject.mModule = std::move(*module);
    auto instance = CInstance::Create(*outSubject.mModule, kStateRate, {.mAnswers = inOptions.mAnswers});
    if (!instance)
        return instance.Problem();
    outSubject.mInstance = std::move(*instance);
    return SDone{};
}

int Save(const SStateOptions& inOptions)
{
    if (const auto writable = CheckWritable(inOptions.mFile); !writable)
        return Fail(writable.Problem());
    SSubject subject;
    if (const auto opened = Open(inOptions, subject); !opened)
        return Fail(opened.Problem());
    if (const auto answered = RunCycle(*subject.mInstance); !answered)
        return Fail(answered.Problem());
    const auto state = TakeState(*subject.mModule, *subject.mInstance);
    if (!state)
        return Fail(state.Problem());
    if (const auto written = WriteStateFile(inOptions.mFile, *state); !written)
        return Fail(written.Problem());
    fmt::print("Wrote {}: {} chunks of {}\n", inOptions.mFile, state->mChunks.size(),
               NameOfProduct(state->mProduct));
    return kExitSuccess;
}

int Load(const SStateOptions& inOptions)
{
    const auto state = ReadStateFile(inOptions.mFile);
    if (!state)
        return Fail(state.Problem());
    SSubject subject;
    if (const auto opened = Open(inOptions, subject); !opened)
        return Fail(opened.Problem());
    if (const auto given = GiveState(*subject.mModule, *subject.mInstance, *state); !given)
        return Fail(given.Problem());
    if (const auto answered = RunCycle(*subject.mInstance); !answered)
        return Fail(answered.Problem());
    fmt::print("Loaded {}: {} chunks of {}\n", inOptions.mFile, state->mChunks.size(),
               NameOfProduct(state->mProduct));
    for (const SParameterInfo& parameter : subject.mInstance->ListParameters())
        fmt::print("  {:<16} {:<8} {}\n", parameter.mID, parameter.mValueText, parameter.mName);
    return kExitSuccess;
}

/** What a host's compare light shows of a fresh instance, and once it has the state. */
COutcome<SDone> ShowCompareLight(const SSubject& inSubject, const SInstanceState& inState)
{
    const auto fresh = IsAsSaved(*inSubject.mInstance, inState);
    if (!fresh)
        return fresh.Problem();
    if (auto given = GiveState(*inSubject.mModule, *inSubject.mInstance, inState); !given)
        return given;
    if (auto answered = RunCycle(*inSubject.mInstance); !answered)
        return answered;
    const auto loaded = IsAsSaved(*inSubject.mInstance, inState);
    if (!loaded)
        return loaded.Problem();
    const auto light = [](bool isSame) { return isSame ? "off" : "on"; };
    fmt::print("Compare light: {} for a fresh instance, {} when it has this state\n", light(*fresh),
               light(*loaded));
    return SDone{};
}

int Show(const SStateOptions& inOptions)
{
    const auto state = ReadStateFile(inOptions.mFile);
    if (!state)
        return Fail(state.Problem());
    SSubject subject;
    if (const auto opened = Open(inOptions, subject); !opened)
        return Fail(opened.Problem());
    if (const auto own = CheckProduct(*subject.mModule, *state); !own)
        return Fail(own.Problem());
    fmt::print("{}", StateReport(*state));
    const auto shown = ShowCompareLight(subject, *state);
    return shown ? kExitSuccess : Fail(shown.Problem());
}
} // namespace

void AddCommandState(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SStateOptions>();
    CLI::App* command = ioApp.add_subcommand("state", "Save, load or explain the state of an instance");
    command->add_option("MODULE", options->mModule, "Bundle folder or module file")->required();
    AddAnswersOption(*command, options->mAnswers);
    command->require_subcommand(1);
    const auto add = [&](const char* inName, const char* inHelp, int (*inRun)(const SStateOptions&))
    {
        CLI::App* what = command->add_subcommand(inName, inHelp);
        what->fallthrough(); // options may also stand behind it
        what->add_option("FILE", options->mFile, "State file")->required();
        what->callback([=, &outAction] { outAction = [=] { return inRun(*options); }; });
    };
    add("save", "Write the state of a fresh instance", &Save);
    add("load", "Give a state to a fresh instance and print its parameters", &Load);
    add("show", "Explain a state chunk by chunk", &Show);
}
