#include "Tools/support/WriteAll.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <string>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

namespace
{
std::atomic<bool> gWasInterrupted = false;

TEST(WriteAll, GoesOnAfterASignal)
{
    struct sigaction action
    {
    }, old{};
    action.sa_handler = [](int) { gWasInterrupted = true; }; // and no restart: what is written so far counts
    ASSERT_EQ(sigaction(SIGALRM, &action, &old), 0);
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const std::string text(1'000'000, 'x'); // more than a pipe holds
    std::size_t arrived = 0;
    std::thread reader(
        [&]
        {
            sigset_t alarm;
            sigemptyset(&alarm);
            sigaddset(&alarm, SIGALRM);
            pthread_sigmask(SIG_BLOCK, &alarm, nullptr); // is for the writer
            while (!gWasInterrupted)
                std::this_thread::yield();
            std::array<char, 4096> bytes{};
            for (ssize_t count = 1; count > 0; arrived += static_cast<std::size_t>(count))
                count = read(pipe[0], bytes.data(), bytes.size());
        });
    const itimerval once{{0, 0}, {0, 50'000}};
    setitimer(ITIMER_REAL, &once, nullptr);
    EXPECT_TRUE(WriteAll(pipe[1], text));
    close(pipe[1]);
    reader.join();
    close(pipe[0]);
    sigaction(SIGALRM, &old, nullptr);
    EXPECT_EQ(arrived, text.size());
}
} // namespace
