#include "Examples/demo/DemoMaterial.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include <smf.h>
#include <sndfile.hh>

namespace
{
constexpr double kPhraseSeconds = 8.0;
constexpr double kBeat = 0.5; // seconds: the 120 beats a minute of a file that names no tempo

/** Adds messages to a track in any order; the file has them in order of time. */
class CPhrase
{
public:
    void Note(double inBeat, double inBeats, int inNote, int inVelocity)
    {
        Message(inBeat, 0x90, inNote, inVelocity);
        Message(inBeat + inBeats, 0x80, inNote, 0);
    }
    void Control(double inBeat, int inController, int inValue)
    {
        Message(inBeat, 0xB0, inController, inValue);
    }
    void Bend(double inBeat, double inPart)
    {
        const int bend = std::clamp(static_cast<int>(8192.0 + 8192.0 * inPart), 0, 16383);
        Message(inBeat, 0xE0, bend % 128, bend / 128);
    }
    bool Save(const std::filesystem::path& inFile)
    {
        std::ranges::stable_sort(mMessages, {}, &SMessage::mSeconds);
        const std::unique_ptr<smf_t, decltype(&smf_delete)> file(smf_new(), &smf_delete);
        smf_track_t* const track = file != nullptr ? smf_track_new() : nullptr;
        if (track == nullptr)
            return false;
        smf_add_track(file.get(), track); // the file owns it from here on
        for (const SMessage& message : mMessages)
        {
            smf_event_t* const event =
                smf_event_new_from_bytes(message.mBytes[0], message.mBytes[1], message.mBytes[2]);
            if (event == nullptr)
                return false;
            smf_track_add_event_seconds(track, event, message.mSeconds);
        }
        return smf_track_add_eot_seconds(track, kPhraseSeconds) == 0 &&
               smf_save(file.get(), inFile.c_str()) == 0;
    }

private:
    struct SMessage
    {
        double mSeconds;
        std::array<int, 3> mBytes;
    };
    void Message(double inBeat, int inStatus, int inFirst, int inSecond)
    {
        mMessages.push_back({kBeat * inBeat, {inStatus, inFirst, inSecond}});
    }
    std::vector<SMessage> mMessages;
};

/** A sound of two channels that others are laid into. */
class CStereoSound
{
public:
    static constexpr int kRate = 44100; // Hz

    explicit CStereoSound(double inSeconds) : mSamples(2 * Frames(inSeconds)) {}

    static std::size_t Frames(double inSeconds)
    {
        return static_cast<std::size_t>(std::lround(inSeconds * kRate));
    }

    /** @param inSide -1 left, 1 right. */
    void Add(double inSeconds, double inSide, const std::vector<double>& inMono)
    {
        const double angle = (inSide + 1.0) * std::numbers::pi / 4.0;
        const std::size_t first = 2 * Frames(inSeconds);
        for (std::size_t i = 0; i < inMono.size() && first + 2 * i + 1 < mSamples.size(); ++i)
        {
            mSamples[first + 2 * i] += static_cast<float>(std::cos(angle) * inMono[i]);
            mSamples[first + 2 * i + 1] += static_cast<float>(std::sin(angle) * inMono[i]);
        }
    }
    bool Save(const std::filesystem::path& inFile) const
    {
        SndfileHandle file(inFile.string(), SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 2, kRate);
        const auto count = static_cast<sf_count_t>(mSamples.size());
        return !file.error() && file.write(mSamples.data(), count) == count;
    }

private:
    std::vector<float> mSamples; // left and right in turn
};

class CNoise
{
public:
    /** @return -1 to 1. */
    double Next() { return static_cast<double>(mEngine()) / 2147483647.5 - 1.0; }

private:
    std::mt19937 mEngine{20}; // the same in every run
};

/** A string: noise that circulates and loses its edge with every turn. */
std::vector<double> Pluck(CNoise& ioNoise, double inHertz, double inSeconds, double inLevel)
{
    std::vector<double> loop(static_cast<std::size_t>(std::lround(CStereoSound::kRate / inHertz)));
    std::ranges::generate(loop, [&] { return inLevel * ioNoise.Next(); });
    std::vector<double> sound(CStereoSound::Frames(inSeconds));
    for (std::size_t i = 0; i < sound.size(); ++i)
    {
        double& sample = loop[i % loop.size()];
        sound[i] = sample;
        sample = 0.498 * (sample + loop[(i + 1) % loop.size()]);
    }
    return sound;
}

std::vector<double> Burst(CNoise& ioNoise, double inSeconds, double inLevel)
{
    std::vector<double> sound(CStereoSound::Frames(inSeconds));
    for (std::size_t i = 0; i < sound.size(); ++i)
    {
        sound[i] = inLevel * ioNoise.Next() *
                   std::exp(-6.0 * static_cast<double>(i) / static_cast<double>(sound.size()));
    }
    return sound;
}
} // namespace

