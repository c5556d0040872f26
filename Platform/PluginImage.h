#pragma once
#include <memory>
#include <string>
#include <vector>

/**
 * A plug-in's file or bundle on disk, and the executable in it once that is loaded.
 *
 * Several may be made of one path; they share the executable, each with a claim to it of its own.
 *
 * Threads: one at a time; loading and unloading belong to the main thread.
 */
class IPluginImage
{
public:
    IPluginImage() = default;
    IPluginImage(const IPluginImage&) = delete;
    IPluginImage& operator=(const IPluginImage&) = delete;
    /** Leaves the executable loaded and the bundle held, for good: code of the plug-in may still run.
     * Unload() gives both up. */
    virtual ~IPluginImage() = default;

    /** @return false when the executable is missing, broken or of another architecture. */
    [[nodiscard]] virtual bool LoadExecutable() noexcept = 0;
    /** @return null when the executable is not loaded or exports no such symbol. */
    virtual void* FindSymbol(const char* inName) const noexcept = 0;
    /** Gives the executable up, which is unloaded when no other image has a claim to it, and releases the
     * bundle; nothing that this image has found may be called any more. */
    virtual void Unload() noexcept = 0;
};

/**
 * @param inUtf8Path absolute path of the plug-in: a shared object or a bundle folder, as the system has it.
 * @return null when no image can be made of that path; whether its executable loads is seen in
 * LoadExecutable().
 */
std::unique_ptr<IPluginImage> OpenPluginImage(const char* inUtf8Path);

/**
 * @param inUtf8Path a plug-in's path, as above.
 * @return its executables: the file itself, or those of a bundle folder by name, of which the first is
 * loaded. Empty where there is none, or where only the system knows.
 */
std::vector<std::string> PluginExecutables(const std::string& inUtf8Path);

/** @return the entry function's name that only this system's plug-ins use beside the common ones; null when
 * it has none. */
const char* PlatformEntrySymbol() noexcept;
