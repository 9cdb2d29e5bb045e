#include "trading/orders/SubmitErrors.h"

#include "platform/QVXOrderMaintenance.h"

#include <array>
#include <string_view>

namespace wicker {

namespace {

struct SubmitErrorText {
    std::string_view shortText;
    std::string_view longText;
};

constexpr int32_t LowestKnownCode = -25;

// Indexed by -code - 1: entry 0 is -1, entry 24 is -25. The platform fixed these texts;
// -12 repeats the long-sale text of -14 and the futures short texts drop "Futures".
constexpr std::array<SubmitErrorText, 25> Texts{{
    {"Account is not valid.", "Basket cannot be sent. Account is not valid."},
    {"Side is not valid.", "Order cannot be sent. Side is not valid."},
    {"Quantity is not valid.", "Order cannot be sent. Quantity is not valid."},
    {"Symbol is not valid.", "Order cannot be sent. Symbol is not valid."},
    {"Price Type is not valid.", "Order cannot be sent. Price Type is not valid."},
    {"TIF is not valid.", "Order cannot be sent. TIF is not valid."},
    {"Destination is not valid.", "Order cannot be sent. Destination is not valid."},
    {"This order would violate your exposure limit.",
     "Order cannot be sent. This order would violate your exposure limit."},
    {"NYSE+ Rules Violation.", "Order cannot be sent. NYSE+ Rules Violation."},
    {"NYSE+ 30 Second Rule Violation.", "Order cannot be sent. NYSE+ 30 Second Rule Violation."},
    {"SelectNet short sales are disabled.",
     "Order cannot be sent. SelectNet short sales are disabled."},
    {"Long sale position rule violation.",
     "Order cannot be sent. Long sale position rule violation."},
    {"Short sale position rule violation.",
     "Order cannot be sent. Short sale position rule violation."},
    {"Long sale position rule violation.",
     "Order cannot be sent. Long sale position rule violation."},
    {"ActiveX API not enabled.", "Order cannot be sent. ActiveX API not enabled."},
    {"Quorvex is offline.", "Order cannot be sent. Quorvex is offline."},
    {"Security not marked as located.", "Order cannot be sent. Security not marked as located."},
    {"Order size violation.", "Futures order cannot be sent. Order size violation."},
    {"Position size violation.", "Futures order cannot be sent. Position size violation."},
    {"Margin violation.", "Futures order cannot be sent. Margin violation."},
    {"P/L violation.", "Futures order cannot be sent. P/L violation."},
    {"Account not enabled for this product.",
     "Futures order cannot be sent. Account not enabled for this product."},
    {"Trader not enabled for futures.",
     "Futures order cannot be sent. Trader not enabled for futures."},
    {"Futures minimum balance violation.",
     "Futures order cannot be sent. Futures minimum balance violation."},
    {"Trader not enabled for odd-lot transactions.",
     "Order cannot be sent. Trader not enabled to: 1) Allow odd-lot\r\nopen transactions, Or 2) "
     "Allow odd-lot cover transactions."},
}};

const SubmitErrorText* Lookup(int32_t code) {
    if (code > -1 || code < LowestKnownCode) {
        return nullptr;
    }
    return &Texts[static_cast<size_t>(-code - 1)];
}

} // namespace

std::string GetSubmitErrorStr(int32_t code) {
    if (const SubmitErrorText* t = Lookup(code)) {
        return std::string(t->shortText);
    }
    return "Unknown SubmitOrder Error. SubmitOrder Error Code = " + std::to_string(code);
}

std::string SubmitErrorPrompt(int32_t code, const std::string& side, int32_t quantity,
                              const std::string& symbol) {
    const SubmitErrorText* t = Lookup(code);
    if (t == nullptr) {
        return "Unknown reject. SubmitOrder Reject Code = " + std::to_string(code);
    }
    if (code == -1) {
        return std::string(t->longText);
    }
    return std::string(t->longText) + "\r\n" + side + " " + std::to_string(quantity) + " " + symbol;
}

void ShowSubmitError(MessageBoxes& boxes, int32_t code, const std::string& side, int32_t quantity,
                     const std::string& symbol) {
    boxes.show(SubmitErrorPrompt(code, side, quantity, symbol), 0, "Error submitting order");
}

std::string GetReplaceErrorStr(int32_t code) {
    if (code == kReplaceOrderNotOpen) {
        return "Order is not open.";
    }
    return GetSubmitErrorStr(code);
}

void ShowReplaceError(MessageBoxes& boxes, int32_t code, const std::string& side, int32_t quantity,
                      const std::string& symbol) {
    if (code != kReplaceOrderNotOpen) {
        ShowSubmitError(boxes, code, side, quantity, symbol);
        return;
    }
    boxes.show("Order cannot be changed. Order is not open.\r\n" + side + " " +
                   std::to_string(quantity) + " " + symbol,
               0, "Error submitting order");
}

void ShowSubmitError(MessageBoxes& boxes, int32_t code, const QVXOrder& order) {
    const std::string side = order.Side();
    const int32_t quantity = order.Quantity();
    const std::string symbol = order.Symbol();
    ShowSubmitError(boxes, code, side, quantity, symbol);
}

} // namespace wicker
