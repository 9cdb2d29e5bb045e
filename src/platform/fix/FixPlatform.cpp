#include "platform/fix/FixPlatform.h"

#include "platform/PlatformKeys.h"
#include "platform/TicketOrder.h"
#include "platform/fix/FixPlatformRecords.h"

namespace wicker {
namespace {

std::string NotLoggedOn(const FixGateway& gateway) {
    const std::string why = gateway.downReason();
    return ", not logged on" + (why.empty() ? "" : " (" + why + ")");
}

} // namespace

FixPlatform::FixPlatform(FixPlatformSettings settings, PreTradeLimits limits,
                         std::filesystem::path folder, const Clock& clock)
    : m_settings(settings), m_limits(std::move(limits)),
      m_gateway(std::move(settings), std::move(folder), clock, *this) {
    m_gateway.setPreTradeCheck([this](const OrderTicket& t) { return CheckLimits(t); });
}

FixPlatform::~FixPlatform() {
    m_gateway.stop();
}

std::string FixPlatform::DisplayName() const {
    return "FIX " + m_settings.host + ":" + std::to_string(m_settings.port);
}

std::string FixPlatform::Details() const {
    return std::string("QuickFIX ") + WICKER_QUICKFIX_VERSION + ", " +
           BeginStringOf(m_settings.version) + " " + m_settings.senderCompID + " -> " +
           m_settings.targetCompID + (isLoggedOn() ? ", logged on" : NotLoggedOn(m_gateway));
}

Result<void> FixPlatform::Start() {
    return m_gateway.start();
}

void FixPlatform::Stop() {
    m_gateway.stop();
}

std::unique_ptr<QVXOrder> FixPlatform::CreateOrder() {
    return std::make_unique<TicketOrder>(
        [this](const OrderTicket& t) { return m_gateway.SubmitOrder(t); });
}

void FixPlatform::CancelOrder(const std::string& clOrderId, int32_t orderRecordId,
                              const std::string&, const std::string&) {
    // A refusal (offline, unknown order) changes nothing: the order keeps its last state
    // and the trader can cancel again.
    m_gateway.CancelOrder(clOrderId, orderRecordId);
}

int32_t FixPlatform::AdoptOrder(const KnownOrder& order) {
    FixOrderState known;
    const OrderTicket& t = order.ticket;
    known.clOrdID = t.clOrderID;
    known.currentClOrdID = order.currentClOrderId.empty() ? t.clOrderID : order.currentClOrderId;
    known.account = t.account;
    known.side = t.side;
    known.symbol = t.symbol;
    known.destination = t.destination;
    known.tif = t.tif;
    known.memo = t.memo;
    known.priceType = t.priceType;
    known.lmtPrice = t.lmtPrice;
    known.maxFloor = t.maxFloor;
    known.quantity = t.quantity;
    known.cum = order.cum;
    known.avgPx = order.avgPx;
    known.leaves = order.leaves;
    return m_gateway.adoptOrder(known);
}

int32_t FixPlatform::ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                                  const QVXOrderChange& change) {
    return m_gateway.ReplaceOrder(clOrderId, orderRecordId, change);
}

void FixPlatform::RegisterSymbol(const std::string& symbol, const std::string&) {
    if (m_settings.quotes == FixQuoteSource::Fix) {
        m_gateway.RegisterSymbol(symbol);
    }
}

void FixPlatform::DeregisterSymbol(const std::string& symbol, const std::string&) {
    if (m_settings.quotes == FixQuoteSource::Fix) {
        m_gateway.DeregisterSymbol(symbol);
    }
}

void FixPlatform::onOrderUpdate(const FixOrderState& order) {
    m_events.pushOrderUpdate(&FillOrderStruct, order);
}

void FixPlatform::onOrderReject(const FixOrderReject& reject) {
    m_events.push(RejectStructOf(reject));
}

void FixPlatform::onOrderWarning(const FixOrderWarning& warning) {
    m_events.push(QVXOrderWarning{warning.recordId, warning.clOrdID, warning.symbol, warning.text});
}

void FixPlatform::onQuote(const FixQuoteFields& quote) {
    if (quote.last && *quote.last > 0) {
        std::lock_guard lock(m_priceMutex);
        m_lastPrice[quote.symbol] = *quote.last;
    }
    QVXQuoteStruct record = QuoteStructOf(quote);
    if (quote.snapshot) {
        m_events.push(PlatformEventQueue::QuoteSnap{std::move(record)});
    } else {
        m_events.push(PlatformEventQueue::QuoteUpdate{std::move(record)});
    }
}

void FixPlatform::onSessionStatus(bool loggedOn, const std::string& text) {
    m_events.push(PlatformEventQueue::Status{loggedOn, text});
}

int32_t FixPlatform::CheckLimits(const OrderTicket& t) const {
    double price = 0;
    if (t.priceType == OrderPriceType::Limit) {
        price = t.lmtPrice;
    } else {
        std::lock_guard lock(m_priceMutex);
        if (const auto it = m_lastPrice.find(t.symbol); it != m_lastPrice.end()) {
            price = it->second;
        }
    }
    return CheckPreTradeLimits(m_limits, t.destination, t.quantity, price);
}

Result<std::unique_ptr<Platform>> CreateFixPlatform(const std::filesystem::path& dataFolder,
                                                    const Clock& clock) {
    const PlatformKeyReader keys = ReadPlatformKeys(dataFolder / "basket.ini");
    Result<FixPlatformSettings> settings = ReadFixPlatformSettings(keys);
    if (!settings) {
        return settings.error();
    }
    Result<PreTradeLimits> limits = ReadPreTradeLimits(keys);
    if (!limits) {
        return limits.error();
    }
    return std::unique_ptr<Platform>(std::make_unique<FixPlatform>(
        std::move(settings).value(), std::move(limits).value(), dataFolder / "fix", clock));
}

} // namespace wicker
