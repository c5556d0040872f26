#include "Tools/support/CWholeFile.h"

#include "Tools/support/UnnamedFile.h"
#include "Tools/support/Watcher.h"
#include "Tools/support/WriteAll.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <optional>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
constexpr int kMostLinks = 40; // as many as the system follows

/** What a link at the end of the path leads to, also where nothing is there yet. */
fs::path TargetOf(fs::path inPath)
{
    std::error_code none;
    for (int links = 0; links < kMostLinks && fs::is_symlink(inPath, none); ++links)
        inPath = inPath.parent_path() / fs::read_symlink(inPath, none); // an absolute one replaces the folder
    return inPath;
}

fs::path FolderOf(const fs::path& inFile)
{
    return inFile.has_parent_path() ? inFile.parent_path() : fs::path(".");
}

/** @return the descriptor that a path like /dev/stdout names, whatever it leads to. */
std::optional<int> NamedDescriptor(std::string_view inPath)
{
    if (inPath == "/dev/stdout")
        return STDOUT_FILENO;
    if (inPath == "/dev/stderr")
        return STDERR_FILENO;
    constexpr std::string_view kFolder = "/dev/fd/";
    int number = 0;
    if (!inPath.starts_with(kFolder) ||
        std::from_chars(inPath.data() + kFolder.size(), inPath.data() + inPath.size(), number).ec !=
            std::errc())
        return std::nullopt;
    return number;
}
} // namespace

CWholeFile::CWholeFile(CWholeFile&& ioOther) noexcept
    : mPath(std::move(ioOther.mPath)),
      mTarget(std::move(ioOther.mTarget)),
      mTemporaryName(std::exchange(ioOther.mTemporaryName, {})),
      mFile(std::exchange(ioOther.mFile, -1))
{
}

CWholeFile& CWholeFile::operator=(CWholeFile&& ioOther) noexcept
{
    if (this == &ioOther)
        return *this;
    Drop();
    mPath = std::move(ioOther.mPath);
    mTarget = std::move(ioOther.mTarget);
    mTemporaryName = std::exchange(ioOther.mTemporaryName, {});
    mFile = std::exchange(ioOther.mFile, -1);
    return *this;
}

CWholeFile::~CWholeFile() { Drop(); }

SProblem CWholeFile::Problem(int inError) const
{
    return {fmt::format("'{}' cannot be written: {}.", mPath, std::strerror(inError))};
}

COutcome<CWholeFile> CWholeFile::Open(const std::string& inPath)
{
    CWholeFile file;
    file.mPath = inPath;
    const fs::path target = TargetOf(inPath);
    std::error_code none;
    const fs::file_status status = fs::status(target, none);
    if (fs::is_directory(status) || !target.has_filename())
        return SProblem{fmt::format("'{}' cannot be written: it is a folder, and a file is needed.", inPath)};
    if (const std::optional<int> descriptor = NamedDescriptor(inPath))
        file.mFile = fcntl(*descriptor, F_DUPFD_CLOEXEC, 0);
    else if (fs::exists(status) && !fs::is_regular_file(status))
        file.mFile = open(target.c_str(), O_WRONLY | O_CLOEXEC);
    else if (!fs::is_directory(FolderOf(target), none))
        return SProblem{fmt::format("'{}' cannot be written: there is no folder '{}'.", inPath,
                                    FolderOf(target).string())};
    else if (fs::exists(status) && access(target.c_str(), W_OK) != 0)
        return file.Problem(errno);
    else
    {
        file.mTarget = target;
        file.mFile = OpenUnnamedFile(FolderOf(target));
        if (file.mFile < 0)
            file.mFile = file.OpenBeside();
    }
    if (file.mFile < 0)
        return file.Problem(errno);
    return file;
}

int CWholeFile::OpenBeside()
{
    mTemporaryName = FolderOf(mTarget) / UniqueName(".part-");
    WatchFile(mTemporaryName);
    return open(mTemporaryName.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

COutcome<SDone> CWholeFile::Write(std::span<const std::byte> inBytes)
{
    if (!WriteAll(mFile, {reinterpret_cast<const char*>(inBytes.data()), inBytes.size()}))
        return Problem(errno);
    return SDone{};
}

/** @return false with errno. */
bool CWholeFile::TakePermissions()
{
    struct stat old = {};
    if (stat(mTarget.c_str(), &old) != 0)
        return errno == ENOENT;
    if (fchown(mFile, old.st_uid, old.st_gid) != 0 && errno != EPERM) // not allowed: it is the writer's then
        return false;
    return fchmod(mFile, old.st_mode & 0777) == 0;
}

COutcome<SDone> CWholeFile::Keep()
{
    if (mTarget.empty())
        return close(std::exchange(mFile, -1)) == 0 ? COutcome<SDone>(SDone{}) : Problem(errno);
    if (!TakePermissions() || fsync(mFile) != 0)
        return Problem(errno);
    if (mTemporaryName.empty())
    {
        mTemporaryName = FolderOf(mTarget) / UniqueName(".part-");
        WatchFile(mTemporaryName);
        if (!NameFile(mFile, mTemporaryName))
            return Problem(errno);
    }
    if (std::rename(mTemporaryName.c_str(), mTarget.c_str()) != 0)
        return Problem(errno);
    Unwatch(std::exchange(mTemporaryName, {}));
    Drop();
    return SDone{};
}

void CWholeFile::Drop() noexcept
{
    if (mFile >= 0)
        (void)close(std::exchange(mFile, -1)); // what it said is known already, or nobody asks
    if (mTemporaryName.empty())
        return;
    (void)unlink(mTemporaryName.c_str());
    Unwatch(std::exchange(mTemporaryName, {}));
}

COutcome<SDone> WriteWholeFile(const std::string& inPath, std::span<const std::byte> inBytes)
{
    auto file = CWholeFile::Open(inPath);
    if (!file)
        return file.Problem();
    if (auto written = file->Write(inBytes); !written)
        return written;
    return file->Keep();
}

COutcome<SDone> CheckWritable(const std::string& inPath)
{
    std::error_code none;
    if (inPath.empty() || fs::is_fifo(inPath, none)) // opening a pipe waits for its reader, closing ends it
        return SDone{};
    const auto file = CWholeFile::Open(inPath);
    if (!file)
        return file.Problem();
    return SDone{};
}
