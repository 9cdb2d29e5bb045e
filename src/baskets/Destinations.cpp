#include "baskets/Destinations.h"

#include <algorithm>

namespace wicker {

std::vector<std::string> EnabledDestinations(Database& db, bool sorted) {
    std::string sql = "SELECT strDest FROM tblDest WHERE intEnabled = 1";
    if (sorted) {
        sql += " ORDER BY strDest";
    }
    std::vector<std::string> out;
    for (auto rs = db.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) {
        out.push_back(rs.Field("strDest").text());
    }
    return out;
}

size_t CharCount(std::string_view utf8) {
    // Every byte that is not a continuation byte starts a character.
    return static_cast<size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string DefaultDestinationFor(std::string_view symbol, const std::string& listed,
                                  const std::string& otc) {
    return CharCount(symbol) > 3 ? otc : listed;
}

void InvalidDestinations::check(const std::string& destination) {
    if (destination.empty()) {
        return;
    }
    if (m_valid.count(destination) != 0 || !m_seen.insert(destination).second) {
        return;
    }
    m_noted.push_back(destination);
}

std::string InvalidDestinationsText(const std::vector<std::string>& destinations) {
    std::string out;
    for (const auto& d : destinations) {
        out += d + "\n";
    }
    return out;
}

} // namespace wicker
