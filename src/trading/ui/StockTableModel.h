#pragma once

#include "trading/basket/StockList.h"

#include <functional>

#include <QAbstractTableModel>

namespace wicker {

/// lvStocks: a table over the loaded basket's line store, 20 text columns with the check
/// box in column 0. The store tells the model what changed; only those cells are repainted,
/// so a large basket under a quote storm stays fluid.
class StockTableModel final : public QAbstractTableModel, private StockListObserver {
    Q_OBJECT

public:
    /// `setChecked` is what ticking a line's box does (the trading logic's handler).
    StockTableModel(StockList& lines, std::function<void(int row, bool checked)> setChecked,
                    QObject* parent = nullptr);
    ~StockTableModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void StockListAboutToBeReset() override;
    void StockListReset() override;
    void StockLinesAboutToBeInserted(int first, int last) override;
    void StockLinesInserted() override;
    void StockLinesAboutToBeRemoved(int first, int last) override;
    void StockLinesRemoved() override;
    void StockCellsChanged(std::span<const StockCellRange> ranges) override;

    StockList& m_lines;
    std::function<void(int, bool)> m_setChecked;
};

} // namespace wicker
