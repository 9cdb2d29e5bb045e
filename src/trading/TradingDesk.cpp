#include "trading/TradingDesk.h"

#include "baskets/OrdinaryError.h"
#include "common/Conversions.h"
#include "common/Text.h"
#include "storage/BasketDatabase.h"
#include "trading/basket/BasketCalculation.h"
#include "trading/basket/BasketIndexValue.h"
#include "trading/basket/DisplayNumbers.h"
#include "trading/basket/FieldSpinners.h"
#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/ExitWithOpenOrders.h"

#include <exception>
#include <utility>

namespace wicker {

TradingDesk::TradingDesk(Platform& platform, MessageBoxes& boxes, const Clock& clock,
                         std::filesystem::path appFolder)
    : m_platform(platform), m_boxes(boxes), m_clock(clock), m_appFolder(std::move(appFolder)),
      m_registrations(platform), m_tracker(boxes, clock), m_records(m_tracker, boxes),
      m_sequenceStore(m_appFolder / "basket.ini"),
      m_execution(platform, m_sequence, m_sequenceStore, boxes, clock),
      m_cancel(m_tracker, platform, boxes), m_events(m_tracker, [this] {
          if (m_closeMainScreen) {
              m_closeMainScreen();
          }
      }) {
    m_tracker.setIndexText(
        [this](const OrderRow& row) { return BasketIndexText(row, m_indexes, m_quotes); });
    m_orderButtons = OrderButtonStates(false);
    m_execution.setListener(&m_records);
}

TradingDesk::~TradingDesk() = default;

// Start and end ----------------------------------------------------------------------------

Result<void> TradingDesk::FormLoad(Progress* progress) {
    if (m_db) {
        return {};
    }
    m_startupSteps.clear();
    m_creatingDatabase = false;
    m_loadingSettings = false;
    try {
        Result<DatabaseStartup> started = OpenBasketDatabase(m_appFolder, m_boxes, progress);
        if (!started) {
            return started.error();
        }
        m_creatingDatabase = started->created;
        m_dbVersionFound = started->versionFound;
        m_ladderSteps = started->stepsRun;
        m_db = std::move(started.value().db);
        Step("OpenDatabase");

        m_loadingSettings = true;
        m_settings = LoadSettings(m_appFolder, m_clock);
        m_loadingSettings = false;
        ApplySettings();
        Step("LoadSettings");

        m_currentBasketName = "Basket";
        m_currentBasketNum = -1;
        Step("CurrentBasketName");
        m_tifText = TifChoices().front();
        Step("FillTifList");
        ReadAccountList();
        Step("ReadAccounts");
        LoadButtonValues();
        Step("LoadButtonValues");
        EnableButtons(false);
        Step("EnableButtons");
        LoadBasketList();
        Step("LoadBasketList");
        OpenOrderJournal();
        Step("OpenOrderJournal");
        m_tracker.FillOrderList();
        Step("FillOrderList");
        m_registrations.AddOrderSymbols(m_tracker.Symbols());
        Step("RegisterOrderSymbols");
    } catch (const std::exception& e) {
        m_loadingSettings = false;
        m_db.reset();
        return Error{OrdinaryErrorText(e)};
    }
    if (!m_settings.problems.empty()) {
        std::string text;
        for (const std::string& problem : m_settings.problems) {
            text += problem + "\r\n";
        }
        m_boxes.show(text, 48, "");
    }
    Changed(ScreenPart::BasketName | ScreenPart::Fields | ScreenPart::StatusBar |
            ScreenPart::BasketTotals | ScreenPart::ButtonDisplay);
    return {};
}

void TradingDesk::ApplySettings() {
    m_sequence = SendSequence(m_settings.basketNum, m_settings.seqNum);
    m_indexes.SetFromSettings(m_settings);
    m_quotes.setDisplay(QuoteDisplayFrom(m_settings));
    m_tracker.setNoAnswerAfter(std::chrono::seconds(m_settings.noAnswerSeconds));
}

std::string TradingDesk::NoAnswerText() const {
    std::string text;
    if (const size_t count = m_tracker.NoAnswerCount(); count > 0) {
        text = std::to_string(count) + (count == 1 ? " order has" : " orders have") +
               " had no answer from the broker for " + std::to_string(m_settings.noAnswerSeconds) +
               " s or more: they may be working. See the order summary.";
    }
    if (const size_t count = m_records.NotSentCount(); count > 0) {
        text += (text.empty() ? "" : " ") + std::to_string(count) +
                (count == 1 ? " order was" : " orders were") +
                " written but not sent: Wicker stopped before they left.";
    }
    return text;
}

void TradingDesk::OpenOrderJournal() {
    try {
        m_records.setLedger(std::make_unique<OrderLedger>(m_appFolder / "orders.db", m_clock));
    } catch (const SqliteError& e) {
        m_records.setLedger(nullptr);
        m_boxes.show(std::string(e.what()) +
                         "\r\nThe day's orders cannot be kept, so no order can be sent. Move the "
                         "file away (Wicker starts a new journal) or free the folder, then start "
                         "Wicker again.",
                     48, "Order Journal");
        m_records.Refuse();
        return;
    }
    m_restored = m_records.RestoreToday(m_platform);
    KeepBasketSeqAboveJournal();
}

void TradingDesk::KeepBasketSeqAboveJournal() {
    // basket.ini may be lost or edited back: a send number the journal holds for today is
    // never used again, so no client order id repeats.
    const std::optional<int16_t> highest = m_records.HighestBasketSeqToday();
    if (!highest || m_sequence.BasketSeq() > *highest || *highest == INT16_MAX) {
        return;
    }
    const auto next = static_cast<int16_t>(*highest + 1);
    m_sequence.setBasketSeq(next);
    m_settings.basketNum = next;
    if (const Result<void> saved = m_sequenceStore.SaveBasketNum(next); !saved) {
        m_boxes.show(saved.error().message, 48, "");
    }
}

void TradingDesk::FormUnload() {
    if (m_unloaded) {
        return;
    }
    m_unloaded = true;
    // What the last moments changed (cancels at exit included) is kept for the next start.
    m_records.SaveChanges();
    if (m_db) {
        m_settings.divisors = m_indexes.Divisors();
        m_settings.indexTypes = m_indexes.IndexTypes();
        const Result<void> saved = SaveScreenSettings(m_appFolder, m_settings, m_basketNames);
        if (!saved) {
            m_boxes.show(saved.error().message, 48, "");
        }
    }
    ClearBasket();
    m_registrations.DropAll();
}

bool TradingDesk::ConfirmExit() {
    bool mayEnd = false;
    RunGuarded([&] {
        mayEnd = ConfirmExitWithOpenOrders(m_tracker, m_cancel, m_boxes, m_settings.beforeExit);
    });
    return mayEnd;
}

void TradingDesk::setScreenChanged(std::function<void(uint32_t)> screenChanged) {
    m_screenChanged = std::move(screenChanged);
}

void TradingDesk::setCloseMainScreen(std::function<void()> closeMainScreen) {
    m_closeMainScreen = std::move(closeMainScreen);
}

size_t TradingDesk::DrainPlatformEvents(size_t maxEvents) {
    const size_t drained = m_platform.Events().drain(*this, *this, maxEvents);
    m_records.SaveChanges();
    return drained;
}

Database& TradingDesk::db() {
    if (!m_db) {
        throw std::logic_error("The basket database is not open");
    }
    return *m_db;
}

void TradingDesk::Changed(uint32_t parts) {
    // Which sends lvBaskets shows follows the loaded basket as well as the orders.
    if (parts & (ScreenPart::BasketName | ScreenPart::BasketTotals)) {
        FilterBasketTotals();
        parts |= ScreenPart::BasketTotals;
    }
    if (m_screenChanged && parts != 0) {
        m_screenChanged(parts);
    }
}

void TradingDesk::FilterBasketTotals() {
    const bool basketLoaded = m_currentBasketNum >= 0 || m_stocks.Count() > 0;
    std::optional<std::string> basketId;
    if (basketLoaded && !m_settings.basketInfoShowAll) {
        basketId = BasketIdOf(m_currentBasketName);
    }
    m_shownTotals =
        wicker::FilterBasketTotals(m_tracker.Rows(), m_tracker.BasketListLines(), basketId);
}

void TradingDesk::RunGuarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
    m_stocks.FlushChanges();
}

