#include "Tools/aaxhost/window/CVirtualDisplay.h"

CVirtualDisplay::~CVirtualDisplay() = default;

bool CVirtualDisplay::IsInstalled() { return false; }

std::string CVirtualDisplay::Start() { return "there is no such server on this system"; }
