#include "storage/FolderLock.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace wicker {
namespace {

// Closes a descriptor unless it was handed on.
class Fd {
public:
    explicit Fd(int fd) : m_fd(fd) {}
    ~Fd() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return m_fd; }
    int release() { return std::exchange(m_fd, -1); }

private:
    int m_fd;
};

std::string ReadHolderPid(int fd) {
    char buf[32] = {};
    const ssize_t n = ::pread(fd, buf, sizeof buf - 1, 0);
    std::string pid;
    for (ssize_t i = 0; i < n && buf[i] >= '0' && buf[i] <= '9'; ++i) {
        pid += buf[i];
    }
    return pid;
}

// The holder writes its id right after locking; give it a moment before saying "unknown".
std::string WaitForHolderPid(int fd) {
    for (int attempt = 0; attempt < 20; ++attempt) {
        if (std::string pid = ReadHolderPid(fd); !pid.empty()) {
            return pid;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return {};
}

bool WritePid(int fd) {
    const std::string text = std::to_string(::getpid()) + "\n";
    return ::ftruncate(fd, 0) == 0 &&
           ::pwrite(fd, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

// The folders this process holds, for the writers that must only write under the lock.
std::mutex g_heldMutex;
std::set<std::string> g_held;

std::string FolderKey(const std::filesystem::path& folder) {
    std::error_code ec;
    std::filesystem::path key = std::filesystem::weakly_canonical(folder, ec);
    return (ec ? folder : key).lexically_normal().string();
}

} // namespace

FolderLock::FolderLock(int fd, std::string folder) : m_fd(fd), m_folder(std::move(folder)) {
    std::lock_guard lock(g_heldMutex);
    g_held.insert(m_folder);
}

bool FolderLock::HeldHere(const std::filesystem::path& folder) {
    const std::string key = FolderKey(folder);
    std::lock_guard lock(g_heldMutex);
    return g_held.count(key) != 0;
}

Result<std::optional<FolderLock>> FolderLock::HoldFor(const std::filesystem::path& folder) {
    if (HeldHere(folder)) {
        return std::optional<FolderLock>();
    }
    Result<FolderLock> own = Acquire(folder);
    if (!own) {
        return own.error();
    }
    return std::optional<FolderLock>(std::move(own).value());
}

Result<FolderLock> FolderLock::Acquire(const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / kFileName;
    // O_CREAT without O_TRUNC: opening an existing lock file changes none of its bytes.
    Fd fd(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    if (fd.get() < 0) {
        return Error{"The data folder " + folder.string() + " cannot be locked: " + path.string() +
                     " cannot be opened (" + std::strerror(errno) + ")."};
    }
    if (::flock(fd.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) {
            return Error{"The data folder " + folder.string() + " cannot be locked (" +
                         std::strerror(errno) + ")."};
        }
        const std::string pid = WaitForHolderPid(fd.get());
        return Error{"The data folder " + folder.string() + " is in use by another Wicker" +
                     (pid.empty() ? std::string() : " (process id " + pid + ")") +
                     ". Only one Wicker can work on a data folder at a time: close the other "
                     "one first, or start this one with another folder (--data-dir)."};
    }
    if (!WritePid(fd.get())) {
        return Error{"The data folder " + folder.string() + " cannot be locked: " + path.string() +
                     " cannot be written (" + std::strerror(errno) + ")."};
    }
    return FolderLock(fd.release(), FolderKey(folder));
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : m_fd(std::exchange(other.m_fd, -1)), m_folder(std::move(other.m_folder)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    if (this != &other) {
        release();
        m_fd = std::exchange(other.m_fd, -1);
        m_folder = std::move(other.m_folder);
    }
    return *this;
}

FolderLock::~FolderLock() {
    release();
}

void FolderLock::release() noexcept {
    if (m_fd < 0) {
        return;
    }
    // The file itself stays: removing it would let two later starts lock two different
    // files. Emptying it keeps an old id from being shown for a folder no one holds.
    [[maybe_unused]] const int truncated = ::ftruncate(m_fd, 0);
    ::close(m_fd); // closing drops the lock
    m_fd = -1;
    std::lock_guard lock(g_heldMutex);
    g_held.erase(m_folder);
}

} // namespace wicker
