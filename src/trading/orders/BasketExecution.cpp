#include "trading/orders/BasketExecution.h"

#include "common/Conversions.h"
#include "common/Formats.h"
#include "common/RuntimeError.h"
#include "common/Text.h"
#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/orders/SubmitErrors.h"

#include <cmath>
#include <limits>

namespace wicker {

namespace {

bool HasQuote(const std::string& text) {
    return !text.empty() && Val(text) != 0;
}

/// Limit buttons need all three quotes and a TIF, even the quotes whose price is not used.
bool LineMaySend(int index, const ExecutionLine& line) {
    if (IsMarketTypeButton(index)) {
        return true;
    }
    return HasQuote(line.bid) && HasQuote(line.ask) && HasQuote(line.last) && !line.tif.empty();
}

const std::string& PriceText(PriceSource source, const ExecutionLine& line) {
    switch (source) {
    case PriceSource::Bid:
        return line.bid;
    case PriceSource::Ask:
        return line.ask;
    case PriceSource::Last:
        return line.last;
    case PriceSource::LinePrice:
    case PriceSource::None:
        break;
    }
    return line.price;
}

/// Side, price type, TIF and limit price of the button, set in the order the platform
/// has always received them.
void ApplyButtonRule(int index, const ExecutionLine& line, double modifier, QVXOrder& order) {
    const auto rule = ExecuteButtonRuleFor(index);
    if (!rule) {
        return;
    }
    switch (rule->kind) {
    case ButtonKind::Limit: {
        const double price = CDbl(PriceText(rule->price, line));
        const std::string tif = TifCode(line.tif);
        const double limit = price + modifier;
        if (!std::isfinite(limit)) {
            throw RuntimeError(err::Overflow, err::OverflowText);
        }
        order.setTif(tif);
        order.setPriceType(rule->priceType);
        order.setSide(std::string(rule->side));
        order.setLmtPrice(limit);
        break;
    }
    case ButtonKind::Market:
    case ButtonKind::MarketOnClose:
        order.setTif(TifCode(line.tif));
        order.setPriceType(rule->priceType);
        order.setSide(std::string(rule->side));
        break;
    case ButtonKind::MarketOnOpen:
        order.setTif("O");
        order.setPriceType(rule->priceType);
        order.setSide(std::string(rule->side));
        break;
    }
}

} // namespace

std::string SendSummaryText(const std::vector<std::string>& notSent,
                            const std::vector<std::pair<std::string, int32_t>>& submitErrors) {
    std::string text;
    if (!notSent.empty()) {
        text += "***** Orders Not Sent *****\r\n";
        for (const std::string& line : notSent) {
            text += line + "\r\n";
        }
        text += "\r\n";
    }
    if (!submitErrors.empty()) {
        text += "***** Submit Order Error *****\r\n";
        for (const auto& [line, code] : submitErrors) {
            text += line + ": " + GetSubmitErrorStr(code) + "\r\n";
        }
    }
    return text;
}

BasketExecution::BasketExecution(QVXOrderFactory& orders, SendSequence& sequence,
                                 SequenceStore& store, MessageBoxes& boxes, const Clock& clock)
    : m_orders(orders), m_sequence(sequence), m_store(store), m_boxes(boxes), m_clock(clock) {}

ExecuteReport BasketExecution::cmdExecuteBasket_Click(int index,
                                                      std::span<const ExecutionLine> lines,
                                                      const ExecutionInputs& inputs,
                                                      const ExecutionSettings& settings) {
    ExecuteReport report;
    if (lines.empty()) {
        report.outcome = ExecuteOutcome::NoLines;
        return report;
    }
    if (inputs.account.empty()) {
        m_boxes.show("Please choose an account to use.", 0, "Missing Account");
        report.outcome = ExecuteOutcome::MissingAccount;
        return report;
    }
    // Equality with zero only: a negative multiplier is the calculation's business.
    if (Val(inputs.multiplier) == 0) {
        m_boxes.show("Basket multiple must be greater than 0", 0, "");
        report.outcome = ExecuteOutcome::ZeroMultiple;
        return report;
    }
    if (settings.confirmBeforeSending && m_boxes.show("Do you want to send this basket order?", 292,
                                                      "Basket Confirmation") != MsgAnswer::Yes) {
        report.outcome = ExecuteOutcome::NotConfirmed;
        return report;
    }

    const int16_t basketSeq = m_sequence.BasketSeq();
    if (!ReserveNextBasketSeq(basketSeq)) {
        report.outcome = ExecuteOutcome::NotReserved;
        return report;
    }
    report.outcome = ExecuteOutcome::Sent;
    report.basketSeq = basketSeq;

    {
        // The send number is used up whatever happens to the lines, also when one of them
        // ends the click with an error: its orders may already be out.
        struct SendEnd {
            SendSequence& sequence;
            int16_t next;
            ~SendEnd() {
                sequence.setBasketSeq(next);
                sequence.setOrderSeq(1);
            }
        } sendEnd{m_sequence, static_cast<int16_t>(basketSeq + 1)};
        m_lastOrderSeq = 0;
        m_orderSeqWraps = 0;

        // Every order is complete before the first one leaves: a line that cannot be read
        // stops the send while nothing of it is out.
        const std::string date = FormatYyyymmdd(m_clock.localNow());
        std::vector<PreparedOrder> orders;
        for (const ExecutionLine& line : lines) {
            if (line.checked) {
                if (PreparedOrder prepared =
                        PrepareLine(index, line, inputs, settings, date, report);
                    prepared.order) {
                    orders.push_back(std::move(prepared));
                }
            }
        }
        Announce(basketSeq, inputs.basketName, orders);
        struct ListenerEnd {
            SendListener* listener;
            int16_t basketSeq;
            ~ListenerEnd() {
                if (listener != nullptr) {
                    listener->SendEnds(basketSeq);
                }
            }
        } listenerEnd{m_listener, basketSeq};
        Submit(orders, report);
    }

    const std::string summary = SendSummaryText(report.notSent, report.submitErrors);
    if (!summary.empty()) {
        m_boxes.show(summary, 48, "Some Orders Were Not Sent");
    }
    return report;
}

double BasketExecution::ModifierValue(const std::string& text) {
    // Every line carries the screen's one modifier: read its text once per distinct value.
    if (!m_modifierCache || m_modifierCache->first != text) {
        m_modifierCache.emplace(text, CDbl(text));
    }
    return m_modifierCache->second;
}

int32_t BasketExecution::NextOrderNumber() {
    const int16_t seq = m_sequence.TakeOrderSeq();
    if (seq <= m_lastOrderSeq) {
        ++m_orderSeqWraps;
    }
    m_lastOrderSeq = seq;
    return seq + m_orderSeqWraps * int32_t{SendSequence::LastOrderSeq};
}

bool BasketExecution::ReserveNextBasketSeq(int16_t basketSeq) {
    Result<void> saved = Error{"The basket sequence number cannot go past 32767."};
    if (basketSeq < std::numeric_limits<int16_t>::max()) {
        saved = m_store.SaveBasketNum(static_cast<int16_t>(basketSeq + 1));
    }
    if (!saved) {
        m_boxes.show(saved.error().message + "\r\nNo order was sent.", 48, "Basket Not Sent");
        return false;
    }
    return true;
}

BasketExecution::PreparedOrder BasketExecution::PrepareLine(int index, const ExecutionLine& line,
                                                            const ExecutionInputs& inputs,
                                                            const ExecutionSettings& settings,
                                                            const std::string& date,
                                                            ExecuteReport& report) {
    std::unique_ptr<QVXOrder> order = m_orders.CreateOrder();
    order->setMemo(BasketMemo(inputs.basketName, report.basketSeq));
    order->setAccount(UCase(inputs.account));
    order->setSymbol(line.symbol);
    // One reading of the text serves both conversions: each is exactly the text's own.
    const double quantity = CDbl(line.quantity);
    order->setQuantity(CLng(quantity));
    order->setDestination(UCase(line.destination));
    std::string reportText =
        line.symbol + " " + std::to_string(CInt(quantity)) + " " + line.destination;
    if (settings.reserveEnabled && TakesReserve(order->Destination()) &&
        settings.reserveQuantity <= order->Quantity()) {
        order->setMaxFloor(settings.reserveQuantity);
    }
    if (!LineMaySend(index, line)) {
        report.notSent.push_back(std::move(reportText));
        return {};
    }
    const double modifier = ModifierValue(line.modifier);
    ApplyButtonRule(index, line, modifier, *order);
    order->setClOrderID(
        BasketClOrderID(order->Account(), date, report.basketSeq, NextOrderNumber()));
    return PreparedOrder{std::move(order), std::move(reportText)};
}

void BasketExecution::Announce(int16_t basketSeq, const std::string& basketName,
                               const std::vector<PreparedOrder>& orders) {
    if (m_listener == nullptr) {
        return;
    }
    std::vector<const QVXOrder*> view;
    view.reserve(orders.size());
    for (const PreparedOrder& prepared : orders) {
        view.push_back(prepared.order.get());
    }
    m_listener->SendBegins(basketSeq, basketName, view);
}

void BasketExecution::Submit(std::vector<PreparedOrder>& orders, ExecuteReport& report) {
    for (PreparedOrder& prepared : orders) {
        m_lastSubmitResult = prepared.order->SubmitOrder();
        ++report.ordersSubmitted;
        if (m_listener != nullptr) {
            m_listener->Submitted(*prepared.order, m_lastSubmitResult);
        }
        if (m_lastSubmitResult < 0) {
            report.submitErrors.emplace_back(std::move(prepared.reportText), m_lastSubmitResult);
        }
        prepared.order.reset();
    }
}

} // namespace wicker
