#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/unit/Source/plugins/LoadedPlugin.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string_view>

namespace
{
using namespace std::string_literals;

const std::string kIdentity = "Abcd\0\0\0\7"s; // unique ID and version of every plug-in here

std::string Padded(std::string inText, std::size_t inSize)
{
    inText.resize(inSize, '\0');
    return inText;
}

/** A program record of two parameters by hand: 56 + 8 bytes. */
std::string TwoValues(const std::string& inName, const std::string& inValues, char inByteSize = 48)
{
    return "CcnK\0\0\0"s + inByteSize + "FxCk\0\0\0\1"s + kIdentity + "\0\0\0\2"s + Padded(inName, 28) +
           inValues;
}

const std::string kHalfAndQuarter = "\x3F\0\0\0\x3E\x80\0\0"s; // 0.5, 0.25
const std::string kOneAndNothing = "\x3F\x80\0\0\0\0\0\0"s;    // 1, 0

class PresetFile : public LoadedPlugin
{
protected:
    CVst2Plugin& Load()
    {
        Script().mShape.uniqueID = 0x41626364;
        Script().mShape.version = 7;
        return LoadedPlugin::Load();
    }
    CVst2Plugin& LoadWithValues()
    {
        Script().mParameters = {0.5F, 0.25F};
        Script().mShape.numPrograms = 2;
        Script().mTexts[{effGetProgramNameIndexed, 0}] = "Warm";
        Script().mTexts[{effGetProgramNameIndexed, 1}] = "A name of more than 27 characters";
        Script().mHooks[effSetProgram] = [](ScriptedEffect& ioEffect, const SDispatch& inCall) {
            ioEffect.Parameters() = inCall.mValue == 1 ? std::vector{1.0F, 0.0F} : std::vector{0.5F, 0.25F};
        };
        return Load();
    }
    CVst2Plugin& LoadWithChunks()
    {
        Script().mShape.flags = effFlagsProgramChunks;
        Script().mShape.numParams = 2;
        Script().mShape.numPrograms = 3;
        Script().mBankChunk = {1, 2, 3};
        Script().mProgramChunk = {4, 5};
        Script().mTexts[{effGetProgramNameIndexed, 0}] = "Warm";
        return Load();
    }
    void Write(std::string_view inBytes) const
    {
        std::ofstream(mFile, std::ios::binary)
            .write(inBytes.data(), static_cast<std::streamsize>(inBytes.size()));
    }
    /** The calls that change something in the plug-in. */
    Lines TakeChanges()
    {
        Lines lines = Script().TakeLog();
        std::erase_if(lines, [](const std::string& inLine) { return inLine.starts_with("effGet"); });
        return lines;
    }
    /** Every file here is refused and changes nothing. */
    void ExpectRefused(CVst2Plugin& ioPlugin, bool (CVst2Plugin::*inRead)(const char*),
                       const std::vector<std::string>& inFiles)
    {
        for (std::size_t i = 0; i < inFiles.size(); ++i)
        {
            SCOPED_TRACE(i);
            Write(inFiles[i]);
            EXPECT_FALSE((ioPlugin.*inRead)(mFile.c_str()));
            EXPECT_EQ(TakeChanges(), Lines{});
        }
    }

