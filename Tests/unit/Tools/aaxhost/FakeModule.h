#pragma once
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"

#include <cstdlib>
#include <memory>
#include <string>

/** The module file that fake_module.cpp makes. */
inline std::string FakeModuleFile() { return FAKE_MODULE_FILE; }

/** Makes the fake module misbehave as long as it lives. */
class CFakeFault
{
public:
    explicit CFakeFault(const char* inName) { setenv("FAKE_MODULE_FAULT", inName, 1); }
    CFakeFault(const CFakeFault&) = delete;
    CFakeFault& operator=(const CFakeFault&) = delete;
    ~CFakeFault() { unsetenv("FAKE_MODULE_FAULT"); }
};
