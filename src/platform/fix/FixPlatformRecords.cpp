#include "platform/fix/FixPlatformRecords.h"

#include <optional>

namespace wicker {
namespace {

void Take(const std::optional<double>& value, uint32_t field, double& into, QVXQuoteStruct& q) {
    if (value) {
        into = *value;
        q.Fields |= field;
    }
}

void Take(const std::optional<int32_t>& value, uint32_t field, int32_t& into, QVXQuoteStruct& q) {
    if (value) {
        into = *value;
        q.Fields |= field;
    }
}

} // namespace

int32_t OrderStatusOf(std::string_view ordStatus) {
    if (ordStatus.size() != 1) {
        return QVXOrderStatus::PendingNew;
    }
    switch (ordStatus[0]) {
    case '1':
        return QVXOrderStatus::PartiallyFilled;
    case '2':
        return QVXOrderStatus::Filled;
    case '3':
        return QVXOrderStatus::DoneForDay;
    case '4':
    case 'C':
        return QVXOrderStatus::Cancelled;
    case '6':
        return QVXOrderStatus::PendingCancel;
    case '8':
        return QVXOrderStatus::Rejected;
    case 'A':
        return QVXOrderStatus::PendingNew;
    default: // New, Replaced, Stopped, Suspended, Calculated, Pending Replace...
        return QVXOrderStatus::Open;
    }
}

void FillOrderStruct(QVXOrderStruct& r, const FixOrderState& o) {
    r.Account = o.account;
    r.Action = o.status;
    r.Destination = o.destination;
    r.ExchClOrderId = o.currentClOrdID;
    r.ExchOrderId = o.orderID;
    r.LogMessage = o.text;
    r.Side = o.side;
    r.Tif = o.tif;
    r.UpdateTime = o.transactTime;
    r.AvgExecPrice = o.avgPx;
    r.ExecPriceLmt = o.lastPx;
    r.LmtPrice = o.lmtPrice;
    r.SeqNum = o.updates;
    r.CumExecQuantity = o.cum;
    r.Display = o.maxFloor;
    r.LvsQuantity = o.leaves;
    r.OrderRecordId = o.recordId;
    r.OrderStatus = OrderStatusOf(o.ordStatus);
    // FIX 4.2 reports a replace as OrdStatus "Replaced" whatever was filled before it.
    if ((o.ordStatus == "5" || o.ordStatus == "E") && o.cum > 0 && o.leaves > 0) {
        r.OrderStatus = QVXOrderStatus::PartiallyFilled;
    }
    r.PriceTypeCode = o.priceType;
    r.Quantity = o.quantity;
    r.Memo = o.memo;
    r.ClOrderID = o.clOrdID;
    r.Symbol = o.symbol;
}

QVXOrderStruct OrderStructOf(const FixOrderState& o) {
    QVXOrderStruct r;
    FillOrderStruct(r, o);
    return r;
}

QVXRejectStruct RejectStructOf(const FixOrderReject& x) {
    return QVXRejectStruct{x.clOrdID, x.side, x.quantity, x.symbol, x.reason, x.text};
}

QVXQuoteStruct QuoteStructOf(const FixQuoteFields& f) {
    QVXQuoteStruct q;
    q.Symbol = f.symbol;
    Take(f.bid, QVXQuoteField::Bid, q.BidPrice, q);
    Take(f.ask, QVXQuoteField::Ask, q.AskPrice, q);
    Take(f.last, QVXQuoteField::Last, q.LastPrice, q);
    Take(f.open, QVXQuoteField::Open, q.OpenPrice, q);
    Take(f.close, QVXQuoteField::Close, q.ClosePrice, q);
    Take(f.high, QVXQuoteField::High, q.HighPrice, q);
    Take(f.low, QVXQuoteField::Low, q.LowPrice, q);
    Take(f.vwap, QVXQuoteField::Vwap, q.Vwap, q);
    Take(f.bidSize, QVXQuoteField::BidSize, q.BidSize, q);
    Take(f.askSize, QVXQuoteField::AskSize, q.AskSize, q);
    Take(f.lastSize, QVXQuoteField::LastSize, q.LastSize, q);
    Take(f.volume, QVXQuoteField::CumVolume, q.CumVolume, q);
    if (f.snapshot) {
        q.Fields = QVXQuoteField::All;
    }
    return q;
}

} // namespace wicker
