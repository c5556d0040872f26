#pragma once
#include <filesystem>
#include <string>
#include <vector>

struct SToolRun
{
    int mExit = -1; // -1 where a signal ended it
    std::string mOutput;
    std::string mErrors;
};

/** Runs a program in a process of its own, its home a fresh folder, and waits for it. */
SToolRun RunTool(const std::vector<std::string>& inCommand);

/** Of a file; empty where there is none. */
std::string Contents(const std::filesystem::path& inFile);
