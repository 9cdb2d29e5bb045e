#pragma once

#include "common/MessageBox.h"
#include "common/Result.h"
#include "platform/Platform.h"
#include "trading/TradingDesk.h"
#include "trading/basket/MainScreenQueries.h"
#include "trading/orders/ExecutionButtons.h"

#include <array>
#include <memory>
#include <optional>

#include <QMainWindow>

class QAction;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;
class QTableView;
class QTimer;
class QWidget;

namespace wicker {

class BasketTableModel;
class FileChooser;
class BasketOrderWindows;
class LimitOverrideDialog;
class MainBasketEditing;
class MainColumns;
class PlatformEventPump;
class StockTableModel;
class UpDown;

/// The main trading screen. It reads its controls, calls the trading desk (the screen's
/// logic) and writes the results back; it keeps no trading state of its own.
class frmMain final : public QMainWindow {
    Q_OBJECT

public:
    /// The desk, the platform and the message boxes outlive the window.
    frmMain(TradingDesk& desk, Platform& platform, MessageBoxes& boxes, QWidget* parent = nullptr);
    ~frmMain() override;

    /// Form_Load: the desk's start-up, then every control filled from it, the window placed
    /// as it was left, and the timers started. On an error the window stays empty; the
    /// caller shows the error and ends the program.
    Result<void> FormLoad();
    /// Form_Unload: layout and placement saved, the desk unloaded. Runs once, on close.
    void FormUnload();

    /// The three timers' work; the timers call them, tests call them directly.
    void Timer200ms();
    void Timer1sec();
    void Timer2sec();

    StockTableModel& stockModel() const { return *m_stockModel; }
    BasketTableModel& basketModel() const { return *m_basketModel; }
    PlatformEventPump& eventPump() const { return *m_pump; }
    /// The "Basket Options" pop-up of lvBaskets.
    QMenu& basketOptionsMenu() const { return *m_basketOptions; }
    /// Paste, the File menu, line and basket removal, the add-stock and edit-item dialogs.
    MainBasketEditing& basketEditing() const { return *m_basketEditing; }
    /// Order summaries, Modify Basket and Change Selected Basket to MKT.
    BasketOrderWindows& orderWindows() const { return *m_orderWindows; }
    /// Stops the timers (tests drive the ticks themselves).
    void stopTimers();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildMenus();
    QWidget* BuildTopRow();
    QWidget* BuildBasketBar();
    QWidget* BuildBasketColumn();
    QWidget* BuildOrderButtons();
    void BuildStatusBar();
    void BuildTimers();
    void ConnectControls();

    /// Writes back the parts of the screen the desk says changed (ScreenPart bits).
    void Refresh(uint32_t parts);
    void FillBasketList();
    void HighlightLoadedBasket();
    void ShowHiddenSends();
    void FillQuickLoadButtons();
    void FillAccounts();
    void FillFields();
    void FillStatusBar();
    void ApplyOrderButtonStates();
    void ApplyButtonDisplay();
    void ApplyColumnLayouts();
    void LayOutOrderButtons();

    void ExecuteBasket(int index);
    void ConfirmAccountText();
    void BasketListRowChanged(int row);
    void BasketListClicked();
    void ShowBasketOptions(const QPoint& pos);
    std::optional<BasketListSelection> SelectedBasketLine() const;
    void OpenBasketSetup();
    void OpenAccountSetup();
    void OpenDestinationSetup();
    void SavePlacement();
    void LoadPlacement();
    QString TitleText() const;

    TradingDesk& m_desk;
    Platform& m_platform;
    MessageBoxes& m_boxes;
    std::unique_ptr<FileChooser> m_files;
    std::unique_ptr<LimitOverrideDialog> m_limitOverride;

    StockTableModel* m_stockModel = nullptr;
    BasketTableModel* m_basketModel = nullptr;
    PlatformEventPump* m_pump = nullptr;

    QTableView* m_lvStocks = nullptr;
    QTableView* m_lvBaskets = nullptr;
    QLabel* m_lblHiddenSends = nullptr;   ///< what lvBaskets leaves out
    QLabel* m_lblOrderWarnings = nullptr; ///< orders the broker has not answered in time
    QListWidget* m_lstBaskets = nullptr;
    std::array<QPushButton*, QuickLoadButtonCount> m_cmdLoad{};
    std::array<QPushButton*, ExecuteButtonCount> m_cmdExecute{};
    QGridLayout* m_orderGrid = nullptr;
    QWidget* m_quickLoadBox = nullptr;
    QComboBox* m_cboAccount = nullptr;
    QLineEdit* m_txtPercent = nullptr;
    QLineEdit* m_txtDelta = nullptr;
    QLineEdit* m_txtMod = nullptr;
    UpDown* m_upDown1 = nullptr;
    UpDown* m_upDown2 = nullptr;
    UpDown* m_upDown3 = nullptr;
    QComboBox* m_cbTif = nullptr;
    QLabel* m_labelName = nullptr;
    QPushButton* m_cmdClear = nullptr;
    QPushButton* m_cmdSA = nullptr;
    QPushButton* m_cmdCA = nullptr;
    QLabel* m_statusPlatform = nullptr;
    QLabel* m_statusNotional = nullptr;
    QMenu* m_basketOptions = nullptr;
    MainBasketEditing* m_basketEditing = nullptr;
    MainColumns* m_columns = nullptr;
    BasketOrderWindows* m_orderWindows = nullptr;
    QTimer* m_timer200ms = nullptr;
    QTimer* m_timer1sec = nullptr;
    QTimer* m_timer2sec = nullptr;

    std::array<bool, ExecuteButtonCount> m_buttonShown{};
    bool m_loaded = false;
    bool m_unloaded = false;
    bool m_platformShutdown = false; ///< the platform ended the session: no exit question
    bool m_listJustLoaded = false;   ///< the press that changed lstBaskets' row already loaded
};

} // namespace wicker
