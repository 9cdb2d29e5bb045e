#include "baskets/BasketTestDb.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmImportBasket.h"
#include "support/RecordingMessageBoxes.h"

#include <fstream>

#include <QComboBox>
#include <QLineEdit>
#include <QProgressDialog>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class ImportScreen : public testing::Test {
protected:
    QLineEdit& edit(const char* name) { return Child<QLineEdit>(dialog, name); }
    QComboBox& combo(const char* name) { return Child<QComboBox>(dialog, name); }

    void fill(const std::filesystem::path& file, const QString& name = QStringLiteral("Imp")) {
        edit("txtBasketName").setText(name);
        edit("txtButtonName").setText(QStringLiteral("IMP"));
        edit("txtFileName").setText(QString::fromStdString(file.string()));
    }

    std::filesystem::path file(const std::string& bytes) {
        WriteFile(t.dir / "in.txt", bytes);
        return t.dir / "in.txt";
    }

    int32_t imported(const std::string& name = "Imp") {
        auto rs = t.db->OpenRecordset(
            "SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + name + "'");
        return rs.IsEOF() ? 0 : rs.Field("intBasketNum").toLong();
    }

    BasketTestDb t;
    RecordingMessageBoxes boxes;
    ScriptedFileChooser files;
    RecordingMainLink main;
    frmImportBasket dialog{*t.db, boxes, files, main, ImportDefaults{"AMEX", "INET"}};
};

TEST_F(ImportScreen, CombosOfferNoneAndTheEnabledDestinationsWithTheDefaultsChosen) {
    QComboBox& listed = combo("cboListed");
    ASSERT_EQ(listed.count(), 9);
    EXPECT_EQ(listed.itemText(0).toStdString(), "<none>");
    EXPECT_EQ(listed.itemText(1).toStdString(), "AMEX");
    EXPECT_EQ(listed.currentText().toStdString(), "AMEX");
    EXPECT_EQ(combo("cboOTC").currentText().toStdString(), "INET");
}

TEST_F(ImportScreen, DefaultThatIsNotEnabledFallsBackToNone) {
    frmImportBasket other(*t.db, boxes, files, main, ImportDefaults{"XCHG", "ARCA"});
    EXPECT_EQ(Child<QComboBox>(other, "cboListed").currentText().toStdString(), "<none>");
    EXPECT_EQ(Child<QComboBox>(other, "cboOTC").currentText().toStdString(), "ARCA");
}

TEST_F(ImportScreen, FileChooserFillsTheFileBox) {
    files.answers.push_back("/tmp/basket.txt");
    Click(dialog, "cmdOpenFile");
    ASSERT_EQ(files.requests.size(), 1u);
    EXPECT_EQ(files.requests[0].kind, "open");
    EXPECT_EQ(files.requests[0].filter, "Text Files (*.txt)");
    EXPECT_EQ(edit("txtFileName").text().toStdString(), "/tmp/basket.txt");
}

// The defaults' rules are the logic's; the screen passes the combos' choices ("<none>" is
// no destination), imports on Enter and hands the fourth field to the main screen.
TEST_F(ImportScreen, EnterImportsWithTheCombosDefaultsAndTheIndexShares) {
    combo("cboOTC").setCurrentIndex(0);
    fill(file("MSFT,100,\r\nIBM,50,\r\nGE,5,NYSE,5000\r\n"));
    PressEnter(edit("txtFileName"));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(boxes.shown().empty());
    const int32_t n = imported();
    EXPECT_EQ(t.lines(n), (std::vector<std::string>{"MSFT|100||<null>", "IBM|50|AMEX|<null>",
                                                    "GE|5|NYSE|<null>"}));
    EXPECT_EQ(main.indexShares,
              (std::map<std::pair<int32_t, std::string>, int32_t>{{{n, "GE"}, 5000}}));
}

TEST_F(ImportScreen, MissingNamesAndFileFocusTheirBoxes) {
    Click(dialog, "cmdImport");
    EXPECT_EQ(dialog.focusWidget(), &edit("txtBasketName"));
    edit("txtBasketName").setText(QStringLiteral("X"));
    Click(dialog, "cmdImport");
    EXPECT_EQ(dialog.focusWidget(), &edit("txtButtonName"));
    edit("txtButtonName").setText(QStringLiteral("X"));
    Click(dialog, "cmdImport");
    EXPECT_EQ(dialog.focusWidget(), &edit("txtFileName"));
    EXPECT_EQ(boxes.texts(),
              (std::vector<std::string>{"Please enter a name for this basket.",
                                        "Please enter a button name for this basket.",
                                        "Please select a file to import from."}));
    EXPECT_EQ(t.count("tblBaskets"), 0);
}

TEST_F(ImportScreen, ExistingNameKeepsTheDialogOpen) {
    t.addBasket("Imp");
    dialog.show();
    fill(file("A,1,NYSE\r\n"));
    Click(dialog, "cmdImport");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(boxes.shown().at(0).title, "Error loading basket.");
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

TEST_F(ImportScreen, LongImportShowsProgressAndCanBeCancelled) {
    const auto path = t.dir / "long.txt";
    {
        std::ofstream out(path, std::ios::binary);
        for (int i = 0; i < 3000; ++i) {
            out << "S" << i << "," << i + 1 << ",NYSE\r\n";
        }
    }
    dialog.setLinesPerStep(10);
    dialog.setProgressDelay(0);
    fill(path);
    bool sawProgress = false;
    int cancelAt = -1;
    QTimer cancelTimer;
    QObject::connect(&cancelTimer, &QTimer::timeout, &cancelTimer, [&] {
        auto* progress = dialog.findChild<QProgressDialog*>(QStringLiteral("importProgress"));
        if (progress != nullptr && progress->isVisible() && progress->value() > 0) {
            sawProgress = true;
            cancelAt = progress->value();
            progress->cancel();
            cancelTimer.stop();
        }
    });
    cancelTimer.start(1);
    Click(dialog, "cmdImport");
    EXPECT_TRUE(sawProgress);
    EXPECT_GT(cancelAt, 0);
    const auto lines = t.lines(imported());
    EXPECT_GT(lines.size(), 0u);
    EXPECT_LT(lines.size(), 3000u);
    EXPECT_EQ(lines.size() % 10, 0u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "Import cancelled. Basket \"Imp\" was created with the first " +
                  std::to_string(lines.size()) + " lines of the file.");
}

} // namespace
} // namespace wicker
