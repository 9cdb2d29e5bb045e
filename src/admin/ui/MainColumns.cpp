#include "admin/ui/MainColumns.h"

#include "admin/ui/frmColumns.h"
#include "common/MessageBox.h"
#include "storage/Settings.h"
#include "trading/TradingDesk.h"
#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"
#include "trading/ui/ColumnLayout.h"

#include <QHeaderView>

namespace wicker {
namespace {

// The header's positions in the settings' form; a trailing empty element stays where the
// file had one, so the text is written back as it was read.
std::vector<std::string> PositionsOf(const QHeaderView& header, int count,
                                     const std::vector<std::string>& before) {
    std::vector<std::string> now = CurrentPositions(header, count);
    if (HasTrailingEmpty(before, count)) {
        now.emplace_back();
    }
    return now;
}

std::vector<std::optional<int32_t>> WidthsOf(const QHeaderView& header, int count,
                                             const std::vector<std::optional<int32_t>>& before) {
    std::vector<int32_t> current;
    std::vector<bool> hidden;
    for (int c = 0; c < count; ++c) {
        current.push_back(header.sectionSize(c));
        hidden.push_back(header.isSectionHidden(c));
    }
    return WidthsToKeep(before, current, hidden);
}

} // namespace

MainColumns::MainColumns(TradingDesk& desk, MessageBoxes& boxes, QHeaderView& stocks,
                         QHeaderView& baskets, QObject* parent)
    : QObject(parent), m_desk(desk), m_boxes(boxes), m_stocks(stocks), m_baskets(baskets) {
    for (QHeaderView* h : {&m_stocks, &m_baskets}) {
        connect(h, &QHeaderView::sectionMoved, this, [this] { SectionMoved(); });
    }
}

void MainColumns::CapturePositions() {
    Settings& s = m_desk.settings();
    s.itemsPositions = PositionsOf(m_stocks, StockColumnCount, s.itemsPositions);
    s.infoPositions = PositionsOf(m_baskets, BasketListColumnCount, s.infoPositions);
}

void MainColumns::CaptureWidths() {
    Settings& s = m_desk.settings();
    s.stockColumnWidths = WidthsOf(m_stocks, StockColumnCount, s.stockColumnWidths);
    s.basketColumnWidths = WidthsOf(m_baskets, BasketListColumnCount, s.basketColumnWidths);
}

void MainColumns::ShowError(const std::string& message) {
    if (!m_errorShown) {
        m_errorShown = true;
        m_boxes.show(message, 48, "");
    }
}

void MainColumns::SectionMoved() {
    if (m_applying) {
        return;
    }
    CapturePositions();
    const Settings& s = m_desk.settings();
    const Result<void> saved =
        SaveColumnPositions(m_desk.AppFolder(), s.itemsPositions, s.infoPositions);
    if (!saved) {
        ShowError(saved.error().message);
    }
}

void MainColumns::OpenDialog(QWidget* parent) {
    CapturePositions(); // the lists as the trader sees them now
    const Settings& s = m_desk.settings();
    frmColumns dialog(ColumnEntries(s.basketItemsCols, s.itemsPositions, StockColumnCount),
                      ColumnEntries(s.basketInfoCols, s.infoPositions, BasketListColumnCount),
                      m_boxes, parent);
    if (dialog.exec() == QDialog::Accepted) {
        Apply(dialog.stockEntries(), dialog.basketEntries());
    }
}

bool MainColumns::Apply(const std::vector<ColumnEntry>& stock,
                        const std::vector<ColumnEntry>& basket) {
    Settings& s = m_desk.settings();
    const Result<ColumnSettingsText> stockText = ColumnSettingsFrom(
        stock, StockColumnCount, HasTrailingEmpty(s.itemsPositions, StockColumnCount));
    const Result<ColumnSettingsText> basketText = ColumnSettingsFrom(
        basket, BasketListColumnCount, HasTrailingEmpty(s.infoPositions, BasketListColumnCount));
    if (!stockText || !basketText) {
        m_boxes.show((stockText ? basketText : stockText).error().message, 48, "Columns");
        return false;
    }
    const Result<void> saved = SaveColumnArrangement(m_desk.AppFolder(), *stockText, *basketText);
    if (!saved) {
        m_boxes.show(saved.error().message, 48, "Columns");
        return false;
    }
    CaptureWidths(); // a column the trader widened keeps its width
    s.basketItemsCols = stockText->shown;
    s.itemsPositions = stockText->positions;
    s.basketInfoCols = basketText->shown;
    s.infoPositions = basketText->positions;
    m_applying = true;
    ApplyColumnLayout(m_stocks, {s.stockColumnWidths, s.basketItemsCols, s.itemsPositions},
                      StockColumnCount);
    ApplyColumnLayout(m_baskets, {s.basketColumnWidths, s.basketInfoCols, s.infoPositions},
                      BasketListColumnCount);
    m_applying = false;
    return true;
}

void MainColumns::CaptureForUnload() {
    CapturePositions();
    CaptureWidths();
    const Settings& s = m_desk.settings();
    const Result<void> saved =
        SaveColumnWidths(m_desk.AppFolder(), s.stockColumnWidths, s.basketColumnWidths);
    if (!saved) {
        m_boxes.show(saved.error().message, 48, "");
    }
}

} // namespace wicker
