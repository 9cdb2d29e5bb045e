#include "admin/ui/frmDest.h"

#include "admin/DestinationSetup.h"
#include "admin/NameList.h"
#include "admin/ui/NameSetupFrame.h"
#include "admin/ui/frmAddDest.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/TextTableModel.h"

#include <QPushButton>

namespace wicker {

frmDest::frmDest(Database& db, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_list(MakeNameListView(this, "lvDest")) {
    setObjectName(QStringLiteral("frmDest"));
    setWindowTitle(QStringLiteral("Destination Setup"));

    const auto buttons = LayOutNameSetup(
        *this, m_list,
        {"Available Destinations", "Add Destination", "Delete Selected Destination"});
    m_ok = buttons.ok;
    connect(buttons.add, &QPushButton::clicked, this, &frmDest::addDestination);
    connect(m_ok, &QPushButton::clicked, this, &frmDest::save);

    load();
}

void frmDest::load() {
    try {
        for (const auto& destination : LoadDestinationSetup(m_db)) {
            AppendName(*m_list.model, destination);
        }
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        // OK would replace the destinations by a list that was never read.
        m_ok->setEnabled(false);
    }
}

void frmDest::addDestination() {
    frmAddDest dialog(
        [this](const std::string& typed) {
            if (const auto name = NameToAdd(typed, NamesOf(*m_list.model))) {
                AppendName(*m_list.model, *name);
            }
        },
        this);
    PlaceBelowRight(dialog, *this);
    dialog.exec();
}

void frmDest::save() {
    try {
        SaveDestinationSetup(m_db, NamesOf(*m_list.model));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        return;
    }
    accept();
}

} // namespace wicker
