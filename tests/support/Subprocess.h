#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace wicker::test {

/// A program run by a test, its standard output read line by line. Killed (SIGKILL) and
/// reaped when the object dies, so no test leaves a process behind.
class Subprocess {
public:
    explicit Subprocess(const std::vector<std::string>& args);
    ~Subprocess();
    Subprocess(const Subprocess&) = delete;
    Subprocess& operator=(const Subprocess&) = delete;

    /// The next line of output, or nothing when the output ends or the time runs out.
    std::optional<std::string> readLine(std::chrono::milliseconds limit = std::chrono::seconds(30));
    /// Waits for the lines until one equals `line`; false when it never comes.
    bool waitFor(const std::string& line);
    /// kill -9, as a crash or a power cut would end it.
    void killHard();
    /// Waits for the end; the exit code, or -1 when a signal ended it.
    int wait();
    pid_t pid() const { return m_pid; }

private:
    pid_t m_pid = -1;
    int m_out = -1;
    std::string m_buffer;
};

/// The folder tool built beside the tests (see tests/support/tool).
std::string FolderTool();

/// An order as the folder tool's "show" listed it.
struct ShownOrder {
    int64_t cum = 0, leaves = 0;
    std::string status;
};

/// What a run of the folder tool printed: the orders "show" listed, and its other lines.
struct FolderToolRun {
    std::vector<std::string> lines;
    std::map<std::string, ShownOrder> orders; // by client order id
    int exitCode = -1;
};

/// Runs the folder tool with `args` to its end.
FolderToolRun RunFolderTool(std::vector<std::string> args);
/// Whether a line of the run starts with `prefix`.
bool Printed(const FolderToolRun& run, const std::string& prefix);

} // namespace wicker::test