    const CTestFolder mFolder;
    const std::string mFile = mFolder.File("preset");
};

/** Every shorter form of a file, and the file with one byte more. */
std::vector<std::string> WrongLengths(const std::string& inFile)
{
    std::vector<std::string> files{inFile + '\0'};
    for (std::size_t length = 0; length < inFile.size(); ++length)
        files.push_back(inFile.substr(0, length));
    return files;
}

std::string Changed(std::string inFile, std::size_t inOffset, char inByte)
{
    inFile[inOffset] = inByte;
    return inFile;
}

TEST_F(PresetFile, PresetOfValuesIsWrittenToTheByte)
{
    CVst2Plugin& plugin = LoadWithValues();
    ASSERT_TRUE(plugin.SavePreset(mFile.c_str()));
    EXPECT_EQ(Contents(mFile), TwoValues("Warm", kHalfAndQuarter));
    EXPECT_EQ(plugin.GetPresetSize(), 64);
}

TEST_F(PresetFile, PresetOfAChunkIsWrittenToTheByte)
{
    CVst2Plugin& plugin = LoadWithChunks();
    ASSERT_TRUE(plugin.SavePreset(mFile.c_str()));
    EXPECT_EQ(Contents(mFile), "CcnK\0\0\0\x2E"s + "FPCh\0\0\0\1"s + kIdentity + "\0\0\0\2"s +
                                   Padded("Warm", 28) + "\0\0\0\2\4\5"s);
}

TEST_F(PresetFile, BankOfValuesHoldsEachProgramAndThePluginIsBackOnItsOwn)
{
    CVst2Plugin& plugin = LoadWithValues();
    ASSERT_TRUE(plugin.WriteBank(mFile.c_str()));
    EXPECT_EQ(TakeChanges(), (Lines{"effSetProgram 0", "effSetProgram 1", "effSetProgram 0"}));
    EXPECT_EQ(Contents(mFile), "CcnK\0\0\1\x0C"s + "FxBk\0\0\0\2"s + kIdentity + "\0\0\0\2\0\0\0\0"s +
                                   std::string(124, '\0') + TwoValues("Warm", kHalfAndQuarter) +
                                   TwoValues("A name of more than 27 char", kOneAndNothing));
}

TEST_F(PresetFile, BankOfAChunkIsWrittenToTheByte)
{
    CVst2Plugin& plugin = LoadWithChunks();
    plugin.SetProgram(2);
    ASSERT_TRUE(plugin.WriteBank(mFile.c_str()));
    EXPECT_EQ(Contents(mFile), "CcnK\0\0\0\x93"s + "FBCh\0\0\0\2"s + kIdentity + "\0\0\0\3\0\0\0\2"s +
                                   std::string(124, '\0') + "\0\0\0\3\1\2\3"s);
}

TEST_F(PresetFile, PresetOfValuesIsReadInBothByteSizesAndElseRefused)
{
    CVst2Plugin& plugin = LoadWithValues();
    const std::string preset = TwoValues("Cold", kOneAndNothing);
    for (const auto& [file, name] :
         {std::pair{preset, "Cold"s},
          {TwoValues("Cold", kOneAndNothing, 56), "Cold"s},
          {TwoValues(std::string(28, 'n'), kOneAndNothing), std::string(27, 'n')}}) // its end is missing
    {
        plugin.SetProgram(0);
        (void)Script().TakeLog(); // that
        Write(file);
        EXPECT_TRUE(plugin.ReadPreset(mFile.c_str()));
        EXPECT_EQ(TakeChanges(),
                  (Lines{"setParameter 0 1", "setParameter 1 0", "effSetProgramName " + name}));
    }
    ExpectRefused(plugin, &CVst2Plugin::ReadPreset, WrongLengths(preset));
    ExpectRefused(plugin, &CVst2Plugin::ReadPreset,
                  {Changed(preset, 0, 'X'), Changed(preset, 7, 49), Changed(preset, 8, 'X'),
                   Changed(preset, 15, 2), Changed(preset, 16, 'X'), Changed(preset, 24, '\xFF'),
                   Changed(preset, 27, 3), Changed(preset, 24, '\x40')});
    EXPECT_FALSE(plugin.ReadPreset("/nonexistent/preset.fxp"));
    EXPECT_FALSE(plugin.SavePreset("/nonexistent/preset.fxp"));
    EXPECT_FALSE(plugin.SavePreset("/dev/full")); // refused only when it is closed
}

TEST_F(PresetFile, PresetOfAnotherVersionSetsTheParametersThatThereAre)
{
    CVst2Plugin& plugin = LoadWithValues();
    Write("CcnK\0\0\0\x34"s + "FxCk\0\0\0\1"s + "Abcd\0\0\0\2"s + "\0\0\0\3"s + std::string(28, '\0') +
          kOneAndNothing + "\x3F\0\0\0"s);
    EXPECT_TRUE(plugin.ReadPreset(mFile.c_str()));
    EXPECT_EQ(TakeChanges(), (Lines{"setParameter 0 1", "setParameter 1 0"}));
    EXPECT_EQ(Script().mOutOfRangeCalls, 0);
}

TEST_F(PresetFile, FilesOfChunksAreReadBackAndElseRefused)
{
    CVst2Plugin& plugin = LoadWithChunks();
    ASSERT_TRUE(plugin.SavePreset(mFile.c_str()));
    const std::string preset = Contents(mFile);
    ASSERT_TRUE(plugin.WriteBank(mFile.c_str()));
    const std::string bank = Contents(mFile);
    std::uint8_t other = 9;
    plugin.SetState(&other, 1);
    plugin.SetChunk(&other, 1);
    (void)Script().TakeLog(); // those

    ExpectRefused(plugin, &CVst2Plugin::ReadPreset, WrongLengths(preset));
    ExpectRefused(plugin, &CVst2Plugin::ReadPreset,
                  {bank, Changed(preset, 59, 1), TwoValues("", kOneAndNothing)});
    ExpectRefused(plugin, &CVst2Plugin::ReadBank, WrongLengths(bank));
    ExpectRefused(plugin, &CVst2Plugin::ReadBank,
                  {preset, Changed(bank, 15, 3), Changed(bank, 15, 0), Changed(bank, 19, 'e')});
    EXPECT_EQ(plugin.GetChunkSize(), 1);

    Write(bank);
    EXPECT_TRUE(plugin.ReadBank(mFile.c_str()));
    const auto* chunk = static_cast<const std::uint8_t*>(plugin.GetChunk());
    EXPECT_EQ(std::vector(chunk, chunk + plugin.GetLastChunkSize()), (std::vector<std::uint8_t>{1, 2, 3}));
    Write(preset);
    EXPECT_TRUE(plugin.ReadPreset(mFile.c_str()));
    long size = 0;
    chunk = static_cast<const std::uint8_t*>(plugin.GetState(size));
    EXPECT_EQ(std::vector(chunk, chunk + size), (std::vector<std::uint8_t>{4, 5}));
}

TEST_F(PresetFile, BankOfValuesIsAppliedWholeOrNotAtAll)
{
    CVst2Plugin& plugin = LoadWithValues();
    ASSERT_TRUE(plugin.WriteBank(mFile.c_str()));
    const std::string bank = Contents(mFile);
    (void)Script().TakeLog(); // of writing
    ExpectRefused(plugin, &CVst2Plugin::ReadBank, WrongLengths(bank));
    ExpectRefused(plugin, &CVst2Plugin::ReadBank,
                  {Changed(bank, 27, 1), Changed(bank, 27, 3), Changed(bank, 24, '\x7F'),
                   Changed(bank, 156, 'X'),
                   Changed(bank, 156 + 64 + 16, 'X')}); // the second program is another plug-in's
    Script().mHooks.clear();                            // programs without values of their own
    Write(Changed(bank, 31, 1));
    EXPECT_TRUE(plugin.ReadBank(mFile.c_str()));
    EXPECT_EQ(TakeChanges(), (Lines{"effSetProgram 0", "effSetProgramName Warm", "effSetProgram 1",
                                    "setParameter 0 1", "setParameter 1 0",
                                    "effSetProgramName A name of more than 27 char", "effSetProgram 1"}));
}
TEST_F(PresetFile, OldBankIsReadAndTheCurrentProgramStays)
{
    CVst2Plugin& plugin = LoadWithValues();
    ASSERT_TRUE(plugin.WriteBank(mFile.c_str()));
    const std::string bank = Contents(mFile);
    struct SRow
    {
        const char* mWhat;
        std::string mFile;
        int mCurrent;
    };
    for (const SRow& row :
         {SRow{"new", bank, 0}, SRow{"old", Changed(bank, 15, 1), 1},
          SRow{"old with something for the program", Changed(Changed(bank, 15, 1), 28, '\x7F'), 1},
          SRow{"new with no such program", Changed(bank, 31, 2), 1}})
    {
        SCOPED_TRACE(row.mWhat);
        plugin.SetProgram(1);
        Write(row.mFile);
        EXPECT_TRUE(plugin.ReadBank(mFile.c_str()));
        EXPECT_EQ(plugin.GetProgram(), row.mCurrent);
    }
    CVst2Plugin& chunked = LoadWithChunks();
    ASSERT_TRUE(chunked.WriteBank(mFile.c_str()));
    Write(Changed(Contents(mFile), 15, 1));
    EXPECT_TRUE(chunked.ReadBank(mFile.c_str()));
}

TEST_F(PresetFile, CountsThatChangeWhileAFileIsWrittenDoNotDisturbIt)
{
    CVst2Plugin& plugin = LoadWithValues();
    AEffect& effect = *plugin.GetEffect();
    for (const std::int32_t parameters : {0, 1, 3, 1000})
    {
        for (const std::int32_t opcode : {effGetProgram, effGetProgramNameIndexed, effSetProgram})
        {
            SCOPED_TRACE(std::to_string(parameters) + " from opcode " + std::to_string(opcode) + " on");
            const auto change = [&](ScriptedEffect& ioEffect, const SDispatch&)
            {
                effect.numParams = parameters;
                effect.numPrograms = parameters;
                effect.flags ^= effFlagsProgramChunks;
                ioEffect.Parameters().resize(static_cast<std::size_t>(parameters), 0.5F);
            };
            for (const auto save : {&CVst2Plugin::SavePreset, &CVst2Plugin::WriteBank})
            {
                for (const bool hasChunk : {false, true})
                {
                    effect.numParams = 2;
                    effect.numPrograms = 2;
                    Script().mInstances.front()->Parameters() = {0.5F, 0.25F};
                    effect.flags = hasChunk ? effFlagsProgramChunks : 0;
                    Script().mHooks = {{opcode, change}};
                    EXPECT_TRUE((plugin.*save)(mFile.c_str()));
                    Script().mHooks.clear();
                    effect.flags = hasChunk ? effFlagsProgramChunks : 0;
                    const auto read =
                        save == &CVst2Plugin::SavePreset ? &CVst2Plugin::ReadPreset : &CVst2Plugin::ReadBank;
                    EXPECT_TRUE((plugin.*read)(mFile.c_str())) << hasChunk;
                }
            }
        }
    }
    EXPECT_EQ(Script().mOutOfRangeCalls, 0);
}

TEST_F(PresetFile, ParametersThatComeWhileTheyAreAskedForAreLeftOut)
{
    CVst2Plugin& plugin = LoadWithValues();
    AEffect* const growing = plugin.GetEffect();
    growing->getParameter = [](AEffect* inEffect, std::int32_t)
    {
        inEffect->numParams += 100;
        return 0.5F;
    };
    ASSERT_TRUE(plugin.SavePreset(mFile.c_str()));
    EXPECT_EQ(Contents(mFile), TwoValues("Warm", "\x3F\0\0\0\x3F\0\0\0"s));
    growing->numParams = 600'000'000; // more bytes than a size field holds
    EXPECT_FALSE(plugin.SavePreset(mFile.c_str()));
    EXPECT_FALSE(plugin.WriteBank(mFile.c_str()));
}
} // namespace
