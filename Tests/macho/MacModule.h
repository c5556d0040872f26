#pragma once
#include "Tests/support/CTestFolder.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/player/CModule.h"

#include <memory>
#include <string>

class CMacSystem;

/** @return the bundle of an example product in a build's folder. */
std::string ModuleBundle(const std::string& inBuild, const std::string& inName);
/** Loads a bundle's executable into the system and starts it as a host does. Throws CMachOError. */
COutcome<std::unique_ptr<CModule>> StartMacModule(CMacSystem& ioSystem, const std::string& inBundle,
                                                  CHostLog& ioLog);

/** A copy of an example product with another plug-in in it, in a folder of its own that goes with this. */
class CMacModuleCopy
{
public:
    /** @param inPlugin a bundle that the cross build made for tests, such as "faulty_ReturnNull.vst". */
    explicit CMacModuleCopy(const std::string& inPlugin);
    std::string Path() const { return mFolder.File("DelayAdapter.aaxplugin"); }

private:
    CTestFolder mFolder; // without links: the module is told this path as its own
};
