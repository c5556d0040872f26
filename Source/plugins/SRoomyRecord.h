#pragma once
#include <array>

/** A record or a text that a plug-in fills, and behind it as much room as plug-ins write beyond its end. */
template <class Record>
struct SRoomyRecord
{
    Record mRecord{};
    std::array<char, 768> mRoom{}; // plug-ins take every text for one of 256 characters, or do not count
};
