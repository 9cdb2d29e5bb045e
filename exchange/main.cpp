// wicker-exchange: a FIX acceptor in front of a simulated market, on loopback.

#include "exchange/BasicVenue.h"
#include "exchange/ExchangeOptions.h"
#include "exchange/ExchangeServer.h"
#include "exchange/SimVenue.h"

#include <csignal>
#include <iostream>
#include <memory>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

// SIGINT and SIGTERM arrive as readable bytes on a descriptor that the loop checks,
// rather than through a handler and a global flag.
class StopSignals {
public:
    StopSignals() {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGINT);
        sigaddset(&set, SIGTERM);
        sigprocmask(SIG_BLOCK, &set, nullptr);
        m_fd = signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
    }
    ~StopSignals() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    bool raised() const {
        signalfd_siginfo info;
        return m_fd >= 0 && read(m_fd, &info, sizeof info) == static_cast<ssize_t>(sizeof info);
    }

private:
    int m_fd = -1;
};

std::unique_ptr<wicker::ExchangeVenue> MakeVenue(const wicker::ExchangeOptions& o) {
    if (o.market == wicker::ExchangeMarket::Steady) {
        return std::make_unique<wicker::BasicVenue>(o.seed, o.clipSize,
                                                    std::chrono::milliseconds(o.fillDelayMs));
    }
    wicker::SimSettings s;
    s.seed = o.seed;
    s.updatesPerSecond = 1000.0 / o.quoteIntervalMs;
    s.fillDelayMs = o.fillDelayMs;
    s.clipSize = o.clipSize;
    return std::make_unique<wicker::SimVenue>(s, std::chrono::steady_clock::now());
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    const wicker::Result<wicker::ExchangeOptions> options = wicker::ParseExchangeOptions(args);
    if (!options) {
        std::cerr << "wicker-exchange: " << options.error().message << "\n";
        return 2;
    }
    if (options->help) {
        std::cout << wicker::ExchangeUsage();
        return 0;
    }
    const StopSignals stop;
    const std::unique_ptr<wicker::ExchangeVenue> venue = MakeVenue(*options);
    wicker::ExchangeServer server(*options, *venue);
    if (const wicker::Result<void> started = server.start(); !started) {
        std::cerr << "wicker-exchange: " << started.error().message << "\n";
        return 1;
    }
    std::cout << "wicker-exchange: listening on " << options->bindAddress << ":" << server.port()
              << " as " << options->senderCompID << " for " << options->targetCompID
              << " (FIX 4.2 and 4.4)" << std::endl;
    while (!stop.raised()) {
        server.runOnce(20);
    }
    return 0;
}
