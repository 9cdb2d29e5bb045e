// The general settings dialog over an open main window: what it saves lands in basket.ini
// under the keys the start-up reads, and takes effect on the window at once.

#include "admin/ui/frmGeneralSettings.h"
#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"
#include "trading/ui/MainScreenFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTimer>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;

class GeneralSettingsScreen : public MainScreen {
protected:
    std::unique_ptr<frmGeneralSettings> OpenDialog() {
        // No parent: the test owns the dialog, also across a restart of the window.
        auto dialog = std::make_unique<frmGeneralSettings>(*desk, boxes);
        dialog->setColorChooser([this](int32_t, const QString&) { return nextColour; });
        return dialog;
    }
    template <class W> static W& In(QWidget& dialog, const char* name) {
        auto* w = dialog.findChild<W*>(QString::fromLatin1(name));
        if (w == nullptr) {
            throw std::runtime_error(std::string("no child ") + name);
        }
        return *w;
    }
    static void Choose(QWidget& dialog, const char* combo, const char* text) {
        auto& box = In<QComboBox>(dialog, combo);
        const int at = box.findText(QString::fromLatin1(text));
        if (at >= 0) {
            box.setCurrentIndex(at);
        } else {
            box.setEditText(QString::fromLatin1(text));
        }
    }
    static void Type(QWidget& dialog, const char* box, const char* text) {
        In<QLineEdit>(dialog, box).setText(QString::fromLatin1(text));
    }
    std::string Stored(const char* section, const char* key) const {
        return test::IniValue(dir / "basket.ini", section, key);
    }
    bool Hidden(const char* name) const { return Find<QPushButton>(name).isHidden(); }

    std::optional<int32_t> nextColour;
};

TEST_F(GeneralSettingsScreen, MenuItemOpensTheDialog) {
    Open();
    QAction& item = Action("mnuGeneralSettings");
    ASSERT_TRUE(item.isEnabled());
    QString seen;
    QTimer::singleShot(0, [&] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            seen = modal->objectName();
            modal->close();
        }
    });
    item.trigger();
    EXPECT_EQ(seen, QStringLiteral("frmGeneralSettings"));
}

TEST_F(GeneralSettingsScreen, FourDecimalsShowAtTheNextTick) {
    Open();
    Click("cmdLoad_1");
    Run(1s);
    const QRegularExpression two(QStringLiteral("^\\d+\\.\\d\\d$"));
    const QRegularExpression four(QStringLiteral("^\\d+\\.\\d{4}$"));
    ASSERT_TRUE(two.match(QString::fromStdString(Cell(Stocks(), 0, stkLast))).hasMatch())
        << Cell(Stocks(), 0, stkLast);

    auto dialog = OpenDialog();
    EXPECT_EQ(In<QComboBox>(*dialog, "cboDecimals").currentText(), QStringLiteral("2"));
    Choose(*dialog, "cboDecimals", "4");
    In<QPushButton>(*dialog, "cmdOK").click();
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(Stored("Decimals", "NumDecimals"), "4");

    window->Timer200ms(); // no new quote needed: the known ones are written again
    for (int row = 0; row < Rows(Stocks()); ++row) {
        EXPECT_TRUE(four.match(QString::fromStdString(Cell(Stocks(), row, stkLast))).hasMatch())
            << row << ": " << Cell(Stocks(), row, stkLast);
    }
}

TEST_F(GeneralSettingsScreen, ButtonFlagsHideAndOfferOrderButtons) {
    Open();
    ASSERT_FALSE(Hidden("cmdExecuteBasket_0"));
    ASSERT_TRUE(Hidden("cmdExecuteBasket_17")); // BUY MOO is not offered by default

    auto dialog = OpenDialog();
    auto& buyMoo = In<QCheckBox>(*dialog, "chkButton_4");
    EXPECT_FALSE(buyMoo.isEnabled());
    In<QCheckBox>(*dialog, "chkButton_0").setChecked(false); // BUY BID
    In<QCheckBox>(*dialog, "chkMOO").setChecked(true);
    EXPECT_TRUE(buyMoo.isEnabled());
    EXPECT_TRUE(buyMoo.isChecked());
    In<QCheckBox>(*dialog, "chkButton_16").setChecked(false); // SHRT MOO
    In<QPushButton>(*dialog, "cmdOK").click();

    EXPECT_TRUE(Hidden("cmdExecuteBasket_0"));
    EXPECT_FALSE(Hidden("cmdExecuteBasket_17")); // BUY MOO
    EXPECT_FALSE(Hidden("cmdExecuteBasket_16")); // SELL MOO
    EXPECT_TRUE(Hidden("cmdExecuteBasket_15"));  // SHRT MOO
    EXPECT_EQ(Stored("ButtonsDisplay", "Buttons"), "011110111110111100000");
    EXPECT_EQ(Stored("OptionalButtons", "MOO"), "1");
}

