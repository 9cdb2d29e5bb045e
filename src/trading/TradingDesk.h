#pragma once

#include "baskets/MainScreenLink.h"
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "common/Progress.h"
#include "common/Result.h"
#include "platform/Platform.h"
#include "platform/QVXEvents.h"
#include "storage/BasketDatabase.h"
#include "storage/Database.h"
#include "storage/Settings.h"
#include "trading/TradingEvents.h"
#include "trading/basket/BasketIndexes.h"
#include "trading/basket/MainLineEntry.h"
#include "trading/basket/MainScreenQueries.h"
#include "trading/basket/PasteInput.h"
#include "trading/basket/StockList.h"
#include "trading/orders/BasketCancel.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/BasketTotalsFilter.h"
#include "trading/orders/IniSequenceStore.h"
#include "trading/orders/OrderRecords.h"
#include "trading/orders/OrderTracker.h"
#include "trading/orders/SendSequence.h"
#include "trading/quotes/QuoteBoard.h"
#include "trading/quotes/QuoteRegistrations.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Parts of the main screen that changed without the window asking (a basket dialog
/// reloaded the lists, the platform went offline, ...). Bits of ScreenChanged's argument.
namespace ScreenPart {
inline constexpr uint32_t BasketList = 1u << 0;       ///< lstBaskets
inline constexpr uint32_t QuickLoadButtons = 1u << 1; ///< cmdLoad_1 .. _4
inline constexpr uint32_t Accounts = 1u << 2;         ///< cboAccount
inline constexpr uint32_t BasketName = 1u << 3;       ///< labelName
inline constexpr uint32_t OrderButtons = 1u << 4;     ///< enabled states of cmdExecuteBasket
inline constexpr uint32_t ButtonDisplay = 1u << 5;    ///< which order buttons are shown
inline constexpr uint32_t StatusBar = 1u << 6;        ///< sbMain (notional, platform status)
inline constexpr uint32_t BasketTotals = 1u << 7;     ///< lvBaskets
inline constexpr uint32_t Fields = 1u << 8;           ///< txtPercent, txtDelta, txtMod, cbTif
} // namespace ScreenPart

/// The main trading screen without its widgets: start-up and unload, the loaded basket and
/// its calculation, quotes, sends, order tracking and cancels. The window calls one method
/// per user action and timer tick, with the controls' values, and reads the results back;
/// lvStocks changes reach it through the StockList observer, other changes through
/// setScreenChanged. Platform events reach it through DrainPlatformEvents on the UI thread.
class TradingDesk final : public QVXEvents, public QVXQuoteEvents, public MainScreenLink {
public:
    TradingDesk(Platform& platform, MessageBoxes& boxes, const Clock& clock,
                std::filesystem::path appFolder);
    ~TradingDesk() override;
    TradingDesk(const TradingDesk&) = delete;
    TradingDesk& operator=(const TradingDesk&) = delete;

    // Start and end --------------------------------------------------------------------

    /// Form_Load: database (created when missing or empty, version ladder), settings, TIF
    /// list, accounts, quick-load buttons, EnableButtons(False), basket list, lvBaskets and
    /// the quote registrations of its symbols. An error (a file that is no database, ...)
    /// leaves the desk unusable; the window shows it and ends the program.
    Result<void> FormLoad(Progress* progress = nullptr);
    /// Form_Unload: writes the layout and lists to the settings file (column positions,
    /// button display, column display, divisors, index types), clears the loaded basket
    /// and drops every quote registration. Safe to call twice.
    void FormUnload();
    /// Before File > Exit or closing the window: asks what to do with open orders (when the
    /// setting says so) and cancels them when told. True when the program may end; a cancel
    /// that fails is shown and keeps the program running.
    bool ConfirmExit();
    bool Loaded() const { return m_db != nullptr; }
    /// Names of the start-up steps in the order they ran.
    const std::vector<std::string>& StartupSteps() const { return m_startupSteps; }
    bool CreatingDatabase() const { return m_creatingDatabase; }
    /// Schema version found at start-up and the upgrade steps run for it.
    const std::string& DbVersionFound() const { return m_dbVersionFound; }
    const std::vector<std::string>& LadderSteps() const { return m_ladderSteps; }
    /// True only while the settings are loaded: change handlers do nothing then.
    bool LoadingSettings() const { return m_loadingSettings; }

