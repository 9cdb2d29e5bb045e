#pragma once

// Polls a condition until it holds or the time is up: a loaded machine is slow, not wrong.

#include <chrono>
#include <thread>

namespace wicker::test {

/// pred() is called from this thread; false if it never held within `limit`.
template <class Pred>
bool WaitFor(Pred pred, std::chrono::milliseconds limit = std::chrono::seconds(15)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!pred()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace wicker::test
