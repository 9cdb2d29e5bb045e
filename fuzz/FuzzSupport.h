// What the harnesses share: a message-box sink, a scratch folder per process, and the
// trading desk on the simulated market, as the program runs it without its window.
#pragma once

#include "common/Clock.h"
#include "common/MessageBox.h"
#include "platform/sim/SimPlatform.h"
#include "trading/TradingDesk.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace wicker::fuzz {

/// Stops the run so libFuzzer records the input; for properties other than crashes.
inline void Check(bool ok) {
    if (!ok) {
        std::abort();
    }
}

/// Records every message and answers OK (or Yes, the default of a question).
class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest& request) override {
        texts.push_back(request.text);
        return MsgAnswer::Ok;
    }
    std::vector<std::string> texts;
};

/// A folder of its own for this process and harness, emptied on every call.
std::filesystem::path FreshFolder(const std::string& name);

/// The desk and the simulator of one run, in a data folder that may hold files already.
class SimDesk {
public:
    explicit SimDesk(const std::filesystem::path& folder);
    ~SimDesk();
    SimDesk(const SimDesk&) = delete;
    SimDesk& operator=(const SimDesk&) = delete;

    /// Moves the market and the screen's timers on, 200 ms at a time.
    void Run(std::chrono::milliseconds span);

    ManualClock clock;
    SimPlatform sim;
    SilentBoxes boxes;
    TradingDesk desk;
    bool loaded = false; ///< FormLoad worked
};

} // namespace wicker::fuzz
