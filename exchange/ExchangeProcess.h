#pragma once

#include "common/Result.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace wicker {

/// wicker-exchange running as a child process on loopback, for tests and benchmarks that
/// need a real FIX counterparty they can kill and start again.
class ExchangeProcess {
public:
    /// `program` is the wicker-exchange executable; `folder` receives its port file.
    ExchangeProcess(std::filesystem::path program, std::filesystem::path folder);
    /// Kills the process if it still runs.
    ~ExchangeProcess();
    ExchangeProcess(const ExchangeProcess&) = delete;
    ExchangeProcess& operator=(const ExchangeProcess&) = delete;

    /// Starts it with these options plus --port-file, and waits until it listens.
    /// `port` 0 picks a free port the first time; later starts reuse the port.
    Result<void> start(const std::vector<std::string>& options, int port = 0,
                       std::chrono::milliseconds limit = std::chrono::seconds(20));
    /// SIGKILL, as a crash: no logout, nothing flushed that was not already.
    void kill();
    /// SIGTERM, and waits for the exit status (0 when it shut down cleanly).
    int terminate();
    bool running() const { return m_pid > 0; }
    int port() const { return m_port; }

private:
    std::filesystem::path m_program;
    std::filesystem::path m_folder;
    pid_t m_pid = -1;
    int m_port = 0;
};

} // namespace wicker