// Platform events ----------------------------------------------------------------------------

void TradingDesk::OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate) {
    m_events.OnQVXOrderUpdate(structOrderUpdate);
    m_records.Reported(structOrderUpdate);
}

void TradingDesk::OnQVXOrderReject(const QVXRejectStruct& structOrderReject) {
    m_events.OnQVXOrderReject(structOrderReject);
    m_records.Rejected(structOrderReject);
}

void TradingDesk::OnQVXOrderWarning(const QVXOrderWarning& warning) {
    m_events.OnQVXOrderWarning(warning);
    m_records.Warned(warning);
}

void TradingDesk::OnQVXShutdown() {
    m_events.OnQVXShutdown();
}

void TradingDesk::OnPlatformStatus(bool online, const std::string& text) {
    m_platformOnline = online;
    m_platformStatus = text;
    Changed(ScreenPart::StatusBar);
}

void TradingDesk::OnQVXQuoteSnap(const QVXQuoteStruct& structQuoteSnap) {
    m_quotes.OnQVXQuoteSnap(structQuoteSnap);
}

void TradingDesk::OnQVXQuoteUpdate(const QVXQuoteStruct& structQuoteUpdate) {
    m_quotes.OnQVXQuoteUpdate(structQuoteUpdate);
}

// Basket setup screens -------------------------------------------------------------------

