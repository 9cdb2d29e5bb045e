#include "trading/ui/OrderSummaryModel.h"

namespace wicker {

OrderSummaryModel::OrderSummaryModel(QObject* parent) : QAbstractTableModel(parent) {}

int OrderSummaryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int OrderSummaryModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : OrderSummaryColumnCount;
}

QVariant OrderSummaryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() ||
        index.column() >= OrderSummaryColumnCount) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return QString::fromStdString(
            m_lines[static_cast<size_t>(index.row())].texts[static_cast<size_t>(index.column())]);
    }
    if (role == Qt::TextAlignmentRole) {
        const int c = index.column();
        const bool number =
            c == ocQuantity || c == ocPrice || c == ocFilled || c == ocLeaves || c == ocAvgPrice;
        return QVariant::fromValue(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    }
    return {};
}

QVariant OrderSummaryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= OrderSummaryColumnCount) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    return QString::fromLatin1(OrderSummaryCaptions[static_cast<size_t>(section)]);
}

void OrderSummaryModel::setLines(std::vector<OrderSummaryLine> lines) {
    const size_t kept = std::min(lines.size(), m_lines.size());
    bool sameOrders = true;
    for (size_t i = 0; i < kept && sameOrders; ++i) {
        sameOrders = lines[i].orderRecordId == m_lines[i].orderRecordId;
    }
    if (!sameOrders || lines.size() < m_lines.size()) {
        // Orders went away (the trading data was cleared): start afresh.
        beginResetModel();
        m_lines = std::move(lines);
        endResetModel();
        return;
    }
    const size_t before = m_lines.size();
    for (size_t i = 0; i < before; ++i) {
        m_lines[i] = std::move(lines[i]);
    }
    if (before > 0) {
        emit dataChanged(index(0, 0),
                         index(static_cast<int>(before) - 1, OrderSummaryColumnCount - 1));
    }
    if (lines.size() > before) {
        beginInsertRows({}, static_cast<int>(before), static_cast<int>(lines.size()) - 1);
        for (size_t i = before; i < lines.size(); ++i) {
            m_lines.push_back(std::move(lines[i]));
        }
        endInsertRows();
    }
}

int32_t OrderSummaryModel::recordIdAt(int row) const {
    return row >= 0 && row < rowCount() ? m_lines[static_cast<size_t>(row)].orderRecordId : 0;
}

int OrderSummaryModel::rowOf(int32_t orderRecordId) const {
    for (size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].orderRecordId == orderRecordId) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

} // namespace wicker
