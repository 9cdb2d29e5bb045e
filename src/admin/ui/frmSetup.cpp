#include "admin/ui/frmSetup.h"

#include "admin/AccountSetup.h"
#include "admin/NameList.h"
#include "admin/ui/frmAddAccount.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/TextTableModel.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {

frmSetup::frmSetup(Database& db, MessageBoxes& boxes, std::function<void()> refreshAccounts,
                   QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_refreshAccounts(std::move(refreshAccounts)),
      m_list(MakeNameListView(this, "lvAccounts")), m_default(new QComboBox(this)),
      m_ok(new QPushButton(QStringLiteral("OK"), this)) {
    setObjectName(QStringLiteral("frmSetup"));
    setWindowTitle(QStringLiteral("Account Setup"));
    m_default->setObjectName(QStringLiteral("cboDefault"));

    auto* add = new QPushButton(QStringLiteral("Add Account"), this);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto* remove = new QPushButton(QStringLiteral("Delete Selected Account"), this);
    remove->setObjectName(QStringLiteral("cmdDelete"));
    m_ok->setObjectName(QStringLiteral("cmdOK"));
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {add, remove, m_ok, cancel}) {
        b->setAutoDefault(false);
    }

    auto* defaultFrame = new QGroupBox(QStringLiteral("Default Account"), this);
    auto* defaultLayout = new QVBoxLayout(defaultFrame);
    defaultLayout->addWidget(m_default);

    auto* side = new QVBoxLayout;
    side->addWidget(add);
    side->addWidget(remove);
    side->addWidget(defaultFrame);
    side->addStretch();
    auto* listColumn = new QVBoxLayout;
    listColumn->addWidget(new QLabel(QStringLiteral("Available Accounts"), this));
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

    connect(add, &QPushButton::clicked, this, &frmSetup::addAccount);
    connect(remove, &QPushButton::clicked, this, [this] { RemoveSelectedName(m_list); });
    connect(m_ok, &QPushButton::clicked, this, &frmSetup::save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    load();
}

void frmSetup::load() {
    try {
        const AccountSetup setup = LoadAccountSetup(m_db);
        for (const auto& account : setup.accounts) {
            AppendName(*m_list.model, account);
        }
        FillCombo(*m_default, setup.accounts);
        m_default->setCurrentIndex(
            setup.defaultAccount.empty() ? -1 : m_default->findText(ToQ(setup.defaultAccount)));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        // OK would replace the accounts by a list that was never read.
        m_ok->setEnabled(false);
    }
}

void frmSetup::addAccount() {
    frmAddAccount dialog([this](const std::string& typed) { addName(typed); }, this);
    PlaceBelowRight(dialog, *this);
    dialog.exec();
}

void frmSetup::addName(const std::string& typed) {
    if (const auto name = NameToAdd(typed, NamesOf(*m_list.model))) {
        AppendName(*m_list.model, *name);
        if (m_default->findText(ToQ(*name), Qt::MatchExactly) < 0) {
            m_default->addItem(ToQ(*name));
        }
    }
}

void frmSetup::save() {
    try {
        SaveAccountSetup(m_db, NamesOf(*m_list.model), ToStd(m_default->currentText()));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        return;
    }
    if (m_refreshAccounts) {
        m_refreshAccounts();
    }
    accept();
}

} // namespace wicker
