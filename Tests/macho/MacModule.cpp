#include "Tests/macho/MacModule.h"

#include "Tests/macho/TestBundles.h"
#include "Tools/macho_loader/doubles/CMacSystem.h"

#include <filesystem>
#include <type_traits>

namespace fs = std::filesystem;

namespace
{
SModuleEntries EntriesOf(const CMachOImage& inImage)
{
    SModuleEntries entries;
    const auto find = [&](auto& outEntry, const char* inName)
    {
        outEntry =
            ImportFrom<std::remove_pointer_t<std::remove_reference_t<decltype(outEntry)>>>(inImage, inName);
    };
    find(entries.mRegisterPlugin, "ACFRegisterPlugin");
    find(entries.mRegisterComponent, "ACFRegisterComponent");
    find(entries.mGetClassFactory, "ACFGetClassFactory");
    find(entries.mCanUnloadNow, "ACFCanUnloadNow");
    find(entries.mStartup, "ACFStartup");
    find(entries.mShutdown, "ACFShutdown");
    find(entries.mGetSDKVersion, "ACFGetSDKVersion");
    return entries;
}
} // namespace

std::string ModuleBundle(const std::string& inBuild, const std::string& inName)
{
    return inBuild + "/modules/" + inName + ".aaxplugin";
}

COutcome<std::unique_ptr<CModule>> StartMacModule(CMacSystem& ioSystem, const std::string& inBundle,
                                                  CHostLog& ioLog)
{
    return CModule::Start(EntriesOf(ioSystem.Loader().Load(ExecutableIn(inBundle))), ioLog);
}

CMacModuleCopy::CMacModuleCopy(const std::string& inPlugin)
{
    fs::copy(ModuleBundle(AAXADAPTER_MACOS_BUILD, "DelayAdapter"), Path(), fs::copy_options::recursive);
    const fs::path source = fs::path(Path()) / "Contents/Resources/source.vst";
    fs::remove_all(source);
    fs::copy(TestBundle(inPlugin), source, fs::copy_options::recursive);
}
