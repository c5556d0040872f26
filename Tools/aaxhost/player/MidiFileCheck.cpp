#include "Tools/aaxhost/player/MidiFileCheck.h"

#include "Tools/aaxhost/player/MidiMeta.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>
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

constexpr const char* kDamaged = "is damaged or cut short";

/** A track is whole when it ends with its end-of-track event and has nothing behind it.
 * @return what is wrong, or null. */
const char* FindTrackFault(Bytes inBytes)
{
    CByteWalker track(inBytes);
    std::uint8_t running = 0; // 0: no status to be taken over
    while (track.TakeVariableNumber())
    {
        auto status = track.Peek();
        if (!status)
            return kDamaged;
        if (*status < 0x80)
            status = running;
        else
            (void)track.Take(1); // just seen
        if (*status == 0xFF)
        {
            const auto type = WalkMeta(track);
            if (!type)
                return kDamaged;
            if (*type == kMetaEndOfTrack)
                return track.AtEnd() ? nullptr : kDamaged;
            running = 0;
        }
        else if (*status == 0xF7) // one of the things that libsmf asserts on
            return "holds raw bytes (an escape event, F7), which are not read, so save it without them";
        else if (*status == 0xF0)
        {
            if (!WalkSystemExclusive(track))
                return kDamaged;
            running = 0;
        }
        else if (*status < 0x80 || *status > 0xF0 || !WalkChannelMessage(track, *status))
            return kDamaged;
        else
            running = *status;
    }
    return kDamaged;
}
} // namespace

double TimeCodeTicks(std::uint16_t inDivision)
{
    if (inDivision < 0x8000)
        return 0.0;
    const int frames =
        0x100 - (inDivision >> 8); // the upper byte is the negative number of frames in a second
    return (frames == 29 ? 30000.0 / 1001.0 : frames) * (inDivision & 0xFF);
}

std::string FindMidiFileFault(std::span<const std::uint8_t> inBytes)
{
    CByteWalker file(inBytes);
    const auto tag = file.Take(4);
    const auto headerSize = file.TakeNumber(4);
    const auto format = file.TakeNumber(2);
    const auto trackCount = file.TakeNumber(2);
    const auto division = file.TakeNumber(2);
    if (!tag || !StartsChunk(*tag, "MThd"))
        return "is no Standard MIDI File";
    if (!division || *headerSize != 6)
        return kDamaged;
    if (*format == 2)
        return "is of format 2, a set of pieces without a common time, so save one of them as format 0";
    if (*format > 2 || *trackCount == 0)
        return fmt::format("is of format {} with {} tracks, and only formats 0 and 1 are known", *format,
                           *trackCount);
    if (*division == 0 || (*division > 0x7FFF && TimeCodeTicks(static_cast<std::uint16_t>(*division)) <= 0.0))
        return fmt::format("divides time by {:#06x}, which is no time", *division);
    for (std::uint32_t i = 0; i < *trackCount; ++i)
    {
        const auto trackTag = file.Take(4);
        const auto size = file.TakeNumber(4);
        const auto track = size ? file.Take(*size) : std::nullopt;
        const char* fault = track && StartsChunk(*trackTag, "MTrk") ? FindTrackFault(*track) : kDamaged;
        if (fault != nullptr)
            return fmt::format("{} (track {} of {})", fault, i + 1, *trackCount);
    }
    return {}; // what follows the tracks is of no concern
}
