#pragma once

#include <string>
#include <utility>
#include <variant>

namespace wicker {

/// The failure side of a Result: a message meant for the user.
struct Error {
    std::string message;
};

/// Value or Error, for failures that are expected and must be handled by the caller.
template <class T> class Result {
public:
    Result(T value) : m_data(std::move(value)) {}
    Result(Error error) : m_data(std::move(error)) {}

    bool ok() const { return m_data.index() == 0; }
    explicit operator bool() const { return ok(); }

    const T& value() const& { return std::get<0>(m_data); }
    T& value() & { return std::get<0>(m_data); }
    T&& value() && { return std::get<0>(std::move(m_data)); }
    const T& operator*() const& { return value(); }
    const T* operator->() const { return &value(); }

    const Error& error() const { return std::get<1>(m_data); }

private:
    std::variant<T, Error> m_data;
};

/// Result of an operation that returns nothing on success.
template <> class Result<void> {
public:
    Result() = default;
    Result(Error error) : m_error(std::move(error)), m_ok(false) {}

    bool ok() const { return m_ok; }
    explicit operator bool() const { return m_ok; }
    const Error& error() const { return m_error; }

private:
    Error m_error;
    bool m_ok = true;
};

} // namespace wicker
