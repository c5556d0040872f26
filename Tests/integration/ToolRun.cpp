#include "Tests/integration/ToolRun.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

std::string Contents(const fs::path& inFile)
{
    std::ostringstream text; // also of a process that ends meanwhile, whose file cannot be read then
    text << std::ifstream(inFile, std::ios::binary).rdbuf();
    return text.str();
}

SToolRun RunTool(const std::vector<std::string>& inCommand)
{
    std::string folder = (fs::temp_directory_path() / "tool_XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr)
        return {};
    const std::string output = folder + "/out";
    const std::string errors = folder + "/err";
    std::vector<char*> arguments;
    for (const std::string& argument : inCommand)
        arguments.push_back(const_cast<char*>(argument.c_str())); // the interface's type; nothing is written
    arguments.push_back(nullptr);
    const std::string home = "HOME=" + folder;
    std::vector<char*> environment{const_cast<char*>(home.c_str())};
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (!std::string_view(*variable).starts_with("HOME="))
            environment.push_back(*variable);
    environment.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT, 0600);
    pid_t child = 0;
    int status = 0;
    SToolRun run;
    if (posix_spawn(&child, arguments[0], &files, nullptr, arguments.data(), environment.data()) == 0 &&
        waitpid(child, &status, 0) == child && WIFEXITED(status))
        run.mExit = WEXITSTATUS(status);
    posix_spawn_file_actions_destroy(&files);
    run.mOutput = Contents(output);
    run.mErrors = Contents(errors);
    fs::remove_all(folder);
    return run;
}

pid_t StartTool(const std::vector<std::string>& inCommand, const std::string& inErrors,
                const std::string& inTemporary)
{
    std::vector<char*> arguments;
    for (const std::string& argument : inCommand)
        arguments.push_back(const_cast<char*>(argument.c_str())); // the interface's type; nothing is written
    arguments.push_back(nullptr);
    std::string temporary = "TMPDIR=" + inTemporary;
    char* environment[] = {temporary.data(), nullptr};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, inErrors.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all); // whoever runs the tests may ignore interrupts
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t process = -1;
    if (posix_spawn(&process, arguments[0], &files, &attributes, arguments.data(), environment) != 0)
        process = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return process;
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
