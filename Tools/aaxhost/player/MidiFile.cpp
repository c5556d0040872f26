#include "Tools/aaxhost/player/MidiFile.h"

#include "Tools/aaxhost/player/MidiFileCheck.h"
#include "Tools/aaxhost/player/MidiMeta.h"

#include <algorithm>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <memory>
#include <smf.h>

namespace
{
constexpr std::size_t kDivisionOffset = 12;

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

/** A meta event by its type, with as many bytes behind its type and length. */
bool IsMeta(const smf_event_t& inEvent, std::uint8_t inType, int inBytes)
{
    return inEvent.midi_buffer != nullptr && inEvent.midi_buffer_length == 3 + inBytes &&
           inEvent.midi_buffer[0] == 0xFF && inEvent.midi_buffer[1] == inType;
}

/** @param inPower what 2 is raised to for the denominator. */
void AddMeter(std::uint8_t inNumerator, std::uint8_t inPower, double inSeconds, SMidiSong& ioSong)
{
    constexpr std::uint8_t mostPower = 5; // 32nd notes
    if (inNumerator == 0 || inPower > mostPower)
        ++ioSong.mForeignMeters;
    else
        ioSong.mMeters.push_back({inSeconds, {inNumerator, 1 << inPower}});
}

void AddEvent(const smf_event_t& inEvent, double inSeconds, SMidiSong& ioSong)
{
    const std::uint8_t* const bytes = inEvent.midi_buffer;
    if (IsChannelMessage(inEvent))
    {
        SMidiEvent& entry = ioSong.mEvents.emplace_back();
        entry.mSeconds = inSeconds;
        entry.mLength = static_cast<std::uint8_t>(inEvent.midi_buffer_length);
        std::copy_n(bytes, inEvent.midi_buffer_length, entry.mBytes.begin());
    }
    else if (IsMeta(inEvent, kMetaTempo, 3))
    {
        constexpr double kMicrosecondsPerMinute = 60e6;
        ioSong.mTempos.push_back(
            {inSeconds, kMicrosecondsPerMinute / (bytes[3] << 16 | bytes[4] << 8 | bytes[5])});
    }
    else if (IsMeta(inEvent, kMetaTimeSignature, 4))
        AddMeter(bytes[3], bytes[4], inSeconds, ioSong);
    else if (bytes != nullptr && inEvent.midi_buffer_length > 0 && bytes[0] == 0xF0)
        ++ioSong.mSystemMessages;
}
} // namespace

COutcome<SMidiSong> ReadMidiFile(const std::string& inPath)
{
    std::ifstream stream(inPath, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        return SProblem{fmt::format("The MIDI file '{}' cannot be read.", inPath)};
    return MidiFromBytes({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, inPath);
}

COutcome<SMidiSong> MidiFromBytes(std::span<const std::uint8_t> inBytes, const std::string& inName)
{
    if (const std::string fault = FindMidiFileFault(inBytes); !fault.empty())
        return SProblem{fmt::format("The MIDI file '{}' {}.", inName, fault)};

    const CQuietLibrary quiet;
    std::vector<std::uint8_t> bytes(inBytes.begin(), inBytes.end());
    std::uint8_t* const division = bytes.data() + kDivisionOffset;
    const double timeCodeTicks = TimeCodeTicks(static_cast<std::uint16_t>(division[0] << 8 | division[1]));
    if (timeCodeTicks > 0.0)
        division[0] = 1; // libsmf reads no time code: it gets some number of ticks and only counts them
    const std::unique_ptr<smf_t, SmfDeleter> file(
        smf_load_from_memory(bytes.data(), static_cast<int>(bytes.size())));
    if (file == nullptr)
        return SProblem{fmt::format("'{}' cannot be read as a Standard MIDI File.", inName)};

    SMidiSong song;
    smf_rewind(file.get());
    while (const smf_event_t* event = smf_get_next_event(file.get()))
        AddEvent(*event, timeCodeTicks > 0.0 ? event->time_pulses / timeCodeTicks : event->time_seconds,
                 song);
    return song;
}
