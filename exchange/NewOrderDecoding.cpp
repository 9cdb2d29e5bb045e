#include "exchange/NewOrderDecoding.h"

#include "platform/fix/FixNumbers.h"

namespace wicker {
namespace {

ExchangeRefusal Refuse(std::string text) {
    return ExchangeRefusal{OrdRejOther, std::move(text)};
}

std::string ValueOf(const FixMessage& m, int tag) {
    const std::string* v = m.find(tag);
    return v != nullptr ? *v : std::string();
}

} // namespace

std::variant<ExchangeOrderRequest, ExchangeRefusal> DecodeNewOrder(const FixMessage& m,
                                                                   FixVersion version) {
    ExchangeOrderRequest r;
    r.clOrdID = ValueOf(m, 11);
    if (r.clOrdID.empty()) {
        return Refuse("ClOrdID(11) is missing.");
    }
    r.symbol = ValueOf(m, 55);
    if (r.symbol.empty()) {
        return ExchangeRefusal{OrdRejUnknownSymbol, "Symbol(55) is missing."};
    }
    const std::optional<std::string> side = SideCodeOf(ValueOf(m, 54));
    if (!side || *side == "M") {
        return Refuse("Side(54) " + ValueOf(m, 54) + " is not traded here.");
    }
    r.side = *side;
    const std::optional<int32_t> qty = ParseFixQuantity(ValueOf(m, 38));
    if (!qty || *qty <= 0) {
        return Refuse("OrderQty(38) must be a positive whole number.");
    }
    r.quantity = *qty;
    r.account = ValueOf(m, 1);
    r.destination = ValueOf(m, 100);
    if (const std::string* floor = m.find(111)) {
        const std::optional<int32_t> f = ParseFixQuantity(*floor);
        if (!f || *f < 0) {
            return Refuse("MaxFloor(111) must be a whole number.");
        }
        r.maxFloor = *f;
    }

    const std::string ordType = ValueOf(m, 40);
    const std::string tif = m.find(59) != nullptr ? ValueOf(m, 59) : "0";
    static const char* const Letters[] = {"D", "G", "O", "I", "F", "X"};
    const bool atTheClose = tif == "7";
    if (!atTheClose) {
        if (tif.size() != 1 || tif[0] < '0' || tif[0] > '5') {
            return Refuse("TimeInForce(59) " + tif + " is not supported.");
        }
        r.tif = Letters[tif[0] - '0'];
    } else {
        r.tif = "D";
    }
    if (ordType == "2") {
        const std::optional<double> price = ParseFixDecimal(ValueOf(m, 44));
        if (!price || *price <= 0) {
            return Refuse("Price(44) must be a positive number for a limit order.");
        }
        if (atTheClose) {
            return Refuse("Limit-on-close orders are not supported.");
        }
        r.priceType = 5;
        r.price = *price;
    } else if (ordType == "1") {
        r.priceType = atTheClose && version == FixVersion::Fix44 ? 2 : 1;
        if (atTheClose && version != FixVersion::Fix44) {
            return Refuse("TimeInForce(59) 7 is not FIX 4.2.");
        }
    } else if (ordType == "5" && version == FixVersion::Fix42) {
        r.priceType = 2;
    } else {
        return Refuse("OrdType(40) " + ordType + " is not supported.");
    }
    return r;
}

} // namespace wicker
