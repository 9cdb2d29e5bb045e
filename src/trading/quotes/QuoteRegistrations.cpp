#include "trading/quotes/QuoteRegistrations.h"

#include "common/Text.h"
#include "trading/quotes/QuoteBoard.h"

#include <unordered_set>

namespace wicker {

namespace {
constexpr const char* AllExchanges = "*";
}

void QuoteRegistrations::SetBasketSymbols(const std::vector<std::string>& symbols) {
    std::unordered_set<std::string> wanted;
    for (const std::string& symbol : symbols) {
        std::string key = SymbolKeyOf(symbol);
        if (key.empty() || !wanted.insert(key).second) {
            continue;
        }
        Entry& entry = m_entries[key];
        if (entry.symbol.empty()) {
            entry.symbol = Trim(symbol);
        }
        entry.basket = true;
        // Also when registered already: the new lines need a fresh snapshot.
        m_platform.RegisterSymbol(entry.symbol, AllExchanges);
    }
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        Entry& entry = it->second;
        if (entry.basket && wanted.count(it->first) == 0) {
            entry.basket = false;
            if (!entry.orders) {
                m_platform.DeregisterSymbol(entry.symbol, AllExchanges);
                it = m_entries.erase(it);
                continue;
            }
        }
        ++it;
    }
}

void QuoteRegistrations::AddOrderSymbols(const std::vector<std::string>& symbols) {
    for (const std::string& symbol : symbols) {
        std::string key = SymbolKeyOf(symbol);
        if (key.empty()) {
            continue;
        }
        Entry& entry = m_entries[key];
        if (entry.symbol.empty()) {
            entry.symbol = Trim(symbol);
            m_platform.RegisterSymbol(entry.symbol, AllExchanges);
        }
        entry.orders = true;
    }
}

void QuoteRegistrations::DropAll() {
    for (const auto& [key, entry] : m_entries) {
        m_platform.DeregisterSymbol(entry.symbol, AllExchanges);
    }
    m_entries.clear();
}

bool QuoteRegistrations::IsRegistered(const std::string& symbol) const {
    return m_entries.count(SymbolKeyOf(symbol)) != 0;
}

} // namespace wicker