TEST_F(GeneralSettingsScreen, RoundingTo100RecalculatesTheLoadedBasket) {
    Open();
    Click("cmdLoad_1");
    Run(1s);
    Find<QLineEdit>("txtPercent").setText(QStringLiteral("1.5"));
    ASSERT_EQ(Cell(Stocks(), 0, stkBasketQty), "100");
    ASSERT_EQ(Cell(Stocks(), 0, stkOrderQty), "150");

    auto dialog = OpenDialog();
    Choose(*dialog, "cboShareRounding", "100");
    In<QPushButton>(*dialog, "cmdApply").click();
    EXPECT_NE(dialog->result(), QDialog::Accepted);   // Apply keeps the dialog open
    EXPECT_EQ(Cell(Stocks(), 0, stkOrderQty), "200"); // 1.5 lots round up to 2
    EXPECT_EQ(Cell(Stocks(), 2, stkOrderQty), "300"); // NVDA 200 x 1.5: whole lots already
    EXPECT_EQ(Stored("Rounding", "ShareRounding"), "100");
    EXPECT_EQ(desk->settings().shareRounding, 100);
}

TEST_F(GeneralSettingsScreen, ShowAllBringsBackTheSendsOfOtherBaskets) {
    SendRestingTech10();
    ASSERT_EQ(Rows(Baskets()), 1);
    const auto& hint = Find<QLabel>("lblHiddenSends");
    EXPECT_TRUE(hint.isHidden());

    desk->LoadBasketByName("Dow3");
    EXPECT_EQ(Rows(Baskets()), 0) << "only the loaded basket's sends by default";
    EXPECT_FALSE(hint.isHidden());
    EXPECT_TRUE(hint.text().contains(QStringLiteral("1 of them with open orders")))
        << hint.text().toStdString();

    auto dialog = OpenDialog();
    In<QCheckBox>(*dialog, "chkShowAll").setChecked(true);
    In<QPushButton>(*dialog, "cmdOK").click();
    EXPECT_EQ(Stored("BasketInfo", "ShowAll"), "1");
    ASSERT_EQ(Rows(Baskets()), 1);
    EXPECT_EQ(Cell(Baskets(), 0, colBasket), "Tech10");
    EXPECT_TRUE(hint.isHidden());
}

TEST_F(GeneralSettingsScreen, ColoursAreChosenSavedAndSetBackByDefault) {
    Open();
    auto dialog = OpenDialog();
    nextColour = 255; // red, as 0x00BBGGRR
    In<QPushButton>(*dialog, "cmdBuyColor").click();
    nextColour = std::nullopt; // the trader cancels the colour dialog: nothing changes
    In<QPushButton>(*dialog, "cmdSellColor").click();
    In<QPushButton>(*dialog, "cmdApply").click();
    EXPECT_EQ(Stored("Color", "BuyButtonColor"), "255");
    EXPECT_EQ(Stored("Color", "SellButtonColor"), "-2147483633");
    EXPECT_EQ(
        Find<QPushButton>("cmdExecuteBasket_3").palette().color(QPalette::Active, QPalette::Button),
        QColor(255, 0, 0));

    In<QPushButton>(*dialog, "cmdDefaultColors").click();
    In<QPushButton>(*dialog, "cmdOK").click();
    EXPECT_EQ(Stored("Color", "BuyButtonColor"), "-2147483633");
    EXPECT_EQ(
        Find<QPushButton>("cmdExecuteBasket_3").palette().color(QPalette::Active, QPalette::Button),
        window->palette().color(QPalette::Button));
}

