#pragma once

#include "common/Result.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// The text of one INI file with the Windows private-profile rules: "[section]" lines
/// open sections, "key=value" lines hold keys, every other line (comments, junk, lines
/// before the first section) is kept byte for byte when the text is written again.
/// Section and key names compare without ASCII case and without surrounding blanks; the
/// first of two equal keys (or sections) is the one that counts. Values are read trimmed
/// of blanks, and a pair of matching quotes around a value is dropped.
///
/// Names and values are UTF-8 in this interface. The file's bytes are Windows-1252, or
/// UTF-8 when the file starts with a UTF-8 byte order mark (which is kept).
class IniDocument {
public:
    enum class Encoding { Cp1252, Utf8WithBom };

    /// An empty Windows-1252 document (a file that does not exist yet).
    IniDocument() = default;

    /// Reads file bytes; lines end with LF or CR LF. A UTF-16 file is refused, so that
    /// it is never rewritten as 8-bit text.
    static Result<IniDocument> Parse(std::string_view bytes);
    /// The file bytes: every line ended by CR LF.
    std::string Serialize() const;

    Encoding encoding() const { return m_encoding; }

    /// Value of the key in the section, or nothing when either is missing.
    std::optional<std::string> Get(std::string_view section, std::string_view key) const;
    /// Key names of the section in file order (each once); empty when it is missing.
    std::vector<std::string> KeyNames(std::string_view section) const;
    bool HasSection(std::string_view section) const;
    /// Section names in file order, each name once.
    std::vector<std::string> SectionNames() const;

    /// Writes key=value, creating the section and the key as needed. False (and nothing
    /// changed) when the names or the value cannot be stored in a line of their own.
    bool Set(std::string_view section, std::string_view key, std::string_view value);
    /// Removes every line of the key in the section(s) of that name; true when any went.
    bool RemoveKey(std::string_view section, std::string_view key);
    /// Removes every section of that name with all its lines; true when any went.
    bool RemoveSection(std::string_view section);

    /// A section name can be written: not blank, no "]", no line break, no NUL.
    static bool IsWritableSection(std::string_view name);
    /// A key name can be written: not blank, no "=", no line break, no NUL, and it does
    /// not start like a section or a comment ("[" or ";").
    static bool IsWritableKey(std::string_view name);
    /// A value can be written: no line break, no NUL.
    static bool IsWritableValue(std::string_view value);

private:
    struct Range {
        size_t header; // index of the "[section]" line
        size_t end;    // one past the section's last line
    };

    std::string Encode(std::string_view utf8) const;
    std::string Decode(std::string_view bytes) const;
    std::vector<Range> FindSections(const std::string& name) const;
    std::optional<size_t> FindKey(Range range, const std::string& key) const;

    std::vector<std::string> m_lines; // in the file's encoding, without line ends
    Encoding m_encoding = Encoding::Cp1252;
};

} // namespace wicker
