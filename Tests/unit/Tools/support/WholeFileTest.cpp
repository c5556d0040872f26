#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tools/support/CWholeFile.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

#include <fcntl.h>
#include <sys/stat.h>

#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

const std::string kNew = "the new file\n";

std::span<const std::byte> Bytes(const std::string& inText) { return std::as_bytes(std::span(inText)); }

class WholeFile : public testing::Test
{
protected:
    WholeFile()
    {
        fs::create_directories(mFolder / "folder");
        std::ofstream(mFolder / "old") << "old";
        fs::permissions(mFolder / "old", fs::perms{0640});
        fs::create_symlink("old", mFolder / "link");
        fs::create_symlink("folder/not yet", mFolder / "early link");
        EXPECT_EQ(mkfifo((mFolder / "pipe").c_str(), 0600), 0);
    }
    std::set<std::string> Listing() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(mFolder))
            names.insert(entry.path().lexically_relative(mFolder));
        return names;
    }

    const CTestFolder mTestFolder;
    const fs::path& mFolder = mTestFolder.Path();
};

TEST_F(WholeFile, OldOneStaysUntilItIsKeptAndLinksAndPermissionsStay)
{
    for (const char* name : {"old", "link", "early link", "new"})
    {
        SCOPED_TRACE(name);
        const auto before = Listing();
        const std::string contents = Contents(mFolder / name);
        {
            auto dropped = CWholeFile::Open(mFolder / name);
            ASSERT_TRUE(dropped) << dropped.Problem().mSentence;
            ASSERT_TRUE(dropped->Write(Bytes(kNew)));
            EXPECT_EQ(Contents(mFolder / name), contents);
        }
        EXPECT_EQ(Contents(mFolder / name), contents);
        EXPECT_EQ(Listing(), before);
        const auto written = WriteWholeFile(mFolder / name, Bytes(kNew));
        ASSERT_TRUE(written) << written.Problem().mSentence;
        EXPECT_EQ(Contents(mFolder / name), kNew);
        std::ofstream(mFolder / name) << "old";
    }
    EXPECT_EQ(fs::status(mFolder / "old").permissions(), fs::perms{0640});
    EXPECT_TRUE(fs::is_symlink(mFolder / "link"));
    EXPECT_TRUE(fs::is_symlink(mFolder / "early link"));
    EXPECT_EQ(Listing(), (std::set<std::string>{"early link", "folder", "folder/not yet", "link", "new",
                                                "old", "pipe"}));
}

TEST_F(WholeFile, WhatCannotBeWrittenIsRefusedWithASentence)
{
    struct SRow
    {
        std::string mName;
        std::string mBecause;
    };
    const auto before = Listing();
    for (const SRow& row : {SRow{"folder", "it is a folder"}, SRow{"folder/", "it is a folder"},
                            SRow{"old/file", "there is no folder"},
                            SRow{"none/file", "there is no folder '" + (mFolder / "none").string() + "'"},
                            SRow{std::string(300, 'x'), "File name too long"}})
    {
        SCOPED_TRACE(row.mName);
        const auto written = WriteWholeFile(mFolder / row.mName, Bytes(kNew));
        ASSERT_FALSE(written);
        EXPECT_NE(written.Problem().mSentence.find(row.mBecause), std::string::npos)
            << written.Problem().mSentence;
        EXPECT_EQ(Listing(), before);
    }
    const auto full = WriteWholeFile("/dev/full", Bytes(kNew));
    ASSERT_FALSE(full);
    EXPECT_EQ(full.Problem().mSentence, "'/dev/full' cannot be written: No space left on device.");
}

TEST_F(WholeFile, APipeAndTheStandardOutputAreWrittenAtOnce)
{
    const std::string name = mFolder / "pipe";
    const int reader = open(name.c_str(), O_RDONLY | O_NONBLOCK);
    for (const std::string& path : {name, "/dev/fd/" + std::to_string(open(name.c_str(), O_WRONLY))})
    {
        auto file = CWholeFile::Open(path);
        ASSERT_TRUE(file) << file.Problem().mSentence;
        ASSERT_TRUE(file->Write(Bytes(kNew)));
        std::array<char, 100> bytes{};
        EXPECT_EQ(read(reader, bytes.data(), bytes.size()), static_cast<ssize_t>(kNew.size())) << path;
        EXPECT_TRUE(file->Keep());
    }
    EXPECT_TRUE(fs::is_fifo(name));
    EXPECT_EQ(close(reader), 0);
}
} // namespace
