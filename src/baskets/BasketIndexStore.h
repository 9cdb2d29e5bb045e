#pragma once

#include <optional>
#include <string>

namespace wicker {

/// The two collections keyed by basket name that the main screen keeps for the whole
/// run and the settings file persists: each basket's divisor and its index type. The
/// basket setup screen and its dialogs read and rewrite them; the main screen provides
/// the implementation.
class BasketIndexStore {
public:
    virtual ~BasketIndexStore() = default;
    virtual std::optional<double> divisor(const std::string& basketName) const = 0;
    virtual std::optional<std::string> indexType(const std::string& basketName) const = 0;
    /// Adds or replaces the member under the basket name.
    virtual void setDivisor(const std::string& basketName, double divisor) = 0;
    virtual void setIndexType(const std::string& basketName, const std::string& indexType) = 0;
    /// Empties both collections.
    virtual void clear() = 0;
};

} // namespace wicker
