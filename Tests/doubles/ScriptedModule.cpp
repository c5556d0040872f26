#include "Tests/doubles/ScriptedModule.h"

#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

ScriptedModule::ScriptedModule(const std::string& inPath)
    : mPath(inPath.empty() ? SCRIPTED_PLUGIN_FILE : inPath)
{
    mHandle = dlopen(mPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const access = mHandle != nullptr ? dlsym(mHandle, "GetPluginScript") : nullptr;
    if (access == nullptr)
    {
        (void)std::fprintf(stderr, "no scripted plug-in: %s\n", mPath.c_str()); // the test can't go on
        std::abort();
    }
    mScript = reinterpret_cast<SPluginScript* (*)()>(access)();
    mScript->Reset();
}

ScriptedModule::~ScriptedModule() { Release(); }

void ScriptedModule::Release()
{
    if (mHandle != nullptr)
    {
        mScript->Reset(); // its hooks are the test's code and refer to the test's variables
        mScript = nullptr;
        (void)dlclose(mHandle); // what keeps the file loaded then is the test's subject
        mHandle = nullptr;
    }
}

std::string ScriptedModule::FileOf(const std::string& inName)
{
    return std::string(SCRIPTED_PLUGIN_FOLDER) + "/" + inName;
}

bool ScriptedModule::IsLoaded(const std::string& inPath)
{
    void* const handle = dlopen(inPath.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (handle != nullptr)
        (void)dlclose(handle); // gives back the reference that asking took
    return handle != nullptr;
}
