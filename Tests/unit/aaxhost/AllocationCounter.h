#pragma once

/** How often this program has allocated with `new` so far, on all threads. */
int CountAllocations() noexcept;
