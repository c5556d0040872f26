#pragma once
#include "Platform/AutoreleasePool.h"

/** Scope of an autorelease pool, for code that makes or frees native views. */
using AAX_CAutoreleasePool = CPlatformAutoreleasePool;
