#include "platform/fix/NewOrderSingle.h"

#include "platform/QVXOrderMaintenance.h"

#include <ctime>
#include <optional>

namespace wicker {

std::string FixTimestamp(Clock::TimePoint t) {
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(t.time_since_epoch());
    std::time_t secs = static_cast<std::time_t>(ms.count() / 1000);
    int millis = static_cast<int>(ms.count() % 1000);
    if (millis < 0) {
        millis += 1000;
        --secs;
    }
    // Written digit by digit, the date and time once a second: one goes into every order.
    thread_local std::optional<std::time_t> cachedSecs;
    thread_local std::string cached(21, '0');
    const auto put = [](std::string& out, size_t at, int value, int digits) {
        for (int i = digits - 1; i >= 0; --i) {
            out[at + static_cast<size_t>(i)] = static_cast<char>('0' + value % 10);
            value /= 10;
        }
    };
    if (secs != cachedSecs) {
        std::tm tm{};
        gmtime_r(&secs, &tm);
        put(cached, 0, tm.tm_year + 1900, 4);
        put(cached, 4, tm.tm_mon + 1, 2);
        put(cached, 6, tm.tm_mday, 2);
        cached[8] = '-';
        put(cached, 9, tm.tm_hour, 2);
        cached[11] = ':';
        put(cached, 12, tm.tm_min, 2);
        cached[14] = ':';
        put(cached, 15, tm.tm_sec, 2);
        cached[17] = '.';
        cachedSecs = secs;
    }
    std::string out = cached;
    put(out, 18, millis, 3);
    return out;
}

NewOrderSingleOrRefusal BuildNewOrderSingle(const OrderTicket& t, const FixOrderProfile& p,
                                            const Clock& clock) {
    if (t.account.empty()) {
        return {-1, {}};
    }
    const std::optional<std::string> side = FixSideOf(t.side);
    if (!side) {
        return {-2, {}};
    }
    if (t.quantity <= 0) {
        return {-3, {}};
    }
    if (t.symbol.empty()) {
        return {-4, {}};
    }
    NewOrderSingleOrRefusal out;
    FixMessage& m = out.message;
    m.msgType = "D";
    m.fields.reserve(16);
    m.add(1, t.account);
    m.add(11, t.clOrderID);
    m.add(21, p.handlInst);
    m.add(38, std::to_string(t.quantity));
    m.add(54, *side);
    m.add(55, t.symbol);
    m.add(60, FixTimestamp(clock.now()));
    if (const int refusal =
            AppendOrderType(m.fields, t.priceType, t.tif, t.lmtPrice, p.version, p.tif);
        refusal != 0) {
        return {refusal, {}};
    }
    if (!t.destination.empty()) {
        m.add(100, t.destination);
    }
    if (t.maxFloor > 0) {
        m.add(111, std::to_string(t.maxFloor));
    }
    if (p.memoTag > 0 && !t.memo.empty()) {
        m.add(p.memoTag, t.memo);
    }
    return out;
}

NewOrderSingleOrRefusal BuildReplaceRequest(const OrderTicket& ticket,
                                            const std::string& origClOrdID,
                                            const std::string& orderID,
                                            const FixOrderProfile& profile, const Clock& clock) {
    if (origClOrdID.empty() || ticket.clOrderID.empty()) {
        return {kReplaceOrderNotOpen, {}};
    }
    // Buy minus appears only on reports of orders sent by other means.
    const bool buyMinus = ticket.side == "M";
    OrderTicket t = ticket;
    if (buyMinus) {
        t.side = "B";
    }
    NewOrderSingleOrRefusal out = BuildNewOrderSingle(t, profile, clock);
    if (out.refusal != 0) {
        return out;
    }
    // A limit changed to no price is a slip of the keyboard, never an intent.
    if (t.priceType == OrderPriceType::Limit && !(t.lmtPrice > 0)) {
        return {-5, {}};
    }
    FixMessage& m = out.message;
    m.msgType = "G";
    if (buyMinus) {
        for (FixField& f : m.fields) {
            if (f.tag == 54) {
                f.value = "3";
            }
        }
    }
    if (!orderID.empty()) {
        m.add(37, orderID);
    }
    m.add(41, origClOrdID);
    return out;
}

std::optional<FixMessage> BuildCancelRequest(const std::string& cancelClOrdID,
                                             const std::string& origClOrdID,
                                             const std::string& orderID, const std::string& side,
                                             const std::string& symbol, int32_t quantity,
                                             const Clock& clock) {
    // Buy minus appears only on reports of orders sent by other means.
    const std::optional<std::string> fixSide = side == "M" ? "3" : FixSideOf(side);
    if (!fixSide || origClOrdID.empty()) {
        return std::nullopt;
    }
    FixMessage m;
    m.msgType = "F";
    m.add(11, cancelClOrdID);
    if (!orderID.empty()) {
        m.add(37, orderID);
    }
    m.add(38, std::to_string(quantity));
    m.add(41, origClOrdID);
    m.add(54, *fixSide);
    m.add(55, symbol);
    m.add(60, FixTimestamp(clock.now()));
    return m;
}

std::optional<FixMessage> BuildOrderStatusRequest(const std::string& clOrdID,
                                                  const std::string& orderID,
                                                  const std::string& side,
                                                  const std::string& symbol) {
    const std::optional<std::string> fixSide = side == "M" ? "3" : FixSideOf(side);
    if (!fixSide || clOrdID.empty()) {
        return std::nullopt;
    }
    FixMessage m;
    m.msgType = "H";
    m.add(11, clOrdID);
    if (!orderID.empty()) {
        m.add(37, orderID);
    }
    m.add(54, *fixSide);
    m.add(55, symbol);
    return m;
}

} // namespace wicker
