#pragma once

#include "platform/fix/engine/FixInitiator.h"
#include "platform/fix/engine/FixWire.h"

#include <memory>
#include <vector>

namespace wicker {

/// Nothing but QuickFIX: a SocketInitiator whose application counts ExecutionReports, and
/// a loop of sendToTarget. The yardstick that Wicker's FIX send path is measured against.
class FixBareLoop {
public:
    explicit FixBareLoop(const FixSessionConfig& config);
    ~FixBareLoop();
    FixBareLoop(const FixBareLoop&) = delete;
    FixBareLoop& operator=(const FixBareLoop&) = delete;

    /// Starts the session and waits up to timeoutMs for the logon. Throws FixEngineError.
    bool logon(int timeoutMs);
    /// Builds the QuickFIX messages (before any clock runs), sends them all in one loop,
    /// and waits until `answers` ExecutionReports have arrived or timeoutMs passed.
    /// Returns the seconds from the first send to the last awaited report; negative when
    /// the reports did not all arrive.
    double sendAndAwait(const std::vector<FixMessage>& orders, int answers, int timeoutMs);
    void stop();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace wicker
