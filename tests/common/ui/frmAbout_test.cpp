#include "common/ui/frmAbout.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace wicker {
namespace {

ProgramFacts Facts() {
    ProgramFacts f = RuntimeFacts();
    f.dataFolder = "/tmp/wicker-data";
    f.platform = "SIMULATED";
    f.sqliteVersion = "3.40.1";
    return f;
}

TEST(frmAbout, ShowsVersionFolderPlatformAndLicences) {
    frmAbout about(Facts());
    EXPECT_EQ(about.windowTitle(), QStringLiteral("About Wicker"));
    const auto* title = about.findChild<QLabel*>(QStringLiteral("lblTitle"));
    ASSERT_NE(title, nullptr);
    EXPECT_TRUE(title->text().contains(QStringLiteral(WICKER_VERSION)));
    const auto* facts = about.findChild<QLabel*>(QStringLiteral("lblFacts"));
    ASSERT_NE(facts, nullptr);
    EXPECT_TRUE(facts->text().contains(QStringLiteral("/tmp/wicker-data")));
    EXPECT_TRUE(facts->text().contains(QStringLiteral("SIMULATED")));
    const auto* licences = about.findChild<QPlainTextEdit*>(QStringLiteral("txtLicences"));
    ASSERT_NE(licences, nullptr);
    for (const char* library : {"Qt 6", "SQLite", "QuickFIX"}) {
        EXPECT_TRUE(licences->toPlainText().contains(QLatin1String(library))) << library;
    }
    EXPECT_NE(about.findChild<QPushButton*>(QStringLiteral("cmdSysInfo")), nullptr);
}

TEST(frmSysInfo, CopyPutsTheWholeTextOnTheClipboard) {
    const ProgramFacts facts = Facts();
    frmSysInfo info(facts);
    const auto* view = info.findChild<QPlainTextEdit*>(QStringLiteral("txtSysInfo"));
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view->toPlainText().contains(QStringLiteral("Data folder: /tmp/wicker-data")));
    EXPECT_TRUE(view->toPlainText().contains(QStringLiteral("Qt: ")));
    QApplication::clipboard()->clear();
    auto* copy = info.findChild<QPushButton*>(QStringLiteral("cmdCopy"));
    ASSERT_NE(copy, nullptr);
    copy->click();
    EXPECT_EQ(QApplication::clipboard()->text(),
              QString::fromStdString(SystemInformationText(facts)));
}

} // namespace
} // namespace wicker
