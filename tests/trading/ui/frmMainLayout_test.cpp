// What the settings file says about the main window's look: which order buttons show and
// in which colours, which column arrangement is used, and where the window was left.

#include "storage/clsIniFile.h"
#include "trading/basket/StockList.h"
#include "trading/ui/ColumnLayout.h"
#include "trading/ui/MainScreenFixture.h"
#include "trading/ui/OrderButtonDisplay.h"

#include <QApplication>

namespace wicker::test {
namespace {

std::string ShownButtons(const frmMain& w) {
    std::string shown;
    for (int i = 0; i < ExecuteButtonCount; ++i) {
        auto* b = w.findChild<QPushButton*>(QStringLiteral("cmdExecuteBasket_%1").arg(i));
        shown += b != nullptr && !b->isHidden() ? '1' : '0';
    }
    return shown;
}

TEST_F(MainScreen, OrderButtonsShowAsTheSettingsSay) {
    struct Row {
        const char* name;
        const char* ini;
        const char* shown; // by button index 0..20
    };
    const Row rows[] = {
        {"defaults: no MOO, no MOC", "", "111111111111000000111"},
        {"MOO offered", "[OptionalButtons]\r\nMOO=1\r\n", "111111111111000111111"},
        {"MOC offered", "[OptionalButtons]\r\nMOC=1\r\n", "111111111111111000111"},
        {"both offered", "[OptionalButtons]\r\nMOO=1\r\nMOC=1\r\n", "111111111111111111111"},
        // Buy LAST hidden, sell MKT hidden, short MOC shown.
        {"explicit flags", "[ButtonsDisplay]\r\nButtons=110100111000111101000\r\n",
         "110111101111001000111"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        TearDown();
        Ini(r.ini);
        Open();
        EXPECT_EQ(ShownButtons(*window), r.shown);
    }
}

TEST_F(MainScreen, OrderButtonsTakeTheColoursOfTheirSide) {
    // 0x00BBGGRR: buy red, sell blue, short green.
    Ini("[Color]\r\nColorOrderButtons=1\r\nBuyButtonColor=255\r\nSellButtonColor=16711680\r\n"
        "ShortButtonColor=65280\r\n");
    Open();
    const auto colour = [&](int i) {
        return Find<QPushButton>(("cmdExecuteBasket_" + std::to_string(i)).c_str())
            .palette()
            .color(QPalette::Active, QPalette::Button);
    };
    for (int i : {0, 3, 12, 17, 18}) {
        EXPECT_EQ(colour(i), QColor(255, 0, 0)) << i;
    }
    for (int i : {4, 7, 13, 16, 19}) {
        EXPECT_EQ(colour(i), QColor(0, 0, 255)) << i;
    }
    for (int i : {8, 11, 14, 15, 20}) {
        EXPECT_EQ(colour(i), QColor(0, 255, 0)) << i;
    }
}

TEST_F(MainScreen, ColourOffOrSystemColourGivesTheButtonFace) {
    Ini("[Color]\r\nColorOrderButtons=0\r\nBuyButtonColor=255\r\n");
    Open();
    const QColor face = window->palette().color(QPalette::Button);
    EXPECT_EQ(Find<QPushButton>("cmdExecuteBasket_0").palette().color(QPalette::Button), face);
    EXPECT_EQ(ColorFromSetting(-2147483633, window->palette()), face);
}

TEST(ColumnLayoutOrder, OnlyACompleteArrangementIsUsed) {
    struct Row {
        const char* name;
        std::vector<std::string> positions;
        std::vector<int> order;
    };
    const Row rows[] = {
        {"natural with trailing empty", {"1", "2", "3", ""}, {0, 1, 2}},
        {"swapped", {"2", "1", "3"}, {1, 0, 2}},
        {"too few", {"1", "2"}, {0, 1, 2}},
        {"repeated", {"1", "1", "3"}, {0, 1, 2}},
        {"out of range", {"1", "2", "4"}, {0, 1, 2}},
        {"not a number", {"1", "x", "3"}, {0, 1, 2}},
        {"blank inside", {"1", " 2", "3"}, {0, 1, 2}},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(DisplayOrder(r.positions, 3), r.order) << r.name;
    }
}

TEST_F(MainScreen, PlacementIsSavedOnCloseAndRestoredAtStart) {
    Open();
    // Within the offscreen screen (800 x 600), so nothing needs moving onto it.
    window->setGeometry(10, 20, 770, 500);
    window->close();
    clsIniFile ini;
    ini.setPath(dir / "basket.ini");
    ini.setSection("frmMain");
    ini.setKey("Width");
    EXPECT_EQ(ini.Value(), "770");
    ini.setKey("Maximised");
    EXPECT_EQ(ini.Value(), "0");

    TearDown();
    Open();
    const QRect r = window->geometry();
    EXPECT_EQ(r.width(), 770);
    EXPECT_EQ(r.height(), 500);
    EXPECT_EQ(r.x(), 10);
    EXPECT_EQ(r.y(), 20);
}

} // namespace
} // namespace wicker::test
