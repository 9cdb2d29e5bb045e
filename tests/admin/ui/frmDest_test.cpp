#include "admin/AdminTestDb.h"
#include "admin/ui/frmAddDest.h"
#include "admin/ui/frmDest.h"
#include "baskets/ui/ScreenSupport.h"
#include "support/RecordingMessageBoxes.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class DestinationScreen : public testing::Test {
protected:
    static std::vector<std::string> listed(const frmDest& screen) {
        const auto& view = Child<QTableView>(screen, "lvDest");
        std::vector<std::string> out;
        for (int r = 0; r < Rows(view); ++r) {
            out.push_back(Cell(view, r, 0));
        }
        return out;
    }

    static void addThroughDialog(frmDest& screen, const QString& typed) {
        WhenOpens<frmAddDest> add([&](frmAddDest& d) {
            EXPECT_EQ(d.windowTitle().toStdString(), "Add Destination");
            Child<QLineEdit>(d, "txtDest").setText(typed);
            Click(d, "cmdAdd");
        });
        Click(screen, "cmdAdd");
    }

    AdminTestDb t;
    RecordingMessageBoxes boxes;
};

TEST_F(DestinationScreen, OpensSortedByName) {
    t.db->ExecuteSql("DELETE FROM tblDest");
    for (const char* d : {"NYSE", "ARCA", "INET", "AMEX"}) {
        t.db->ExecuteSql("INSERT INTO tblDest(strDest,intEnabled) VALUES('" + std::string(d) +
                         "',1)");
    }
    frmDest screen(*t.db, boxes);
    EXPECT_EQ(screen.windowTitle().toStdString(), "Destination Setup");
    EXPECT_EQ(listed(screen), (Texts{"AMEX", "ARCA", "INET", "NYSE"}));
}

TEST_F(DestinationScreen, OkStoresTheListInItsOrderAndItComesBackSorted) {
    {
        frmDest screen(*t.db, boxes);
        auto& view = Child<QTableView>(screen, "lvDest");
        view.setCurrentIndex(view.model()->index(0, 0)); // AMEX
        Click(screen, "cmdDelete");
        addThroughDialog(screen, QStringLiteral("edgx"));
        addThroughDialog(screen, QStringLiteral("bats"));
        Click(screen, "cmdOK");
        EXPECT_EQ(screen.result(), QDialog::Accepted);
    }
    EXPECT_EQ(t.destinations(), (Texts{"ARCA|1", "INCA|1", "INET|1", "NASDAQ|1", "NY/AM|1",
                                       "NYSE|1", "NYSE+|1", "EDGX|1", "BATS|1"}));
    frmDest reopened(*t.db, boxes);
    EXPECT_EQ(listed(reopened),
              (Texts{"ARCA", "BATS", "EDGX", "INCA", "INET", "NASDAQ", "NY/AM", "NYSE", "NYSE+"}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(DestinationScreen, CancelWritesNothing) {
    const Texts before = t.destinations();
    frmDest screen(*t.db, boxes);
    addThroughDialog(screen, QStringLiteral("edgx"));
    Click(screen, "cmdCancel");
    EXPECT_EQ(t.destinations(), before);
}

TEST_F(DestinationScreen, FailedSaveShowsTheErrorAndKeepsTheTable) {
    const Texts before = t.destinations();
    frmDest screen(*t.db, boxes);
    addThroughDialog(screen, QStringLiteral("ny'se"));
    Click(screen, "cmdOK");
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(t.destinations(), before);
    EXPECT_NE(screen.result(), QDialog::Accepted);
}

} // namespace
} // namespace wicker
