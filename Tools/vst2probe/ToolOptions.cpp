#include "Source/plugins/ProductOptions.h"

// This tool makes no product: it names a host version inside every entry, since most plug-ins want one.
const std::int32_t kEntryHostVersion = 2400;
const bool kPortsFromCounts = false;
const bool kMidiInput = false;
