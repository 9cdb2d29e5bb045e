#include "trading/ui/BasketTableModel.h"

#include <algorithm>

namespace wicker {

BasketTableModel::BasketTableModel(QObject* parent) : QAbstractTableModel(parent) {}

int BasketTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int BasketTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : BasketListColumnCount;
}

QVariant BasketTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || static_cast<size_t>(index.row()) >= m_lines.size()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return QString::fromStdString(
            m_lines[static_cast<size_t>(index.row())][static_cast<size_t>(index.column())]);
    }
    if (role == Qt::TextAlignmentRole) {
        const bool text =
            index.column() == colBasket || index.column() == colTime || index.column() == colSide;
        return QVariant::fromValue(Qt::AlignVCenter | (text ? Qt::AlignLeft : Qt::AlignRight));
    }
    return {};
}

QVariant BasketTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= BasketListColumnCount) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    return QString::fromLatin1(BasketListCaptions[static_cast<size_t>(section)]);
}

int BasketTableModel::setLines(const std::vector<BasketListLine>& lines) {
    const int oldCount = static_cast<int>(m_lines.size());
    const int newCount = static_cast<int>(lines.size());
    if (newCount < oldCount) {
        beginRemoveRows({}, newCount, oldCount - 1);
        m_lines.resize(lines.size());
        endRemoveRows();
    }
    int changed = 0;
    const int common = std::min(oldCount, newCount);
    for (int row = 0; row < common; ++row) {
        auto& mine = m_lines[static_cast<size_t>(row)];
        const auto& theirs = lines[static_cast<size_t>(row)];
        int first = -1;
        int last = -1;
        for (int column = 0; column < BasketListColumnCount; ++column) {
            const auto c = static_cast<size_t>(column);
            if (mine[c] != theirs[c]) {
                mine[c] = theirs[c];
                first = first < 0 ? column : first;
                last = column;
                ++changed;
            }
        }
        if (first >= 0) {
            emit dataChanged(index(row, first), index(row, last), {Qt::DisplayRole});
        }
    }
    if (newCount > oldCount) {
        beginInsertRows({}, oldCount, newCount - 1);
        m_lines.insert(m_lines.end(), lines.begin() + oldCount, lines.end());
        endInsertRows();
        changed += (newCount - oldCount) * BasketListColumnCount;
    }
    return changed;
}

} // namespace wicker
