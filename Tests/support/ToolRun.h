#pragma once
#include <chrono>
#include <poll.h>
#include <string>
#include <sys/types.h>
#include <vector>

struct SToolRun
{
    int mExit = -1; // -1 where a signal ended it
    std::string mOutput;
    std::string mErrors;
};

/** Runs a program in a process of its own, its home a fresh folder, and waits for it. */
SToolRun RunTool(const std::vector<std::string>& inCommand);

/** Has a shell run a command line in the same way. */
SToolRun RunShell(const std::string& inCommand);

/**
 * Starts a program that the test is to end.
 * @param inErrors    file for its errors; what it prints otherwise goes nowhere.
 * @param inTemporary folder for its temporary files.
 * @return its process; -1 where it does not start.
 */
pid_t StartTool(const std::vector<std::string>& inCommand, const std::string& inErrors,
                const std::string& inTemporary);

/** @return how many processes have the text in a file of theirs below /proc, but for this one. */
int ProcessesWith(const char* inFile, const std::string& inText);

/** Whether the condition holds within some seconds. */
template <class Condition>
bool Becomes(Condition inCondition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!inCondition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        (void)poll(nullptr, 0, 5);
    }
    return true;
}
