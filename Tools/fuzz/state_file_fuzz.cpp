#include "Tools/aaxhost/player/ChunkReport.h"
#include "Tools/aaxhost/player/StateFile.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

// What was read can be explained, and written again it is the same file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    const auto* const first = reinterpret_cast<const std::byte*>(inData);
    const std::vector<std::byte> bytes(first, first + inSize); // memory that ends where the file does
    const auto state = StateFromBytes(bytes);
    if (!state)
        return 0;
    if (StateReport(*state).empty() || !std::ranges::equal(StateToBytes(*state), bytes))
        std::abort();
    return 0;
}
