#include "baskets/BasketFileReader.h"

#include "common/RuntimeError.h"
#include "common/Text.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace wicker {
namespace {

constexpr int kPathFileAccess = 75;
const char* const kPathFileAccessText = "Path/File access error";
constexpr size_t kBufferBytes = 64 * 1024;

void ToUtf8(std::string& field) {
    field = Cp1252ToUtf8(field);
}

} // namespace

BasketFileReader::BasketFileReader(const std::filesystem::path& path, size_t maxFieldBytes,
                                   uint64_t maxFileBytes)
    : m_buffer(kBufferBytes), m_maxFileBytes(maxFileBytes), m_scanner(maxFieldBytes) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec)) {
        throw RuntimeError(err::FileNotFound, err::FileNotFoundText);
    }
    // A folder, device or pipe is no basket file, and /dev/zero would never end.
    if (!std::filesystem::is_regular_file(path, ec)) {
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
    m_in.open(path, std::ios::binary);
    if (!m_in) {
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
    const auto size = std::filesystem::file_size(path, ec);
    m_totalBytes = ec ? 0 : size;
    skipByteOrderMark();
}

void BasketFileReader::skipByteOrderMark() {
    // Spreadsheets saving "CSV UTF-8" put a byte-order mark first; it is no part of the
    // first symbol.
    constexpr std::string_view kBom = "\xEF\xBB\xBF";
    char head[3] = {};
    m_in.read(head, sizeof head);
    if (m_in.gcount() == static_cast<std::streamsize>(kBom.size()) &&
        std::string_view(head, sizeof head) == kBom) {
        m_bytesRead = kBom.size();
        return;
    }
    m_in.clear();
    m_in.seekg(0);
}

bool BasketFileReader::fill() {
    if (!m_in) {
        return false;
    }
    m_in.read(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    if (m_in.bad()) {
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
    if (m_bytesRead + static_cast<uint64_t>(m_in.gcount()) > m_maxFileBytes) {
        throw std::runtime_error("The file is larger than " +
                                 std::to_string(m_maxFileBytes / (1024 * 1024)) +
                                 " MB; no basket file is that large.");
    }
    m_pos = 0;
    m_end = static_cast<size_t>(m_in.gcount());
    return m_end > 0;
}

bool BasketFileReader::next(BasketFileLine& out) {
    bool started = false;
    bool pendingCr = false;
    while (true) {
        if (m_pos == m_end && !fill()) {
            break;
        }
        const char c = m_buffer[m_pos++];
        ++m_bytesRead;
        started = true;
        if (c == '\n') {
            pendingCr = false;
            break;
        }
        if (pendingCr) {
            m_scanner.feed('\r');
            pendingCr = false;
        }
        if (c == '\r') {
            pendingCr = true;
        } else {
            m_scanner.feed(c);
        }
    }
    if (!started) {
        return false;
    }
    if (pendingCr) {
        m_scanner.feed('\r');
    }
    out.number = ++m_lineNumber;
    out.overlong = m_scanner.overlong();
    out.fields = m_scanner.take();
    ToUtf8(out.fields.symbol);
    ToUtf8(out.fields.quantity);
    ToUtf8(out.fields.destination);
    ToUtf8(out.fields.indexShares);
    return true;
}

} // namespace wicker
