#include "baskets/ui/StockEntryFields.h"

#include "baskets/Destinations.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>

namespace wicker {
namespace {

QLineEdit* NamedLineEdit(QWidget* parent, const char* name) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    return edit;
}

} // namespace

StockEntryFields::StockEntryFields(QWidget* dialog, const Names& names)
    : m_symbol(NamedLineEdit(dialog, names.symbol)),
      m_quantity(NamedLineEdit(dialog, names.quantity)),
      m_destination(EditableCombo(dialog, QString::fromLatin1(names.destination))),
      m_indexShares(names.indexShares ? NamedLineEdit(dialog, names.indexShares) : nullptr) {
    auto* symbolKeys = new SymbolBoxKeys(dialog);
    symbolKeys->watch(m_symbol);
}

std::vector<QWidget*> StockEntryFields::boxes() const {
    std::vector<QWidget*> out{m_symbol, m_quantity, m_destination};
    if (m_indexShares) {
        out.push_back(m_indexShares);
    }
    return out;
}

void StockEntryFields::addRows(QFormLayout& form) const {
    form.addRow(QStringLiteral("Symbol:"), m_symbol);
    form.addRow(QStringLiteral("Quantity:"), m_quantity);
    form.addRow(QStringLiteral("Destination:"), m_destination);
    if (m_indexShares) {
        form.addRow(QStringLiteral("Index Shares:"), m_indexShares);
    }
}

void StockEntryFields::fillDestinations(Database& db, MessageBoxes& boxes, bool sorted) {
    try {
        FillCombo(*m_destination, EnabledDestinations(db, sorted));
    } catch (const std::exception& e) {
        ShowOrdinaryError(boxes, e);
    }
}

StockEntry StockEntryFields::entry() const {
    return {ToStd(m_symbol->text()), ToStd(m_quantity->text()), ToStd(m_destination->currentText()),
            m_indexShares ? ToStd(m_indexShares->text()) : std::string()};
}

void StockEntryFields::showFilledIn(const StockEntry& entry) {
    m_quantity->setText(ToQ(entry.quantity));
    if (m_indexShares) {
        m_indexShares->setText(ToQ(entry.indexShares));
    }
}

MainLineEntry StockEntryFields::mainLine() const {
    MainLineEntry line;
    line.symbol = ToStd(m_symbol->text());
    line.quantity = ToStd(m_quantity->text());
    line.destination = ToStd(m_destination->currentText());
    return line;
}

bool StockEntryFields::handOver(MainLineEntry& entry,
                                const std::function<bool(MainLineEntry&)>& take) {
    const bool taken = take(entry);
    m_quantity->setText(ToQ(entry.quantity));
    if (!taken && entry.symbol.empty()) {
        m_symbol->setFocus();
    }
    return taken;
}

} // namespace wicker
