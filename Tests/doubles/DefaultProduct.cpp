#include "Source/plugins/ProductOptions.h"

// The options of a product that decides nothing itself.
const std::int32_t kEntryHostVersion = 0;
const bool kPortsFromCounts = false;
const bool kMidiInput = false;
