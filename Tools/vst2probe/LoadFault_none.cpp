#include "Tools/vst2probe/LoadFault.h"

std::vector<std::string> PluginExecutables(const std::string& /*inPlugin*/) { return {}; }

std::string LoadFault(const std::string& /*inPlugin*/)
{
    return "its executable cannot be loaded: it is missing, broken, made for another processor, or needs a "
           "library that is missing";
}
