#pragma once

#include "admin/ColumnLayoutSettings.h"

#include <vector>

#include <QObject>

class QHeaderView;
class QWidget;

namespace wicker {

class MessageBoxes;
class TradingDesk;

/// Keeps the main screen's two lists and the column settings together: a header dragged to
/// a new place is saved at once, the "Columns" screen shows, hides and orders columns, and
/// at unload the positions and widths go into the settings (the widths to the file too).
class MainColumns : public QObject {
    Q_OBJECT

public:
    /// The headers already show the settings' layout.
    MainColumns(TradingDesk& desk, MessageBoxes& boxes, QHeaderView& stocks, QHeaderView& baskets,
                QObject* parent = nullptr);

    /// Opens "Columns" (modal) and applies what the trader chose.
    void OpenDialog(QWidget* parent);
    /// Shows, hides and orders both lists as given, in the settings and in basket.ini at
    /// once. False (message shown, nothing changed) for an arrangement that cannot be used.
    bool Apply(const std::vector<ColumnEntry>& stock, const std::vector<ColumnEntry>& basket);
    /// Unload: positions and widths into the settings; the widths are written here, the
    /// rest by the desk's unload.
    void CaptureForUnload();

private:
    void SectionMoved();
    void CaptureWidths();
    void CapturePositions();
    void ShowError(const std::string& message);

    TradingDesk& m_desk;
    MessageBoxes& m_boxes;
    QHeaderView& m_stocks;
    QHeaderView& m_baskets;
    bool m_applying = false;
    bool m_errorShown = false; ///< one message per run for a file that refuses drags
};

} // namespace wicker
