#include "baskets/ui/SpreadsheetPreviewModel.h"

#include "baskets/ui/UiText.h"

#include <QBrush>
#include <QColor>

namespace wicker {
namespace {

QString Problems(const SpreadsheetLine& line) {
    QStringList parts;
    for (const auto& e : line.errors) {
        parts << ToQ(e);
    }
    for (const auto& w : line.warnings) {
        parts << QStringLiteral("warning: ") + ToQ(w);
    }
    return parts.join(QStringLiteral("; "));
}

} // namespace

void SpreadsheetPreviewModel::setBasket(const SpreadsheetBasket* basket) {
    beginResetModel();
    m_basket = basket;
    endResetModel();
}

int SpreadsheetPreviewModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || m_basket == nullptr ? 0 : static_cast<int>(m_basket->lines.size());
}

int SpreadsheetPreviewModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColCount;
}

QString SpreadsheetPreviewModel::text(const SpreadsheetLine& line, int column) const {
    switch (column) {
    case ColLine:
        return QString::number(line.line);
    case ColSymbol:
        return ToQ(line.symbol);
    case ColQty:
        return line.quantity > 0 ? QString::number(line.quantity) : ToQ(line.quantityText);
    case ColDestination:
        return ToQ(line.destination) +
               (line.defaultDestination ? QStringLiteral(" (default)") : QString());
    case ColIndexShares:
        return line.indexShares ? QString::number(*line.indexShares) : QString();
    case ColSide:
        return ToQ(line.side);
    case ColProblem:
        return Problems(line);
    default:
        return {};
    }
}

QVariant SpreadsheetPreviewModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || m_basket == nullptr) {
        return {};
    }
    const auto& line = m_basket->lines.at(static_cast<size_t>(index.row()));
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        return text(line, index.column());
    }
    if (role == Qt::BackgroundRole) {
        if (!line.errors.empty()) {
            return QBrush(QColor(255, 205, 205));
        }
        if (!line.warnings.empty()) {
            return QBrush(QColor(255, 240, 190));
        }
    }
    if (role == Qt::TextAlignmentRole && (index.column() == ColLine || index.column() == ColQty ||
                                          index.column() == ColIndexShares)) {
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    }
    return {};
}

QVariant SpreadsheetPreviewModel::headerData(int section, Qt::Orientation orientation,
                                             int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    static const char* const kHeaders[ColCount] = {
        "Line", "Symbol", "Qty", "Destination", "Index Shares", "Side", "Problem"};
    return section >= 0 && section < ColCount ? QString::fromLatin1(kHeaders[section]) : QVariant();
}

} // namespace wicker
