#include "Tools/aaxhost/player/ChunkReport.h"

#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fmt/format.h>
#include <optional>
#include <string_view>

namespace
{
using Chunk = std::span<const std::byte>;

constexpr AAX_CTypeID kControlsChunk = AAX_FourCharCode("elck");
constexpr AAX_CTypeID kPluginChunk = AAX_FourCharCode("0001");
constexpr std::string_view kControlsMarker = "\1\1\1\1";
constexpr std::string_view kTrailerMark{"EDID\0", 5};

std::string_view TextOf(Chunk inBytes)
{
    return {reinterpret_cast<const char*>(inBytes.data()), inBytes.size()};
}

std::size_t AlignedToFour(std::size_t inSize) { return (inSize + 3) / 4 * 4; }

std::uint64_t BigEndian(Chunk inBytes)
{
    std::uint64_t number = 0;
    for (const std::byte byte : inBytes)
        number = number << 8 | std::to_integer<std::uint64_t>(byte);
    return number;
}

/** Bytes of a value by its tag letter; 0 for a text, none for an unknown letter. */
std::optional<std::size_t> ValueSize(char inTag)
{
    switch (inTag)
    {
    case 'd': return 8;
    case 'f':
    case 'l':
    case 's': return 4;
    case 'r': return 0;
    default: return std::nullopt;
    }
}

std::string ValueText(char inTag, Chunk inValue)
{
    switch (inTag)
    {
    case 'd': return fmt::format("{}", std::bit_cast<double>(BigEndian(inValue)));
    case 'f': return fmt::format("{}", std::bit_cast<float>(static_cast<std::uint32_t>(BigEndian(inValue))));
    case 'l': return fmt::format("{}", static_cast<std::int32_t>(BigEndian(inValue)));
    case 's': return fmt::format("{}", static_cast<std::int16_t>(BigEndian(inValue.first(2))));
    default: return Quoted(std::string(TextOf(inValue)).c_str());
    }
}

/** One line a value; where the list ends before the data does, a line that says so. */
std::string ControlsReport(Chunk inData)
{
    if (inData.size() < kControlsMarker.size() || !TextOf(inData).starts_with(kControlsMarker))
        return "    no list of values: its marker is missing\n";
    std::string report;
    std::size_t at = kControlsMarker.size();
    while (at < inData.size())
    {
        const std::string_view rest = TextOf(inData.subspan(at));
        const std::size_t keyEnd = rest.find('\0');
        const std::size_t valueAt = at + AlignedToFour(std::min(keyEnd, rest.size()) + 1);
        std::optional<std::size_t> size = ValueSize(rest.front());
        if (size == std::size_t{0} && valueAt < inData.size())
            size = std::min(TextOf(inData.subspan(valueAt)).find('\0'), inData.size());
        if (keyEnd == std::string_view::npos || keyEnd < 2 || !size || valueAt + *size > inData.size())
            return report + fmt::format("    not readable from byte {} on\n", at);
        report += fmt::format("    {:<16} {}\n", rest.substr(2, keyEnd - 2),
                              ValueText(rest.front(), inData.subspan(valueAt, *size)));
        at = valueAt + AlignedToFour(rest.front() == 'r' ? *size + 1 : *size);
    }
    return report;
}

std::string PluginChunkReport(Chunk inData)
{
    const std::size_t trailerSize = kTrailerMark.size() + 4;
    if (inData.size() <= trailerSize ||
        TextOf(inData.last(trailerSize).first(kTrailerMark.size())) != kTrailerMark)
        return fmt::format("    the plug-in's own state: {} bytes, no trailer, so no program\n",
                           inData.size());
    std::uint32_t program = 0;
    const Chunk number = inData.last(4);
    for (std::size_t i = 0; i < number.size(); ++i)
        program |= std::to_integer<std::uint32_t>(number[i]) << (8 * i);
    return fmt::format("    the plug-in's own state: {} bytes\n    trailer: program {}\n",
                       inData.size() - trailerSize, static_cast<std::int32_t>(program));
}
} // namespace

std::string StateReport(const SInstanceState& inState)
{
    std::string report =
        fmt::format("State of {}, {} chunks\n", NameOfProduct(inState.mProduct), inState.mChunks.size());
    for (const CStateChunk& chunk : inState.mChunks)
    {
        const AAX_SPlugInChunk& record = chunk.Record();
        const std::string name(record.mName,
                               std::find(std::begin(record.mName), std::end(record.mName), '\0'));
        report += fmt::format("  {} {}, version {}, {} bytes\n", NameOfFourCharCode(record.mChunkID),
                              Quoted(name.c_str()), record.mVersion, chunk.Data().size());
        if (record.mChunkID == kControlsChunk)
            report += ControlsReport(chunk.Data());
        else if (record.mChunkID == kPluginChunk)
            report += PluginChunkReport(chunk.Data());
    }
    return report;
}
