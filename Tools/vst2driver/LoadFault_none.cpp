#include "Tools/vst2driver/LoadFault.h"

#include "Tools/macho_slices/MacBundle.h"
#include "Tools/macho_slices/MachOSlices.h"

#include <fmt/format.h>

std::string LoadFault(const std::string& inPlugin)
{
    const std::string executable = FindMacExecutable(inPlugin);
    if (executable.empty())
        return "there is no executable in it, in Contents/MacOS";
    const SMachOSlices slices = ReadMachOSlices(executable);
    if (!slices.mFault.empty())
        return "its executable " + slices.mFault;
    return fmt::format(
        "its executable, for {}, cannot be loaded: it is broken, made for another processor, or "
        "needs a library that is missing",
        slices.ProcessorNames());
}
