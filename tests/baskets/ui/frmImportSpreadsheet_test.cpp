#include "baskets/BasketTestDb.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmImportSpreadsheet.h"
#include "support/RecordingMessageBoxes.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class SpreadsheetScreen : public testing::Test {
protected:
    // Chooses a file holding `bytes` through the file chooser, as the trader does.
    void choose(const std::string& bytes) {
        WriteFile(t.dir / "Pairs List.csv", bytes);
        files.answers.push_back((t.dir / "Pairs List.csv").string());
        Click(dialog, "cmdOpenFile");
    }
    bool importEnabled() { return Child<QPushButton>(dialog, "cmdImport").isEnabled(); }
    std::string summary() { return Child<QLabel>(dialog, "lblSummary").text().toStdString(); }

    BasketTestDb t;
    RecordingMessageBoxes boxes;
    ScriptedFileChooser files;
    RecordingMainLink main;
    frmImportSpreadsheet dialog{*t.db, boxes, files, main, ImportDefaults{"NYSE", "ARCA"}};
};

TEST_F(SpreadsheetScreen, PreviewShowsEveryLineAndStoresNothingWhileOneHasAnError) {
    choose("Symbol,Qty\r\nIBM,100\r\nKO,lots\r\n");
    const auto& view = Child<QTableView>(dialog, "lvPreview");
    ASSERT_EQ(Rows(view), 2);
    EXPECT_EQ(Cell(view, 1, 0), "3");
    EXPECT_EQ(Cell(view, 1, 6), "quantity \"lots\" is not a whole number of shares");
    EXPECT_NE(summary().find("1 with errors"), std::string::npos) << summary();
    EXPECT_FALSE(importEnabled());
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblBaskets"), std::vector<std::string>{"0"});
}

TEST_F(SpreadsheetScreen, ImportStoresTheBasketNamedAfterTheFileWithItsIndexShares) {
    choose("\xEF\xBB\xBFTicker;Shares;Index Shares\r\nibm;100;5000\r\nMSFT;20;\r\n");
    EXPECT_EQ(Child<QLineEdit>(dialog, "txtBasketName").text().toStdString(), "Pairs List");
    ASSERT_TRUE(importEnabled()) << summary();
    Click(dialog, "cmdImport");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(t.rows("SELECT strBasketName, strSym, intQty, strDest, nIndexShares FROM "
                     "tblBaskets INNER JOIN tblBasketDetails ON tblBaskets.intBasketNum = "
                     "tblBasketDetails.intBasketNum ORDER BY intRecordNum"),
              (std::vector<std::string>{"Pairs List|IBM|100|NYSE|5000",
                                        "Pairs List|MSFT|20|ARCA|<null>"}));
    EXPECT_EQ(main.indexShares.size(), 1u);
}

} // namespace
} // namespace wicker
