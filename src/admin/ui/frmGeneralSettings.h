#pragma once

#include "admin/GeneralSettings.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QTabWidget;

namespace wicker {

class MessageBoxes;
class TradingDesk;

/// Asks for a colour, starting from the current one (a settings value); nothing when the
/// trader cancelled. The program asks with QColorDialog.
using ColorChooser = std::function<std::optional<int32_t>(int32_t current, const QString& title)>;

/// "General Settings": the trader's preferences of basket.ini (rounding, confirmations,
/// reserve, decimals, what the main screen shows, the order buttons and their colours), the
/// import defaults and the platform. OK and Apply save and put the values in force on the
/// main screen at once; a platform change takes effect at the next start.
class frmGeneralSettings : public QDialog {
    Q_OBJECT

public:
    frmGeneralSettings(TradingDesk& desk, MessageBoxes& boxes, QWidget* parent = nullptr);

    void setColorChooser(ColorChooser chooser) { m_chooseColor = std::move(chooser); }

    /// Validates, saves and applies; false (dialog left as it is, message shown, focus in
    /// the offending box) when a value is refused or the file could not be written.
    bool Save();

private:
    QWidget* BuildTradingPage();
    QWidget* BuildDisplayPage();
    QWidget* BuildImportPage();
    QWidget* BuildPlatformPage();
    QWidget* BuildLimitsPage();
    void Fill(const GeneralSettings& v);
    GeneralSettings ReadControls() const;
    void OptionalButtonsToggled(OrderKind kind, bool offered);
    void ChooseColor(int side);
    void ShowColors();
    void ModeChanged();
    void FocusField(const std::string& field);

    TradingDesk& m_desk;
    MessageBoxes& m_boxes;
    ColorChooser m_chooseColor;
    GeneralSettings m_loaded;
    std::vector<std::string> m_destinations;
    std::array<int32_t, 3> m_colors{}; ///< buy, sell, short

    QTabWidget* m_tabs = nullptr;
    QComboBox* m_cboShareRounding = nullptr;
    QCheckBox* m_chkBeforeSending = nullptr;
    QCheckBox* m_chkBeforeCancel = nullptr;
    QCheckBox* m_chkBeforeChange = nullptr;
    QCheckBox* m_chkBeforeExit = nullptr;
    QCheckBox* m_chkReserve = nullptr;
    QLineEdit* m_txtReserve = nullptr;
    std::map<std::string, QLineEdit*> m_limitBoxes;
    QComboBox* m_cboDecimals = nullptr;
    QCheckBox* m_chkBasketButtons = nullptr;
    QCheckBox* m_chkBasketInfo = nullptr;
    QCheckBox* m_chkShowAll = nullptr;
    QCheckBox* m_chkMOO = nullptr;
    QCheckBox* m_chkMOC = nullptr;
    std::array<QCheckBox*, 18> m_chkButton{};
    QCheckBox* m_chkColorOrderButtons = nullptr;
    std::array<QPushButton*, 3> m_cmdColor{};
    QComboBox* m_cboDefaultListed = nullptr;
    QComboBox* m_cboDefaultOTC = nullptr;
    QComboBox* m_cboMode = nullptr;
    QGroupBox* m_fraFix = nullptr;
    QGroupBox* m_fraSim = nullptr;
    std::map<std::string, QWidget*> m_platformBoxes; ///< platform key -> its control
};

/// Opens the dialog over the main screen (modal).
void ShowGeneralSettings(TradingDesk& desk, MessageBoxes& boxes, QWidget* parent);

} // namespace wicker
