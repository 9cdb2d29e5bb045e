#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Client order ids of changed orders: the order's basket id followed by "-M" and the
/// number of the change ("ACCT01-20240315-57-3-M2"). A basket id ends in its order number,
/// a digit, so no basket id ever has this form; the platform's own replace ids end in
/// "-R<n>", so ours never meet those either.

/// The id without a trailing "-M<n>" (the id of the order before its first change).
std::string ModifyBaseId(std::string_view clOrderId);
/// n of a trailing "-M<n>"; 0 when the id has none.
int32_t ModifyNumber(std::string_view clOrderId);

/// Hands out change ids that were never used: above every id the order is known to have
/// carried (its current id, the journal's rows) and every id handed out in this run, also
/// those the broker refused (a refused id is never sent again).
class ModifyIdIssuer {
public:
    /// The next id for the order whose ids include `knownIds` (the first names the base;
    /// ids of other bases are ignored). Empty when there is none to give.
    std::string Next(const std::vector<std::string>& knownIds);

    /// An id carried before (a journal row of an earlier run): never handed out again.
    void Used(std::string_view clOrderId);

private:
    std::map<std::string, int32_t> m_lastIssued; ///< by base id
};

} // namespace wicker