void TradingDesk::ReloadCurrentBasket() {
    // Lines that are not a stored basket (new, pasted) have nothing to reload from.
    if (m_currentBasketNum < 0 || !m_db) {
        return;
    }
    const std::string oldName = m_currentBasketName;
    RunGuarded([&] {
        m_currentBasketName = "Basket";
        const std::optional<int32_t> num = ReadBasketNum(*m_db, oldName);
        if (!num) {
            // The basket was deleted or renamed: its lines stay on screen, unsaved.
            m_currentBasketNum = -1;
            return;
        }
        m_registrations.SetBasketSymbols({});
        LoadBasket(*num, oldName);
    });
    Changed(ScreenPart::BasketName);
}

void TradingDesk::LoadBasketList() {
    RunGuarded([&] {
        m_basketNames = ReadBasketNames(db());
        m_indexes.FillIndexSharesMap(db());
    });
    Changed(ScreenPart::BasketList);
}

void TradingDesk::LoadButtonValues() {
    m_quickLoad = {};
    RunGuarded([&] { m_quickLoad = ReadQuickLoadButtons(db()); });
    Changed(ScreenPart::QuickLoadButtons);
}

void TradingDesk::LoadButtonDisplay() {
    Changed(ScreenPart::ButtonDisplay | ScreenPart::QuickLoadButtons);
}

void TradingDesk::SettingsEdited() {
    m_quotes.setDisplay(QuoteDisplayFrom(m_settings));
    RunGuarded([&] {
        // Every known quote is written again, in the new format, at the next tick.
        m_quotes.SetLines(m_stocks);
        Recalculate();
    });
    Changed(ScreenPart::ButtonDisplay | ScreenPart::QuickLoadButtons | ScreenPart::StatusBar |
            ScreenPart::BasketTotals);
}

void TradingDesk::RecordIndexShares(int32_t basketNum, const std::string& symbol, int32_t shares) {
    m_indexes.RecordIndexShares(basketNum, symbol, shares);
}

// The loaded basket -------------------------------------------------------------------------

std::vector<std::string> TradingDesk::BasketSymbols() const {
    std::vector<std::string> symbols;
    symbols.reserve(static_cast<size_t>(m_stocks.Count()));
    for (const StockLine& line : m_stocks.Lines()) {
        symbols.push_back(line.cells[stkSymbol]);
    }
    return symbols;
}

void TradingDesk::LoadBasket(int32_t basketNum, const std::string& basketName) {
    RunGuarded([&] {
        // Read first: a failing query leaves the loaded basket as it was.
        std::vector<StockLine> lines = ReadBasketLines(db(), basketNum);
        m_stocks.Assign(std::move(lines));
        m_quotes.SetLines(m_stocks);
        m_registrations.SetBasketSymbols(BasketSymbols());
        m_currentBasketNum = basketNum;
        m_currentBasketName = basketName;
        EnableButtons(false);
        Recalculate();
    });
    Changed(ScreenPart::BasketName | ScreenPart::StatusBar);
}

void TradingDesk::RefreshLoadedLines() {
    RunGuarded([&] {
        m_quotes.SetLines(m_stocks);
        m_registrations.SetBasketSymbols(BasketSymbols());
        Recalculate();
    });
}

