#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace wicker {

/// One field of a row read from the basket database.
class DbValue {
public:
    DbValue() = default;
    DbValue(int64_t v) : m_v(v) {}
    DbValue(double v) : m_v(v) {}
    DbValue(std::string v) : m_v(std::move(v)) {}

    bool isNull() const { return std::holds_alternative<std::monostate>(m_v); }
    /// Text as the old provider turned a field into a string: NULL -> "",
    /// integers as decimal text, doubles in their shortest display form.
    std::string text() const;
    /// Number of the field: NULL -> 0; a text field must be numeric (Type mismatch).
    double toDouble() const;
    /// Integer with halves to even (Overflow / Type mismatch errors as CLng).
    int32_t toLong() const;
    int16_t toInt() const;

    bool operator==(const DbValue&) const = default;

private:
    std::variant<std::monostate, int64_t, double, std::string> m_v;
};

} // namespace wicker
