#pragma once

#include "baskets/BasketLineScanner.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <vector>

namespace wicker {

/// One line of a basket file, its fields already converted from Windows-1252 to UTF-8.
struct BasketFileLine {
    uint64_t number = 0; ///< 1-based line number in the file
    BasketFileFields fields;
    bool overlong = false; ///< a field was longer than the reader's limit and was cut
};

/// Reads a basket text file line by line without loading it whole, so a large or
/// broken file costs little memory and a screen can show progress between lines.
/// A UTF-8 byte-order mark at the start is skipped. Lines end with LF or CR LF; a lone CR stays in
/// the text; a last line without a line break still counts, and a final line break does not start
/// an empty line.
class BasketFileReader {
public:
    /// Longest field kept; no column of a basket line is anywhere near this long.
    static constexpr size_t kMaxFieldBytes = 1024;

    /// Largest file read: several times the biggest basket anyone keeps, and a stop for
    /// a file that never ends.
    static constexpr uint64_t kMaxFileBytes = 256u * 1024u * 1024u;

    /// Opens the file: RuntimeError 53 "File not found" when it is missing, 75
    /// "Path/File access error" when it cannot be read or is no regular file.
    explicit BasketFileReader(const std::filesystem::path& path,
                              size_t maxFieldBytes = kMaxFieldBytes,
                              uint64_t maxFileBytes = kMaxFileBytes);

    /// Next line; false at the end of the file. RuntimeError 75 on a read failure; an
    /// error that names the limit once more than `maxFileBytes` would be read.
    bool next(BasketFileLine& out);

    uint64_t bytesRead() const { return m_bytesRead; }
    uint64_t totalBytes() const { return m_totalBytes; }

private:
    bool fill();
    void skipByteOrderMark();

    std::ifstream m_in;
    std::vector<char> m_buffer;
    size_t m_pos = 0;
    size_t m_end = 0;
    uint64_t m_bytesRead = 0;
    uint64_t m_totalBytes = 0;
    uint64_t m_maxFileBytes = kMaxFileBytes;
    uint64_t m_lineNumber = 0;
    BasketLineScanner m_scanner;
};

} // namespace wicker
