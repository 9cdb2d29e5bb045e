#pragma once

#include "baskets/BasketIndexStore.h"
#include "storage/Database.h"
#include "storage/Settings.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

namespace wicker {

/// The per-basket lookups of the live index: divisor and index type by basket name (kept
/// for the whole run and saved in the settings), and the index shares of every symbol of
/// every stored basket, by basket number. A missing key is an ordinary outcome.
class BasketIndexes final : public BasketIndexStore {
public:
    /// The lists as loaded from the settings file.
    void SetFromSettings(const Settings& settings);

    // BasketIndexStore
    std::optional<double> divisor(const std::string& basketName) const override;
    std::optional<std::string> indexType(const std::string& basketName) const override;
    void setDivisor(const std::string& basketName, double divisor) override;
    void setIndexType(const std::string& basketName, const std::string& indexType) override;
    void clear() override;

    const ByBasketName<double>& Divisors() const { return m_divisors; }
    const ByBasketName<std::string>& IndexTypes() const { return m_indexTypes; }

    /// Rebuilds the index-shares map (and the basket numbers by name) from the database.
    void FillIndexSharesMap(Database& db);
    /// Records shares for a basket and symbol, replacing an earlier entry.
    void RecordIndexShares(int32_t basketNum, const std::string& symbol, int32_t shares);

    /// Each lookup says whether the key was there; a missing one gives 0 (divisor,
    /// shares) or "Price Weighted" (index type).
    bool GetDivisor(const std::string& basketName, double& value) const;
    bool GetIndexType(const std::string& basketName, std::string& value) const;
    bool GetIndexShares(int32_t basketNum, const std::string& symbol, int32_t& value) const;
    /// The number of a stored basket by its name, as of the last FillIndexSharesMap.
    std::optional<int32_t> BasketNumOf(const std::string& basketName) const;

private:
    ByBasketName<double> m_divisors;
    ByBasketName<std::string> m_indexTypes;
    std::map<int32_t, std::unordered_map<std::string, int32_t>> m_indexShares;
    ByBasketName<int32_t> m_basketNums;
};

} // namespace wicker