bool WritePhrase(const std::filesystem::path& inFile)
{
    CPhrase phrase;
    struct SBar
    {
        int mBass;
        std::array<int, 3> mChord;
        std::array<int, 4> mTune;
    };
    constexpr std::array<SBar, 3> bars{{{45, {57, 60, 64}, {76, 72, 74, 69}},
                                        {41, {57, 60, 65}, {72, 77, 76, 72}},
                                        {43, {55, 59, 62}, {74, 71, 79, 74}}}};
    double beat = 0.0;
    for (const SBar& bar : bars)
    {
        phrase.Note(beat, 3.8, bar.mBass, 100);
        for (std::size_t i = 0; i < bar.mChord.size(); ++i)
        {
            phrase.Note(beat + 0.03 * static_cast<double>(i), 3.6, bar.mChord[i],
                        76 + 4 * static_cast<int>(i));
        }
        for (std::size_t i = 0; i < bar.mTune.size(); ++i)
        {
            phrase.Note(beat + static_cast<double>(i), 0.8, bar.mTune[i],
                        i == 0 ? 118 : 92 + 6 * static_cast<int>(i));
        }
        beat += 4.0;
    }
    // The last chord is held by the pedal while the wheel opens and the top note is bent into tune.
    phrase.Control(12.0, 64, 127);
    for (const int note : {45, 57, 60, 64, 69})
        phrase.Note(12.0, 0.5, note, 90);
    phrase.Note(12.5, 2.5, 81, 112);
    for (int step = 0; step <= 16; ++step)
    {
        const double part = step / 16.0;
        phrase.Bend(12.5 + 0.5 * part, part - 1.0);
        phrase.Control(13.0 + 1.5 * part, 1, static_cast<int>(127.0 * part));
    }
    phrase.Control(15.0, 64, 0);
    phrase.Control(15.5, 1, 0);
    return phrase.Save(inFile);
}

bool WriteSignal(const std::filesystem::path& inFile)
{
    CNoise noise;
    CStereoSound sound(6.0);
    struct SPluck
    {
        double mSeconds;
        double mHertz;
        double mSide;
        double mLevel;
    };
    for (const SPluck& pluck :
         {SPluck{0.0, 110.0, 0.0, 0.45}, SPluck{0.5, 220.0, -0.7, 0.4}, SPluck{1.0, 329.6, 0.7, 0.35},
          SPluck{1.5, 440.0, -0.3, 0.3}, SPluck{2.0, 164.8, 0.3, 0.4}})
        sound.Add(pluck.mSeconds, pluck.mSide, Pluck(noise, pluck.mHertz, 1.5, pluck.mLevel));
    for (const double start : {3.5, 3.75, 4.0})
        sound.Add(start, 4.0 * (start - 3.75), Burst(noise, 0.08, 0.4));
    return sound.Save(inFile);
}

bool WriteSweep(const std::filesystem::path& inFile)
{
    std::ofstream file(inFile);
    constexpr int steps = 160;
    for (int step = 0; step <= steps; ++step)
    {
        const double part = static_cast<double>(step) / steps;
        file << kPhraseSeconds * part << ',' << 0.6 - 0.2 * std::cos(2.0 * std::numbers::pi * part) << '\n';
    }
    file.close();
    return file.good();
}
