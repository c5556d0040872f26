#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/DescriptionReport.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"

#include <fmt/format.h>
#include <memory>

namespace
{
constexpr double kDescribeRate = 44100.0; // Hz; what is printed does not depend on it

struct SDescribeOptions
{
    std::string mModule;
    bool mJson = false;
};

int Describe(const SDescribeOptions& inOptions)
{
    CHostLog log;
    const auto module = CModule::Open(inOptions.mModule, log);
    if (!module)
        return Fail(module.Problem());

    SModuleReport report;
    report.mPath = inOptions.mModule;
    report.mInterfaceVersion = (*module)->InterfaceVersion();
    report.mDescription = (*module)->Description();
    report.mCalls = log.Calls(); // an instance makes calls of its own

    const auto instance = CInstance::Create(**module, kDescribeRate);
    if (!instance)
        return Fail(instance.Problem());
    report.mLatency = (*instance)->Host().Controller().State().mSignalLatency;
    report.mInputChannels = (*instance)->InputChannels();
    report.mOutputChannels = (*instance)->OutputChannels();
    report.mParameters = (*instance)->ListParameters();

    fmt::print("{}", inOptions.mJson ? ReportAsJson(report) : ReportAsText(report));
    return kExitSuccess;
}
} // namespace

void AddCommandDescribe(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SDescribeOptions>();
    CLI::App* command = ioApp.add_subcommand("describe", "Print what a module tells the host about itself");
    command->add_option("MODULE", options->mModule, "Bundle folder or module file")->required();
    command->add_flag("--json", options->mJson, "Print it as JSON");
    command->callback([options, &outAction] { outAction = [options] { return Describe(*options); }; });
}
