#include "Tools/support/ChildRun.h"

#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
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

TEST(ChildRun, AReportOfWhichOnlyTheEndIsMissingIsNone)
{
    std::array<int, 2> lives{};
    ASSERT_EQ(pipe2(lives.data(), O_CLOEXEC), 0);
    const int capacity = fcntl(lives[0], F_GETPIPE_SZ);
    CChildRun run(
        [=]
        {
            std::thread(EndWhenFull, capacity).detach();
            return std::string(static_cast<std::size_t>(capacity) - 4, 'x'); // its length goes before it
        },
        60.0);
    close(lives[1]);
    char nothing = 0;
    EXPECT_EQ(read(lives[0], &nothing, 1), 0); // once the child is gone
    close(lives[0]);
    const auto end = run.TakeEnd(std::chrono::seconds(10));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->mKind, SChildEnd::EKind::Exit);
}
} // namespace
