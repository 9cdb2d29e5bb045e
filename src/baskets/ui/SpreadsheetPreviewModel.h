#pragma once

#include "baskets/SpreadsheetBasket.h"

#include <QAbstractTableModel>

namespace wicker {

/// The lines of a checked spreadsheet basket for the preview list: line number, the
/// values that will be stored and each line's problems; lines with errors are tinted red,
/// lines with warnings yellow. The view asks only for the rows it paints.
class SpreadsheetPreviewModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        ColLine,
        ColSymbol,
        ColQty,
        ColDestination,
        ColIndexShares,
        ColSide,
        ColProblem,
        ColCount
    };

    explicit SpreadsheetPreviewModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    void setBasket(const SpreadsheetBasket* basket);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString text(const SpreadsheetLine& line, int column) const;

    const SpreadsheetBasket* m_basket = nullptr;
};

} // namespace wicker
