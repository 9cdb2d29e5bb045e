#include "platform/fix/FixMarketData.h"

#include "platform/fix/FixNumbers.h"
#include "platform/fix/FixOrderMapping.h"

#include <algorithm>

namespace wicker {
namespace {

constexpr int TagSymbol = 55;
constexpr int TagMDReqID = 262;
constexpr int TagSubscriptionRequestType = 263;
constexpr int TagMarketDepth = 264;
constexpr int TagMDUpdateType = 265;
constexpr int TagNoMDEntryTypes = 267;
constexpr int TagNoMDEntries = 268;
constexpr int TagMDEntryType = 269;
constexpr int TagMDEntryPx = 270;
constexpr int TagMDEntrySize = 271;
constexpr int TagMDUpdateAction = 279;
constexpr int TagNoRelatedSym = 146;

const char* const EntryTypes[] = {"0", "1", "2", "4", "5", "7", "8", "9", "B"};

const std::string* Find(const std::vector<FixField>& entry, int tag) {
    for (const FixField& f : entry) {
        if (f.tag == tag) {
            return &f.value;
        }
    }
    return nullptr;
}

// Stores one entry's price and size into the quote; false when a number is malformed.
bool Store(FixQuoteFields& q, std::string_view type, const std::string* px,
           const std::string* size) {
    std::optional<double> price;
    std::optional<int32_t> qty;
    if (px != nullptr && !(price = ParseFixDecimal(*px))) {
        return false;
    }
    if (size != nullptr && (!(qty = ParseFixQuantity(*size)) || *qty < 0)) {
        return false;
    }
    if (price && *price < 0) {
        return false;
    }
    if (type == "0") {
        q.bid = price ? price : q.bid;
        q.bidSize = qty ? qty : q.bidSize;
    } else if (type == "1") {
        q.ask = price ? price : q.ask;
        q.askSize = qty ? qty : q.askSize;
    } else if (type == "2") {
        q.last = price ? price : q.last;
        q.lastSize = qty ? qty : q.lastSize;
    } else if (type == "4") {
        q.open = price ? price : q.open;
    } else if (type == "5") {
        q.close = price ? price : q.close;
    } else if (type == "7") {
        q.high = price ? price : q.high;
    } else if (type == "8") {
        q.low = price ? price : q.low;
    } else if (type == "9") {
        q.vwap = price ? price : q.vwap;
    } else if (type == "B") {
        q.volume = qty ? qty : q.volume;
    }
    return true;
}

void AddEntry(std::vector<std::vector<FixField>>& entries, bool incremental, const char* type,
              const std::string& symbol, std::optional<double> px, std::optional<int32_t> size) {
    if (!px && !size) {
        return;
    }
    std::vector<FixField> e;
    if (incremental) {
        e.push_back({TagMDUpdateAction, "1"});
    }
    e.push_back({TagMDEntryType, type});
    if (incremental) {
        e.push_back({TagSymbol, symbol});
    }
    if (px) {
        e.push_back({TagMDEntryPx, FormatFixPrice(*px)});
    }
    if (size) {
        e.push_back({TagMDEntrySize, std::to_string(*size)});
    }
    entries.push_back(std::move(e));
}

} // namespace

FixMessage MarketDataRequest(std::string_view symbol, bool subscribe) {
    FixMessage m;
    m.msgType = "V";
    m.add(TagMDReqID, "Q-" + std::string(symbol));
    m.add(TagSubscriptionRequestType, subscribe ? "1" : "2");
    m.add(TagMarketDepth, "1");
    m.add(TagMDUpdateType, "1");
    FixGroup types{TagNoMDEntryTypes, {}};
    for (const char* t : EntryTypes) {
        types.entries.push_back({{TagMDEntryType, t}});
    }
    m.groups.push_back(std::move(types));
    m.groups.push_back(FixGroup{TagNoRelatedSym, {{{TagSymbol, std::string(symbol)}}}});
    return m;
}

std::optional<FixQuoteSubscription> ParseMarketDataRequest(const FixMessage& request) {
    FixQuoteSubscription s;
    const std::string* id = request.find(TagMDReqID);
    const std::string* type = request.find(TagSubscriptionRequestType);
    if (id == nullptr || type == nullptr || (*type != "1" && *type != "2")) {
        return std::nullopt;
    }
    s.mdReqID = *id;
    s.subscribe = *type == "1";
    if (const FixGroup* g = request.findGroup(TagNoRelatedSym)) {
        for (const std::vector<FixField>& entry : g->entries) {
            if (const std::string* sym = Find(entry, TagSymbol); sym != nullptr && !sym->empty()) {
                s.symbols.push_back(*sym);
            }
        }
    }
    if (s.symbols.empty()) {
        return std::nullopt;
    }
    return s;
}

FixMessage MarketDataMessage(const FixQuoteFields& q, std::string_view mdReqID) {
    const bool incremental = !q.snapshot;
    FixMessage m;
    m.msgType = incremental ? "X" : "W";
    m.add(TagMDReqID, std::string(mdReqID));
    if (!incremental) {
        m.add(TagSymbol, q.symbol);
    }
    FixGroup g{TagNoMDEntries, {}};
    AddEntry(g.entries, incremental, "0", q.symbol, q.bid, q.bidSize);
    AddEntry(g.entries, incremental, "1", q.symbol, q.ask, q.askSize);
    AddEntry(g.entries, incremental, "2", q.symbol, q.last, q.lastSize);
    AddEntry(g.entries, incremental, "4", q.symbol, q.open, std::nullopt);
    AddEntry(g.entries, incremental, "5", q.symbol, q.close, std::nullopt);
    AddEntry(g.entries, incremental, "7", q.symbol, q.high, std::nullopt);
    AddEntry(g.entries, incremental, "8", q.symbol, q.low, std::nullopt);
    AddEntry(g.entries, incremental, "9", q.symbol, q.vwap, std::nullopt);
    AddEntry(g.entries, incremental, "B", q.symbol, std::nullopt, q.volume);
    m.groups.push_back(std::move(g));
    return m;
}

std::vector<FixQuoteFields> ParseMarketData(const FixMessage& message) {
    std::vector<FixQuoteFields> out;
    const bool snapshot = message.msgType == "W";
    if (!snapshot && message.msgType != "X") {
        return out;
    }
    const FixGroup* g = message.findGroup(TagNoMDEntries);
    if (g == nullptr) {
        return out;
    }
    const std::string* topSymbol = message.find(TagSymbol);
    for (const std::vector<FixField>& entry : g->entries) {
        const std::string* type = Find(entry, TagMDEntryType);
        const std::string* action = Find(entry, TagMDUpdateAction);
        const std::string* entrySymbol = Find(entry, TagSymbol);
        const std::string* symbol = entrySymbol != nullptr ? entrySymbol : topSymbol;
        if (type == nullptr || symbol == nullptr || symbol->empty() ||
            (action != nullptr && *action == "2")) {
            continue;
        }
        auto it = std::find_if(out.begin(), out.end(),
                               [&](const FixQuoteFields& q) { return q.symbol == *symbol; });
        if (it == out.end()) {
            FixQuoteFields q;
            q.symbol = *symbol;
            q.snapshot = snapshot;
            out.push_back(q);
            it = out.end() - 1;
        }
        Store(*it, *type, Find(entry, TagMDEntryPx), Find(entry, TagMDEntrySize));
    }
    return out;
}

} // namespace wicker
