#pragma once

// Orders, order states and execution reports the FIX tests build again and again.

#include "platform/OrderTicket.h"
#include "platform/fix/FixOrderBook.h"
#include "platform/fix/engine/FixWire.h"

#include <string>
#include <variant>

namespace wicker::test {

/// The fields of an OrderTicket, in its order, with defaults that make a valid market buy
/// of a basket line; name only the ones a test is about.
struct TicketSpec {
    std::string account = "ACCT01";
    std::string side = "B";
    std::string symbol = "IBM";
    int32_t quantity = 300;
    double lmtPrice = 0;
    int32_t priceType = 1;
    std::string clOrderID = "ACCT01-20240315-57-1";
    std::string tif = "D";
    std::string destination = ""; // none: the broker routes it
    int32_t maxFloor = 0;
    std::string memo = "Tech10-57-/bskt";
};

inline OrderTicket Ticket(const TicketSpec& s) {
    return OrderTicket{s.account,   s.side, s.symbol,      s.quantity, s.lmtPrice, s.priceType,
                       s.clOrderID, s.tif,  s.destination, s.maxFloor, s.memo};
}

/// A limit order of IBM on NASDAQ at 101.25, as the gateway tests send it.
inline OrderTicket LimitTicket(const std::string& clOrdID, const std::string& side,
                               int32_t quantity) {
    return Ticket({.side = side,
                   .quantity = quantity,
                   .lmtPrice = 101.25,
                   .priceType = 5,
                   .clOrderID = clOrdID,
                   .destination = "NASDAQ"});
}

/// An order as it goes out: a limit of IBM at 10.50.
inline OrderTicket Sent(const std::string& clOrdID, int32_t qty = 300,
                        const std::string& side = "B") {
    OrderTicket o;
    o.clOrderID = clOrdID;
    o.account = "ACCT01";
    o.side = side;
    o.symbol = "IBM";
    o.destination = "NASDAQ";
    o.tif = "D";
    o.memo = "Tech10-57-/bskt";
    o.priceType = 5;
    o.lmtPrice = 10.5;
    o.quantity = qty;
    return o;
}

inline const FixOrderState& UpdateAt(const FixBookOutcome& out, size_t i) {
    return std::get<FixOrderState>(out.events.at(i));
}
inline const FixOrderReject& RejectAt(const FixBookOutcome& out, size_t i) {
    return std::get<FixOrderReject>(out.events.at(i));
}

/// The fields of a message in their order, as "1=ACCT01 11=A-1 ...".
inline std::string TagsOf(const FixMessage& m) {
    std::string out;
    for (const FixField& f : m.fields) {
        out += (out.empty() ? "" : " ") + std::to_string(f.tag) + "=" + f.value;
    }
    return out;
}

/// The value of `tag`, or "<none>".
inline std::string Tag(const FixMessage& m, int tag) {
    const std::string* v = m.find(tag);
    return v != nullptr ? *v : "<none>";
}

/// A broker's acknowledgement of the NewOrderSingle `order`: new, nothing filled.
inline FixMessage NewOrderAck(const FixMessage& order) {
    const std::string id = Tag(order, 11);
    FixMessage ack;
    ack.msgType = "8";
    for (const auto& [tag, value] : {std::pair<int, std::string>{37, "O-" + id},
                                     {11, id},
                                     {17, "N-" + id},
                                     {20, "0"},
                                     {150, "0"},
                                     {39, "0"},
                                     {55, Tag(order, 55)},
                                     {54, Tag(order, 54)},
                                     {38, Tag(order, 38)},
                                     {151, Tag(order, 38)},
                                     {14, "0"},
                                     {6, "0"}}) {
        ack.add(tag, value);
    }
    return ack;
}

} // namespace wicker::test
