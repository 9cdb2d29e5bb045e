#include "trading/ui/StockTableModel.h"

namespace wicker {
namespace {

bool IsTextColumn(int column) {
    return column == stkSymbol || column == stkDest || column == stkTif;
}

} // namespace

StockTableModel::StockTableModel(StockList& lines,
                                 std::function<void(int row, bool checked)> setChecked,
                                 QObject* parent)
    : QAbstractTableModel(parent), m_lines(lines), m_setChecked(std::move(setChecked)) {
    m_lines.setObserver(this);
}

StockTableModel::~StockTableModel() {
    m_lines.setObserver(nullptr);
}

int StockTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_lines.Count();
}

int StockTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : StockColumnCount;
}

QVariant StockTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_lines.Count()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromStdString(m_lines.Cell(index.row(), index.column()));
    case Qt::CheckStateRole:
        if (index.column() == stkSymbol) {
            return m_lines.Checked(index.row()) ? Qt::Checked : Qt::Unchecked;
        }
        return {};
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter |
                                   (IsTextColumn(index.column()) ? Qt::AlignLeft : Qt::AlignRight));
    default:
        return {};
    }
}

bool StockTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() != stkSymbol ||
        index.row() >= m_lines.Count()) {
        return false;
    }
    const bool checked = value.toInt() == Qt::Checked;
    if (m_setChecked) {
        m_setChecked(index.row(), checked); // the store reports the change back
    }
    return true;
}

Qt::ItemFlags StockTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == stkSymbol) {
        f |= Qt::ItemIsUserCheckable;
    }
    return f;
}

QVariant StockTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= StockColumnCount) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    return QString::fromLatin1(StockListCaptions[static_cast<size_t>(section)]);
}

void StockTableModel::StockListAboutToBeReset() {
    beginResetModel();
}

void StockTableModel::StockListReset() {
    endResetModel();
}

void StockTableModel::StockLinesAboutToBeInserted(int first, int last) {
    beginInsertRows({}, first, last);
}

void StockTableModel::StockLinesInserted() {
    endInsertRows();
}

void StockTableModel::StockLinesAboutToBeRemoved(int first, int last) {
    beginRemoveRows({}, first, last);
}

void StockTableModel::StockLinesRemoved() {
    endRemoveRows();
}

void StockTableModel::StockCellsChanged(std::span<const StockCellRange> ranges) {
    for (const StockCellRange& r : ranges) {
        const QList<int> roles = r.checkChanged ? QList<int>{Qt::DisplayRole, Qt::CheckStateRole}
                                                : QList<int>{Qt::DisplayRole};
        emit dataChanged(index(r.firstRow, r.firstColumn), index(r.lastRow, r.lastColumn), roles);
    }
}

} // namespace wicker