bool TradingDesk::LoadBasketByName(const std::string& basketName) {
    std::optional<int32_t> num;
    RunGuarded([&] { num = ReadBasketNum(db(), basketName); });
    if (!num) {
        return false;
    }
    LoadBasket(*num, basketName);
    return true;
}

void TradingDesk::cmdLoad_Click(int index) {
    if (index < 1 || index > QuickLoadButtonCount) {
        return;
    }
    const QuickLoadButton button = m_quickLoad[static_cast<size_t>(index - 1)];
    if (button.basketNum == 0) {
        return;
    }
    LoadBasket(button.basketNum, button.basketName);
}

void TradingDesk::ClearBasket() {
    m_stocks.Clear();
    m_quotes.ClearLines();
    m_lineNotional.clear();
    m_statusNotional = "0.00";
    m_registrations.SetBasketSymbols({});
    Changed(ScreenPart::StatusBar);
}

void TradingDesk::cmdClear_Click() {
    ClearBasket();
}

void TradingDesk::cmdSA_Click() {
    RunGuarded([&] {
        m_stocks.SetAllChecked(true);
        CalcCheckedTotal(m_stocks, m_lineNotional);
    });
    UpdateNotional();
}

void TradingDesk::cmdCA_Click() {
    RunGuarded([&] {
        m_stocks.SetAllChecked(false);
        CalcCheckedTotal(m_stocks, m_lineNotional);
    });
    UpdateNotional();
}

void TradingDesk::SetLineChecked(int row, bool checked) {
    RunGuarded([&] { m_stocks.SetChecked(row, checked); });
    UpdateNotional();
}

void TradingDesk::UpdateNotional() {
    if (m_stocks.Empty()) {
        m_statusNotional = "0.00";
    } else {
        // What the checked lines are worth now: quantity to send x the quote's own last.
        double total = 0;
        for (int row = 0; row < m_stocks.Count(); ++row) {
            if (!m_stocks.Checked(row)) {
                continue;
            }
            const Quote* quote = m_quotes.QuoteAt(row);
            const double last = quote != nullptr && quote->m_fLastPrice != 0
                                    ? quote->m_fLastPrice
                                    : Val(m_stocks.Cell(row, stkLast));
            total += Val(m_stocks.Cell(row, stkOrderQty)) * last;
        }
        m_statusNotional = DollarText(total);
    }
    Changed(ScreenPart::StatusBar);
}

void TradingDesk::RunCalcBasket() {
    try {
        CalcBasket(m_stocks, {m_percentText, m_deltaText}, m_settings.shareRounding,
                   m_lineNotional);
    } catch (const std::exception& e) {
        // The lines before the bad one keep their new quantities.
        ShowOrdinaryError(m_boxes, e);
    }
    UpdateNotional();
}

void TradingDesk::Recalculate() {
    RunCalcBasket();
    SetMod(m_stocks, m_modText);
    SetTif(m_stocks, m_tifText);
}

// Fields ----------------------------------------------------------------------------------------

void TradingDesk::SetPercent(const std::string& text) {
    m_percentText = text;
    if (!m_loadingSettings) {
        RunGuarded([&] { RunCalcBasket(); });
    }
}

void TradingDesk::SetDelta(const std::string& text) {
    m_deltaText = text;
    if (!m_loadingSettings) {
        RunGuarded([&] { RunCalcBasket(); });
    }
}

void TradingDesk::SetModifier(const std::string& text) {
    m_modText = text;
    if (!m_loadingSettings) {
        RunGuarded([&] { SetMod(m_stocks, m_modText); });
    }
}

void TradingDesk::SetTifText(const std::string& text) {
    m_tifText = text;
    if (!m_loadingSettings) {
        RunGuarded([&] { SetTif(m_stocks, m_tifText); });
    }
}

std::string TradingDesk::UpDown1(bool up) {
    std::string text = SpinMod(m_modText, up);
    SetModifier(text);
    return text;
}

std::string TradingDesk::UpDown2(bool up) {
    std::string text = SpinPercent(m_percentText, up);
    SetPercent(text);
    return text;
}

std::string TradingDesk::UpDown3(bool up) {
    std::string text = SpinDelta(m_deltaText, up);
    SetDelta(text);
    return text;
}

// Account ----------------------------------------------------------------------------------------

