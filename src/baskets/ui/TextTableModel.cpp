#include "baskets/ui/TextTableModel.h"

namespace wicker {

TextTableModel::TextTableModel(QStringList headers, bool checkable, QObject* parent)
    : QAbstractTableModel(parent), m_headers(std::move(headers)), m_checkable(checkable) {}

int TextTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TextTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant TextTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const Row& row = rowAt(index.row());
    if (role == Qt::DisplayRole) {
        return index.column() < row.cells.size() ? row.cells.at(index.column()) : QString();
    }
    if (role == Qt::CheckStateRole && m_checkable && index.column() == 0) {
        return row.checked ? Qt::Checked : Qt::Unchecked;
    }
    return {};
}

bool TextTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole || !m_checkable || index.column() != 0) {
        return false;
    }
    setChecked(index.row(), value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags TextTableModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (index.isValid() && m_checkable && index.column() == 0) {
        f |= Qt::ItemIsUserCheckable;
    }
    return f;
}

QVariant TextTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < m_headers.size()) {
        return m_headers.at(section);
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

void TextTableModel::setRows(std::vector<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void TextTableModel::appendRow(Row row) {
    const int at = rowCount();
    beginInsertRows(QModelIndex(), at, at);
    m_rows.push_back(std::move(row));
    endInsertRows();
}

void TextTableModel::removeRowAt(int row) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    beginRemoveRows(QModelIndex(), row, row);
    m_rows.erase(m_rows.begin() + row);
    endRemoveRows();
}

void TextTableModel::clear() {
    setRows({});
}

void TextTableModel::setCell(int row, int column, const QString& text) {
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount()) {
        return;
    }
    QStringList& cells = m_rows[static_cast<size_t>(row)].cells;
    while (cells.size() <= column) {
        cells.append(QString());
    }
    cells[column] = text;
    emit dataChanged(index(row, column), index(row, column), {Qt::DisplayRole});
}

void TextTableModel::setChecked(int row, bool checked) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    m_rows[static_cast<size_t>(row)].checked = checked;
    emit dataChanged(index(row, 0), index(row, 0), {Qt::CheckStateRole});
}

} // namespace wicker
