#include "Tests/support/CTestFolder.h"
#include "Tools/aaxhost/player/AudioFile.h"
#include "Tools/aaxhost/player/AutomationCurve.h"
#include "Tools/aaxhost/player/MidiFile.h"
#include "Tools/aaxhost/player/StateFile.h"

#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace
{
void WriteBytes(const std::string& inPath, std::string_view inBytes)
{
    std::ofstream(inPath, std::ios::binary)
        .write(inBytes.data(), static_cast<std::streamsize>(inBytes.size()));
}

TEST(AutomationCurve, ValuesLieOnTheLinesAndAreLevelOutside)
{
    const auto curve = CAutomationCurve::Parse(
        "\xEF\xBB\xBF# a comment\r\nTime (s), Cutoff\r\n\n1, 0.5\n \t\n2,1\n2,0\n4,0.5");
    ASSERT_TRUE(curve) << curve.Problem().mSentence;
    struct SRow
    {
        double mSeconds;
        double mValue;
    };
    for (const SRow& row : {SRow{0.0, 0.5}, SRow{1.0, 0.5}, SRow{1.5, 0.75}, SRow{2.0, 0.0}, SRow{3.0, 0.25},
                            SRow{4.0, 0.5}, SRow{99.0, 0.5}})
    {
        SCOPED_TRACE(row.mSeconds);
        EXPECT_NEAR(curve->ValueAt(row.mSeconds), row.mValue, 1e-12);
    }
}

TEST(AutomationCurve, WrongTextIsRefusedWithItsLine)
{
    struct SRow
    {
        const char* mText;
        const char* mSentence;
    };
    const char* commas = "Line 1 has decimal commas or semicolons: write seconds,value with decimal points, "
                         "as in 1.5,0.25.";
    for (const SRow& row :
         {SRow{"", "There is no point."}, SRow{"0,0\n1", "Line 2 is not of the form seconds,value."},
          SRow{"0,x", "Line 1 does not hold two numbers."},
          SRow{"1e999,0", "Line 1 does not hold two numbers."},
          SRow{"0,nan", "Line 1 does not hold two numbers."},
          SRow{"0,0.5,1", "Line 1 does not hold two numbers."}, SRow{"-1,0", "Line 1 has a time below 0."},
          SRow{"0,1.01", "Line 1 has a value outside of 0 to 1."},
          SRow{"1,0\n\n0.5,0", "Line 3 goes back in time."},
          SRow{"a,b\nc,d", "Line 2 does not hold two numbers."}, SRow{"0;0.5", commas},
          SRow{"0,5,0,7", commas}, SRow{"1,0,7", commas},
          SRow{"\xFF\xFE", "The text is UTF-16: save it as UTF-8."}})
    {
        SCOPED_TRACE(row.mText);
        const auto curve = CAutomationCurve::Parse(row.mText);
        ASSERT_FALSE(curve);
        EXPECT_EQ(curve.Problem().mSentence, row.mSentence);
    }
}

// Format 1, 96 ticks a quarter. Track 1: tempo 60 at the start, 120 after two quarters. Track 2: a note at 0,
// its end (in running status) after one quarter, a program change after four quarters; a system message.
constexpr char kMidiBytes[] = "MThd\0\0\0\6\0\1\0\2\0\x60"
                              "MTrk\0\0\0\x13"
                              "\0\xFF\x51\3\x0F\x42\x40"
                              "\x81\x40\xFF\x51\3\x07\xA1\x20"
                              "\0\xFF\x2F\0"
                              "MTrk\0\0\0\x18"
                              "\0\x91\x3C\x64"
                              "\x60\x3C\0"
                              "\x60\xF0\2\x11\xF7"
                              "\x81\x40\xC1\5"
                              "\0\xB1\7\x7F"
                              "\0\xFF\x2F\0";
constexpr std::string_view kMidiFile(kMidiBytes, sizeof(kMidiBytes) - 1);

TEST(MidiFile, EventsOfAllTracksComeInOrderWithTheFilesTempoChanges)
{
    const CTestFolder folder;
    WriteBytes(folder.File("a.mid"), kMidiFile);
    const auto song = ReadMidiFile(folder.File("a.mid"));
    ASSERT_TRUE(song) << song.Problem().mSentence;
    struct SRow
    {
        double mSeconds;
        std::array<std::uint8_t, 3> mBytes;
        int mLength;
    };
    const SRow rows[] = {{0.0, {0x91, 0x3C, 0x64}, 3},
                         {1.0, {0x91, 0x3C, 0}, 3},
                         {3.0, {0xC1, 5, 0}, 2},
                         {3.0, {0xB1, 7, 0x7F}, 3}};
    ASSERT_EQ(song->mEvents.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i)
    {
        SCOPED_TRACE(i);
        EXPECT_NEAR(song->mEvents[i].mSeconds, rows[i].mSeconds, 1e-9);
        EXPECT_EQ(song->mEvents[i].mBytes, rows[i].mBytes);
        EXPECT_EQ(song->mEvents[i].mLength, rows[i].mLength);
    }
}

TEST(MidiFile, TempoAndMeterChangesAreKeptAndWhatIsLeftOutIsCounted)
{
    std::string bytes(kMidiFile);
    bytes.replace(bytes.find("\x81\x40\xFF\x51"), 8, std::string("\0\xFF\x58\4\3\3\x18\x08", 8));
    std::string foreign = bytes;
    foreign[foreign.find("\x58\4\3\3") + 3] = 6; // 64ths
    for (const auto& [text, tempos, meters, left] :
         {std::tuple{std::string(kMidiFile), std::vector{60.0, 120.0}, 0U, 0U},
          {bytes, {60.0}, 1U, 0U},
          {foreign, {60.0}, 0U, 1U}})
    {
        const auto song =
            MidiFromBytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, "a.mid");
        ASSERT_TRUE(song) << song.Problem().mSentence;
        ASSERT_EQ(song->mTempos.size(), tempos.size());
        EXPECT_EQ(song->mTempos.front().mBeatsPerMinute, 60.0);
        EXPECT_EQ(song->mTempos.back().mBeatsPerMinute, tempos.back());
        EXPECT_NEAR(song->mTempos.back().mSeconds, tempos.size() == 1 ? 0.0 : 2.0, 1e-9);
        EXPECT_EQ(song->mSystemMessages, 1U);
        EXPECT_EQ(song->mForeignMeters, left);
        ASSERT_EQ(song->mMeters.size(), meters);
        EXPECT_TRUE(meters == 0 || song->mMeters.front().mMeter == (SMeter{3, 8}));
    }
}

