#include "Tools/aaxhost/lib/MidiFileCheck.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace
{
using Bytes = std::span<const std::uint8_t>;

/** Takes bytes from the front; asks for more than there is end in no value. */
class CByteWalker
{
public:
    explicit CByteWalker(Bytes inBytes) : mBytes(inBytes) {}

    bool AtEnd() const { return mBytes.empty(); }
    std::optional<std::uint8_t> Peek() const
    {
        return mBytes.empty() ? std::nullopt : std::optional(mBytes.front());
    }
    std::optional<Bytes> Take(std::size_t inCount)
    {
        if (inCount > mBytes.size())
            return std::nullopt;
        const Bytes taken = mBytes.first(inCount);
        mBytes = mBytes.subspan(inCount);
        return taken;
    }
    /** Big-endian, up to four bytes. */
    std::optional<std::uint32_t> TakeNumber(std::size_t inCount)
    {
        const auto bytes = Take(inCount);
        if (!bytes)
            return std::nullopt;
        std::uint32_t number = 0;
        for (const std::uint8_t byte : *bytes)
            number = number << 8 | byte;
        return number;
    }
    /** Seven bits a byte, at most four bytes. */
    std::optional<std::uint32_t> TakeVariableNumber()
    {
        std::uint32_t number = 0;
        for (int i = 0; i < 4; ++i)
        {
            const auto byte = Take(1);
            if (!byte)
                return std::nullopt;
            number = number << 7 | (byte->front() & 0x7FU);
            if (byte->front() < 0x80)
                return number;
        }
        return std::nullopt;
    }

private:
    Bytes mBytes;
};

bool StartsChunk(Bytes inTag, const char* inName) { return std::memcmp(inTag.data(), inName, 4) == 0; }

constexpr std::uint8_t kMetaEndOfTrack = 0x2F;
constexpr std::uint8_t kMetaTempo = 0x51;
constexpr std::uint8_t kMetaTimeSignature = 0x58;

/** @return the type, or nothing when the event is broken or of the wrong size. */
std::optional<std::uint8_t> WalkMeta(CByteWalker& ioTrack)
{
    const auto type = ioTrack.TakeNumber(1);
    const auto size = ioTrack.TakeVariableNumber();
    const auto data = size ? ioTrack.Take(*size) : std::nullopt;
    if (!type || *type > 0x7F || !data)
        return std::nullopt;
    const bool allZero = std::all_of(data->begin(), data->end(), [](std::uint8_t byte) { return byte == 0; });
    if ((*type == kMetaTempo && (data->size() != 3 || allZero)) ||
        (*type == kMetaTimeSignature && data->size() != 4))
        return std::nullopt;
    return static_cast<std::uint8_t>(*type);
}

bool WalkChannelMessage(CByteWalker& ioTrack, std::uint8_t inStatus)
{
    const std::uint8_t kind = inStatus & 0xF0U;
    const auto data = ioTrack.Take(kind == 0xC0 || kind == 0xD0 ? 1 : 2);
    return data && std::all_of(data->begin(), data->end(), [](std::uint8_t byte) { return byte < 0x80; });
}

bool WalkSystemExclusive(CByteWalker& ioTrack)
{
    const auto size = ioTrack.TakeVariableNumber();
    return size && *size > 0 && ioTrack.Take(*size);
}

/** A track is whole when it ends with its end-of-track event and has nothing behind it. */
bool IsWholeTrack(Bytes inBytes)
{
    CByteWalker track(inBytes);
    std::uint8_t running = 0; // 0: no status to be taken over
    while (track.TakeVariableNumber())
    {
        auto status = track.Peek();
        if (!status)
            return false;
        if (*status < 0x80)
            status = running;
        else
            (void)track.Take(1); // just seen
        if (*status == 0xFF)
        {
            const auto type = WalkMeta(track);
            if (!type)
                return false;
            if (*type == kMetaEndOfTrack)
                return track.AtEnd();
            running = 0;
        }
        else if (*status == 0xF0) // an escape, 0xF7, is one of the things that libsmf asserts on
        {
            if (!WalkSystemExclusive(track))
                return false;
            running = 0;
        }
        else if (*status < 0x80 || *status > 0xF0 || !WalkChannelMessage(track, *status))
            return false;
        else
            running = *status;
    }
    return false;
}
} // namespace

bool IsWholeMidiFile(std::span<const std::uint8_t> inBytes)
{
    CByteWalker file(inBytes);
    const auto tag = file.Take(4);
    const auto headerSize = file.TakeNumber(4);
    const auto format = file.TakeNumber(2);
    const auto trackCount = file.TakeNumber(2);
    const auto division = file.TakeNumber(2);
    if (!division || !StartsChunk(*tag, "MThd") || *headerSize != 6 || *format > 1 || *trackCount == 0)
        return false;
    if (*division == 0 || *division > 0x7FFF) // time code divisions are not read
        return false;
    for (std::uint32_t i = 0; i < *trackCount; ++i)
    {
        const auto trackTag = file.Take(4);
        const auto size = file.TakeNumber(4);
        const auto track = size ? file.Take(*size) : std::nullopt;
        if (!track || !StartsChunk(*trackTag, "MTrk") || !IsWholeTrack(*track))
            return false;
    }
    return true; // what follows the tracks is of no concern
}
