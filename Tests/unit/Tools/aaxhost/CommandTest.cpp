#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tests/unit/Tools/aaxhost/FakeModule.h"
#include "Tools/aaxhost/player/AudioFile.h"
#include "Tools/aaxhost/player/MidiFile.h"
#include "Tools/aaxhost/player/MidiFileWriter.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

namespace
{
class CommandTest : public testing::Test
{
protected:
    static SToolRun Run(const std::string& inArguments)
    {
        return RunShell(std::string(AAXHOST_FILE) + " " + inArguments);
    }
    std::string RenderTo(const std::string& inName) const
    {
        return "render " + FakeModuleFile() + " --output " + mFolder.File(inName) + " ";
    }
    void WriteText(const std::string& inName, const std::string& inText)
    {
        std::ofstream(mFolder.File(inName)) << inText;
    }

    /** @param inSamples the channels one after the other. */
    void WriteSound(const std::string& inName, int inChannels, const std::vector<float>& inSamples)
    {
        const int frames = static_cast<int>(inSamples.size()) / inChannels;
        std::vector<const float*> channels;
        for (int i = 0; i < inChannels; ++i)
            channels.push_back(inSamples.data() + i * frames);
        auto writer = CAudioWriter::Create(mFolder.File(inName), 32000, inChannels);
        ASSERT_TRUE(writer && writer->Write(channels, frames) && writer->Close());
    }

