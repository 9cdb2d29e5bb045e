#pragma once

#include "baskets/BasketSetupStore.h"
#include "baskets/ui/BasketUiContext.h"

#include <QDialog>

class QLabel;
class QTableView;

namespace wicker {

class TextTableModel;

/// "Basket Setup": the stored baskets, the lines of the selected one, and the ticks that
/// put baskets on the main screen's quick-load buttons.
class frmBaskets : public QDialog {
    Q_OBJECT

public:
    /// Columns of the basket list; "Button" is present but laid out with no width.
    enum BasketColumn { ColBasket, ColButton, ColType, ColDivisor, ColIndex };
    /// Columns of the stock list.
    enum StockColumn { ColSymbol, ColQty, ColDestination, ColIndexShares };

    explicit frmBaskets(BasketUiContext context, QWidget* parent = nullptr);

    /// Number of the basket whose lines are shown; 0 when none is.
    int16_t currentBasketNum() const { return m_currentBasketNum; }

    /// Closing by any way stores the button ticks and tells the main screen.
    void reject() override;

private:
    void loadBasketList();
    void loadLines(int32_t basketNum);
    void basketClicked(int row);
    void editDivisor(int row);
    void editStock(int row);
    void addBasket();
    void deleteBasket();
    void addStock();
    void deleteStock();
    void saveChanges();
    void importBasket();
    void importSpreadsheet();
    /// Runs an import dialog, then reloads the list keeping the shown basket.
    void runImport(QDialog& dialog);
    void exportBasket();

    std::vector<BasketRow> basketRows() const;
    std::vector<StockRow> stockRows() const;
    void selectBasketRow(int row);
    void placeAndRun(QDialog& dialog);

    BasketUiContext m_ctx;
    int16_t m_currentBasketNum = 0;
    QTableView* m_basketView;
    QTableView* m_stockView;
    QLabel* m_basketLabel;
    TextTableModel* m_baskets;
    TextTableModel* m_stocks;
};

} // namespace wicker
