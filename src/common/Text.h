#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Removes blanks (spaces only, as the old Trim did) from both ends.
std::string Trim(std::string_view s);
/// ASCII upper / lower case; other bytes unchanged.
std::string UCase(std::string_view s);
std::string LCase(std::string_view s);
/// Splits on every occurrence of the delimiter: "a," gives "a" and "", ",," three
/// empty elements, and an empty text an empty list.
std::vector<std::string> Split(std::string_view s, std::string_view delimiter);

/// UTF-8 -> Windows-1252; characters it lacks become '?'. Invalid UTF-8 bytes too.
std::string Utf8ToCp1252(std::string_view utf8);
/// Windows-1252 -> UTF-8 (the five unassigned bytes become the C1 controls of the same number).
std::string Cp1252ToUtf8(std::string_view bytes);

} // namespace wicker
