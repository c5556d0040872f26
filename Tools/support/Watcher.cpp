#include "Tools/support/Watcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <random>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
// Touched by the main thread only, and by the fork handler, which runs in a process of one thread.
int gLife = -1;  // open in the watched process only: the watcher sees its end by it
int gNotes = -1; // open in the processes forked from it, too
pid_t gWatcher = -1;

/** The first letter of a note: what it is about. The text follows, and a zero byte. */
constexpr char kFile = 'f';
constexpr char kFolder = 'd';
constexpr char kGroup = 'g';
constexpr char kNoMore = '-'; // before the text as it was noted, with its letter

constexpr int kLongestWaitForGroupMs = 2000; // a killed process ends in far less

void Pause(int inMilliseconds) { (void)poll(nullptr, 0, inMilliseconds); }

/** Kills the group and waits until none of it runs: what it has begun to write is there afterwards. */
void EndGroup(pid_t inLeader)
{
    for (int waited = 0; kill(-inLeader, SIGKILL) == 0 && waited < kLongestWaitForGroupMs; ++waited)
        Pause(1);
}

/** The watcher's list of what is to go. */
class CNotes
{
public:
    void Add(std::string_view inBytes)
    {
        for (const char letter : inBytes)
            if (letter == '\0')
                Take(std::exchange(mUnread, {}));
            else
                mUnread += letter;
    }
    /** Those that are noted. @return whether there were any. */
    bool EndGroups()
    {
        std::vector<pid_t> leaders;
        for (const std::string& note : mNotes)
            if (note.front() == kGroup)
                leaders.push_back(static_cast<pid_t>(std::strtol(note.c_str() + 1, nullptr, 10)));
        std::erase_if(mNotes, [](const std::string& note) { return note.front() == kGroup; });
        for (const pid_t leader : leaders)
            (void)kill(-leader, SIGKILL); // all of them before one is waited for
        std::ranges::for_each(leaders, &EndGroup);
        return !leaders.empty();
    }
    void RemoveFiles() const
    {
        std::error_code ignored; // nobody is there to be told
        for (const std::string& note : mNotes)
            if (note.front() == kFolder)
                (void)fs::remove_all(note.substr(1), ignored);
            else if (note.front() == kFile)
                (void)fs::remove(note.substr(1), ignored);
    }

private:
    void Take(const std::string& inNote)
    {
        if (inNote.starts_with(kNoMore))
            mNotes.erase(inNote.substr(1));
        else
            mNotes.insert(inNote);
    }

    std::set<std::string> mNotes;
    std::string mUnread;
};

/** Keeps no pipe, terminal or file of the watched process open. */
void CloseAllBut(int inFirst, int inSecond)
{
    std::vector<int> open;
    std::error_code ignored; // what stays open only ends a little later
    for (const fs::directory_entry& entry : fs::directory_iterator("/dev/fd", ignored))
        open.push_back(std::atoi(entry.path().filename().c_str()));
    for (const int file : open)
        if (file != inFirst && file != inSecond)
            (void)close(file);
}

/** @return false at the end of the pipe. */
bool ReadSome(int inFile, CNotes& ioNotes)
{
    std::array<char, 4096> bytes{};
    const ssize_t count = read(inFile, bytes.data(), bytes.size());
    if (count > 0)
        ioNotes.Add({bytes.data(), static_cast<std::size_t>(count)});
    return count > 0 || (count < 0 && errno == EINTR);
}

