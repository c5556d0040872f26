#pragma once
#include <cstdint>
#include <string>

class CVst2Plugin;

/** What the plug-in answers to an opcode that asks for a text: clean, and as much as a host may show. Changes
 * nothing. */
std::string ReadPluginText(const CVst2Plugin& inPlugin, std::int32_t inOpcode, long inIndex);

/** The plug-in's text of the value that a parameter has, with its unit: "160 ms". Changes nothing. */
std::string ReadValueText(const CVst2Plugin& inPlugin, long inIndex);