    void setScreenChanged(std::function<void(uint32_t parts)> screenChanged);
    /// Unloads the main screen (the platform shut down).
    void setCloseMainScreen(std::function<void()> closeMainScreen);

    /// Delivers queued platform events to the handlers below; returns how many.
    size_t DrainPlatformEvents(size_t maxEvents = std::numeric_limits<size_t>::max());

    // Platform events -----------------------------------------------------------------

    void OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate) override;
    void OnQVXOrderReject(const QVXRejectStruct& structOrderReject) override;
    void OnQVXOrderWarning(const QVXOrderWarning& warning) override;
    void OnQVXShutdown() override;
    void OnPlatformStatus(bool online, const std::string& text) override;
    void OnQVXQuoteSnap(const QVXQuoteStruct& structQuoteSnap) override;
    void OnQVXQuoteUpdate(const QVXQuoteStruct& structQuoteUpdate) override;

    // Basket setup screens ------------------------------------------------------------

    void ReloadCurrentBasket() override;
    void LoadBasketList() override;
    void LoadButtonValues() override;
    void LoadButtonDisplay() override;
    /// The general settings changed in settings(): they take effect at once. Prices show
    /// the new decimals at the next Timer200ms, quantities are recalculated with the new
    /// lot, and the order buttons, quick-load buttons and lvBaskets are shown anew.
    void SettingsEdited();
    void RecordIndexShares(int32_t basketNum, const std::string& symbol, int32_t shares) override;
    BasketIndexStore& IndexStore() { return m_indexes; }

    // The loaded basket ----------------------------------------------------------------

    /// Fills lvStocks with the stored basket's lines, registers their symbols, and
    /// recomputes quantities, modifier and TIF. `basketName` goes into labelName.
    void LoadBasket(int32_t basketNum, const std::string& basketName);
    /// A name chosen in lstBaskets; false (nothing loaded) when no such basket is stored.
    bool LoadBasketByName(const std::string& basketName);
    /// cmdLoad_1 .. cmdLoad_4; an unused button does nothing.
    void cmdLoad_Click(int index);
    void cmdClear_Click();
    /// "Select All" / "Deselect All", then the checked-lines total.
    void cmdSA_Click();
    void cmdCA_Click();
    /// After lines were added, removed or edited in Stocks() (paste, edit, new basket):
    /// the quotes follow the lines again, their symbols are registered (those no line needs
    /// are dropped), and quantities, modifier and TIF are recomputed.
    void RefreshLoadedLines();
    /// The trader ticked or cleared one line's check box.
    void SetLineChecked(int row, bool checked);

    // Paste and on-screen editing of the loaded basket --------------------------------

    /// ProcessInputText on clipboard or dropped text, whatever its desktop's line ends.
    static std::optional<PasteTable> ParsePasteText(std::string_view text);
    /// PasteInputText: the table replaces the loaded basket as an unsaved basket; false
    /// (and the paste message shown) when the lines could not be loaded.
    bool PasteLines(const PasteTable& table);
    /// mnuFileNew: an empty unsaved basket named "Basket".
    void NewBasket();
    /// mnuRemoveSelected: removes line `row`; for a stored basket its row is deleted first.
    void RemoveSelectedLine(int row);
    /// mnuRemoveAll: empties the lines; for a stored basket every row of it is deleted.
    void RemoveAllLines();
    /// mnuRemoveSelectedBasket: deletes a stored basket and its rows; when it was the
    /// loaded one, the screen starts a new basket. False when there is no such basket.
    bool RemoveBasket(const std::string& basketName);
    /// What the save-as dialog stores: symbol, basket quantity and destination per line.
    std::vector<BasketLine> LinesToSave() const;
    /// The save-as dialog stored the lines as basket `basketNum`: it becomes the loaded
    /// basket (name, number, record numbers), and the list and buttons are read again.
    void BasketSavedAs(int32_t basketNum);
    /// frmAddStockMain: adds a line (stored at once for a stored basket). False when the
    /// entry was refused (message shown) or the database refused it.
    bool AddMainLine(MainLineEntry& entry);
    /// frmEditItem: changes line `row` (its stored row too, for a stored basket).
    bool EditMainLine(int row, MainLineEntry& entry);
    /// The texts of line `row` as the edit-item dialog shows them.
    MainLineEntry LineEntry(int row) const;

    // Trading data (utilities screen) ---------------------------------------------------

    /// Forgets every tracked order and reject; lvBaskets is emptied at once.
    void ClearTradingData();
    /// Rebuilds lvBaskets from the tracked orders at once.
    void RefreshBasketTotals();

    // Fields (each the control's change event, with its new text) ---------------------

    void SetPercent(const std::string& text);  ///< txtPercent: recalculates
    void SetDelta(const std::string& text);    ///< txtDelta: recalculates
    void SetModifier(const std::string& text); ///< txtMod: copied into every line
    void SetTifText(const std::string& text);  ///< cbTif: copied into every line
    /// The spinners: compute the new text, apply it as the change event would, return it
    /// for the box (writing it back with the change signal blocked, or not, is harmless).
    std::string UpDown1(bool up); ///< txtMod, steps of 0.01
    std::string UpDown2(bool up); ///< txtPercent, steps of 1
    std::string UpDown3(bool up); ///< txtDelta, steps of 1 within 0..100
    const std::string& PercentText() const { return m_percentText; }
    const std::string& DeltaText() const { return m_deltaText; }
    const std::string& ModText() const { return m_modText; }
    const std::string& TifText() const { return m_tifText; }

    // Account ---------------------------------------------------------------------------

    /// A typed account confirmed (Enter or focus loss): upper-cased, stored as the default,
    /// and the list read again. Blank text does nothing.
    void ConfirmAccount(const std::string& typed);
    const AccountList& Accounts() const { return m_accounts; }

    // Send and cancel ---------------------------------------------------------------------

    /// cmdExecuteBasket_<index> with the account box's text.
    ExecuteReport ExecuteBasket(int index, const std::string& accountText);
    /// Who is asked when a send breaks a limit; without one such a send is refused.
    void setLimitOverride(LimitOverride* prompt) { m_execution.setLimitOverride(prompt); }
    /// "Basket Options": cancel every open basket order / those of the selected basket.
    int CancelAllBaskets();
    int CancelSelectedBasket(const std::optional<BasketListSelection>& selected);

    // Timers ------------------------------------------------------------------------------

    /// Quote changes into lvStocks; returns the cells written.
    int Timer200ms();
    /// Rejects shown, lvBaskets rebuilt when orders changed; true when it was rebuilt.
    bool Timer1sec();
    /// The live columns of lvBaskets: "% Filled", "Index", "Side".
    void Timer2sec();

    // What the window shows -----------------------------------------------------------

    StockList& Stocks() { return m_stocks; }
    const StockList& Stocks() const { return m_stocks; }
    const std::vector<std::string>& BasketNames() const { return m_basketNames; }
    const std::array<QuickLoadButton, QuickLoadButtonCount>& QuickLoadButtons() const {
        return m_quickLoad;
    }
    const std::array<bool, OrderButtonCount>& OrderButtonsEnabled() const { return m_orderButtons; }
    /// EnableButtons: quote buttons 0..17 get !flag, price buttons 18..20 get flag.
    void EnableButtons(bool flag);
    const std::vector<std::string>& TifList() const { return TifChoices(); }
    const std::string& CurrentBasketName() const { return m_currentBasketName; }
    int32_t CurrentBasketNum() const { return m_currentBasketNum; }
    /// The second panel of sbMain: quantity to send x last over the checked lines, with
    /// thousands separators ("0.00" for an empty list); follows the quotes every second.
    const std::string& StatusNotional() const { return m_statusNotional; }
    bool PlatformOnline() const { return m_platformOnline; }
    const std::string& PlatformStatusText() const { return m_platformStatus; }
    bool PlatformClosed() const { return m_events.PlatformClosed(); }
    /// lvBaskets: the sends of the loaded basket, or of every basket when "ShowAll" is set
    /// or no basket is loaded. The tracker keeps them all.
    const std::vector<BasketListLine>& BasketListLines() const { return m_shownTotals.lines; }
    /// What lvBaskets leaves out, for the line above it; empty when it shows every send.
    std::string HiddenSendsText() const { return wicker::HiddenSendsText(m_shownTotals); }
    /// The warning above lvBaskets about orders the broker has not answered in time and
    /// orders an earlier run wrote but never sent; empty when there are none.
    std::string NoAnswerText() const;
    /// What the start-up found of the day's orders in the order journal.
    const RestoreReport& Restored() const { return m_restored; }
    bool OpenSendsHidden() const { return m_shownTotals.hiddenOpenSends > 0; }
    const std::vector<float>& LineNotional() const { return m_lineNotional; }

    Settings& settings() { return m_settings; }
    const Settings& settings() const { return m_settings; }
    /// The open database; only after a successful FormLoad.
    Database& db();
    const std::filesystem::path& AppFolder() const { return m_appFolder; }
    BasketIndexes& Indexes() { return m_indexes; }
    QuoteBoard& Quotes() { return m_quotes; }
    const QuoteRegistrations& Registrations() const { return m_registrations; }
    OrderTracker& Tracker() { return m_tracker; }
    OrderRecords& Records() { return m_records; }
    SendSequence& Sequence() { return m_sequence; }
    BasketExecution& Execution() { return m_execution; }

