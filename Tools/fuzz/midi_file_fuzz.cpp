#include "Tools/aaxhost/player/MidiFile.h"

#include <cmath>
#include <cstdlib>

// What is read are whole channel messages in the order of their times.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    const std::vector<std::uint8_t> bytes(inData, inData + inSize); // memory that ends where the file does
    const auto song = MidiFromBytes(bytes, "fuzz");
    if (!song)
        return 0;
    double last = 0.0;
    for (const SMidiEvent& event : song->mEvents)
    {
        const bool isWhole = event.mLength >= 2 && event.mLength <= 3 && event.mBytes[0] >= 0x80 &&
                             event.mBytes[0] < 0xF0 && event.mBytes[1] < 0x80 && event.mBytes[2] < 0x80;
        if (!isWhole || !std::isfinite(event.mSeconds) || event.mSeconds < last)
            std::abort();
        last = event.mSeconds;
    }
    return 0;
}
