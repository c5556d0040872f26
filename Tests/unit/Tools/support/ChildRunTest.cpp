#include "Tools/support/ChildRun.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

namespace
{
/** Ends the process, as a plug-in's thread may, once so many bytes wait in one of its pipes. */
void EndWhenFull(int inBytes)
{
    while (true)
        for (int file = 3; file < 64; ++file)
        {
            int waiting = 0;
            if (ioctl(file, FIONREAD, &waiting) == 0 && waiting == inBytes)
                _exit(0);
        }
}

/** A child that has ended before anybody looks. */
SChildEnd EndOf(const std::function<std::string()>& inWork)
{
    std::array<int, 2> lives{};
    EXPECT_EQ(pipe2(lives.data(), O_CLOEXEC), 0);
    CChildRun run(inWork, 60.0);
    close(lives[1]);
    char nothing = 0;
    EXPECT_EQ(read(lives[0], &nothing, 1), 0); // once the child has let go of the other end, too
    close(lives[0]);
    while (true) // it closes its files a little before it counts as ended
        if (const auto end = run.TakeEnd(std::chrono::milliseconds(0)))
            return *end;
}

TEST(ChildRun, AReportCountsWheneverItIsReadAndOnlyAsAWhole)
{
    const SChildEnd finished = EndOf([] { return std::string("done"); });
    EXPECT_EQ(finished.mKind, SChildEnd::EKind::Finished);
    EXPECT_EQ(finished.mText, "done");

    std::array<int, 2> pipe{};
    ASSERT_EQ(pipe2(pipe.data(), O_CLOEXEC), 0);
    const int capacity = fcntl(pipe[0], F_GETPIPE_SZ);
    close(pipe[0]);
    close(pipe[1]);
    const SChildEnd cut = EndOf(
        [=]
        {
            std::thread(EndWhenFull, capacity).detach();
            return std::string(static_cast<std::size_t>(capacity) - 4, 'x'); // its length goes before it
        });
    EXPECT_EQ(cut.mKind, SChildEnd::EKind::Exit);
}

TEST(ChildRun, LeavesNoFolder)
{
    std::string home;
    {
        CChildRun run([] { return std::string(getenv("HOME")); }, 60.0);
        const auto end = run.TakeEnd(std::chrono::seconds(60));
        ASSERT_TRUE(end);
        home = end->mText;
        EXPECT_TRUE(std::filesystem::is_directory(home));
    }
    EXPECT_FALSE(std::filesystem::exists(home));
}
} // namespace
