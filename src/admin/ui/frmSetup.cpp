#include "admin/ui/frmSetup.h"

#include "admin/AccountSetup.h"
#include "admin/NameList.h"
#include "admin/ui/NameSetupFrame.h"
#include "admin/ui/frmAddAccount.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/TextTableModel.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

frmSetup::frmSetup(Database& db, MessageBoxes& boxes, std::function<void()> refreshAccounts,
                   QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_refreshAccounts(std::move(refreshAccounts)),
      m_list(MakeNameListView(this, "lvAccounts")), m_default(new QComboBox(this)) {
    setObjectName(QStringLiteral("frmSetup"));
    setWindowTitle(QStringLiteral("Account Setup"));
    m_default->setObjectName(QStringLiteral("cboDefault"));

    auto* defaultFrame = new QGroupBox(QStringLiteral("Default Account"), this);
    auto* defaultLayout = new QVBoxLayout(defaultFrame);
    defaultLayout->addWidget(m_default);

    const auto buttons = LayOutNameSetup(
        *this, m_list, {"Available Accounts", "Add Account", "Delete Selected Account"},
        defaultFrame);
    m_ok = buttons.ok;
    connect(buttons.add, &QPushButton::clicked, this, &frmSetup::addAccount);
    connect(m_ok, &QPushButton::clicked, this, &frmSetup::save);

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
