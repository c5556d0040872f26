#pragma once
#include <functional>

namespace CLI
{
class App;
}

/** The chosen command leaves here what is to be done after the command line was read. */
using CommandAction = std::function<int()>;

/** `bench`: measures what a module costs, beside the plug-in that it wraps. */
void AddCommandBench(CLI::App& ioApp, CommandAction& outAction);
/** `aaxhost check`: says whether a module is fit to ship, and what is wrong with it. */
void AddCommandCheck(CLI::App& ioApp, CommandAction& outAction);
/** `describe`: prints what a module tells the host, and the parameters of an instance. */
void AddCommandDescribe(CLI::App& ioApp, CommandAction& outAction);
/** `editor`: opens an instance's editor in a window. */
void AddCommandEditor(CLI::App& ioApp, CommandAction& outAction);
/** `render`: plays an instance offline into a WAV file. */
void AddCommandRender(CLI::App& ioApp, CommandAction& outAction);
/** `state`: saves an instance's state into a file, loads one, or explains it. */
void AddCommandState(CLI::App& ioApp, CommandAction& outAction);
/** `survey`: checks every plug-in of some folders as a module. */
void AddCommandSurvey(CLI::App& ioApp, CommandAction& outAction);
