#include "Tools/aaxhost/player/CModule.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/support/CStage.h"

#include <array>
#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>
#include <system_error>

namespace fs = std::filesystem;

namespace
{
/** The module file of a bundle folder, or the path itself when it is a file. */
COutcome<fs::path> FindModuleFile(const fs::path& inPath)
{
    std::error_code ignored; // each question below is answered with no when it cannot be answered
    const fs::path path = fs::absolute(inPath, ignored).lexically_normal();
    if (fs::is_regular_file(path, ignored))
        return path;
    if (!fs::is_directory(path, ignored))
        return SProblem{fmt::format("There is no module at '{}'.", inPath.string())};
    const fs::path folder = path.has_filename() ? path : path.parent_path(); // a final / was given
    const std::string name = folder.stem().string();
    for (const fs::path& file : {folder / "Contents" / AAXADAPTER_EXECUTABLE_FOLDER / (name + ".so"),
                                 folder / "Contents" / "MacOS" / name})
        if (fs::is_regular_file(file, ignored))
            return file;
    return SProblem{fmt::format("The folder '{}' is no module bundle: it has no Contents/{}/{}.so.",
                                inPath.string(), AAXADAPTER_EXECUTABLE_FOLDER, name)};
}

/** @return false and the name when the image does not export it. */
template <class Function>
bool FindEntry(void* inImage, const char* inName, Function& outEntry, std::string& outMissing)
{
    outEntry = reinterpret_cast<Function>(dlsym(inImage, inName));
    if (outEntry == nullptr)
        outMissing = inName;
    return outEntry != nullptr;
}

COutcome<SModuleEntries> FindEntries(void* inImage, const fs::path& inFile)
{
    SModuleEntries entries;
    std::string missing;
    if (FindEntry(inImage, "ACFRegisterPlugin", entries.mRegisterPlugin, missing) &&
        FindEntry(inImage, "ACFRegisterComponent", entries.mRegisterComponent, missing) &&
        FindEntry(inImage, "ACFGetClassFactory", entries.mGetClassFactory, missing) &&
        FindEntry(inImage, "ACFCanUnloadNow", entries.mCanUnloadNow, missing) &&
        FindEntry(inImage, "ACFStartup", entries.mStartup, missing) &&
        FindEntry(inImage, "ACFShutdown", entries.mShutdown, missing) &&
        FindEntry(inImage, "ACFGetSDKVersion", entries.mGetSDKVersion, missing))
        return entries;
    return SProblem{fmt::format("'{}' is no module: it does not export {}.", inFile.string(), missing)};
}

/** A sentence more on what helps, with a space ahead; empty where nothing is known to. */
std::string HelpFor(ACFRESULT inResult)
{
    if (inResult != kAAX_ErrorNullObject)
        return {};
    return " That is its answer where the plug-in in it does not load: `vst2probe` with the bundle's "
           "Contents/Resources/source.vst says why not, and which option the product needs, which most often "
           "is ENTRY_VERSION 2400.";
}
} // namespace

void CModule::SImageCloser::operator()(void* inImage) const { dlclose(inImage); }

CModule::CModule(ImagePtr inImage, const SModuleEntries& inEntries, CHostLog& inLog)
    : mImage(std::move(inImage)), mEntries(inEntries), mHost(inLog)
{
}

CModule::~CModule()
{
    mDefinition.Reset();
    if (!mStarted)
        return;
    (void)mEntries.mShutdown(mHost.Unknown()); // there is nothing left to undo when it fails
    if (LiveObjects() != 0)
        (void)mImage.release(); // code that live objects still need stays loaded
}

COutcome<std::unique_ptr<CModule>> CModule::Open(const std::string& inPath, CHostLog& inLog)
{
    const auto file = FindModuleFile(inPath);
    if (!file)
        return file.Problem();
    const CStage stage("the module was being opened");
    ImagePtr image(dlopen(file->c_str(), RTLD_NOW | RTLD_LOCAL));
    if (image == nullptr)
    {
        const char* reason = dlerror(); // the loader's own text, once per failure
        return SProblem{fmt::format("The module '{}' cannot be loaded: {}.", file->string(),
                                    reason != nullptr ? reason : "no reason given")};
    }
    const auto entries = FindEntries(image.get(), *file);
    if (!entries)
        return entries.Problem();
    std::unique_ptr<CModule> module(new CModule(std::move(image), *entries, inLog));
    module->mFile = file->string();
    return Begin(std::move(module));
}

COutcome<std::unique_ptr<CModule>> CModule::Start(const SModuleEntries& inEntries, CHostLog& inLog)
{
    return Begin(std::unique_ptr<CModule>(new CModule(nullptr, inEntries, inLog)));
}

COutcome<std::unique_ptr<CModule>> CModule::Begin(std::unique_ptr<CModule> inModule)
{
    const SModuleEntries& entries = inModule->mEntries;
    IACFUnknown* const host = inModule->mHost.Unknown();
    if (const ACFRESULT result = entries.mGetSDKVersion(&inModule->mInterfaceVersion); ACFFailed(result))
        return SProblem{fmt::format("The module does not say its version: ACFGetSDKVersion answered {}.",
                                    NameOfResult(result))};
    if (const ACFRESULT result = entries.mStartup(host); ACFFailed(result))
        return SProblem{
            fmt::format("The module does not start: ACFStartup answered {}.", NameOfResult(result))};
    inModule->mStarted = true;

    IACFPluginDefinition* definition = nullptr;
    const ACFRESULT result = entries.mRegisterPlugin(host, &definition);
    if (ACFFailed(result))
        return SProblem{fmt::format("The module refuses to describe itself: ACFRegisterPlugin answered {}.{}",
                                    NameOfResult(result), HelpFor(result))};
    if (definition == nullptr)
        return SProblem{"The module hands over no plug-in definition although ACFRegisterPlugin succeeded."};
    inModule->mDefinition = ACFPtr<IACFPluginDefinition>(definition);
    definition->Release(); // the reference that came with it; the pointer above has one of its own
    if (inModule->Description().mEffects.empty())
        return SProblem{"The module describes no effect."};
    return inModule;
}

std::string CModule::PluginPath() const
{
    return fs::path(mFile).parent_path().parent_path() / "Resources" / "source.vst";
}

int CModule::LiveObjects() { return mEntries.mCanUnloadNow(mHost.Unknown()); }
