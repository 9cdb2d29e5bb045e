#pragma once

#include "common/Clock.h"
#include "common/MessageBox.h"
#include "platform/QVXOrder.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/orders/SendLimits.h"
#include "trading/orders/SendListener.h"
#include "trading/orders/SendPlan.h"
#include "trading/orders/SendSequence.h"
#include "trading/orders/TickTable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace wicker {

class SendParts;

/// The screen's fields a send reads.
struct ExecutionInputs {
    std::string account;    ///< text of cboAccount
    std::string multiplier; ///< text of txtPercent
    std::string basketName; ///< CurrentBasketName
};

/// Settings a send reads.
struct ExecutionSettings {
    bool confirmBeforeSending = false; ///< "Confirmation" / "BeforeSending"
    bool reserveEnabled = false;       ///< "Reserve" / "Enabled"
    int32_t reserveQuantity = 100;     ///< "Reserve" / "Quantity"
    TickTable ticks = TickTable::UsEquities();
    SendLimits limits; ///< all off unless set
};

/// How a click ended.
enum class ExecuteOutcome {
    NoLines,        ///< the list is empty: nothing happened
    MissingAccount, ///< refused; the screen moves the focus to cboAccount
    ZeroMultiple,   ///< refused: multiplier 0
    NotConfirmed,   ///< the trader answered No
    LimitsRefused,  ///< a limit was broken and the trader did not override it
    NotReserved,    ///< no send number could be taken: nothing was sent
    Sent,           ///< the lines were worked through (some may have been refused)
};

/// What one click did.
struct ExecuteReport {
    ExecuteOutcome outcome = ExecuteOutcome::NoLines;
    int16_t basketSeq = 0;            ///< the send number the orders carried
    int32_t ordersSubmitted = 0;      ///< SubmitOrder calls made
    std::vector<std::string> notSent; ///< report texts
    std::vector<std::pair<std::string, int32_t>> submitErrors; ///< report text, result
    /// The limits the trader overrode for this send (LimitName texts); empty when none.
    std::vector<std::string> overriddenLimits;
};

/// The text of the one summary message after a send; empty when every line went out.
std::string SendSummaryText(const std::vector<std::string>& notSent,
                            const std::vector<std::pair<std::string, int32_t>>& submitErrors);

/// Sends the checked lines of the loaded basket as one burst of orders: the click of
/// cmdExecuteBasket.
class BasketExecution {
public:
    BasketExecution(QVXOrderFactory& orders, SendSequence& sequence, SequenceStore& store,
                    MessageBoxes& boxes, const Clock& clock);

    /// The click of button `index` (0..20). Pre-checks, confirmation, one order per checked
    /// line, the send number advanced and saved once, and one summary message when any line
    /// was not sent or refused. A conversion or platform error in the middle of a basket
    /// ends the click by throwing (the orders already sent stay sent) after the send number
    /// has been advanced.
    ExecuteReport cmdExecuteBasket_Click(int index, const SendLines& lines,
                                         const ExecutionInputs& inputs,
                                         const ExecutionSettings& settings);

    /// Who hears of every order handed to the platform (none by default).
    void setListener(SendListener* listener) { m_listener = listener; }
    /// Who is asked to override a broken limit; without one such a send is refused.
    void setLimitOverride(LimitOverride* prompt) { m_override = prompt; }