TEST_F(GeneralSettingsScreen, EveryTraderSettingRoundTripsThroughTheFile) {
    Open();
    auto dialog = OpenDialog();
    In<QCheckBox>(*dialog, "chkBeforeSending").setChecked(true);
    In<QCheckBox>(*dialog, "chkBeforeCancel").setChecked(true);
    In<QCheckBox>(*dialog, "chkBeforeChange").setChecked(true);
    In<QCheckBox>(*dialog, "chkBeforeExit").setChecked(false);
    In<QCheckBox>(*dialog, "chkReserve").setChecked(true);
    Type(*dialog, "txtReserve", "300");
    Choose(*dialog, "cboShareRounding", "10");
    Choose(*dialog, "cboDecimals", "3");
    In<QCheckBox>(*dialog, "chkBasketButtons").setChecked(false);
    In<QCheckBox>(*dialog, "chkBasketInfo").setChecked(false);
    In<QCheckBox>(*dialog, "chkShowAll").setChecked(true);
    In<QCheckBox>(*dialog, "chkMOC").setChecked(true);
    In<QCheckBox>(*dialog, "chkColorOrderButtons").setChecked(false);
    Choose(*dialog, "cboDefaultListed", "ARCA");
    Choose(*dialog, "cboDefaultOTC", "nasdaq");
    In<QPushButton>(*dialog, "cmdOK").click();
    ASSERT_TRUE(boxes.shown().empty()) << boxes.texts().front();
    EXPECT_TRUE(Find<QWidget>("lvBaskets").isHidden());
    EXPECT_TRUE(Find<QWidget>("fraQuickLoad").isHidden());

    const std::pair<const char*, const char*> keys[] = {
        {"Confirmation", "BeforeSending"}, {"Confirmation", "BeforeCancel"},
        {"Confirmation", "BeforeChange"},  {"Reserve", "Enabled"},
        {"BasketInfo", "ShowAll"},         {"OptionalButtons", "MOC"}};
    for (const auto& [section, key] : keys) {
        EXPECT_EQ(Stored(section, key), "1") << key;
    }
    EXPECT_EQ(Stored("Confirmation", "BeforeExit"), "0");
    EXPECT_EQ(Stored("Reserve", "Quantity"), "300");
    EXPECT_EQ(Stored("Rounding", "ShareRounding"), "10");
    EXPECT_EQ(Stored("DisplaySettings", "BasketButtons"), "0");
    EXPECT_EQ(Stored("BasketInfo", "Display"), "0");
    EXPECT_EQ(Stored("Color", "ColorOrderButtons"), "0");
    EXPECT_EQ(Stored("Import", "DefaultListed"), "ARCA");
    EXPECT_EQ(Stored("Import", "DefaultOTC"), "NASDAQ");

    // A restarted window shows the same in a fresh dialog.
    TearDown();
    Open();
    EXPECT_TRUE(Find<QWidget>("lvBaskets").isHidden());
    auto again = OpenDialog();
    EXPECT_TRUE(In<QCheckBox>(*again, "chkBeforeChange").isChecked());
    EXPECT_EQ(In<QLineEdit>(*again, "txtReserve").text(), QStringLiteral("300"));
    EXPECT_EQ(In<QComboBox>(*again, "cboShareRounding").currentText(), QStringLiteral("10"));
    EXPECT_EQ(In<QComboBox>(*again, "cboDecimals").currentText(), QStringLiteral("3"));
    EXPECT_TRUE(In<QCheckBox>(*again, "chkMOC").isChecked());
    EXPECT_TRUE(In<QCheckBox>(*again, "chkButton_5").isChecked()); // BUY MOC
    EXPECT_EQ(In<QComboBox>(*again, "cboDefaultOTC").currentText(), QStringLiteral("NASDAQ"));
}

