#pragma once

#include "trading/orders/OrderSummary.h"

#include <cstdint>
#include <vector>

#include <QAbstractTableModel>

namespace wicker {

/// lvOrders of the order summary: one line per order of a send. New lines keep the rows
/// they had (a send only grows), so the selection stays on its order across refreshes.
class OrderSummaryModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit OrderSummaryModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setLines(std::vector<OrderSummaryLine> lines);
    /// Record id of the order on `row`; 0 for no such row.
    int32_t recordIdAt(int row) const;
    /// Row of the order with this record id; -1 when it is not listed.
    int rowOf(int32_t orderRecordId) const;

private:
    std::vector<OrderSummaryLine> m_lines;
};

} // namespace wicker
