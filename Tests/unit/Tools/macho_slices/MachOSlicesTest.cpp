#include "Tools/macho_slices/MachOSlices.h"
#include "Tests/support/CTestFolder.h"
#include "Tests/unit/Tools/vst2probe/RunProbe.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

std::string HighestFirst(std::uint64_t inNumber, int inBytes)
{
    std::string bytes;
    for (int shift = 8 * (inBytes - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(inNumber >> shift);
    return bytes;
}

std::string Slice(std::uint32_t inMagic, std::uint32_t inProcessor, std::uint32_t inKind,
                  std::uint32_t inCommandBytes = 0)
{
    std::string bytes;
    for (const std::uint32_t number : {inMagic, inProcessor, inKind, 8U, 0U, inCommandBytes, 0U, 0U})
    {
        const std::string reversed = HighestFirst(number, 4);
        bytes.append(reversed.rbegin(), reversed.rend());
    }
    return bytes;
}
const std::string kX86 = Slice(0xFEEDFACF, 0x01000007, 3);
const std::string kArm = Slice(0xFEEDFACF, 0x0100000C, 0);

std::string Table(std::uint32_t inCount) { return HighestFirst(0xCAFEBABE, 4) + HighestFirst(inCount, 4); }
std::string Row(std::uint32_t inProcessor, std::uint32_t inKind, std::uint32_t inOffset, std::uint32_t inSize)
{
    return HighestFirst(inProcessor, 4) + HighestFirst(inKind, 4) + HighestFirst(inOffset, 4) +
           HighestFirst(inSize, 4) + HighestFirst(4, 4);
}
std::string WideTable(std::uint64_t inOffset, std::uint64_t inSize)
{
    return HighestFirst(0xCAFEBABF, 4) + HighestFirst(1, 4) + HighestFirst(0x01000007, 4) +
           HighestFirst(3, 4) + HighestFirst(inOffset, 8) + HighestFirst(inSize, 8) + HighestFirst(4, 8);
}
const std::string kUniversal =
    Table(2) + Row(0x01000007, 3, 48, 32) + Row(0x0100000C, 0, 80, 32) + kX86 + kArm;

class MachOSlices : public testing::Test
{
protected:
    SMachOSlices Read(const std::string& inBytes)
    {
        std::ofstream(mFile, std::ios::binary) << inBytes;
        return ReadMachOSlices(mFile);
    }

    const CTestFolder mFolder;
    const std::string mFile = mFolder.File("file");
};

TEST_F(MachOSlices, ProcessorsAreNamedAndBrokenFilesAreSaidToBe)
{
    struct SRow
    {
        std::string mBytes;
        const char* mSaid; // the processors, else the fault
    };
    const std::string oneRow = Table(1) + Row(0x01000007, 3, 28, 32);
    const SRow rows[] = {
        {kX86, "x86_64"},
        {kArm, "arm64"},
        {kUniversal, "x86_64 and arm64"},
        {oneRow + kX86, "x86_64"},
        {WideTable(40, 32) + kX86, "x86_64"},
        {Slice(0xFEEDFACF, 0x0100000C, 0x80000002), "arm64e"},
        {Slice(0xFEEDFACE, 7, 3), "i386"},
        {HighestFirst(0xFEEDFACE, 4) + HighestFirst(18, 4) + std::string(20, '\0'), "ppc"},
        {Slice(0xFEEDFACF, 99, 3), "processor 99"},
        {"", "is no Mach-O file"},
        {"\x7F" + std::string("ELF"), "is no Mach-O file"},
        {kX86.substr(0, 31), "is cut short: 31 bytes are not all of it"},
        {Slice(0xFEEDFACF, 0x01000007, 3, 1), "is cut short: 32 bytes are not all of it"},
        {Slice(0xFEEDFACF, 0x01000007, 3, 0xFFFFFFFF), "is cut short: 32 bytes are not all of it"},
        {Table(0), "has a table of 0 processors"},
        {Table(61) + std::string(2000, '\0'), "has a table of 61 processors"}, // as Java has it
        {Table(1) + Row(0x01000007, 3, 0xFFFFFFF0, 32) + kX86, "is cut short: 60 bytes are not all of it"},
        {Table(1) + Row(0x01000007, 3, 28, 33) + kX86, "is cut short: 60 bytes are not all of it"},
        {WideTable(~0ULL, 32) + kX86, "is cut short: 72 bytes are not all of it"},
        {WideTable(40, ~0ULL) + kX86, "is cut short: 72 bytes are not all of it"},
        {Table(1) + Row(0x01000007, 3, 0, 60) + kX86, "has parts that overlap"}, // with the table
        {Table(2) + Row(0x01000007, 3, 48, 33) + Row(0x0100000C, 0, 80, 32) + kX86 + kArm,
         "has parts that overlap"},
        {Table(1) + Row(0x01000007, 3, 28, 31) + kX86, "has a part for x86_64 that is broken"},
        {oneRow + std::string(32, '\0'), "has a part for x86_64 that is broken"},
        {oneRow + kArm, "has a part for x86_64 that says it is for arm64"},
        {Table(1) + Row(0x0100000C, 2, 28, 32) + kArm, "has a part for arm64e that says it is for arm64"}};
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mSaid);
        const SMachOSlices slices = Read(row.mBytes);
        EXPECT_EQ(slices.mFault.empty() ? slices.ProcessorNames() : slices.mFault, row.mSaid);
        EXPECT_EQ(slices.mSlices.empty(), !slices.mFault.empty());
    }
    EXPECT_EQ(ReadMachOSlices(mFolder.Path()).mFault, "is no Mach-O file");
    EXPECT_EQ(ReadMachOSlices("/nowhere/at/all").mFault, "is no Mach-O file");
}

