#include "exchange/ExchangeOptions.h"

#include "common/Text.h"

#include <charconv>

namespace wicker {
namespace {

bool ToInt(const std::string& text, long long low, long long high, long long& into) {
    long long v = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (text.empty() || ec != std::errc{} || end != text.data() + text.size() || v < low ||
        v > high) {
        return false;
    }
    into = v;
    return true;
}

} // namespace

std::string ExchangeUsage() {
    return R"(Usage: wicker-exchange [options]

A FIX acceptor running Wicker's simulated market, so that Wicker (or any FIX 4.2/4.4
initiator) can trade against a real FIX counterparty on this machine. It accepts the
sessions FIX.4.2 and FIX.4.4 between --sender and --target, fills, partly fills, cancels
and rejects orders as the simulated market says, and streams market data for the symbols
it is asked for. It listens on the loopback address only, unless told otherwise.

Options:
  --port N           TCP port to listen on (default 9878; 0 picks a free one)
  --port-file FILE   write the port listened on to FILE once listening
  --bind ADDRESS     IPv4 address to listen on (default 127.0.0.1)
  --sender ID        this side's SenderCompID (default EXCH)
  --target ID        the client's SenderCompID (default WICKER)
  --data-dir DIR     keep the FIX message store and log in DIR, so that sequence
                     numbers, resends and open orders survive a restart
                     (default: nothing is kept)
  --journal FILE     append every order received to FILE, one line of tag=value
                     fields per order
  --market KIND      sim: Wicker's simulated market, whose prices walk and whose
                     resting limits fill when the market reaches them (default);
                     steady: fixed prices from the seed with a one-cent spread
  --seed N           seed of the simulated prices (default 1)
  --halt SYM[,SYM]   reject orders for these symbols (OrdRejReason 2, exchange closed)
  --fill-delay MS    market-on-open and market-on-close orders fill after MS
                     milliseconds (default 0)
  --clip N           fill orders in clips of N shares (default: all at once)
  --quote-interval MS  market data updates per subscribed symbol (default 250)
  --rest             accept orders but never fill them
  --help             show this text

Run Wicker against it: start wicker-exchange, then set in basket.ini
  [Platform]
  Mode=FIX
  FixPort=9878
and start Wicker.
)";
}

Result<ExchangeOptions> ParseExchangeOptions(const std::vector<std::string>& args) {
    ExchangeOptions o;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const auto value = [&]() -> Result<std::string> {
            if (i + 1 >= args.size()) {
                return Error{"Option " + a + " needs a value."};
            }
            return args[++i];
        };
        const auto number = [&](long long low, long long high) -> Result<long long> {
            Result<std::string> v = value();
            if (!v) {
                return v.error();
            }
            long long n = 0;
            if (!ToInt(v.value(), low, high, n)) {
                return Error{"Option " + a + " needs a whole number from " + std::to_string(low) +
                             " to " + std::to_string(high) + "."};
            }
            return n;
        };
        const auto text = [&](std::string& into) -> Result<void> {
            Result<std::string> v = value();
            if (!v) {
                return v.error();
            }
            if (v.value().empty()) {
                return Error{"Option " + a + " needs a value."};
            }
            into = v.value();
            return {};
        };
        const auto integer = [&](long long low, long long high, auto& into) -> Result<void> {
            Result<long long> n = number(low, high);
            if (!n) {
                return n.error();
            }
            into = static_cast<std::remove_reference_t<decltype(into)>>(n.value());
            return {};
        };
        Result<void> r;
        if (a == "--help" || a == "-h") {
            o.help = true;
        } else if (a == "--port") {
            r = integer(0, 65535, o.port);
        } else if (a == "--port-file") {
            r = text(o.portFile);
        } else if (a == "--bind") {
            r = text(o.bindAddress);
        } else if (a == "--sender") {
            r = text(o.senderCompID);
        } else if (a == "--target") {
            r = text(o.targetCompID);
        } else if (a == "--data-dir") {
            r = text(o.dataDir);
        } else if (a == "--journal") {
            r = text(o.journalFile);
        } else if (a == "--seed") {
            r = integer(0, 4294967295LL, o.seed);
        } else if (a == "--halt") {
            std::string list;
            r = text(list);
            for (const std::string& s : Split(list, ",")) {
                if (!Trim(s).empty()) {
                    o.halted.push_back(Trim(s));
                }
            }
        } else if (a == "--fill-delay") {
            r = integer(0, 86400000, o.fillDelayMs);
        } else if (a == "--clip") {
            r = integer(0, 1000000000, o.clipSize);
        } else if (a == "--quote-interval") {
            r = integer(10, 3600000, o.quoteIntervalMs);
        } else if (a == "--market") {
            std::string kind;
            r = text(kind);
            if (r && LCase(kind) == "sim") {
                o.market = ExchangeMarket::Sim;
            } else if (r && LCase(kind) == "steady") {
                o.market = ExchangeMarket::Steady;
            } else if (r) {
                r = Error{"Option --market needs sim or steady."};
            }
        } else if (a == "--rest") {
            o.restOnly = true;
        } else {
            return Error{"Unknown option " + a + " (see --help)."};
        }
        if (!r) {
            return r.error();
        }
    }
    return o;
}

} // namespace wicker
