#pragma once

// A FIX session listener that records every call, for tests.

#include "platform/fix/engine/FixSessionListener.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace wicker::test {

// Records what the initiator reports.
class RecordingSessionListener : public FixSessionListener {
public:
    void onLogon() override {
        bump([&] { ++logons; });
    }
    void onLogout() override {
        bump([&] { ++logouts; });
    }
    void onMessage(const FixMessage& m) override {
        bump([&] { messages.push_back(m); });
    }
    void onSending(const std::string& type, int seq, const std::string& id) override {
        bump([&] { sending.push_back(type + " " + std::to_string(seq) + " " + id); });
    }
    void onStaleNotResent(const std::string& type, int seq, const std::string& id) override {
        bump([&] { stale.push_back(type + " " + std::to_string(seq) + " " + id); });
    }

    template <class Pred>
    bool waitFor(Pred pred, std::chrono::milliseconds limit = std::chrono::seconds(15)) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, limit, pred);
    }

    std::mutex mutex;
    std::condition_variable changed;
    int logons = 0;
    int logouts = 0;
    std::vector<FixMessage> messages;
    std::vector<std::string> sending;
    std::vector<std::string> stale;

private:
    template <class F> void bump(F f) {
        {
            std::lock_guard lock(mutex);
            f();
        }
        changed.notify_all();
    }
};

} // namespace wicker::test