    const CTestFolder mFolder;
};

bool IsOneSentence(const std::string& inText)
{
    return inText.size() > 2 && inText.find('\n') == inText.size() - 1 && inText[inText.size() - 2] == '.';
}

TEST_F(CommandTest, WrongUsageExitsWith2BeforeAnythingIsWritten)
{
    for (const char* arguments : {"--seconds 0",      "--seconds x",     "--seconds nan",
                                  "--seconds 1e99",   "--rate 44100.5",  "--rate 0",
                                  "--block 0",        "--block 4097",    "--block -1",
                                  "--tempo 0",        "--tempo inf",     "--set Level",
                                  "--set Level=x",    "--set Level=1.5", "--set Nobody=0.5",
                                  "--automate Level", "--answers",       "--answers never",
                                  "--unknown",        "extra",           "--meter 4/3",
                                  "--meter 100/4",    "--loop 4:4",      "--loop 1",
                                  "--jump 1:x",       "--timer -1",      "--tempo 90 --tempo-map x"})
    {
        SCOPED_TRACE(arguments);
        const SToolRun run = Run(RenderTo("a.wav") + arguments);
        EXPECT_EQ(run.mExit, 2);
        EXPECT_FALSE(run.mErrors.empty());
        EXPECT_FALSE(std::filesystem::exists(mFolder.File("a.wav")));
    }
    EXPECT_EQ(Run("").mExit, 2);
    EXPECT_EQ(Run("render " + FakeModuleFile()).mExit, 2);
    EXPECT_EQ(Run("describe").mExit, 2);
}

TEST_F(CommandTest, AMistypedWordIsAnsweredWithTheNearestName)
{
    const std::string render = "render " + FakeModuleFile();
    for (const auto& [arguments, sentence] :
         {std::pair<std::string, const char*>{"rendr x --output y",
                                              "There is no command 'rendr'; did you mean 'render'?\n"},
          {"bnech x", "There is no command 'bnech'; did you mean 'bench'?\n"},
          {"state x Lod y", "There is no command 'Lod'; did you mean 'load'?\n"},
          {render + " --outptu=x", "There is no option '--outptu'; did you mean '--output'?\n"},
          {render + " --xyz", "There is no option '--xyz'; 'aaxhost render --help' lists what there is.\n"}})
    {
        SCOPED_TRACE(arguments);
        const SToolRun run = Run(arguments);
        EXPECT_EQ(run.mExit, 2);
        EXPECT_EQ(run.mErrors, sentence);
    }
}

TEST_F(CommandTest, OutputThatDoesNotArriveIsAFailure)
{
    for (const char* output : {"/dev/full", "&-"})
        for (const std::string& arguments : {std::string("state save --version"), RenderTo("a.wav")})
        {
            const std::string redirected = arguments + " >" + output;
            SCOPED_TRACE(redirected);
            const SToolRun run = Run(redirected);
            EXPECT_EQ(run.mExit, 1);
            EXPECT_TRUE(IsOneSentence(run.mErrors)) << run.mErrors;
        }
    EXPECT_TRUE(ReadAudioFile(mFolder.File("a.wav"))) << "what was printed went into the file";
}

TEST_F(CommandTest, UnreadableFilesExitWith1AndOneSentence)
{
    WriteText("wrong.csv", "0,0\nx,1\n");
    const std::string missing = mFolder.File("missing");
    for (const std::string& arguments :
         {RenderTo("a.wav") + "--input " + missing, RenderTo("a.wav") + "--midi " + missing,
          RenderTo("a.wav") + "--midi " + FakeModuleFile(), RenderTo("a.wav") + "--automate Level=" + missing,
          RenderTo("a.wav") + "--automate Level=" + mFolder.File("wrong.csv"),
          RenderTo("a.wav") + "--tempo-map " + mFolder.File("wrong.csv"), RenderTo("no/folder/a.wav"),
          "describe " + missing, "describe " + mFolder.File("."), "describe " + mFolder.File("wrong.csv")})
    {
        SCOPED_TRACE(arguments);
        const SToolRun run = Run(arguments);
        EXPECT_EQ(run.mExit, 1);
        EXPECT_TRUE(IsOneSentence(run.mErrors)) << run.mErrors;
        EXPECT_FALSE(std::filesystem::exists(mFolder.File("a.wav")));
    }
}

TEST_F(CommandTest, AMisbehavingModuleGetsASentenceInsteadOfACrash)
{
    struct SRow
    {
        const char* mFault;
        const char* mPart;
    };
    for (const SRow& row :
         {SRow{"startup", "ACFStartup answered -20009"},
          SRow{"register", "ACFRegisterPlugin answered -20004"},
          SRow{"nodefinition", "no plug-in definition"}, SRow{"noeffect", "describes no effect"},
          SRow{"noprocess", "no component with a render procedure"},
          SRow{"nofactory", "no effect-parameters object"},
          SRow{"noparameters", "no effect-parameters object"},
          SRow{"initialize", "Initialize answered -20004"}, SRow{"throw", "exception"}})
    {
        SCOPED_TRACE(row.mFault);
        const CFakeFault fault(row.mFault);
        const SToolRun run = Run(RenderTo("a.wav") + "--seconds 0.1");
        EXPECT_EQ(run.mExit, 1);
        EXPECT_TRUE(IsOneSentence(run.mErrors)) << run.mErrors;
        EXPECT_NE(run.mErrors.find(row.mPart), std::string::npos) << run.mErrors;
    }
    const CFakeFault fault("hugefield");
    EXPECT_EQ(Run(RenderTo("a.wav") + "--seconds 0.1").mExit, 0) << "one refused field ends nothing";
}

TEST_F(CommandTest, RenderSaysWhatIsLeftOutOfItsInputAndWhatIsNoNumber)
{
    const float infinite = std::numeric_limits<float>::infinity();
    WriteSound("bad.wav", 1, {0.0F, 0.5F, -infinite, std::nanf(""), infinite, 0.25F});
    const SToolRun bad = Run(RenderTo("a.wav") + "--block 2 --input " + mFolder.File("bad.wav"));
    EXPECT_EQ(bad.mExit, 1);
    EXPECT_NE(bad.mOutput.find("peak 5.0000"), std::string::npos)
        << bad.mOutput; // of the position in channel 3
    EXPECT_NE(bad.mErrors.find("1 samples that are no numbers and 2 that are infinite, the first at 0.000063 "
                               "seconds in channel 2"),
              std::string::npos)
        << bad.mErrors;
    const auto audio = ReadAudioFile(mFolder.File("a.wav"));
    ASSERT_TRUE(audio && audio->mChannels.size() == 3);
    EXPECT_EQ(audio->mChannels[1][4], infinite);

    WriteSound("wide.wav", 2, {0.5F, 0.25F});
    WriteSound("empty.wav", 1, {});
    for (const auto& [name, part] :
         {std::pair{"wide.wav", "has 2 channels and the module takes 1"}, {"empty.wav", "holds no sound"}})
    {
        const SToolRun run = Run(RenderTo("b.wav") + "--seconds 0.1 --input " + mFolder.File(name));
        EXPECT_EQ(run.mExit, 0);
        EXPECT_TRUE(IsOneSentence(run.mErrors)) << run.mErrors;
        EXPECT_NE(run.mErrors.find(part), std::string::npos) << run.mErrors;
    }
}

TEST_F(CommandTest, WhatTheModulePlaysIsWrittenAtItsTimesWithTheTempoThatWasHeard)
{
    const std::vector<SMidiMessage> notes{
        {0.0, {0x90, 60, 100}}, {0.01, {0x90, 61, 100}}, {0.5, {0xC0, 10}}, {1.25, {0x81, 60, 0}}};
    const std::vector<std::uint8_t> bytes = MidiToBytes(notes, {{{0.0, 77.7}}, {{0.0, {3, 4}}}}, 2.0);
    WriteText("in.mid", {bytes.begin(), bytes.end()});
    WriteText("tempo.csv", "time,tempo\n0,130.7\n1,60");
    const std::string render = RenderTo("a.wav") + "--seconds 2 --block 4000 --midi " +
                               mFolder.File("in.mid") + " --midi-output " + mFolder.File("out.mid") + " ";
    const SToolRun run = Run(render + "--jump 1.1:0.95 --tempo-map " + mFolder.File("tempo.csv"));
    ASSERT_EQ(run.mExit, 0) << run.mErrors;
    EXPECT_NE(Contents(mFolder.File("out.mid")).find("\xF0\x0B\1\2\3\4\5\6\7\x08\x09\x0A\xF7"),
              std::string::npos);
    const auto song = ReadMidiFile(mFolder.File("out.mid"));
    ASSERT_TRUE(song) << song.Problem().mSentence;
    ASSERT_EQ(song->mEvents.size(), 3U);
    EXPECT_EQ(song->mEvents[2].mBytes, (std::array<std::uint8_t, 3>{0x81, 60, 0}));
    EXPECT_NEAR(song->mEvents[2].mSeconds, 1.25, 2e-5); // a frame
    ASSERT_EQ(song->mTempos.size(), 4U);                // again the first tempo for a while
    EXPECT_NEAR(song->mTempos[2].mSeconds, 1.1, 2e-5);
    EXPECT_NEAR(song->mTempos[3].mSeconds, 1.15, 2e-5);
    EXPECT_NEAR(song->mTempos[2].mBeatsPerMinute, 130.7, 1e-3);
    EXPECT_EQ(song->mMeters.front().mMeter, (SMeter{3, 4}));

    for (const auto& [fault, part] :
         {std::pair{"late", "packets outside of their block: 3"},
          {"empty", "no or more than 4 bytes: 3"},
          {"early", "outside of their block: 1, packets out of order: 1"},
          {"shortened", "no whole message: 3"},
          {"endless", "first at 0.500 seconds: system exclusive messages that do not end: 1."}})
    {
        const CFakeFault misplayed(fault);
        std::filesystem::remove(mFolder.File("out.mid"));
        const SToolRun bad = Run(render);
        EXPECT_EQ(bad.mExit, 1);
        EXPECT_TRUE(IsOneSentence(bad.mErrors)) << bad.mErrors;
        EXPECT_NE(bad.mErrors.find(part), std::string::npos) << bad.mErrors;
        EXPECT_TRUE(ReadMidiFile(mFolder.File("out.mid")));
    }
    const CFakeFault without("nooutput");
    const SToolRun none = Run(render);
    EXPECT_EQ(none.mExit, 1);
    EXPECT_NE(none.mErrors.find("describes no MIDI output"), std::string::npos) << none.mErrors;
}

TEST_F(CommandTest, ACompensatedFileBeginsLaterByTheLatencyThatWasToldLast)
{
    std::vector<float> sound(100);
    std::iota(sound.begin(), sound.end(), 1.0F);
    WriteSound("in.wav", 1, sound);
    const CFakeFault fault("latency"); // 3 samples in place of 64
    const std::string first = "Latency: 64 samples from 0.000 seconds on\n";
    const std::string changed = first + "Latency: 3 samples from 0.001 seconds on\n";
    for (const auto& [arguments, shift, told] : {std::tuple{"", 0U, std::string()},
                                                 {"--compensate ", 3U, changed},
                                                 {"--compensate --timer 0 ", 64U, first},
                                                 {"--compensate --tail ", 3U, changed}})
    {
        SCOPED_TRACE(arguments);
        const SToolRun run =
            Run(RenderTo("a.wav") + arguments + "--stopped --block 32 --input " + mFolder.File("in.wav"));
        ASSERT_EQ(run.mExit, 0) << run.mErrors;
        EXPECT_EQ(run.mOutput.substr(0, run.mOutput.find("Wrote")), told);
        const auto audio = ReadAudioFile(mFolder.File("a.wav"));
        ASSERT_TRUE(audio) << audio.Problem().mSentence;
        std::vector<float> expected(sound.begin() + shift, sound.end());
        expected.resize(audio->mChannels[1].size(), 0.0F);
        EXPECT_EQ(audio->mChannels[1], expected);
        EXPECT_EQ(audio->Frames(),
                  told == changed && std::string_view(arguments).ends_with("tail ") ? 32100 : 100);
    }
}

TEST_F(CommandTest, RenderWritesMainAndAuxiliaryChannels)
{
    WriteSound("in.wav", 1, {0.5F, -0.5F, 0.25F, 1.0F});

    for (const char* answers : {"", "--answers at-once ", "--answers late ", "--answers last "})
    {
        SCOPED_TRACE(answers);
        // The module comes last: options that may be repeated must not swallow it.
        const SToolRun run =
            Run("render --output " + mFolder.File("a.wav") + " --block 2 --input " + mFolder.File("in.wav") +
                " --set Level=0.25 --set 'the \"LEVEL\"=0.5' " + answers + FakeModuleFile());
        ASSERT_EQ(run.mExit, 0) << run.mErrors;
        EXPECT_EQ(run.mErrors, "") << "no progress bar in a pipe";
        const auto audio = ReadAudioFile(mFolder.File("a.wav"));
        ASSERT_TRUE(audio) << audio.Problem().mSentence;
        EXPECT_EQ(audio->mRate, 32000);
        const std::vector<std::vector<float>> expected{
            {0, 0, 0, 0}, {0.25F, -0.25F, 0.125F, 0.5F}, {1, 0, 3, 0}};
        EXPECT_EQ(audio->mChannels, expected);
    }
    EXPECT_EQ(Run(RenderTo("b.wav") + "--rate 44100 --input " + mFolder.File("in.wav")).mExit, 1);
}
} // namespace
