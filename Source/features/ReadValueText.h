#pragma once
#include <string>

class CVst2Plugin;

/** The plug-in's text of the value that a parameter has, with its unit: "160 ms". Changes nothing. */
std::string ReadValueText(const CVst2Plugin& inPlugin, long inIndex);
