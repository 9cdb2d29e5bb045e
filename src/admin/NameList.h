#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// What an "Add" dialog of the account or destination screen puts into its list: the
/// typed text in upper case. Nothing for an empty text, and nothing for a name the list
/// already holds, so the table never gets the same name twice.
std::optional<std::string> NameToAdd(std::string_view typed,
                                     const std::vector<std::string>& present);

} // namespace wicker
