#include "Tools/vst2driver/LoadFault.h"

std::string LoadFault(const std::string& /*inPlugin*/)
{
    return "its executable cannot be loaded: it is missing, broken, made for another processor, or needs a "
           "library that is missing";
}
