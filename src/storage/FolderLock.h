#pragma once

#include "common/Result.h"

#include <filesystem>
#include <optional>
#include <string>

namespace wicker {

/// One Wicker per data folder: an exclusive advisory lock (flock) on "wicker.lock" in the
/// folder, held until the object dies. The kernel drops it when the process ends, however
/// it ends, so a crash never leaves a stale lock behind. Every write of the folder's
/// files (basket.ini, the databases) is made while the program holds it.
class FolderLock {
public:
    static constexpr const char* kFileName = "wicker.lock";

    /// Takes the lock and writes this process id into the lock file. When another process
    /// holds it, the Error names the folder and that process id, and no file is changed.
    static Result<FolderLock> Acquire(const std::filesystem::path& folder);

    /// Whether a FolderLock of this process holds `folder` now.
    static bool HeldHere(const std::filesystem::path& folder);
    /// What a writer of the folder's files holds while it writes: nothing more when this
    /// process holds the folder already (the program does, from its start), else a lock of
    /// its own. The Error, when another process holds the folder, says who; then nothing may
    /// be written.
    static Result<std::optional<FolderLock>> HoldFor(const std::filesystem::path& folder);

    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&& other) noexcept;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

private:
    FolderLock(int fd, std::string folder);
    void release() noexcept;

    int m_fd = -1;
    std::string m_folder; // as HeldHere compares it
};

} // namespace wicker
