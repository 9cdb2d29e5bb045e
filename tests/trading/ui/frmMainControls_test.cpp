// The main window's controls, captions and menus as the trader finds them at start-up.

#include "trading/basket/StockList.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/ui/MainScreenFixture.h"

#include <QMenu>
#include <QStatusBar>
#include <QTimer>

namespace wicker::test {
namespace {

// Controls the other tests click or read are found by name there; here their captions.
TEST_F(MainScreen, EveryControlIsThereByItsNameWithItsCaption) {
    Open();
    struct Row {
        const char* name;
        const char* caption;
    };
    const Row buttons[] = {
        {"cmdClear", "Clear"}, {"cmdSA", "Select All"}, {"cmdCA", "Deselect All"}};
    for (const Row& r : buttons) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(Find<QPushButton>(r.name).text().toStdString(), r.caption);
    }
    const Row labels[] = {{"lblPercent", "Multiplier:"},
                          {"lblDelta", "Delta:"},
                          {"lblMod", "Mod:"},
                          {"lblTif", "TIF:"},
                          {"lblCurrentBasket", "Current Basket:"},
                          {"lblBaskets", "Baskets"},
                          {"labelName", "Basket"}};
    for (const Row& r : labels) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(Find<QLabel>(r.name).text().toStdString(), r.caption);
    }
    const Row named[] = {{"txtPercent", "Multiplier"}, {"txtDelta", "Delta"}, {"txtMod", "Mod"}};
    for (const Row& r : named) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(Find<QLineEdit>(r.name).accessibleName().toStdString(), r.caption);
    }
    EXPECT_EQ(Find<QComboBox>("cboAccount").lineEdit()->placeholderText().toStdString(),
              "Please Select Account");
    EXPECT_NO_THROW(Find<QStatusBar>("sbMain"));
    for (const char* name : {"Timer200ms", "Timer1sec", "Timer2sec"}) {
        EXPECT_NO_THROW(Find<QTimer>(name)) << name;
    }
    for (int i = 0; i < ExecuteButtonCount; ++i) {
        const std::string name = "cmdExecuteBasket_" + std::to_string(i);
        SCOPED_TRACE(name);
        EXPECT_EQ(Find<QPushButton>(name.c_str()).text().toStdString(),
                  std::string(ExecuteButtonRuleFor(i)->caption));
    }
}

TEST_F(MainScreen, ListsHaveTheirColumnCaptionsInOrder) {
    Open();
    const char* const stock[] = {"Symbol",   "Bid",       "Ask",   "Last", "Bskt Qty",
                                 "Tot. Qty", "Dest.",     "Mod",   "TIF",  "Volume",
                                 "Change",   "% Change",  "Open",  "High", "Low",
                                 "OpenChg",  "% OpenChg", "Close", "VWAP", "Price"};
    ASSERT_EQ(Stocks().model()->columnCount(), 20);
    for (int c = 0; c < 20; ++c) {
        EXPECT_EQ(Stocks().model()->headerData(c, Qt::Horizontal).toString().toStdString(),
                  stock[c]);
    }
    const char* const baskets[] = {"Bsk. Num.",   "Basket",      "Time",     "Tot. Orders",
                                   "Open Orders", "Total Qty",   "Open Qty", "Filled Qty",
                                   "Total $ Bot", "Total $ Sld", "% Filled", "Index",
                                   "Side"};
    ASSERT_EQ(Baskets().model()->columnCount(), 13);
    for (int c = 0; c < 13; ++c) {
        EXPECT_EQ(Baskets().model()->headerData(c, Qt::Horizontal).toString().toStdString(),
                  baskets[c]);
    }
}