void TradingDesk::ReadAccountList() {
    m_accounts = ReadAccounts(db());
}

void TradingDesk::ConfirmAccount(const std::string& typed) {
    const std::string account = UCase(Trim(typed));
    if (account.empty()) {
        return;
    }
    RunGuarded([&] {
        SetDefaultAccount(db(), account);
        ReadAccountList();
    });
    Changed(ScreenPart::Accounts);
}

// Send and cancel --------------------------------------------------------------------------------

SendLines TradingDesk::LinesToSend() {
    // The quotes' own values: the cells are rounded to the decimals shown.
    const auto own = [](double value) {
        return value != 0 ? value : std::numeric_limits<double>::quiet_NaN();
    };
    return m_stocks.LinesToSend(
        [&](int row) {
            ExecutionQuoteValues values;
            if (const Quote* quote = m_quotes.QuoteAt(row)) {
                values = {own(quote->m_fBidPrice), own(quote->m_fAskPrice),
                          own(quote->m_fLastPrice), own(quote->m_fImportPrice)};
            }
            return values;
        },
        std::exchange(m_sendLinesRoom, {}));
}

ExecuteReport TradingDesk::ExecuteBasket(int index, const std::string& accountText) {
    ExecuteReport report;
    report.basketSeq = m_sequence.BasketSeq();
    const ExecutionInputs inputs{accountText, m_percentText, m_currentBasketName};
    Result<TickTable> ticks = ParseTickTable(m_settings.tickTable);
    if (!ticks) {
        m_boxes.show("The price bands in section Ticks of basket.ini cannot be used: " +
                         ticks.error().message + "\r\nNo order was sent.",
                     48, "Basket Not Sent");
        report.outcome = ExecuteOutcome::NotReserved;
        return report;
    }
    const ExecutionSettings settings{
        m_settings.beforeSending, m_settings.reserveEnabled, m_settings.reserveQuantity,
        std::move(*ticks),
        SendLimits{m_settings.maxOrderShares, m_settings.maxOrderValue, m_settings.maxSendValue,
                   m_settings.priceBandPercent, m_settings.repeatSendSeconds}};
    try {
        KeepBasketSeqAboveJournal();
        report.basketSeq = m_sequence.BasketSeq();
        SendLines lines = LinesToSend();
        struct GiveBack {
            SendLines& lines;
            SendLines& room;
            ~GiveBack() { room = std::move(lines); }
        } giveBack{lines, m_sendLinesRoom};
        report = m_execution.cmdExecuteBasket_Click(index, lines, inputs, settings);
    } catch (const std::exception& e) {
        // Orders sent before the failure stay sent; the send number has moved on.
        report.outcome = ExecuteOutcome::Sent;
        ShowOrdinaryError(m_boxes, e);
    }
    return report;
}

int TradingDesk::CancelAllBaskets() {
    int sent = 0;
    RunGuarded([&] { sent = m_cancel.mnuCxlAll(m_settings.beforeCancel); });
    return sent;
}

int TradingDesk::CancelSelectedBasket(const std::optional<BasketListSelection>& selected) {
    int sent = 0;
    RunGuarded([&] { sent = m_cancel.mnuCxlSel(selected, m_settings.beforeCancel); });
    return sent;
}

// Timers ----------------------------------------------------------------------------------------

int TradingDesk::Timer200ms() {
    const int written = m_quotes.Timer200ms(m_stocks);
    m_stocks.FlushChanges();
    return written;
}

bool TradingDesk::Timer1sec() {
    // The notional follows the quotes, once a second.
    UpdateNotional();
    const bool rebuilt = m_tracker.Timer1sec();
    // Cancels and changes made from the screen are kept too.
    m_records.SaveChanges();
    if (rebuilt) {
        // Keep the quotes of every traded symbol coming, for the index column.
        m_registrations.AddOrderSymbols(m_tracker.Symbols());
        Changed(ScreenPart::BasketTotals);
    }
    return rebuilt;
}

void TradingDesk::Timer2sec() {
    m_tracker.UpdateLiveColumns();
    if (!m_tracker.Rows().empty()) {
        Changed(ScreenPart::BasketTotals);
    }
}

void TradingDesk::EnableButtons(bool flag) {
    m_orderButtons = OrderButtonStates(flag);
    Changed(ScreenPart::OrderButtons);
}

} // namespace wicker
