#pragma once

#include <vector>

#include <QAbstractTableModel>
#include <QStringList>

namespace wicker {

/// A list of text rows for the screens' list views: cells are text as shown, each row
/// has a key, and column 0 can carry a check box. Large lists stay cheap because the
/// view asks only for the rows it paints.
class TextTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    struct Row {
        QStringList cells;
        QString key;
        bool checked = false;
    };

    TextTableModel(QStringList headers, bool checkable, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setRows(std::vector<Row> rows);
    void appendRow(Row row);
    void removeRowAt(int row);
    void clear();
    /// Replaces the text of one cell.
    void setCell(int row, int column, const QString& text);
    void setChecked(int row, bool checked);

    const Row& rowAt(int row) const { return m_rows.at(static_cast<size_t>(row)); }
    const std::vector<Row>& rows() const { return m_rows; }

private:
    QStringList m_headers;
    bool m_checkable;
    std::vector<Row> m_rows;
};

} // namespace wicker
