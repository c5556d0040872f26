#pragma once
#include <string>

/**
 * @param inModule a bundle folder or the module file in it.
 * @return the shared object of the plug-in that the module wraps; empty where there is none.
 */
std::string WrappedPlugin(const std::string& inModule);
