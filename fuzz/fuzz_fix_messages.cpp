// FIX application messages from the counterparty: raw bytes parsed as the session parses
// them, applied to the gateway's order book and market-data reading, and what comes out
// delivered to the order tracker and the quote board of a desk that has sent a basket.
// Property: any message is used or ignored, never a crash; applying a message the second
// time adds no fill (a repeated ExecID counts once).
#include "FixRawMessage.h"
#include "FuzzSupport.h"
#include "platform/fix/FixMarketData.h"
#include "platform/fix/FixOrderBook.h"
#include "platform/fix/FixPlatformRecords.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

using namespace std::chrono_literals;

namespace {

using namespace wicker;

OrderTicket Sent(const char* id, const char* side, const char* symbol, int32_t qty) {
    OrderTicket o;
    o.clOrderID = id;
    o.account = "FUZZ";
    o.side = side;
    o.symbol = symbol;
    o.destination = "NYSE";
    o.tif = "0";
    o.memo = "Basket-1-/bskt";
    o.priceType = 2;
    o.lmtPrice = 10.5;
    o.quantity = qty;
    return o;
}

// The orders a session has out: one plain, one being cancelled, one being replaced.
void SeedBook(FixOrderBook& book) {
    book.addOrder(Sent("FUZZ-20261123-1-1", "B", "IBM", 100));
    const int32_t cancelled = book.addOrder(Sent("FUZZ-20261123-1-2", "S", "MSFT", 200));
    const int32_t replaced = book.addOrder(Sent("FUZZ-20261123-1-3", "T", "AAPL", 300));
    book.noteSent(2, "FUZZ-20261123-1-1");
    book.noteSent(3, "FUZZ-20261123-1-2");
    book.noteSent(4, "FUZZ-20261123-1-3");
    book.addCancel(cancelled, "FUZZ-20261123-1-2C");
    book.addReplace(replaced, "FUZZ-20261123-1-3R", {400, 2, 11.0});
}

void Deliver(const FixBookOutcome& outcome, TradingDesk& desk) {
    for (const auto& event : outcome.events) {
        std::visit(
            [&](const auto& e) {
                using Event = std::decay_t<decltype(e)>;
                if constexpr (std::is_same_v<Event, FixOrderState>) {
                    desk.OnQVXOrderUpdate(OrderStructOf(e));
                } else if constexpr (std::is_same_v<Event, FixOrderWarning>) {
                    desk.OnQVXOrderWarning({e.recordId, e.clOrdID, e.symbol, e.text});
                } else {
                    desk.OnQVXOrderReject(RejectStructOf(e));
                }
            },
            event);
    }
}

int32_t FilledOf(const FixOrderBook& book) {
    int32_t total = 0;
    for (int32_t id = 1; id <= static_cast<int32_t>(book.size()); ++id) {
        if (const auto o = book.find(id)) {
            total += o->cum;
        }
    }
    return total;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto folder = fuzz::FreshFolder("fix");
    fuzz::SimDesk run(folder);
    fuzz::Check(run.loaded);
    TradingDesk& desk = run.desk;
    const auto table = TradingDesk::ParsePasteText("IBM\t100\r\nMSFT\t200\r\nAAPL\t300\r\n");
    desk.PasteLines(*table);
    (void)desk.ExecuteBasket(0, "FUZZ");
    run.Run(200ms);

    FixOrderBook book(5149);
    SeedBook(book);
    // Up to eight messages, one per line, applied in order.
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    for (int n = 0; n < 8 && !rest.empty(); ++n) {
        const size_t end = rest.find('\n');
        const std::string raw(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        FixMessage message;
        if (!fuzz::ParseRawFix(raw, message)) {
            continue;
        }
        Deliver(book.apply(message), desk);
        const int32_t filled = FilledOf(book);
        const FixBookOutcome again = book.apply(message);
        if (message.find(17) != nullptr && !message.find(17)->empty()) {
            fuzz::Check(FilledOf(book) == filled);
        }
        Deliver(again, desk);
        for (const FixQuoteFields& quote : ParseMarketData(message)) {
            if (quote.snapshot) {
                desk.OnQVXQuoteSnap(QuoteStructOf(quote));
            } else {
                desk.OnQVXQuoteUpdate(QuoteStructOf(quote));
            }
        }
        desk.Timer200ms();
    }
    desk.Timer1sec();
    desk.Timer2sec();
    return 0;
}
