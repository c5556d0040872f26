#pragma once
#include "Tests/doubles/ScriptedEffect.h"

#include <string>

/** Holds a scripted plug-in's file open and gives its script, emptied at both ends, to a test. */
class ScriptedModule
{
public:
    /** @param inPath the file to open; the plain scripted plug-in when left out. Aborts when that fails. */
    explicit ScriptedModule(const std::string& inPath = {});
    ScriptedModule(const ScriptedModule&) = delete;
    ScriptedModule& operator=(const ScriptedModule&) = delete;
    ~ScriptedModule();

    SPluginScript& Script() { return *mScript; }
    const char* Path() const { return mPath.c_str(); }
    /** Lets go of the file, and with it of the script, before this object ends. */
    void Release();

    /** @return the path of a file beside the scripted plug-in, such as "scripted_plugin_no_entry.so". */
    static std::string FileOf(const std::string& inName);
    /** @return whether the file is loaded into this process. */
    static bool IsLoaded(const std::string& inPath);

private:
    std::string mPath;
    void* mHandle = nullptr;
    SPluginScript* mScript = nullptr;
};
