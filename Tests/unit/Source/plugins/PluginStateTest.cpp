#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/unit/Source/plugins/LoadedPlugin.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>

namespace
{
using Bytes = std::vector<std::uint8_t>;

class PluginState : public LoadedPlugin
{
protected:
    CVst2Plugin& LoadWithChunks()
    {
        Script().mShape.flags = effFlagsProgramChunks;
        Script().mBankChunk = {1, 2, 3};
        Script().mProgramChunk = {4, 5};
        return Load();
    }
    void WriteFile(const Bytes& inBytes) const
    {
        std::ofstream(mFile, std::ios::binary)
            .write(reinterpret_cast<const char*>(inBytes.data()),
                   static_cast<std::streamsize>(inBytes.size()));
    }
    Bytes ReadFile() const
    {
        const std::string bytes = Contents(mFile);
        return {bytes.begin(), bytes.end()};
    }

    const CTestFolder mFolder;
    const std::string mFile = mFolder.File("state");
};

TEST_F(PluginState, BankAndProgramChunksAreKeptApart)
{
    CVst2Plugin& plugin = LoadWithChunks();
    EXPECT_TRUE(plugin.GotChunk());
    EXPECT_EQ(plugin.GetChunkSize(), 3);
    const auto* const bank = static_cast<const std::uint8_t*>(plugin.GetChunk());
    EXPECT_EQ(Bytes(bank, bank + plugin.GetLastChunkSize()), (Bytes{1, 2, 3}));
    long size = 0;
    const auto* const program = static_cast<const std::uint8_t*>(plugin.GetState(size));
    EXPECT_EQ(Bytes(program, program + size), (Bytes{4, 5}));
    Bytes data{9, 9, 9, 9};
    plugin.SetChunk(data.data(), 4);
    plugin.SetState(data.data(), 1);
    plugin.SetState(data.data(), 0); // an empty one is the plug-in's to judge
    EXPECT_EQ(Script().TakeLog(), (Lines{"effGetChunk 0", "effGetChunk 0", "effGetChunk 1", "effSetChunk 0",
                                         "effSetChunk 1", "effSetChunk 1"}));
    EXPECT_EQ(plugin.GetChunkSize(), 4);
}

TEST_F(PluginState, NonsensicalChunksAreEmptyAndNonsensicalBlocksNotSent)
{
    CVst2Plugin& plugin = LoadWithChunks();
    long size = 9;
    Script().mResults[effGetChunk] = -7;
    EXPECT_EQ(plugin.GetChunkSize(), 0);
    (void)plugin.GetState(size); // the size is looked at
    EXPECT_EQ(size, 0);
    Script().mResults[effGetChunk] = 100;
    Script().mBankChunk.clear(); // of new instances: one that gives a size and no pointer
    CVst2Plugin& empty = Load();
    EXPECT_EQ(empty.GetChunk(), nullptr);
    EXPECT_EQ(empty.GetLastChunkSize(), 0);
    (void)Script().TakeLog(); // the requests above
    std::uint8_t byte = 0;
    plugin.SetChunk(&byte, -1);
    plugin.SetState(&byte, -1);
    plugin.SetChunk(nullptr, 5);
    plugin.SetState(nullptr, 5);
    EXPECT_TRUE(Script().TakeLog().empty());
}

TEST_F(PluginState, PluginWithoutChunksGivesABlockThatHoldsNoValues)
{
    Script().mParameters.assign(10, 0.5F);
    CVst2Plugin& plugin = Load();
    long size = 0;
    const void* const block = plugin.GetState(size);
    ASSERT_EQ(size, 40);
    float first = 1.0F;
    std::memcpy(&first, block, sizeof(first));
    EXPECT_NE(first, 0.5F);
    plugin.GetEffect()->numParams = -3;
    EXPECT_NE(plugin.GetState(size), nullptr);
    EXPECT_EQ(size, 0);
}

TEST_F(PluginState, BlockSetsWholeFloatsOfParametersThatExist)
{
    Script().mParameters = {0.0F, 0.5F, 0.0F};
    CVst2Plugin& plugin = Load();
    const float values[] = {0.25F, 0.5F, 0.75F, 1.0F, 1.0F};
    Bytes odd(1 + sizeof(values));
    std::memcpy(odd.data() + 1, values, sizeof(values)); // no alignment promised
    plugin.SetState(odd.data() + 1, 3);
    EXPECT_TRUE(Script().TakeLog().empty());
    plugin.SetState(odd.data() + 1, 6);
    EXPECT_EQ(Script().TakeLog(), (Lines{"setParameter 0 0.25"}));
    plugin.SetState(odd.data() + 1, sizeof(values));
    EXPECT_EQ(Script().TakeLog(), (Lines{"setParameter 2 0.75"}));
    Bytes large(std::size_t{64} << 20, 0x3F);
    plugin.SetState(large.data(), static_cast<long>(large.size()));
    EXPECT_EQ(Script().mOutOfRangeCalls, 0);
}

TEST_F(PluginState, FileIsAVersionByteAndTheBlock)
{
    CVst2Plugin& plugin = LoadWithChunks();
    plugin.StateToFile(mFile.c_str());
    EXPECT_EQ(ReadFile(), (Bytes{1, 4, 5}));
    WriteFile({200, 7, 8, 9}); // the version is not looked at
    plugin.FileToState(mFile.c_str());
    long size = 0;
    const auto* const program = static_cast<const std::uint8_t*>(plugin.GetState(size));
    EXPECT_EQ(Bytes(program, program + size), (Bytes{7, 8, 9}));
    Bytes large(300000, 6);
    WriteFile(large);
    plugin.FileToState(mFile.c_str());
    (void)plugin.GetState(size); // the size is looked at
    EXPECT_EQ(size, 299999);
}

TEST_F(PluginState, FileWithoutAStateChangesNothing)
{
    CVst2Plugin& plugin = LoadWithChunks();
    for (const Bytes& bytes : {Bytes{}, Bytes{1}})
    {
        WriteFile(bytes);
        plugin.FileToState(mFile.c_str());
    }
    plugin.FileToState("/nonexistent/state.bin");
    plugin.FileToState(mFolder.Path().c_str()); // opens, but is no file
    EXPECT_TRUE(Script().TakeLog().empty());
    plugin.StateToFile("/nonexistent/state.bin");
}

TEST_F(PluginState, SwapReversesFourBytesAndExtendsTheSign)
{
    const CVst2Plugin plugin;
    EXPECT_EQ(plugin.Swap(0x11223344L), 0x44332211L);
    EXPECT_EQ(plugin.Swap(0x7F000000000000FFL), static_cast<long>(static_cast<std::int32_t>(0xFF000000U)));
    const float swapped = plugin.Swap(1.0F);
    std::array<std::uint8_t, 4> bytes{};
    std::memcpy(bytes.data(), &swapped, bytes.size());
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0x3F, 0x80, 0x00, 0x00}));
}
} // namespace
