#include "trading/orders/BasketExecution.h"

#include "common/Conversions.h"
#include "common/Formats.h"
#include "common/RuntimeError.h"
#include "common/Text.h"
#include "trading/basket/DisplayNumbers.h"
#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/orders/SendParts.h"
#include "trading/orders/SendPlan.h"
#include "trading/orders/SubmitErrors.h"

#include <charconv>
#include <exception>
#include <chrono>
#include <limits>
#include <utility>

namespace wicker {

namespace {

/// Side, price type, TIF and limit price of the button, set in the order the platform
/// has always received them.
void ApplyButtonRule(const std::optional<ExecuteButtonRule>& rule, const PlannedOrder& planned,
                     const std::string& tifCode, QVXOrder& order) {
    if (!rule) {
        return;
    }
    switch (rule->kind) {
    case ButtonKind::Limit:
        order.setTif(tifCode);
        order.setPriceType(rule->priceType);
        order.setSide(std::string(rule->side));
        order.setLmtPrice(planned.limit);
        break;
    case ButtonKind::Market:
    case ButtonKind::MarketOnClose:
        order.setTif(tifCode);
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

/// The text `make` makes of a line's text, made once per text of the lines (a text of the
/// lines lies in one place); a basket of many kinds starts the list again.
template <class Made, class Make>
const std::string& MadeFrom(Made& made, const SendLines& lines, SendLines::TextAt at, Make make) {
    for (const auto& [from, text] : made) {
        if (from.offset == at.offset && from.size == at.size) {
            return text;
        }
    }
    if (made.size() == 8) {
        made.clear();
    }
    return made.emplace_back(at, make(lines.text(at))).second;
}

/// The send number `basketSeq` is used up: the next send has the one after, from order 1.
void MoveToNextSend(SendSequence& sequence, int16_t basketSeq) {
    sequence.setBasketSeq(static_cast<int16_t>(basketSeq + 1));
    sequence.setOrderSeq(1);
}

std::string NotSentText(const SendLines& lines, const PlannedOrder& planned) {
    return planned.refusal.empty() ? ReportText(lines, planned)
                                   : ReportText(lines, planned) + " (" + planned.refusal + ")";
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

ExecuteReport BasketExecution::cmdExecuteBasket_Click(int index, const SendLines& lines,
                                                      const ExecutionInputs& inputs,
                                                      const ExecutionSettings& settings) {
    ExecuteReport report;
    if (lines.empty()) {
        report.outcome = ExecuteOutcome::NoLines;
        return report;
    }
    // An account of blanks is no account: the platform would send it as one.
    if (Trim(inputs.account).empty()) {
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
    // Every line is checked before the first order leaves: no bad line sends a basket in part.
    SendPlan plan = PlanSend(index, lines, settings.ticks, std::exchange(m_planRoom, {}));
    struct GiveBack {
        std::vector<PlannedOrder>& orders;
        std::vector<PlannedOrder>& room;
        ~GiveBack() {
            orders.clear();
            room = std::move(orders);
        }
    } giveBack{plan.orders, m_planRoom};
    if (settings.confirmBeforeSending && !Confirmed(index, plan)) {
        report.outcome = ExecuteOutcome::NotConfirmed;
        return report;
    }
    if (!LimitsPass(index, lines, inputs, settings, plan, report)) {
        report.outcome = ExecuteOutcome::LimitsRefused;
        return report;
    }

    const int16_t basketSeq = m_sequence.BasketSeq();
    if (basketSeq == std::numeric_limits<int16_t>::max()) {
        NotReserved(Error{"The basket sequence number cannot go past 32767."});
        report.outcome = ExecuteOutcome::NotReserved;
        return report;
    }
    const SendSequence before = m_sequence;
    MadeOrders made;
    try {
        made = PlanOrders(index, basketSeq, lines, plan, inputs, report);
        MakeOrders(made, 0, std::min(kFirstPart, made.orders.size()), made.texts, lines, settings);
    } catch (...) {
        m_sequence = before; // nothing left: the send number is not used up
        throw;
    }
    report.outcome = ExecuteOutcome::Sent;
    report.basketSeq = basketSeq;
    std::optional<Result<void>> saved;
    try {
        SendMade(basketSeq, lines, inputs, settings, made, saved, report);
    } catch (...) {
        if (saved) {
            ReportUnsaved(*saved);
        }
        throw;
    }
    ReportUnsaved(*saved);
    if (report.ordersSubmitted > 0) {
        m_lastSends[{UCase(inputs.basketName), SideWord(index)}] = m_clock.now();
    }

    const std::string summary = SendSummaryText(report.notSent, report.submitErrors);
    if (!summary.empty()) {
        m_boxes.show(summary, 48, "Some Orders Were Not Sent");
    }
    return report;
}

bool BasketExecution::Confirmed(int index, const SendPlan& plan) {
    std::string text = "Do you want to send this basket order?";
    const std::string side = SideWord(index);
    text += "\r\n\r\n" + (side.empty() ? std::string("No side") : side) + " " +
            ThousandsText(plan.sendableLines) + (plan.sendableLines == 1 ? " line, " : " lines, ") +
            (plan.shares == 0 ? std::string("0") : ThousandsText(plan.shares)) + " shares, $" +
            DollarText(plan.notional);
    if (const size_t held = plan.orders.size() - static_cast<size_t>(plan.sendableLines);
        held > 0) {
        text += "\r\n" + std::to_string(held) + (held == 1 ? " line cannot" : " lines cannot") +
                " be sent and will be listed.";
    }
    return m_boxes.show(text, 292, "Basket Confirmation") == MsgAnswer::Yes;
}

bool BasketExecution::LimitsPass(int index, const SendLines& lines, const ExecutionInputs& inputs,
                                 const ExecutionSettings& settings, const SendPlan& plan,
                                 ExecuteReport& report) {
    std::optional<double> since;
    const auto last = m_lastSends.find({UCase(inputs.basketName), SideWord(index)});
    if (last != m_lastSends.end()) {
        since = std::chrono::duration<double>(m_clock.now() - last->second).count();
    }
    const std::vector<LimitBreach> breaches =
        CheckSendLimits(settings.limits, index, lines, plan, since);
    if (breaches.empty()) {
        return true;
    }
    if (m_override == nullptr ||
        !m_override->ConfirmOverride(inputs.basketName, SideWord(index), breaches)) {
        return false;
    }
    report.overriddenLimits = BrokenLimits(breaches);
    return true;
}

void BasketExecution::NotReserved(const Error& error) {
    m_boxes.show(error.message + "\r\nNo order was sent.", 48, "Basket Not Sent");
}

void BasketExecution::ReportUnsaved(const Result<void>& saved) {
    if (!saved) {
        m_boxes.show(saved.error().message +
                         "\r\nThe basket was sent. The order journal keeps its send number, so "
                         "the next send still takes a new one.",
                     48, "Basket Number Not Saved");
    }
}

void BasketExecution::SendMade(int16_t basketSeq, const SendLines& lines,
                               const ExecutionInputs& inputs, const ExecutionSettings& settings,
                               MadeOrders& made, std::optional<Result<void>>& saved,
                               ExecuteReport& report) {
    // The send number is used up whatever happens to the lines, also when one of them ends
    // the click with an error: its orders may already be out.
    struct SendEnd {
        SendSequence& sequence;
        int16_t basketSeq;
        ~SendEnd() { MoveToNextSend(sequence, basketSeq); }
    } sendEnd{m_sequence, basketSeq};

    const size_t count = made.orders.size();
    const size_t first = std::min(kFirstPart, count);
    Announce(basketSeq, inputs.basketName, std::span(made.view).first(first), report);
    struct ListenerEnd {
        SendListener* listener;
        int16_t basketSeq;
        ~ListenerEnd() {
            if (listener != nullptr) {
                listener->SendEnds(basketSeq);
            }
        }
    } listenerEnd{m_listener, basketSeq};
    // The journal holds the send with its number now, which keeps the number from being
    // used again. The rest of the orders are made and written down on a helper thread while
    // the first leave; then basket.ini learns the next send number, which waits for the disk.
    SendParts parts(
        first, count,
        [&, texts = made.texts](size_t from, size_t to) mutable {
            MakeOrders(made, from, to, texts, lines, settings);
            if (m_listener != nullptr) {
                m_listener->SendContinues(basketSeq, std::span(made.view).subspan(from, to - from));
            }
        },
        [&store = m_store, next = static_cast<int16_t>(basketSeq + 1)] {
            return store.SaveBasketNum(next);
        });
    size_t submitted = 0;
    std::exception_ptr error;
    try {
        Submit(made, parts, lines, submitted, report);
    } catch (...) {
        error = std::current_exception();
    }
    // The orders that left are handed over once no part is being written: the helper reads
    // them no more, and the listener may take their texts. Those out before an error are
    // followed like any others.
    parts.StopParts();
    HandOver(std::span<const std::unique_ptr<QVXOrder>>(made.orders).first(submitted));
    saved = parts.Finish();
    if (!error) {
        error = parts.Failure(); // the orders not written down did not leave
    }
    if (error) {
        std::rethrow_exception(error);
    }
}

int32_t BasketExecution::NextOrderNumber() {
    const int16_t seq = m_sequence.TakeOrderSeq();
    if (seq <= m_lastOrderSeq) {
        ++m_orderSeqWraps;
    }
    m_lastOrderSeq = seq;
    return seq + m_orderSeqWraps * int32_t{SendSequence::LastOrderSeq};
}

BasketExecution::MadeOrders BasketExecution::PlanOrders(int index, int16_t basketSeq,
                                                        const SendLines& lines,
                                                        const SendPlan& plan,
                                                        const ExecutionInputs& inputs,
                                                        ExecuteReport& report) {
    m_lastOrderSeq = 0;
    m_orderSeqWraps = 0;
    MadeOrders made;
    // What every order of the send shares, made once.
    made.texts.memo = BasketMemo(inputs.basketName, basketSeq);
    made.texts.account = UCase(inputs.account);
    made.texts.clOrderIdPrefix =
        BasketClOrderIDPrefix(made.texts.account, FormatYyyymmdd(m_clock.localNow()), basketSeq);
    made.texts.rule = ExecuteButtonRuleFor(index);
    made.plans.reserve(plan.orders.size());
    made.numbers.reserve(plan.orders.size());
    for (const PlannedOrder& planned : plan.orders) {
        if (!planned.sendable) {
            report.notSent.push_back(NotSentText(lines, planned));
            continue;
        }
        made.plans.push_back(&planned);
        made.numbers.push_back(NextOrderNumber());
    }
    made.orders.resize(made.plans.size());
    made.view.resize(made.plans.size());
    return made;
}

void BasketExecution::MakeOrders(MadeOrders& made, size_t from, size_t to, SendTexts& texts,
                                 const SendLines& lines, const ExecutionSettings& settings) {
    for (size_t i = from; i < to; ++i) {
        made.orders[i] = m_orders.CreateOrder();
        made.view[i] = made.orders[i].get();
        FillIn(*made.orders[i], lines, *made.plans[i], made.numbers[i], texts, settings);
    }
}

void BasketExecution::FillIn(QVXOrder& order, const SendLines& lines, const PlannedOrder& planned,
                             int32_t number, SendTexts& texts, const ExecutionSettings& settings) {
    const SendLines::Line& line = lines[planned.line];
    order.setMemo(texts.memo);
    order.setAccount(texts.account);
    order.setSymbol(std::string(lines.text(line.symbol)));
    order.setQuantity(planned.quantity);
    order.setDestination(MadeFrom(texts.destinations, lines, line.destination,
                                  [](std::string_view text) { return UCase(text); }));
    if (settings.reserveEnabled && TakesReserve(order.Destination()) &&
        settings.reserveQuantity <= order.Quantity()) {
        order.setMaxFloor(settings.reserveQuantity);
    }
    ApplyButtonRule(
        texts.rule, planned,
        MadeFrom(texts.tifs, lines, line.tif, [](std::string_view text) { return TifCode(text); }),
        order);
    std::string clOrderId; // made in one allocation, without a text of the number first
    clOrderId.reserve(texts.clOrderIdPrefix.size() + 10);
    clOrderId += texts.clOrderIdPrefix;
    char digits[12];
    clOrderId.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    order.setClOrderID(std::move(clOrderId));
}

void BasketExecution::Announce(int16_t basketSeq, const std::string& basketName,
                               std::span<const QVXOrder* const> first,
                               const ExecuteReport& report) {
    if (m_listener == nullptr) {
        return;
    }
    std::string overrides;
    for (const std::string& limit : report.overriddenLimits) {
        overrides += (overrides.empty() ? "" : "; ") + limit;
    }
    m_listener->SendBegins(basketSeq, basketName, first, overrides);
}

void BasketExecution::Submit(MadeOrders& made, SendParts& parts, const SendLines& lines,
                             size_t& submitted, ExecuteReport& report) {
    // Nothing but the submits themselves until the last order is out: the listener tracks
    // the orders afterwards, which no answer can overtake on this thread.
    while (submitted < made.orders.size() && parts.Ready(submitted)) {
        m_lastSubmitResult = made.orders[submitted]->SubmitOrder();
        const size_t i = submitted++; // out, whatever happens next
        ++report.ordersSubmitted;
        if (m_listener != nullptr) {
            m_listener->Submitted(m_lastSubmitResult);
        }
        if (m_lastSubmitResult < 0) {
            report.submitErrors.emplace_back(ReportText(lines, *made.plans[i]), m_lastSubmitResult);
        }
    }
}

void BasketExecution::HandOver(std::span<const std::unique_ptr<QVXOrder>> orders) {
    if (m_listener != nullptr) {
        m_listener->Handed(orders);
    }
}

} // namespace wicker
