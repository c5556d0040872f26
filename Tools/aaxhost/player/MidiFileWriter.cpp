#include "Tools/aaxhost/player/MidiFileWriter.h"

#include "Tools/aaxhost/player/MidiMeta.h"
#include "Tools/support/CWholeFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>

namespace
{
constexpr std::uint32_t kTicksPerQuarter = 30720; // below half a frame of 44.1 kHz at usual tempos
constexpr double kMicrosecondsPerMinute = 60e6;
constexpr std::uint8_t kExclusive = 0xF0;

/** Most significant byte first. */
void AppendNumber(std::vector<std::uint8_t>& ioBytes, std::uint32_t inNumber, int inBytes)
{
    for (int shift = 8 * (inBytes - 1); shift >= 0; shift -= 8)
        ioBytes.push_back(static_cast<std::uint8_t>(inNumber >> shift));
}

/** Seven bits a byte. */
void AppendVariableNumber(std::vector<std::uint8_t>& ioBytes, std::uint32_t inNumber)
{
    for (int shift = 21; shift > 0; shift -= 7)
        if (inNumber >> shift != 0)
            ioBytes.push_back(static_cast<std::uint8_t>(inNumber >> shift | 0x80U));
    ioBytes.push_back(static_cast<std::uint8_t>(inNumber & 0x7FU));
}

/** The events of a track, one after the other. */
class CTrack
{
public:
    /** Everything that follows stands here or later. */
    void MoveTo(double inSeconds)
    {
        constexpr std::uint32_t most = 0x0FFFFFFF; // that the format has room for
        const double quarters = (inSeconds - mTempoSeconds) * 1e6 / mMicroseconds;
        const std::int64_t tick =
            std::max<std::int64_t>(mTick, mTempoTick + std::llround(quarters * kTicksPerQuarter));
        for (; tick - mTick > most; mTick += most)
        {
            AppendVariableNumber(mBytes, most);
            mBytes.insert(mBytes.end(), {0xFF, 0x01, 0}); // an empty text
        }
        AppendVariableNumber(mBytes, static_cast<std::uint32_t>(tick - mTick));
        mTick = tick;
    }
    void Add(std::span<const std::uint8_t> inBytes)
    {
        mBytes.insert(mBytes.end(), inBytes.begin(), inBytes.end());
    }
    void Add(std::initializer_list<std::uint8_t> inBytes) { mBytes.insert(mBytes.end(), inBytes); }

    void AddTempo(double inBeatsPerMinute)
    {
        // From the tick that it stands on, so that no rounding adds up.
        mTempoSeconds += static_cast<double>(mTick - mTempoTick) / kTicksPerQuarter * mMicroseconds / 1e6;
        mTempoTick = mTick;
        mMicroseconds =
            std::clamp(std::round(kMicrosecondsPerMinute / inBeatsPerMinute), 1.0, double{0xFFFFFF});
        Add({0xFF, kMetaTempo, 3});
        AppendNumber(mBytes, static_cast<std::uint32_t>(mMicroseconds), 3);
    }
    void AddMeter(const SMeter& inMeter)
    {
        const int power = std::countr_zero(static_cast<std::uint32_t>(inMeter.mDenominator));
        Add({0xFF, kMetaTimeSignature, 4, static_cast<std::uint8_t>(inMeter.mNumerator),
             static_cast<std::uint8_t>(power), 24, 8}); // 24 clocks a click, 8 thirty-seconds a quarter
    }
    void AddMessage(std::span<const std::uint8_t> inBytes)
    {
        if (inBytes.front() != kExclusive)
            return Add(inBytes);
        mBytes.push_back(kExclusive);
        AppendVariableNumber(mBytes, static_cast<std::uint32_t>(inBytes.size() - 1));
        Add(inBytes.subspan(1));
    }

    const std::vector<std::uint8_t>& All() const { return mBytes; }

private:
    std::vector<std::uint8_t> mBytes;
    std::int64_t mTick = 0;
    std::int64_t mTempoTick = 0;     // where the tempo came to hold
    double mTempoSeconds = 0.0;      // the same
    double mMicroseconds = 500000.0; // a quarter note
};
} // namespace

std::vector<std::uint8_t> MidiToBytes(std::span<const SMidiMessage> inMessages,
                                      const SHeardTimeline& inTimeline, double inSeconds)
{
    CTrack track;
    auto tempo = inTimeline.mTempos.begin();
    auto meter = inTimeline.mMeters.begin();
    const auto addChanges = [&](double until)
    {
        while (true)
        {
            const bool hasTempo = tempo != inTimeline.mTempos.end() && tempo->mSeconds <= until;
            const bool hasMeter = meter != inTimeline.mMeters.end() && meter->mSeconds <= until;
            if (hasMeter && (!hasTempo || meter->mSeconds < tempo->mSeconds))
            {
                track.MoveTo(meter->mSeconds);
                track.AddMeter(meter++->mMeter);
            }
            else if (hasTempo)
            {
                track.MoveTo(tempo->mSeconds);
                track.AddTempo(tempo++->mBeatsPerMinute);
            }
            else
                return;
        }
    };
    for (const SMidiMessage& message : inMessages)
    {
        addChanges(message.mSeconds);
        track.MoveTo(message.mSeconds);
        track.AddMessage(message.mBytes);
    }
    addChanges(inSeconds);
    track.MoveTo(inSeconds);
    track.Add({0xFF, kMetaEndOfTrack, 0});

    std::vector<std::uint8_t> bytes{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1};
    AppendNumber(bytes, kTicksPerQuarter, 2);
    bytes.insert(bytes.end(), {'M', 'T', 'r', 'k'});
    AppendNumber(bytes, static_cast<std::uint32_t>(track.All().size()), 4);
    bytes.insert(bytes.end(), track.All().begin(), track.All().end());
    return bytes;
}

COutcome<SDone> WriteMidiFile(const std::string& inPath, std::span<const SMidiMessage> inMessages,
                              const SHeardTimeline& inTimeline, double inSeconds)
{
    const std::vector<std::uint8_t> bytes = MidiToBytes(inMessages, inTimeline, inSeconds);
    return WriteWholeFile(inPath, std::as_bytes(std::span(bytes)));
}
