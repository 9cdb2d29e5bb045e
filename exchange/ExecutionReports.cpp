#include "exchange/ExecutionReports.h"

namespace wicker {
namespace {

// Orders reach the book only with a side the decoder understood.
std::string FixSideCode(const std::string& side) {
    return FixSideOf(side).value_or(side);
}

// TimeInForce(59) of the order as it came in.
std::string TimeInForceOf(const ExchangeOrderRequest& r, FixVersion version) {
    if (r.priceType == 2 && version == FixVersion::Fix44) {
        return "7";
    }
    static const std::string letters = "DGOIFX";
    const size_t i = letters.find(r.tif);
    return r.tif.size() == 1 && i != std::string::npos ? std::string(1, char('0' + i)) : "";
}

std::string ExecTypeOf(ExecKind kind, const ExchangeOrder& o, FixVersion version) {
    switch (kind) {
    case ExecKind::New:
        return "0";
    case ExecKind::Fill:
        if (version == FixVersion::Fix44) {
            return "F";
        }
        return o.leaves == 0 ? "2" : "1";
    case ExecKind::Canceled:
        return "4";
    case ExecKind::Replaced:
        return "5";
    case ExecKind::Rejected:
        return "8";
    case ExecKind::Expired:
        return "C";
    case ExecKind::Status:
        return version == FixVersion::Fix44 ? "I" : o.ordStatus;
    }
    return "0";
}

} // namespace

FixMessage ExecutionReportOf(const ExchangeOrder& o, ExecKind kind, const std::string& execID,
                             FixVersion version, const std::string& transactTime,
                             int32_t lastShares, double lastPx, int ordRejReason,
                             const std::string& text) {
    const ExchangeOrderRequest& r = o.request;
    FixMessage m;
    m.msgType = "8";
    m.fields.reserve(24);
    if (!r.account.empty()) {
        m.add(1, r.account);
    }
    m.add(6, FormatFixPrice(o.avgPx));
    m.add(11, o.clOrdID.empty() ? r.clOrdID : o.clOrdID);
    m.add(14, std::to_string(o.cum));
    m.add(17, execID);
    if (version == FixVersion::Fix42) {
        m.add(20, kind == ExecKind::Status ? "3" : "0");
    }
    if (kind == ExecKind::Fill) {
        m.add(31, FormatFixPrice(lastPx));
        m.add(32, std::to_string(lastShares));
    }
    m.add(37, o.orderID);
    m.add(38, std::to_string(r.quantity));
    m.add(39, o.ordStatus);
    if (o.clOrdID != r.clOrdID && !o.clOrdID.empty()) {
        m.add(41, r.clOrdID);
    }
    if (r.priceType == 5) {
        m.add(40, "2");
        m.add(44, FormatFixPrice(r.price));
    } else {
        m.add(40, r.priceType == 2 && version == FixVersion::Fix42 ? "5" : "1");
    }
    m.add(54, FixSideCode(r.side));
    m.add(55, r.symbol);
    if (const std::string tif = TimeInForceOf(r, version); !tif.empty()) {
        m.add(59, tif);
    }
    if (!text.empty()) {
        m.add(58, text);
    }
    m.add(60, transactTime);
    if (!r.destination.empty()) {
        m.add(100, r.destination);
    }
    if (kind == ExecKind::Rejected) {
        m.add(103, std::to_string(ordRejReason));
    }
    m.add(150, ExecTypeOf(kind, o, version));
    m.add(151, std::to_string(o.leaves));
    return m;
}

FixMessage UnknownOrderStatusOf(const std::string& clOrdID, const std::string& side,
                                const std::string& symbol, const std::string& execID,
                                FixVersion version, const std::string& transactTime) {
    FixMessage m;
    m.msgType = "8";
    m.add(6, "0");
    m.add(11, clOrdID);
    m.add(14, "0");
    m.add(17, execID);
    if (version == FixVersion::Fix42) {
        m.add(20, "3");
    }
    m.add(37, "NONE");
    m.add(39, "8");
    m.add(54, side);
    m.add(55, symbol);
    m.add(58, "Unknown order.");
    m.add(60, transactTime);
    m.add(103, "5");
    m.add(150, version == FixVersion::Fix44 ? "I" : "8");
    m.add(151, "0");
    return m;
}

FixMessage CancelRejectOf(const std::string& clOrdID, const std::string& origClOrdID,
                          const std::string& orderID, const std::string& ordStatus,
                          int cxlRejReason, const std::string& text, int responseTo) {
    FixMessage m;
    m.msgType = "9";
    m.add(11, clOrdID);
    m.add(37, orderID.empty() ? "NONE" : orderID);
    m.add(39, ordStatus);
    m.add(41, origClOrdID);
    if (!text.empty()) {
        m.add(58, text);
    }
    m.add(102, std::to_string(cxlRejReason));
    m.add(434, std::to_string(responseTo));
    return m;
}

} // namespace wicker
