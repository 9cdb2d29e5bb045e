#include "baskets/BasketTestDb.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmExportBasket.h"
#include "baskets/ui/frmSaveAs.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"

#include <QLineEdit>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class ExportScreen : public testing::Test {
protected:
    TempDir dir;
    RecordingMessageBoxes boxes;
    ScriptedFileChooser files;
    frmExportBasket dialog{boxes,
                           files,
                           {{"ABC", "100", "NYSE"}, {"WXYZ", "250", "ARCA"}},
                           dir / "Baskets" / "MyBasket.txt"};
    QLineEdit& fileBox = Child<QLineEdit>(dialog, "ebFilename");
};

TEST_F(ExportScreen, WritesTheProposedFileOverwritingIt) {
    EXPECT_EQ(fileBox.text().toStdString(), (dir / "Baskets" / "MyBasket.txt").string());
    WriteFile(dir / "Baskets" / "MyBasket.txt", "old content that is longer\r\n");
    Click(dialog, "butExport");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(ReadFile(dir / "Baskets" / "MyBasket.txt"), "ABC,100,NYSE\r\nWXYZ,250,ARCA\r\n");
}

TEST_F(ExportScreen, BrowseAsksForASaveFileWithTheTextFilter) {
    files.answers.push_back(std::nullopt); // cancelled: the name stays
    files.answers.push_back((dir / "other.txt").string());
    Click(dialog, "butBrowse");
    EXPECT_EQ(fileBox.text().toStdString(), (dir / "Baskets" / "MyBasket.txt").string());
    Click(dialog, "butBrowse");
    ASSERT_EQ(files.requests.size(), 2u);
    EXPECT_EQ(files.requests[0].kind, "save");
    EXPECT_EQ(files.requests[0].title, "Export");
    EXPECT_EQ(files.requests[0].filter, "Text Files (*.txt)");
    EXPECT_EQ(fileBox.text().toStdString(), (dir / "other.txt").string());
    PressEnter(fileBox);
    EXPECT_EQ(ReadFile(dir / "other.txt"), "ABC,100,NYSE\r\nWXYZ,250,ARCA\r\n");
}

TEST_F(ExportScreen, UnwritableFileIsReportedAndTheDialogStays) {
    dialog.show();
    WriteFile(dir / "plain", "x");
    fileBox.setText(QString::fromStdString((dir / "plain" / "b.txt").string()));
    Click(dialog, "butExport");
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Run-time error '75':\n\nPath/File access "
                                                       "error"}));
    EXPECT_TRUE(dialog.isVisible());
}

class SaveAsScreen : public testing::Test {
protected:
    BasketTestDb t;
    RecordingMessageBoxes boxes;
    frmSaveAs dialog{*t.db, boxes, {{"IBM", "100", "NYSE"}, {"GE", "5", "ARCA"}}};
    QLineEdit& name = Child<QLineEdit>(dialog, "txtBasketName");
    QLineEdit& button = Child<QLineEdit>(dialog, "txtButtonName");
};

TEST_F(SaveAsScreen, StoresTheLinesUnderTheNewNameAndGivesItsNumber) {
    name.setText(QStringLiteral("Copy"));
    button.setText(QStringLiteral("CP"));
    PressEnter(button);
    ASSERT_TRUE(dialog.savedBasketNum());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(t.lines(*dialog.savedBasketNum()),
              (std::vector<std::string>{"IBM|100|NYSE|<null>", "GE|5|ARCA|<null>"}));
}

TEST_F(SaveAsScreen, NameInUseIsRefused) {
    t.addBasket("Copy", "XX");
    name.setText(QStringLiteral("Other"));
    button.setText(QStringLiteral("XX"));
    Click(dialog, "buttonSave");
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"The basket name or button name you have "
                                                       "entered is already in use."}));
    EXPECT_FALSE(dialog.savedBasketNum());
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

TEST_F(SaveAsScreen, BothNamesAreNeeded) {
    name.setText(QStringLiteral("Copy"));
    Click(dialog, "buttonSave");
    EXPECT_EQ(boxes.texts(),
              (std::vector<std::string>{"You must enter both a basket name and a button name."}));
    EXPECT_EQ(dialog.focusWidget(), &button);
}

} // namespace
} // namespace wicker
