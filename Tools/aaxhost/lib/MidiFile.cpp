#include "Tools/aaxhost/lib/MidiFile.h"

#include "Tools/aaxhost/lib/MidiFileCheck.h"

#include <algorithm>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <memory>
#include <smf.h>

namespace
{
struct SmfDeleter
{
    void operator()(smf_t* inFile) const { smf_delete(inFile); }
};

void SwallowMessage(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

/** While it lives, the library's own messages do not reach the terminal: the caller says what went wrong. */
class CQuietLibrary
{
public:
    CQuietLibrary() : mOldHandler(g_log_set_default_handler(SwallowMessage, nullptr)) {}
    CQuietLibrary(const CQuietLibrary&) = delete;
    CQuietLibrary& operator=(const CQuietLibrary&) = delete;
    ~CQuietLibrary() { g_log_set_default_handler(mOldHandler, nullptr); }

private:
    GLogFunc mOldHandler;
};

bool IsChannelMessage(const smf_event_t& inEvent)
{
    return inEvent.midi_buffer != nullptr && inEvent.midi_buffer_length >= 2 &&
           inEvent.midi_buffer_length <= 3 && inEvent.midi_buffer[0] >= 0x80 && inEvent.midi_buffer[0] < 0xF0;
}
} // namespace

COutcome<std::vector<SMidiEvent>> ReadMidiFile(const std::string& inPath)
{
    std::ifstream stream(inPath, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        return SProblem{fmt::format("The MIDI file '{}' cannot be read.", inPath)};
    return MidiFromBytes({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, inPath);
}

COutcome<std::vector<SMidiEvent>> MidiFromBytes(std::span<const std::uint8_t> inBytes,
                                                const std::string& inName)
{
    if (!IsWholeMidiFile(inBytes))
        return SProblem{fmt::format("'{}' is no whole Standard MIDI File of format 0 or 1.", inName)};

    const CQuietLibrary quiet;
    const std::unique_ptr<smf_t, SmfDeleter> file(
        smf_load_from_memory(inBytes.data(), static_cast<int>(inBytes.size())));
    if (file == nullptr)
        return SProblem{fmt::format("'{}' cannot be read as a Standard MIDI File.", inName)};

    std::vector<SMidiEvent> events;
    smf_rewind(file.get());
    while (const smf_event_t* event = smf_get_next_event(file.get()))
    {
        if (!IsChannelMessage(*event))
            continue;
        SMidiEvent& entry = events.emplace_back();
        entry.mSeconds = event->time_seconds;
        entry.mLength = static_cast<std::uint8_t>(event->midi_buffer_length);
        std::copy_n(event->midi_buffer, event->midi_buffer_length, entry.mBytes.begin());
    }
    return events;
}
