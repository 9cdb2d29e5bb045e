#pragma once

#include "common/Result.h"

#include <cstdint>
#include <string>
#include <vector>

namespace wicker {

/// The market behind the exchange.
enum class ExchangeMarket {
    Sim,    ///< Wicker's simulated market: prices walk, limits fill when reached
    Steady, ///< fixed prices from the seed, one-cent spread: for exact checks
};

/// The command line of wicker-exchange.
struct ExchangeOptions {
    bool help = false;
    std::string bindAddress = "127.0.0.1";
    int port = 9878;
    std::string portFile; ///< where to write the port listened on (useful with --port 0)
    std::string senderCompID = "EXCH";
    std::string targetCompID = "WICKER";
    std::string dataDir;     ///< FIX store and log; empty = nothing kept between runs
    std::string journalFile; ///< every order received, one line each
    uint32_t seed = 1;
    std::vector<std::string> halted; ///< symbols whose orders are rejected
    int fillDelayMs = 0;             ///< market-on-open/close orders wait this long
    int clipSize = 0;                ///< fill in clips of this many shares (0: at once)
    int quoteIntervalMs = 250;       ///< market data updates per subscribed symbol
    bool restOnly = false;           ///< accept orders but never fill them
    ExchangeMarket market = ExchangeMarket::Sim;
};

/// Parses the arguments after the program name.
Result<ExchangeOptions> ParseExchangeOptions(const std::vector<std::string>& args);
/// The --help text.
std::string ExchangeUsage();

} // namespace wicker
