#pragma once
#include <array>

/** A record with texts that a plug-in fills, and behind it as much room as plug-ins write beyond the fields.
 */
template <class Record>
struct SRoomyRecord
{
    Record mRecord{};
    std::array<char, 256> mRoom{}; // plug-ins take every text for one of 256 characters
};
