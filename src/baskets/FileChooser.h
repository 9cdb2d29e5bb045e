#pragma once

#include <optional>
#include <string>

namespace wicker {

/// The common file dialog, behind an interface so that tests never open a real one.
/// Returns the chosen path, or nothing when the trader cancels.
class FileChooser {
public:
    virtual ~FileChooser() = default;
    virtual std::optional<std::string> openFile(const std::string& title, const std::string& filter,
                                                const std::string& startPath) = 0;
    virtual std::optional<std::string> saveFile(const std::string& title, const std::string& filter,
                                                const std::string& startPath) = 0;
};

/// The filter of every basket file chooser.
inline constexpr const char* kBasketFileFilter = "Text Files (*.txt)";

} // namespace wicker
