#pragma once
#include <string>

/**
 * @param inModule a bundle folder or the module file in it.
 * @return where the plug-in that the module wraps stands, a file or a bundle folder; absolute.
 */
std::string WrappedPlugin(const std::string& inModule);
