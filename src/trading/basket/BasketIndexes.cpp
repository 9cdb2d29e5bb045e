#include "trading/basket/BasketIndexes.h"

#include "common/Conversions.h"
#include "trading/quotes/QuoteBoard.h"

namespace wicker {

void BasketIndexes::SetFromSettings(const Settings& settings) {
    m_divisors = settings.divisors;
    m_indexTypes = settings.indexTypes;
}

std::optional<double> BasketIndexes::divisor(const std::string& basketName) const {
    const auto it = m_divisors.find(basketName);
    return it == m_divisors.end() ? std::nullopt : std::optional<double>(it->second);
}

std::optional<std::string> BasketIndexes::indexType(const std::string& basketName) const {
    const auto it = m_indexTypes.find(basketName);
    return it == m_indexTypes.end() ? std::nullopt : std::optional<std::string>(it->second);
}

void BasketIndexes::setDivisor(const std::string& basketName, double value) {
    m_divisors.insert_or_assign(basketName, value);
}

void BasketIndexes::setIndexType(const std::string& basketName, const std::string& value) {
    m_indexTypes.insert_or_assign(basketName, value);
}

void BasketIndexes::clear() {
    m_divisors.clear();
    m_indexTypes.clear();
}

void BasketIndexes::FillIndexSharesMap(Database& db) {
    // Read everything first, so a failing query leaves the old map in place.
    std::map<int32_t, std::unordered_map<std::string, int32_t>> shares;
    ByBasketName<int32_t> nums;
    Recordset baskets =
        db.OpenRecordset("SELECT DISTINCT intBasketNum, strBasketName FROM tblBaskets");
    for (; !baskets.IsEOF(); baskets.MoveNext()) {
        const int32_t num = baskets.Field("intBasketNum").toLong();
        shares.try_emplace(num);
        nums.try_emplace(baskets.Field("strBasketname").text(), num);
    }
    Recordset details =
        db.OpenRecordset("SELECT intBasketNum, strSym, nIndexShares FROM tblBasketDetails");
    for (; !details.IsEOF(); details.MoveNext()) {
        auto& symbols = shares[details.Field("intBasketNum").toLong()];
        // A symbol that stands twice in a basket keeps its first shares.
        symbols.try_emplace(SymbolKeyOf(details.Field("strSym").text()),
                            details.Field("nIndexShares").toLong());
    }
    m_indexShares = std::move(shares);
    m_basketNums = std::move(nums);
}

void BasketIndexes::RecordIndexShares(int32_t basketNum, const std::string& symbol,
                                      int32_t shares) {
    m_indexShares[basketNum].insert_or_assign(SymbolKeyOf(symbol), shares);
}

bool BasketIndexes::GetDivisor(const std::string& basketName, double& value) const {
    const auto d = divisor(basketName);
    value = d.value_or(0);
    return d.has_value();
}

bool BasketIndexes::GetIndexType(const std::string& basketName, std::string& value) const {
    const auto t = indexType(basketName);
    value = t.value_or("Price Weighted");
    return t.has_value();
}

bool BasketIndexes::GetIndexShares(int32_t basketNum, const std::string& symbol,
                                   int32_t& value) const {
    value = 0;
    const auto basket = m_indexShares.find(basketNum);
    if (basket == m_indexShares.end()) {
        return false;
    }
    const auto it = basket->second.find(SymbolKeyOf(symbol));
    if (it == basket->second.end()) {
        return false;
    }
    value = it->second;
    return true;
}

std::optional<int32_t> BasketIndexes::BasketNumOf(const std::string& basketName) const {
    const auto it = m_basketNums.find(basketName);
    return it == m_basketNums.end() ? std::nullopt : std::optional<int32_t>(it->second);
}

} // namespace wicker
