#pragma once

#include <cstddef>
#include <string>

namespace wicker {

/// Told how a long piece of work advances, so a screen can show it. Logic calls it; a
/// dialog (or nothing) implements it.
class Progress {
public:
    virtual ~Progress() = default;
    /// `done` of `total` parts of the work described by `what` are finished.
    virtual void advance(const std::string& what, size_t done, size_t total) = 0;
};

} // namespace wicker
