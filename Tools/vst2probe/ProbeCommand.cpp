#include "Tools/vst2probe/ProbeCommand.h"

#include "Tools/vst2probe/ProbePlugin.h"
#include "Tools/vst2probe/ProductChoice.h"
#include "Tools/vst2probe/Report.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace
{
/** A bundle may be given with a slash at its end. */
std::filesystem::path AbsolutePath(const std::string& inPath)
{
    const std::filesystem::path path = std::filesystem::absolute(inPath).lexically_normal();
    return path.has_filename() ? path : path.parent_path();
}
} // namespace

void AddProbeOptions(CLI::App& ioApp, SProbeArguments& outArguments)
{
    ioApp.add_option("PLUGIN", outArguments.plugin, "A VST 2 plug-in: a file or a bundle folder");
    ioApp
        .add_option("--name", outArguments.productName,
                    "Name of the product (default: made from the plug-in's)")
        ->check(
            [](const std::string& inName) {
                return IsProductName(inName) ? std::string()
                                             : "a product's name has letters, digits, '-' and '_' only";
            });
    ioApp.add_option("--timeout", outArguments.timeoutSeconds, "Seconds that each attempt may take")
        ->check(CLI::Range(0.01, 3600.0))
        ->capture_default_str();
    CLI::Option* const json = ioApp.add_flag("--json", outArguments.json, "Report as JSON");
    ioApp
        .add_flag("--configure-args", outArguments.configureArguments,
                  "Print the arguments that configure this product on cmake's command line, one a line")
        ->excludes(json);
    ioApp.add_option(kProbeChildOption, outArguments.childEntryVersion)->group(""); // not in the help
}

int RunProbeCommand(const std::string& inProgram, const SProbeArguments& inArguments)
{
    const std::chrono::milliseconds limit(static_cast<std::int64_t>(1000.0 * inArguments.timeoutSeconds));
    const std::filesystem::path plugin = AbsolutePath(inArguments.plugin);
    if (inArguments.childEntryVersion)
    {
        RunProbeChild(plugin, *inArguments.childEntryVersion, limit);
    }
    if (!std::filesystem::exists(plugin))
    {
        fmt::print(stderr, "There is no plug-in at {}.\n", plugin.string());
        return 1;
    }
    const SProbeResult result = ProbePlugin(inProgram, plugin, limit);
    if (!result.facts)
    {
        fmt::print(stderr, "{} cannot be wrapped: {}.\n", plugin.string(), result.refusal);
        return 1;
    }
    const SProductChoice choice = ChooseProduct(plugin, result, inArguments.productName);
    if (inArguments.configureArguments)
    {
        for (const std::string& argument : choice.ConfigureArguments())
        {
            fmt::print("{}\n", argument);
        }
    }
    else
    {
        fmt::print("{}",
                   inArguments.json ? JsonReport(*result.facts, choice) : TextReport(*result.facts, choice));
    }
    return 0;
}