TEST_F(GeneralSettingsScreen, BadValuesAreRefusedWithAMessageAndTheFocusInTheirBox) {
    struct Row {
        const char* name;
        std::function<void(QWidget&)> enter;
        const char* box;
        const char* text; // start of the message
    };
    const Row rows[] = {
        {"reserve not a number", [](QWidget& d) { Type(d, "txtReserve", "abc"); }, "txtReserve",
         "The reserve quantity must be"},
        {"unknown listed destination", [](QWidget& d) { Choose(d, "cboDefaultListed", "BATS"); },
         "cboDefaultListed", "The default destination of listed stocks \"BATS\""},
        {"FIX port out of range",
         [](QWidget& d) {
             Choose(d, "cboMode", "FIX");
             Type(d, "txtFixPort", "70000");
         },
         "txtFixPort", "The FIX port must be"},
        {"simulator speed zero", [](QWidget& d) { Type(d, "txtSimUpdatesPerSecond", "0"); },
         "txtSimUpdatesPerSecond", "The simulator's quote updates"},
    };
    Open();
    const std::string before = ReadFile(dir / "basket.ini");
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        boxes.clear();
        auto dialog = OpenDialog();
        Choose(*dialog, "cboDecimals", "4"); // a good change that must not land either
        r.enter(*dialog);
        In<QPushButton>(*dialog, "cmdOK").click();
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.shown()[0].text.rfind(r.text, 0), 0u) << boxes.shown()[0].text;
        EXPECT_EQ(boxes.shown()[0].title, "General Settings");
        EXPECT_NE(dialog->result(), QDialog::Accepted);
        QWidget* box = &In<QWidget>(*dialog, r.box);
        EXPECT_EQ(dialog->focusWidget(), box);
        auto& tabs = In<QTabWidget>(*dialog, "tabSettings");
        EXPECT_TRUE(tabs.currentWidget()->isAncestorOf(box));
        EXPECT_EQ(desk->settings().numDecimals, 2);
        EXPECT_EQ(ReadFile(dir / "basket.ini"), before);
    }
}

TEST_F(GeneralSettingsScreen, APlatformChangeIsSavedForTheNextStart) {
    Open();
    auto dialog = OpenDialog();
    EXPECT_FALSE(In<QLabel>(*dialog, "lblPlatformNote").text().isEmpty());
    EXPECT_FALSE(In<QWidget>(*dialog, "fraFix").isEnabled());
    Choose(*dialog, "cboMode", "FIX");
    EXPECT_TRUE(In<QWidget>(*dialog, "fraFix").isEnabled());
    EXPECT_FALSE(In<QWidget>(*dialog, "fraSim").isEnabled());
    Type(*dialog, "txtFixHost", "10.1.2.3");
    Type(*dialog, "txtEnabledDestinations", "arca,nyse");
    const QString title = window->windowTitle();
    In<QPushButton>(*dialog, "cmdOK").click();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.shown()[0].text.find("next time"), std::string::npos);
    EXPECT_EQ(Stored("Platform", "Mode"), "FIX");
    EXPECT_EQ(Stored("Platform", "FixHost"), "10.1.2.3");
    EXPECT_EQ(Stored("Platform", "EnabledDestinations"), "ARCA,NYSE");
    EXPECT_EQ(Stored("Platform", "FixPort"), "<missing>"); // untouched keys stay out
    EXPECT_EQ(window->windowTitle(), title);               // still the simulator until the restart
}

TEST_F(GeneralSettingsScreen, AnUnreadableSettingsFileIsNotWrittenAndTheTraderIsTold) {
    Open();
    // A UTF-16 file: Wicker must not replace it with an 8-bit one.
    const std::string utf16("\xFF\xFE[\0D\0]\0", 8);
    WriteFile(dir / "basket.ini", utf16);
    auto dialog = OpenDialog();
    Choose(*dialog, "cboDecimals", "3");
    In<QPushButton>(*dialog, "cmdOK").click();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.shown()[0].text.find("not saved"), std::string::npos);
    EXPECT_NE(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(desk->settings().numDecimals, 2);
    EXPECT_EQ(ReadFile(dir / "basket.ini"), utf16);
    TearDown(); // the window's own unload is refused too
    EXPECT_EQ(ReadFile(dir / "basket.ini"), utf16);
}

} // namespace
} // namespace wicker::test
