#include "admin/ui/frmDest.h"

#include "admin/DestinationSetup.h"
#include "admin/NameList.h"
#include "admin/ui/frmAddDest.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/TextTableModel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {

frmDest::frmDest(Database& db, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_list(MakeNameListView(this, "lvDest")),
      m_ok(new QPushButton(QStringLiteral("OK"), this)) {
    setObjectName(QStringLiteral("frmDest"));
    setWindowTitle(QStringLiteral("Destination Setup"));

    auto* add = new QPushButton(QStringLiteral("Add Destination"), this);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto* remove = new QPushButton(QStringLiteral("Delete Selected Destination"), this);
    remove->setObjectName(QStringLiteral("cmdDelete"));
    m_ok->setObjectName(QStringLiteral("cmdOK"));
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {add, remove, m_ok, cancel}) {
        b->setAutoDefault(false);
    }

    auto* side = new QVBoxLayout;
    side->addWidget(add);
    side->addWidget(remove);
    side->addStretch();
    auto* listColumn = new QVBoxLayout;
    listColumn->addWidget(new QLabel(QStringLiteral("Available Destinations"), this));
    listColumn->addWidget(m_list.view);
    auto* top = new QHBoxLayout;
    top->addLayout(listColumn);
    top->addLayout(side);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    connect(add, &QPushButton::clicked, this, &frmDest::addDestination);
    connect(remove, &QPushButton::clicked, this, [this] { RemoveSelectedName(m_list); });
    connect(m_ok, &QPushButton::clicked, this, &frmDest::save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

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