[[noreturn]] void BeWatcher(int inLife, int inNotes)
{
    // Out of reach of the terminal and of who kills the watched process's group.
    (void)setsid();
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        (void)std::signal(number, SIG_IGN);
    CloseAllBut(inLife, inNotes);
    (void)fcntl(inNotes, F_SETFL, O_NONBLOCK); // processes that were forked keep the other end open
    CNotes notes;
    pollfd files[] = {{inLife, POLLIN, 0}, {inNotes, POLLIN, 0}};
    while (files[0].revents == 0)
    {
        (void)poll(files, std::size(files), -1); // interrupted: nothing to read, and again
        if ((files[1].revents & POLLIN) != 0)
            (void)ReadSome(inNotes, notes);
    }
    do
    {
        while (ReadSome(inNotes, notes)) // also what the groups noted until their end, such as further groups
        {
        }
    } while (notes.EndGroups());
    notes.RemoveFiles();
    _exit(EXIT_SUCCESS);
}

/** A forked process is not what is watched, and must not keep the watcher waiting. */
void LetGoOfLife()
{
    if (gLife >= 0)
        (void)close(gLife);
    gLife = -1;
    gWatcher = -1;
}

bool HasWatcher()
{
    if (gNotes >= 0)
        return true;
    static const int handled = pthread_atfork(nullptr, nullptr, &LetGoOfLife);
    std::array<int, 2> life{};
    std::array<int, 2> notes{};
    if (handled != 0 || pipe(life.data()) != 0)
        return false;
    if (pipe(notes.data()) != 0)
    {
        (void)close(life[0]);
        (void)close(life[1]);
        return false;
    }
    for (const int file : {life[0], life[1], notes[0], notes[1]})
        (void)fcntl(file, F_SETFD, FD_CLOEXEC); // else another program only has one end more
    const pid_t watcher = fork();
    if (watcher == 0)
    {
        (void)close(life[1]);
        (void)close(notes[1]);
        BeWatcher(life[0], notes[0]);
    }
    (void)close(life[0]);
    (void)close(notes[0]);
    if (watcher < 0)
    {
        (void)close(life[1]);
        (void)close(notes[1]);
        return false;
    }
    gLife = life[1];
    gNotes = notes[1];
    gWatcher = watcher;
    return true;
}

void Send(const std::string& inNote)
{
    if (gNotes < 0)
        return;
    // With its zero byte. A watcher that was killed must not end this process as well.
    struct sigaction ignore = {};
    struct sigaction old = {};
    ignore.sa_handler = SIG_IGN;
    (void)sigaction(SIGPIPE, &ignore, &old);
    ssize_t count = 0;
    for (std::size_t done = 0; done <= inNote.size() && (count >= 0 || errno == EINTR);)
    {
        count = write(gNotes, inNote.c_str() + done, inNote.size() + 1 - done);
        done += static_cast<std::size_t>(count > 0 ? count : 0);
    }
    (void)sigaction(SIGPIPE, &old, nullptr);
}

void Note(char inKind, const std::string& inText)
{
    if (HasWatcher())
        Send(inKind + inText);
}
} // namespace

void StartWatcher() { (void)HasWatcher(); } // without one nothing is watched

void WatchFile(const std::string& inPath) { Note(kFile, fs::absolute(inPath)); }

void WatchFolder(const std::string& inPath) { Note(kFolder, fs::absolute(inPath)); }

void WatchGroup(pid_t inLeader) { Note(kGroup, std::to_string(inLeader)); }

void Unwatch(const std::string& inPath)
{
    for (const char kind : {kFile, kFolder})
        Send(std::string{kNoMore, kind} + fs::absolute(inPath).string());
}

void Unwatch(pid_t inLeader) { Send(std::string{kNoMore, kGroup} + std::to_string(inLeader)); }

void EndWatcher() noexcept
{
    if (gLife < 0)
        return;
    (void)close(gLife);
    (void)close(gNotes);
    gLife = -1;
    gNotes = -1;
    // The killed ones too: the watcher waits until their groups are gone.
    for (pid_t ended = 0; ended != gWatcher && (ended >= 0 || errno == EINTR);)
        ended = waitpid(-1, nullptr, 0);
}

std::string UniqueName(const std::string& inBeginning)
{
    std::random_device random;
    return fmt::format("{}{:08x}{:08x}", inBeginning, random(), random());
}
