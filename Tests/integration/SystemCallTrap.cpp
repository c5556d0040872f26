#include "Tests/integration/SystemCallTrap.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <thread>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{
constexpr std::array kTrapped = {SYS_open,   SYS_openat,   SYS_openat2, SYS_creat,
                                 SYS_execve, SYS_execveat, SYS_fork,    SYS_vfork};

/** @return what tells of the calling thread's calls from now on; negative: nothing does. */
int InstallFilter()
{
    std::vector<sock_filter> program;
    program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    for (const long number : kTrapped)
    {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(number), 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return -1;
    return static_cast<int>(
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter));
}

/** A text in the memory of a process that waits for an answer; up to what can be read of it. */
std::string TextAt(pid_t inProcess, std::uint64_t inAddress)
{
    std::string text;
    for (char letter = 0; inAddress != 0; text += letter)
    {
        const iovec here{&letter, 1};
        const iovec there{reinterpret_cast<void*>(inAddress + text.size()), 1};
        if (process_vm_readv(inProcess, &here, 1, &there, 1, 0) != 1 || letter == 0)
            break;
    }
    return text;
}

/** The path among a call's arguments. */
std::string PathOf(const seccomp_notif& inCall)
{
    const auto process = static_cast<pid_t>(inCall.pid);
    switch (inCall.data.nr)
    {
    case SYS_open:
    case SYS_creat:
    case SYS_execve: return TextAt(process, inCall.data.args[0]);
    case SYS_openat:
    case SYS_openat2:
    case SYS_execveat: return TextAt(process, inCall.data.args[1]);
    default: return {};
    }
}

void Answer(int inListener, std::vector<STrappedCall>& outCalls)
{
    seccomp_notif call{};
    if (ioctl(inListener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0)
        return; // the caller was interrupted and asks again
    outCalls.push_back({call.data.nr, PathOf(call)});
    seccomp_notif_resp answer{};
    answer.id = call.id;
    answer.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
    (void)ioctl(inListener, SECCOMP_IOCTL_NOTIF_SEND, &answer); // as above
}
} // namespace

bool TrapSystemCalls(const std::function<void()>& inWork, std::vector<STrappedCall>& outCalls)
{
    constexpr int unknown = -2;
    std::atomic<int> listener = unknown;
    std::atomic<bool> isDone = false;
    std::thread worker(
        [&]
        {
            listener.store(InstallFilter());
            if (listener.load() >= 0)
                inWork();
            isDone.store(true);
        });
    while (listener.load() == unknown)
        std::this_thread::yield();
    const bool isWatching = listener.load() >= 0;
    while (isWatching && !isDone.load())
    {
        pollfd waiting{listener.load(), POLLIN, 0};
        if (poll(&waiting, 1, 10) > 0)
            Answer(waiting.fd, outCalls);
    }
    worker.join();
    if (isWatching)
        close(listener.load());
    return isWatching;
}
