#pragma once

#include "storage/Database.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace wicker {

/// "SELECT strDest FROM tblDest WHERE intEnabled = 1", with " ORDER BY strDest" when
/// `sorted`: the destinations the dialogs offer, in the order the query gives them.
std::vector<std::string> EnabledDestinations(Database& db, bool sorted);

/// Number of characters of a UTF-8 text.
size_t CharCount(std::string_view utf8);

/// Destination of an imported line that names none: a symbol longer than three
/// characters counts as OTC, anything shorter as listed.
std::string DefaultDestinationFor(std::string_view symbol, const std::string& listed,
                                  const std::string& otc);

/// Destinations met in a file that are not enabled ones, each noted once, in the order
/// first seen. Comparison is exact (case matters).
class InvalidDestinations {
public:
    explicit InvalidDestinations(const std::vector<std::string>& valid)
        : m_valid(valid.begin(), valid.end()) {}

    /// Notes `destination` when it is not empty, not valid and not yet noted.
    void check(const std::string& destination);
    const std::vector<std::string>& noted() const { return m_noted; }

private:
    std::unordered_set<std::string> m_valid;
    std::unordered_set<std::string> m_seen;
    std::vector<std::string> m_noted;
};

/// The report of such destinations: each followed by a line break.
std::string InvalidDestinationsText(const std::vector<std::string>& destinations);

} // namespace wicker
