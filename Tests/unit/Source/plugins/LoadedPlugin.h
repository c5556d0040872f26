#pragma once
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Tests/doubles/ScriptedModule.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

/** A scripted plug-in, and a host that loads it. */
class LoadedPlugin : public testing::Test
{
protected:
    CVst2Plugin& Load()
    {
        CVst2Plugin* const plugin = mHost.LoadPlugin(mModule.Path());
        if (plugin == nullptr)
            throw std::runtime_error("the scripted plug-in does not load");
        (void)Script().TakeLog(); // what loading sent
        return *plugin;
    }
    SPluginScript& Script() { return mModule.Script(); }

    ScriptedModule mModule;
    CVst2Host mHost;
};
