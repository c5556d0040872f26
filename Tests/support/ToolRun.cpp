#include "Tests/support/ToolRun.h"

#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"

#include <csignal>
#include <filesystem>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // not every system's headers have it

namespace
{
namespace fs = std::filesystem;

std::vector<char*> PointersTo(const std::vector<std::string>& inTexts)
{
    std::vector<char*> pointers;
    for (const std::string& text : inTexts)
        pointers.push_back(const_cast<char*>(text.c_str())); // the interface's type; nothing is written
    pointers.push_back(nullptr);
    return pointers;
}

/** @return its process; -1 where it does not start. */
pid_t Start(const std::vector<std::string>& inCommand, const std::vector<std::string>& inEnvironment,
            const std::string& inOutput, const std::string& inErrors)
{
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, inOutput.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, inErrors.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all); // whoever runs the tests may ignore interrupts
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t process = -1;
    if (posix_spawn(&process, inCommand[0].c_str(), &files, &attributes, PointersTo(inCommand).data(),
                    PointersTo(inEnvironment).data()) != 0)
        process = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return process;
}
} // namespace

SToolRun RunTool(const std::vector<std::string>& inCommand)
{
    const CTestFolder folder;
    std::vector<std::string> environment{"HOME=" + folder.Path().string()};
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (!std::string_view(*variable).starts_with("HOME="))
            environment.emplace_back(*variable);
    const pid_t process = Start(inCommand, environment, folder.File("out"), folder.File("err"));
    int status = 0;
    SToolRun run;
    if (process != -1 && waitpid(process, &status, 0) == process && WIFEXITED(status))
        run.mExit = WEXITSTATUS(status);
    run.mOutput = Contents(folder.File("out"));
    run.mErrors = Contents(folder.File("err"));
    return run;
}

SToolRun RunShell(const std::string& inCommand) { return RunTool({"/bin/sh", "-c", inCommand}); }

pid_t StartTool(const std::vector<std::string>& inCommand, const std::string& inErrors,
                const std::string& inTemporary)
{
    return Start(inCommand, {"TMPDIR=" + inTemporary}, "/dev/null", inErrors);
}

int ProcessesWith(const char* inFile, const std::string& inText)
{
    int count = 0;
    std::error_code none; // processes come and go
    for (const fs::directory_entry& process : fs::directory_iterator("/proc", none))
        count += process.path().filename() != std::to_string(getpid()) &&
                 Contents(process.path() / inFile).find(inText) != std::string::npos;
    return count;
}
