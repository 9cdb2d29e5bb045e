#pragma once

#include "common/Result.h"

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace wicker {

/// The parts of a send after its first, made and written down on a helper thread while the
/// orders before them leave: each part twice the one before, so that a large send costs a
/// few commits and the sending thread seldom waits. The sending thread takes an order only
/// once the part that holds it is written down.
class SendParts {
public:
    /// Writes orders [from, to) down; an exception ends the writing.
    using WritePart = std::function<void(size_t from, size_t to)>;
    /// What the helper does once the parts are over, however they ended.
    using After = std::function<Result<void>()>;

    /// Orders [0, first) are written down already; the helper writes [first, count) in parts
    /// of `first` orders (one at least), then twice the part before, then runs `after`.
    SendParts(size_t first, size_t count, WritePart writePart, After after);
    /// Finishes, when Finish was not called.
    ~SendParts();
    SendParts(const SendParts&) = delete;
    SendParts& operator=(const SendParts&) = delete;

    /// Waits until order `i` is written down; false when it never will be (the writing
    /// failed or was stopped). Sending thread only.
    bool Ready(size_t i);
    /// Stops the writing after the part it is at and waits until no part is being written.
    void StopParts();
    /// Stops the writing, waits for the helper and returns what `after` returned.
    Result<void> Finish();
    /// What ended the writing before the last part, if anything did. Known after Finish.
    std::exception_ptr Failure() const { return m_failure; }

private:
    void Run(size_t first, size_t count);

    WritePart m_writePart;
    After m_after;
    std::mutex m_mutex;
    std::condition_variable m_progress;
    size_t m_ready;      ///< orders written down, under m_mutex
    size_t m_seen;       ///< m_ready as the sending thread last saw it
    bool m_over = false; ///< no more parts come, under m_mutex
    bool m_stop = false; ///< the sending thread wants no more parts, under m_mutex
    std::exception_ptr m_failure;
    std::optional<Result<void>> m_afterResult;
    std::thread m_helper;
};

} // namespace wicker
