#pragma once

#include "platform/Platform.h"

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace wicker {

/// The symbols registered with the platform's quote object, and why: for the lines of the
/// loaded basket, for the orders of the sent baskets, or both. A symbol is dropped only
/// when neither needs it any more.
class QuoteRegistrations {
public:
    explicit QuoteRegistrations(Platform& platform) : m_platform(platform) {}

    /// The loaded basket's symbols are now these: each is registered for all exchanges
    /// ("*", which also asks for a fresh snapshot); symbols of the old lines that nothing
    /// needs any more are dropped.
    void SetBasketSymbols(const std::vector<std::string>& symbols);
    /// Adds order symbols (trimmed) that are not registered yet.
    void AddOrderSymbols(const std::vector<std::string>& symbols);
    /// Drops every registration.
    void DropAll();

    bool IsRegistered(const std::string& symbol) const;
    size_t Count() const { return m_entries.size(); }

private:
    struct Entry {
        std::string symbol; ///< as registered
        bool basket = false;
        bool orders = false;
    };
    Platform& m_platform;
    std::unordered_map<std::string, Entry> m_entries; ///< by SymbolKeyOf
};

} // namespace wicker