TEST(MidiFile, TimeCodeIsReadAndWhatIsNotReadIsNamed)
{
    // 25 frames a second of 40 ticks; a note of one second, whatever the tempo.
    constexpr char bytes[] = "MThd\0\0\0\6\0\0\0\1\xE7\x28"
                             "MTrk\0\0\0\x0D\0\x90\x3C\x64\x87\x68\x80\x3C\0\0\xFF\x2F";
    struct SRow
    {
        std::size_t mAt;
        std::uint8_t mValue;
        const char* mPart; // of the sentence; empty: it is read
    };
    for (const SRow& row : {SRow{0, 'M', ""}, SRow{0, 'X', "is no Standard MIDI File"},
                            SRow{9, 2, "is of format 2"}, SRow{13, 0, "divides time by 0xe700"},
                            SRow{23, 0xF7, "F7), which are not read, so save it without them (track 1 of 1)"},
                            SRow{21, 0x0E, "is damaged or cut short (track 1 of 1)"}})
    {
        SCOPED_TRACE(row.mPart);
        std::vector<std::uint8_t> file(std::begin(bytes), std::end(bytes)); // with the 0 at the end
        file[row.mAt] = row.mValue;
        const auto song = MidiFromBytes(file, "a.mid");
        const std::string fault = song ? "" : song.Problem().mSentence;
        ASSERT_EQ(fault.empty(), *row.mPart == 0) << fault;
        EXPECT_NE(fault.find(row.mPart), std::string::npos) << fault;
        EXPECT_NEAR(song ? song->mEvents.back().mSeconds : 1.0, 1.0, 1e-9);
    }
}

TEST(StateFile, IsWrittenToTheByteAndReadBack)
{
    SInstanceState state{{"a.b", "Name", 0x4D414B45, 0x50524F44, 0x506C6731}, {}};
    AAX_SPlugInChunk& record = state.mChunks.emplace_back(2).Record();
    record.mVersion = 258;
    record.mManufacturerID = 1;
    record.mProductID = 2;
    record.mPlugInID = 3;
    record.mChunkID = 0x656C636B;
    record.mName[0] = 'C';
    state.mChunks.front().Room()[1] = std::byte{0xAB};
    using namespace std::string_literals;
    const std::string bytes = "aaxstate\1\0\0\0"s + "\3\0\0\0a.b\4\0\0\0Name"s + "EKAMDORP1glP\1\0\0\0"s +
                              "\2\1\0\0\1\0\0\0\2\0\0\0\3\0\0\0kcle"s + "C"s + std::string(31, '\0') +
                              "\2\0\0\0\0\xAB"s;
    const auto text = [](const SInstanceState& inState)
    {
        const std::vector<std::byte> written = StateToBytes(inState);
        return std::string(reinterpret_cast<const char*>(written.data()), written.size());
    };
    EXPECT_EQ(text(state), bytes);
    const auto read = StateFromBytes(std::as_bytes(std::span(bytes)));
    ASSERT_TRUE(read) << read.Problem().mSentence;
    EXPECT_EQ(text(*read), bytes);
    for (const std::string& other : {bytes.substr(0, bytes.size() - 1), bytes + '\0'})
        EXPECT_FALSE(StateFromBytes(std::as_bytes(std::span(other)))) << other.size();
}

TEST(AudioFile, SoundBeyondTheSizesOfAWavFileBecomesAnRf64File)
{
    const CTestFolder folder;
    const std::vector<float> sound(100, 0.5F);
    for (const auto& [limit, tag] : {std::pair{400, "RIFF"}, {399, "RF64"}})
    {
        auto writer = CAudioWriter::Create(folder.File("a.wav"), 48000, 1, 100, limit);
        ASSERT_TRUE(writer) << writer.Problem().mSentence;
        const float* channels[] = {sound.data()};
        ASSERT_TRUE(writer->Write(channels, 100));
        ASSERT_TRUE(writer->Close());
        std::string start(4, ' ');
        std::ifstream(folder.File("a.wav"), std::ios::binary).read(start.data(), 4);
        EXPECT_EQ(start, tag);
        const auto audio = ReadAudioFile(folder.File("a.wav"));
        ASSERT_TRUE(audio) << audio.Problem().mSentence;
        EXPECT_EQ(audio->mChannels.front(), sound);
    }
}

TEST(AudioFile, AFileThatIsNotCompletedLeavesTheOldOne)
{
    const CTestFolder folder;
    WriteBytes(folder.File("a.wav"), "old");
    const float sample = 0.5F;
    const float* channels[] = {&sample};
    ASSERT_TRUE(CAudioWriter::Create(folder.File("a.wav"), 48000, 1)->Write(channels, 1));
    EXPECT_EQ(std::filesystem::file_size(folder.File("a.wav")), 3U);
}
} // namespace
