#include "storage/IniFileIo.h"

#include "storage/FolderLock.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#if __has_include(<unistd.h>)
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#define WICKER_HAVE_FSYNC 1
#endif

namespace wicker {
namespace {

namespace fs = std::filesystem;

// Far above any settings file; keeps a wrong path from pulling a huge file into memory.
constexpr std::uintmax_t kMaxFileBytes = 16u * 1024u * 1024u;

IniFileContent Unreadable(const fs::path& path, const std::string& why) {
    IniFileContent out;
    out.state = IniFileContent::State::Unreadable;
    out.error = "The settings file " + path.string() + " cannot be read: " + why;
    return out;
}

bool IsNotFound(const std::error_code& ec) {
    return ec == std::errc::no_such_file_or_directory || ec == std::errc::not_a_directory;
}

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

std::string TempFilePrefix(const fs::path& target) {
    return "." + target.filename().string() + ".";
}

// Whether a name is one TempFile makes for the target: prefix, eight hex digits, ".tmp".
bool IsTempFileName(const std::string& name, const std::string& prefix) {
    constexpr size_t kTagLength = 8;
    constexpr std::string_view kSuffix = ".tmp";
    if (name.size() != prefix.size() + kTagLength + kSuffix.size() ||
        name.compare(0, prefix.size(), prefix) != 0 ||
        name.compare(prefix.size() + kTagLength, kSuffix.size(), kSuffix) != 0) {
        return false;
    }
    const std::string tag = name.substr(prefix.size(), kTagLength);
    return tag.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// A new file next to the target, removed again unless it was renamed into place.
class TempFile {
public:
    explicit TempFile(const fs::path& target) {
        std::random_device random;
        for (int attempt = 0; attempt < 16 && !m_file; ++attempt) {
            char tag[16];
            std::snprintf(tag, sizeof tag, "%08x", static_cast<unsigned>(random()));
            m_path = target.parent_path() / (TempFilePrefix(target) + tag + ".tmp");
            // "x": fail rather than reuse a file someone else made.
            m_file.reset(std::fopen(m_path.c_str(), "wbx"));
        }
        if (!m_file) {
            m_path.clear();
        }
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() {
        m_file.reset();
        if (!m_path.empty()) {
            std::error_code ec;
            fs::remove(m_path, ec);
        }
    }

    bool ok() const { return m_file != nullptr; }
    const fs::path& path() const { return m_path; }

    // Writes, flushes to the disk and closes.
    bool WriteAll(const std::string& bytes) {
        std::FILE* f = m_file.get();
        bool good =
            std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size() && std::fflush(f) == 0;
#ifdef WICKER_HAVE_FSYNC
        good = good && ::fsync(::fileno(f)) == 0;
#endif
        std::FILE* raw = m_file.release();
        return std::fclose(raw) == 0 && good;
    }

    void Committed() {
        m_path.clear();
    }

private:
    fs::path m_path;
    FilePtr m_file;
};

// The new name reaches the disk too: until the folder is synced, a power cut can bring the
// old file back. A folder that cannot be opened or synced on its file system (EINVAL) keeps
// the file's own sync; only a failing disk is an error.
bool FolderSynced(const fs::path& folder) {
#ifdef WICKER_HAVE_FSYNC
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return true;
    }
    const bool synced = ::fsync(fd) == 0 || errno == EINVAL || errno == ENOTSUP;
    ::close(fd);
    return synced;
#else
    (void)folder;
    return true;
#endif
}

Result<void> Failed(const fs::path& path, const std::string& why) {
    return Error{"The settings file " + path.string() + " could not be written: " + why};
}

Result<void> Replace(const fs::path& path, const IniDocument& document) {
    std::error_code ec;
    fs::path target = path;
    if (fs::is_symlink(path, ec)) {
        target = fs::canonical(path, ec);
        if (ec) {
            return Failed(path, "the link points nowhere.");
        }
    }
    const fs::path folder = target.parent_path().empty() ? fs::path(".") : target.parent_path();
    if (!fs::is_directory(folder, ec)) {
        return Failed(path, "the folder " + folder.string() + " does not exist.");
    }
    TempFile tmp(folder / target.filename());
    if (!tmp.ok()) {
        return Failed(path, "no new file can be made in " + folder.string() + ".");
    }
    if (!tmp.WriteAll(document.Serialize())) {
        return Failed(path, "the disk did not take the text.");
    }
    const fs::file_status old = fs::status(target, ec);
    if (!ec && fs::exists(old)) {
        fs::permissions(tmp.path(), old.permissions(), ec);
    }
    fs::rename(tmp.path(), target, ec);
    if (ec) {
        return Failed(path, ec.message() + ".");
    }
    tmp.Committed();
    if (!FolderSynced(folder)) {
        return Failed(path, "the disk did not take its new name.");
    }
    return {};
}

} // namespace

IniFileContent ReadIniFile(const fs::path& path) {
    if (path.empty()) {
        return {};
    }
    std::error_code ec;
    const fs::file_status status = fs::status(path, ec);
    if (status.type() == fs::file_type::not_found || (ec && IsNotFound(ec))) {
        return {};
    }
    if (ec) {
        return Unreadable(path, ec.message());
    }
    if (status.type() == fs::file_type::directory) {
        return Unreadable(path, "it is a folder.");
    }
    if (status.type() != fs::file_type::regular) {
        return Unreadable(path, "it is not a regular file.");
    }
    const std::uintmax_t size = fs::file_size(path, ec);
    if (ec || size > kMaxFileBytes) {
        return Unreadable(path, ec ? ec.message() : "it is too large for a settings file.");
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return Unreadable(path, "it cannot be opened.");
    }
    IniFileContent out;
    out.bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        return Unreadable(path, "reading it failed.");
    }
    auto parsed = IniDocument::Parse(out.bytes);
    if (!parsed) {
        return Unreadable(path, parsed.error().message);
    }
    out.document = std::move(parsed).value();
    out.state = IniFileContent::State::Read;
    return out;
}

Result<void> WriteIniFile(const fs::path& path, const IniDocument& document) {
    try {
        // Two programs writing the file at once keep only one's keys: the data folder's
        // lock is held for every write. A missing folder is Replace's to report.
        const fs::path folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
        std::error_code ec;
        Result<std::optional<FolderLock>> held = std::optional<FolderLock>();
        if (fs::is_directory(folder, ec)) {
            held = FolderLock::HoldFor(folder);
        }
        if (!held) {
            return Failed(path, held.error().message);
        }
        return Replace(path, document);
    } catch (const std::exception& e) { // no random source, no memory: the old file stays
        return Failed(path, e.what());
    }
}

int RemoveLeftoverTempFiles(const fs::path& path) {
    const fs::path folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
    const std::string prefix = TempFilePrefix(path);
    int removed = 0;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const fs::path& found = it->path();
        std::error_code statError;
        if (IsTempFileName(found.filename().string(), prefix) && it->is_regular_file(statError) &&
            fs::remove(found, statError)) {
            ++removed;
        }
    }
    return removed;
}

} // namespace wicker