    /// Result of the last SubmitOrder of the last send.
    int32_t LastSubmitResult() const { return m_lastSubmitResult; }

private:
    /// The message of a send refused because it could not take a number.
    void NotReserved(const Error& error);
    /// The message, after a send, when basket.ini did not take the next send number.
    void ReportUnsaved(const Result<void>& saved);
    /// The number of the send's next order: 1 to 9,999 as the sequence gives them, then
    /// 10,000 and on.
    int32_t NextOrderNumber();
    /// The confirmation: its question, then what is about to leave.
    bool Confirmed(int index, const SendPlan& plan);
    /// False when a limit is broken and not overridden; records the overridden ones.
    bool LimitsPass(int index, const SendLines& lines, const ExecutionInputs& inputs,
                    const ExecutionSettings& settings, const SendPlan& plan, ExecuteReport& report);
    /// Texts of the orders made from texts of the lines, by where those lie in the lines:
    /// each of a send's few destinations and TIFs is made once.
    using MadeTexts = std::vector<std::pair<SendLines::TextAt, std::string>>;
    /// What every order of one send carries, and what the last order took from its line:
    /// a basket's destinations and TIFs mostly repeat, and each is made once.
    struct SendTexts {
        std::string memo;
        std::string account;         ///< upper case
        std::string clOrderIdPrefix; ///< the client order id up to the order number
        std::optional<ExecuteButtonRule> rule;
        MadeTexts destinations; ///< upper case
        MadeTexts tifs;         ///< TIF codes
    };
    /// The send's orders: the plan and number of each, made part by part (an order is null
    /// until made). An order is written down before it leaves.
    struct MadeOrders {
        std::vector<std::unique_ptr<QVXOrder>> orders;
        std::vector<const QVXOrder*> view; ///< the same orders, for the listener
        std::vector<const PlannedOrder*> plans;
        std::vector<int32_t> numbers; ///< each order's number in its client order id
        SendTexts texts;
    };
    /// The orders of the sendable planned lines, none made yet, their numbers taken; the
    /// other lines are listed in `report.notSent`.
    MadeOrders PlanOrders(int index, int16_t basketSeq, const SendLines& lines,
                          const SendPlan& plan, const ExecutionInputs& inputs,
                          ExecuteReport& report);
    /// Makes orders [from, to): created and their properties set. `texts` is the calling
    /// thread's.
    void MakeOrders(MadeOrders& made, size_t from, size_t to, SendTexts& texts,
                    const SendLines& lines, const ExecutionSettings& settings);
    /// Sets a sendable planned line's order's properties, its client order id ending in
    /// `number`.
    static void FillIn(QVXOrder& order, const SendLines& lines, const PlannedOrder& planned,
                       int32_t number, SendTexts& texts, const ExecutionSettings& settings);
    /// Orders a send makes before its first leaves; the rest follow in parts on a helper.
    static constexpr size_t kFirstPart = 64;
    /// Announces the first part, made already, and submits the orders while a helper makes
    /// and announces the rest; the send number is used up after it. `saved` is basket.ini's
    /// write of the next send number, done by the helper after the last part.
    void SendMade(int16_t basketSeq, const SendLines& lines, const ExecutionInputs& inputs,
                  const ExecutionSettings& settings, MadeOrders& made,
                  std::optional<Result<void>>& saved, ExecuteReport& report);
    /// Tells the listener what is about to leave first, and which limits the trader overrode.
    void Announce(int16_t basketSeq, const std::string& basketName,
                  std::span<const QVXOrder* const> first, const ExecuteReport& report);
    /// Hands the made orders to the platform one by one, each once its part is written
    /// down, until one is not; `submitted` counts those that left, also when an error ends
    /// it. The listener hears each result; a refused order is named in the summary.
    void Submit(MadeOrders& made, SendParts& parts, const SendLines& lines, size_t& submitted,
                ExecuteReport& report);
    /// The listener takes the orders that left, the send done with them.
    void HandOver(std::span<const std::unique_ptr<QVXOrder>> orders);

    QVXOrderFactory& m_orders;
    SendSequence& m_sequence;
    SequenceStore& m_store;
    MessageBoxes& m_boxes;
    const Clock& m_clock;
    int32_t m_lastSubmitResult = 0;
    SendListener* m_listener = nullptr;
    // Order numbers of the current send: the sequence wraps after 9,999 and each wrap
    // carries the count on, so a send of any size never repeats a client order id.
    int16_t m_lastOrderSeq = 0;
    int32_t m_orderSeqWraps = 0;
    LimitOverride* m_override = nullptr;
    /// The last send's planned orders, emptied: their memory is used again.
    std::vector<PlannedOrder> m_planRoom;
    /// When each basket and side was last sent, for the repeat-send limit.
    std::map<std::pair<std::string, std::string>, Clock::TimePoint> m_lastSends;
};

} // namespace wicker
