#pragma once

#include "baskets/BasketIndexStore.h"

#include <map>
#include <optional>
#include <string>

namespace wicker::test {

/// In-memory divisor and index-type collections, as the main screen keeps them.
class MemoryIndexStore : public BasketIndexStore {
public:
    std::optional<double> divisor(const std::string& name) const override {
        auto it = divisors.find(name);
        return it == divisors.end() ? std::nullopt : std::optional<double>(it->second);
    }
    std::optional<std::string> indexType(const std::string& name) const override {
        auto it = indexTypes.find(name);
        return it == indexTypes.end() ? std::nullopt : std::optional<std::string>(it->second);
    }
    void setDivisor(const std::string& name, double d) override { divisors[name] = d; }
    void setIndexType(const std::string& name, const std::string& t) override {
        indexTypes[name] = t;
    }
    void clear() override {
        divisors.clear();
        indexTypes.clear();
    }

    std::map<std::string, double> divisors;
    std::map<std::string, std::string> indexTypes;
};

} // namespace wicker::test
