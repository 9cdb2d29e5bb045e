#pragma once

#include "trading/orders/OrderRow.h"

#include <vector>

#include <QAbstractTableModel>

namespace wicker {

/// lvBaskets: one line per sent basket, the 13 texts order tracking built. The model keeps
/// the texts it shows and, when given new ones, announces only the rows added or removed and
/// the cells whose text changed.
class BasketTableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit BasketTableModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Shows these lines; returns the number of cells whose text changed.
    int setLines(const std::vector<BasketListLine>& lines);
    const std::vector<BasketListLine>& lines() const { return m_lines; }

private:
    std::vector<BasketListLine> m_lines;
};

} // namespace wicker
