#include "trading/orders/ModifyClOrderIds.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace wicker {

namespace {

/// Position of the "-M" of a trailing "-M<digits>", or npos.
size_t SuffixStart(std::string_view id) {
    size_t digits = id.size();
    while (digits > 0 && id[digits - 1] >= '0' && id[digits - 1] <= '9') {
        --digits;
    }
    if (digits == id.size() || digits < 2 || id[digits - 1] != 'M' || id[digits - 2] != '-') {
        return std::string_view::npos;
    }
    return digits - 2;
}

} // namespace

std::string ModifyBaseId(std::string_view clOrderId) {
    const size_t at = SuffixStart(clOrderId);
    return std::string(at == std::string_view::npos ? clOrderId : clOrderId.substr(0, at));
}

int32_t ModifyNumber(std::string_view clOrderId) {
    const size_t at = SuffixStart(clOrderId);
    if (at == std::string_view::npos) {
        return 0;
    }
    const std::string_view digits = clOrderId.substr(at + 2);
    int32_t n = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), n);
    // Too many digits to be one of ours: count it as the highest number, so the next id
    // can only be refused as too high, never repeat one.
    return ec == std::errc() ? n : std::numeric_limits<int32_t>::max();
}

void ModifyIdIssuer::Used(std::string_view clOrderId) {
    int32_t& issued = m_lastIssued[ModifyBaseId(clOrderId)];
    issued = std::max(issued, ModifyNumber(clOrderId));
}

std::string ModifyIdIssuer::Next(const std::vector<std::string>& knownIds) {
    if (knownIds.empty()) {
        return {};
    }
    const std::string base = ModifyBaseId(knownIds.front());
    int32_t highest = 0;
    for (const std::string& id : knownIds) {
        if (ModifyBaseId(id) == base) {
            highest = std::max(highest, ModifyNumber(id));
        }
    }
    int32_t& issued = m_lastIssued[base];
    highest = std::max(highest, issued);
    // Past the last number no unused id is left: nothing is handed out and the caller
    // refuses the change (an empty id would let the platform make one of its own).
    if (highest == std::numeric_limits<int32_t>::max()) {
        return {};
    }
    issued = highest + 1;
    return base + "-M" + std::to_string(issued);
}

} // namespace wicker