private:
    /// Opens the day's order journal and tracks its orders again.
    void OpenOrderJournal();
    /// Moves the next send number above every one the journal holds for today.
    void KeepBasketSeqAboveJournal();
    void Step(const char* name) { m_startupSteps.emplace_back(name); }
    void Changed(uint32_t parts);
    void FilterBasketTotals();
    void ClearBasket();
    void ReadAccountList();
    void Recalculate();
    void RunCalcBasket();
    void RunGuarded(const std::function<void()>& work);
    void ApplySettings();
    std::vector<std::string> BasketSymbols() const;
    void LoadPastedLines(std::vector<StockLine> lines);
    void RequoteAndCalculate();
    bool CheckMainLine(MainLineEntry& entry);
    /// What a send reads of the grid, made in the room the last send gave back.
    SendLines LinesToSend();
    /// The second panel of sbMain: the checked lines' value at the last.
    void UpdateNotional();

    Platform& m_platform;
    MessageBoxes& m_boxes;
    const Clock& m_clock;
    std::filesystem::path m_appFolder;

    std::unique_ptr<Database> m_db;
    Settings m_settings;
    StockList m_stocks;
    QuoteBoard m_quotes;
    BasketIndexes m_indexes;
    QuoteRegistrations m_registrations;
    OrderTracker m_tracker;
    OrderRecords m_records;
    SendSequence m_sequence;
    IniSequenceStore m_sequenceStore;
    BasketExecution m_execution;
    /// The last send's lines, emptied: some 90 bytes a line, and memory the process holds
    /// already costs the click no page faults.
    SendLines m_sendLinesRoom;
    BasketCancel m_cancel;
    TradingEvents m_events;

    std::function<void(uint32_t)> m_screenChanged;
    std::function<void()> m_closeMainScreen;

    RestoreReport m_restored;
    std::vector<std::string> m_startupSteps;
    std::string m_dbVersionFound;
    std::vector<std::string> m_ladderSteps;
    bool m_creatingDatabase = false;
    bool m_loadingSettings = false;
    bool m_unloaded = false;

    std::string m_currentBasketName = "Basket";
    int32_t m_currentBasketNum = -1;
    std::string m_percentText = "1";
    std::string m_deltaText = "100";
    std::string m_modText = "0";
    std::string m_tifText = "DAY";
    AccountList m_accounts;
    std::vector<std::string> m_basketNames;
    std::array<QuickLoadButton, QuickLoadButtonCount> m_quickLoad{};
    std::array<bool, OrderButtonCount> m_orderButtons{};
    std::vector<float> m_lineNotional;
    ShownBasketTotals m_shownTotals;
    std::string m_statusNotional = "0.00";
    bool m_platformOnline = false;
    std::string m_platformStatus;
};

} // namespace wicker
