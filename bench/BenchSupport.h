#pragma once

// What the desk benchmarks share: message boxes that answer OK, tickers the simulator
// takes, a data folder of their own, the calling thread's CPU clock and the wall clock.

#include "common/MessageBox.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <time.h>
#include <unistd.h>

namespace wicker::bench {

class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Ok; }
};

/// Four capitals, distinct for every i below 26^4.
inline std::string Ticker(int i) {
    std::string s(4, 'A');
    for (int k = 3; k >= 0; --k, i /= 26) {
        s[static_cast<size_t>(k)] = static_cast<char>('A' + i % 26);
    }
    return s;
}

/// A data folder of its own, removed at the end.
struct Folder {
    explicit Folder(const std::string& name)
        : path(std::filesystem::temp_directory_path() /
               ("wicker-bench-" + name + "-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(path);
    }
    ~Folder() {
        std::error_code ec;
        std::filesystem::remove_all(path, ec);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::filesystem::path path;
};

/// CPU time of the calling thread, in ms: the UI thread's own work, whatever else the
/// machine runs meanwhile.
inline double ThreadCpuMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

/// Time as the trader waits it, in ms: also what the UI thread spends waiting for a helper.
inline double WallMs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

} // namespace wicker::bench
