#pragma once
#include "Interfaces/AAX/AAX_Types.h"

/**
 * What the description registers as the component's render callback.
 *
 * Not part of the adapter, so that a product can be linked with another one: `Source/guard/`.
 */
AAX_CProcessProc RenderEntry() noexcept;
