#include "admin/AdminTestDb.h"
#include "admin/ui/frmAddAccount.h"
#include "admin/ui/frmSetup.h"
#include "baskets/ui/ScreenSupport.h"
#include "support/RecordingMessageBoxes.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class AccountScreen : public testing::Test {
protected:
    AccountScreen() {
        t.addAccount("ZED", 0);
        t.addAccount("ALPHA", 1);
        t.addAccount("MIKE", 0);
    }

    std::unique_ptr<frmSetup> open() {
        return std::make_unique<frmSetup>(*t.db, boxes, [this] { ++refreshed; });
    }

    /// Adds an account through the Add dialog, typing `typed` and pressing Enter.
    static void addThroughDialog(frmSetup& screen, const QString& typed) {
        WhenOpens<frmAddAccount> add([&](frmAddAccount& d) {
            EXPECT_EQ(d.windowTitle().toStdString(), "Add Account");
            auto& box = Child<QLineEdit>(d, "txtAccount");
            box.setText(typed);
            PressEnter(box);
            EXPECT_FALSE(d.isVisible());
        });
        Click(screen, "cmdAdd");
    }

    static std::vector<std::string> listed(const frmSetup& screen) {
        const auto& view = Child<QTableView>(screen, "lvAccounts");
        std::vector<std::string> out;
        for (int r = 0; r < Rows(view); ++r) {
            out.push_back(Cell(view, r, 0));
        }
        return out;
    }

    static void select(const frmSetup& screen, int row) {
        auto& view = Child<QTableView>(screen, "lvAccounts");
        view.setCurrentIndex(view.model()->index(row, 0));
    }

    AdminTestDb t;
    RecordingMessageBoxes boxes;
    int refreshed = 0;
};

TEST_F(AccountScreen, OpensWithTheAccountsByNameAndTheDefaultChosen) {
    auto screen = open();
    EXPECT_EQ(screen->objectName().toStdString(), "frmSetup");
    EXPECT_EQ(screen->windowTitle().toStdString(), "Account Setup");
    EXPECT_EQ(listed(*screen), (Texts{"ALPHA", "MIKE", "ZED"}));
    auto& defaultBox = Child<QComboBox>(*screen, "cboDefault");
    EXPECT_EQ(defaultBox.currentText().toStdString(), "ALPHA");
    EXPECT_EQ(defaultBox.count(), 3);
}

TEST_F(AccountScreen, LowerCaseAccountIsStoredUpperWithItsDefault) {
    auto screen = open();
    addThroughDialog(*screen, QStringLiteral("acct9"));
    EXPECT_EQ(listed(*screen), (Texts{"ALPHA", "MIKE", "ZED", "ACCT9"}));
    auto& defaultBox = Child<QComboBox>(*screen, "cboDefault");
    defaultBox.setCurrentIndex(defaultBox.findText(QStringLiteral("ACCT9")));
    Click(*screen, "cmdOK");
    EXPECT_EQ(t.accounts(), (Texts{"ALPHA|0", "MIKE|0", "ZED|0", "ACCT9|1"}));
    EXPECT_EQ(refreshed, 1);
    EXPECT_EQ(screen->result(), QDialog::Accepted);
}

TEST_F(AccountScreen, CancelWritesNothing) {
    const Texts before = t.accounts();
    auto screen = open();
    addThroughDialog(*screen, QStringLiteral("new1"));
    select(*screen, 0);
    Click(*screen, "cmdDelete");
    Click(*screen, "cmdCancel");
    EXPECT_EQ(t.accounts(), before);
    EXPECT_EQ(refreshed, 0);
    EXPECT_EQ(screen->result(), QDialog::Rejected);
}

TEST_F(AccountScreen, CancelInTheAddDialogAddsNothing) {
    auto screen = open();
    {
        WhenOpens<frmAddAccount> add([](frmAddAccount& d) {
            Child<QLineEdit>(d, "txtAccount").setText(QStringLiteral("X1"));
            Click(d, "cmdCancel");
        });
        Click(*screen, "cmdAdd");
    }
    EXPECT_EQ(listed(*screen), (Texts{"ALPHA", "MIKE", "ZED"}));
}

TEST_F(AccountScreen, DeletedAccountIsGoneAfterOk) {
    auto screen = open();
    select(*screen, 1);
    Click(*screen, "cmdDelete");
    Click(*screen, "cmdOK");
    EXPECT_EQ(t.accounts(), (Texts{"ALPHA|1", "ZED|0"}));
}

TEST_F(AccountScreen, ApostropheShowsTheErrorKeepsTheTableAndStaysOpen) {
    const Texts before = t.accounts();
    auto screen = open();
    addThroughDialog(*screen, QStringLiteral("o'neil"));
    Click(*screen, "cmdOK");
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.texts().at(0).rfind("Run-time error '-2147217900 (80040E14)':", 0), 0u);
    EXPECT_EQ(t.accounts(), before);
    EXPECT_EQ(refreshed, 0);
    EXPECT_NE(screen->result(), QDialog::Accepted);
}

TEST_F(AccountScreen, UnreadableTableShowsTheErrorAndOffersNoOk) {
    t.db->ExecuteSql("DROP TABLE tblAccount");
    auto screen = open();
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_FALSE(Child<QPushButton>(*screen, "cmdOK").isEnabled());
}

} // namespace
} // namespace wicker