TEST_F(MainScreen, MenusHaveTheirCaptionsAndOnlyBuiltScreensAreEnabled) {
    Open();
    struct Row {
        const char* name;
        const char* caption;
        bool enabled;
    };
    const Row rows[] = {
        {"mnuFileNew", "&New", true},
        {"mnuFileSave", "Save", true}, // nothing loaded: an unsaved basket
        {"mnuFileSaveAs", "Save As...", true},
        {"mnuExit", "E&xit", true},
        {"mnuEditPaste", "Paste", false},
        {"mnuGeneralSettings", "General Settings...", true},
        {"mnuAccounts", "&Accounts...", true},
        {"mnuBaskets", "&Baskets...", true},
        {"mnuDestinations", "&Destinations...", true},
        {"mnuUtilities", "&Utilities...", true},
        {"mnuAbout", "&About...", true},
        {"mnuCxlAll", "Cancel All Baskets", true},
        {"mnuCxlSel", "Cancel Selected Basket", true},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        QAction& a = Action(r.name);
        EXPECT_EQ(a.text().toStdString(), r.caption);
        EXPECT_EQ(a.isEnabled(), r.enabled);
    }
    const Row menus[] = {{"mnuFile", "&File", true}, {"mnuEdit", "&Edit", true},
                         {"mnuView", "View", true},  {"mnuTools", "&Tools", true},
                         {"mnuHelp", "&Help", true}, {"mnuBasketOptions", "Basket Options", true}};
    for (const Row& r : menus) {
        EXPECT_EQ(Find<QMenu>(r.name).title().toStdString(), r.caption) << r.name;
    }
}

TEST_F(MainScreen, StartUpFillsTheListsButtonsAndFields) {
    Open();
    EXPECT_NE(window->windowTitle().toStdString().find("SIMULATED"), std::string::npos);
    EXPECT_NE(window->windowTitle().toStdString().find(dir.path().string()), std::string::npos);

    auto& list = Find<QListWidget>("lstBaskets");
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.item(0)->text().toStdString(), "Dow3");
    EXPECT_EQ(list.item(1)->text().toStdString(), "Tech10");

    EXPECT_EQ(Find<QPushButton>("cmdLoad_1").text().toStdString(), "Tech 10");
    EXPECT_FALSE(Find<QPushButton>("cmdLoad_1").isHidden());
    for (const char* unused : {"cmdLoad_2", "cmdLoad_3", "cmdLoad_4"}) {
        EXPECT_TRUE(Find<QPushButton>(unused).isHidden()) << unused;
    }

    auto& account = Find<QComboBox>("cboAccount");
    ASSERT_EQ(account.count(), 1);
    EXPECT_EQ(account.itemText(0).toStdString(), "DEMO01");
    EXPECT_EQ(account.currentText().toStdString(), ""); // no default account yet

    auto& tif = Find<QComboBox>("cbTif");
    std::vector<std::string> tifs;
    for (int i = 0; i < tif.count(); ++i) {
        tifs.push_back(tif.itemText(i).toStdString());
    }
    EXPECT_EQ(tifs, (std::vector<std::string>{"DAY", "OPG", "FOK", "IOC", "GTC", "GTX", "EXT", "OS",
                                              "AEX", "NOW"}));
    EXPECT_EQ(tif.currentText().toStdString(), "DAY");
    EXPECT_EQ(Find<QLineEdit>("txtPercent").text().toStdString(), "1");
    EXPECT_EQ(Find<QLineEdit>("txtDelta").text().toStdString(), "100");
    EXPECT_EQ(Find<QLineEdit>("txtMod").text().toStdString(), "0");
    EXPECT_EQ(Find<QLabel>("sbMainPanel2").text().toStdString(), "0.00");
    EXPECT_NE(Find<QLabel>("sbMainPanel1").text().toStdString().find("SIMULATED"),
              std::string::npos);

    // EnableButtons(False): the quote buttons work, the price buttons wait for prices.
    for (int i = 0; i < ExecuteButtonCount; ++i) {
        const std::string name = "cmdExecuteBasket_" + std::to_string(i);
        EXPECT_EQ(Find<QPushButton>(name.c_str()).isEnabled(), i < 18) << name;
    }
    EXPECT_EQ(Rows(Stocks()), 0);
    EXPECT_EQ(Rows(Baskets()), 0);
}

TEST_F(MainScreen, TypedAccountIsStoredUpperCaseAndShown) {
    Open();
    ChooseAccount("acct7");
    auto& account = Find<QComboBox>("cboAccount");
    EXPECT_EQ(account.currentText().toStdString(), "ACCT7");
    EXPECT_GE(account.findText(QStringLiteral("ACCT7")), 0);
    EXPECT_EQ(desk->Accounts().text, "ACCT7");
}

} // namespace
} // namespace wicker::test