TEST_F(MachOSlices, AUniversalFileIsReadOnlyWhole)
{
    for (std::size_t size = 0; size < kUniversal.size(); ++size)
        EXPECT_TRUE(Read(kUniversal.substr(0, size)).mSlices.empty()) << size;
    const SMachOSlices whole = Read(kUniversal);
    ASSERT_EQ(whole.mSlices.size(), 2U);
    EXPECT_EQ(whole.mSlices[1].mOffset, 80U);
    EXPECT_EQ(whole.mSlices[1].mSize, 32U);
}

TEST_F(MachOSlices, APluginForMacOsIsRefusedWithItsProcessors)
{
    const fs::path folder = mFolder.Path() / "a.vst/Contents";
    fs::create_directories(folder / "MacOS");
    const std::string plugin = folder.parent_path();
    const auto refused = [&](const std::string& inSaid)
    {
        const SToolRun run = Vst2probe(plugin);
        EXPECT_EQ(run.mExit, 1);
        EXPECT_NE(run.mErrors.find(inSaid), std::string::npos) << run.mErrors;
    };
    refused("there is no executable in it");
    std::ofstream(folder / "MacOS/a", std::ios::binary) << kUniversal;
    std::ofstream(folder / "MacOS/b", std::ios::binary) << kX86;
    refused("a library for macOS, for x86_64 and arm64, and cannot be loaded on this system");
    const std::string key = "<key>CFBundleExecutable</key>\n\t";
    for (const auto& [list, said] : {std::pair{key + "<string>b</string>", "for macOS, for x86_64, and"},
                                     std::pair{key + "<string>../MacOS/b</string>", "for x86_64 and arm64"},
                                     std::pair{key + "<string>absent</string>", "for x86_64 and arm64"},
                                     std::pair{key + "<string>b", "for macOS, for x86_64, and"},
                                     std::pair{key + std::string(100000, ' '), "for x86_64 and arm64"},
                                     std::pair{std::string("bplist00"), "for x86_64 and arm64"}})
    {
        std::ofstream(folder / "Info.plist") << list;
        refused(said);
    }
    std::ofstream(folder / "MacOS/b", std::ios::binary) << kUniversal.substr(0, 100);
    std::ofstream(folder / "Info.plist") << key << "<string>b</string>";
    refused("a library for macOS that is cut short: 100 bytes are not all of it");
}
} // namespace
