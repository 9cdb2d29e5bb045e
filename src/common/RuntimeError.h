#pragma once

#include <stdexcept>
#include <string>

namespace wicker {

/// An error with the number and text the original runtime gave it
/// (6 overflow, 13 type mismatch, 5 invalid call, 9 subscript, 457 duplicate key, ...).
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, const std::string& description)
        : std::runtime_error(description), m_number(number) {}

    int number() const noexcept { return m_number; }
    std::string description() const { return what(); }

private:
    int m_number;
};

namespace err {
inline constexpr int InvalidCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int FileNotFound = 53;
inline constexpr int DuplicateKey = 457;

inline const char* const InvalidCallText = "Invalid procedure call or argument";
inline const char* const OverflowText = "Overflow";
inline const char* const SubscriptText = "Subscript out of range";
inline const char* const TypeMismatchText = "Type mismatch";
inline const char* const FileNotFoundText = "File not found";
inline const char* const DuplicateKeyText =
    "This key is already associated with an element of this collection";
} // namespace err

} // namespace wicker
