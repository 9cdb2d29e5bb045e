#include "admin/AdminTestDb.h"
#include "admin/RecordingTradingReset.h"
#include "admin/ui/frmResetSeq.h"
#include "admin/ui/frmUtils.h"
#include "baskets/ui/ScreenSupport.h"
#include "storage/clsIniFile.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/orders/SendSequence.h"

#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class UtilitiesScreen : public testing::Test {
protected:
    std::string stored(const std::string& key) const {
        clsIniFile ini;
        ini.setPath(t.dir / "basket.ini");
        ini.setSection("Sequence");
        ini.setKey(key);
        return ini.Value();
    }

    AdminTestDb t;
    RecordingMessageBoxes boxes;
    RecordingTradingReset trading;
    SendSequence sequence{3, 40};
    frmUtils screen{*t.db, boxes, trading, sequence, t.dir.path()};
};

TEST_F(UtilitiesScreen, HasItsToolsUnderTheirCaptions) {
    EXPECT_EQ(screen.windowTitle().toStdString(), "Basket Utilities");
    const std::pair<const char*, const char*> buttons[] = {
        {"cmdTestConnection", "Test DB Connection"},
        {"cmdCreateData", "Create Initial Data"},
        {"cmdClearTradeData", "Clear Trading Data"},
        {"cmdCloseOrders", "Mark All Orders as Closed"},
        {"cmdResetSeq", "Set Basket/Trade Seq."},
        {"cmdExit", "E&xit"},
    };
    for (const auto& [name, caption] : buttons) {
        EXPECT_EQ(Child<QPushButton>(screen, name).text().toStdString(), caption) << name;
    }
}

TEST_F(UtilitiesScreen, TestConnectionShowsTheVersion) {
    Click(screen, "cmdTestConnection");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].title, "Database Test Successful!");
    EXPECT_EQ(boxes.shown()[0].text,
              "Successfully connected to database.\r\nDatabase version 5010");
}

TEST_F(UtilitiesScreen, CreateInitialDataAddsASecondCopy) {
    Click(screen, "cmdCreateData");
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest"), (Texts{"16"}));
    EXPECT_EQ(t.rows("SELECT strDbVersion FROM tblConfig"), (Texts{"5010", "1.2.0"}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(UtilitiesScreen, CreateInitialDataFailureIsShown) {
    t.db->ExecuteSql("DROP TABLE tblConfig");
    Click(screen, "cmdCreateData");
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest"), (Texts{"8"}));
}

TEST_F(UtilitiesScreen, AFailureOfTheMainScreenIsShown) {
    trading.fail = true;
    Click(screen, "cmdClearTradeData");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.texts()[0].find("the trading data is busy"), std::string::npos);
}

TEST_F(UtilitiesScreen, SequenceNumbersAreSetThroughTheirScreen) {
    WhenOpens<frmResetSeq> reset([&](frmResetSeq& d) {
        EXPECT_EQ(d.windowTitle().toStdString(), "Reset Basket/Trade Sequence Number");
        auto& nextBasket = Child<QLineEdit>(d, "txtNextBasketNo");
        auto& nextTrade = Child<QLineEdit>(d, "txtNextTradeNum");
        EXPECT_EQ(nextBasket.text().toStdString(), "3");
        EXPECT_EQ(nextTrade.text().toStdString(), "40");
        auto& setTrade = Child<QLineEdit>(d, "txtSetTradeNum");
        for (QLineEdit* shown : {&nextBasket, &nextTrade}) {
            EXPECT_TRUE(shown->isReadOnly());
            EXPECT_EQ(shown->focusPolicy(), Qt::NoFocus);
        }
        // The two frames line up: boxes and buttons at the same place in each.
        const auto x = [&](const QWidget& w) { return w.mapTo(&d, QPoint(0, 0)).x(); };
        EXPECT_EQ(x(nextBasket), x(nextTrade));
        EXPECT_EQ(x(Child<QLineEdit>(d, "txtSetBasketNo")), x(setTrade));
        EXPECT_EQ(x(Child<QPushButton>(d, "cmdSetBasNum")),
                  x(Child<QPushButton>(d, "cmdSetTradeNum")));

        auto& setBasket = Child<QLineEdit>(d, "txtSetBasketNo");
        setBasket.setText(QStringLiteral("7"));
        PressEnter(setBasket);
        EXPECT_EQ(nextBasket.text().toStdString(), "7");

        Child<QLineEdit>(d, "txtSetTradeNum").setText(QStringLiteral("12x"));
        Click(d, "cmdSetTradeNum");
        EXPECT_EQ(nextTrade.text().toStdString(), "12");

        Click(d, "cmdClose");
        EXPECT_FALSE(d.isVisible());
    });
    Click(screen, "cmdResetSeq");
    EXPECT_EQ(sequence.BasketSeq(), 7);
    EXPECT_EQ(sequence.OrderSeq(), 12);
    EXPECT_EQ(stored("BasketNum"), "7");
    EXPECT_EQ(stored("SeqNum"), "12x");
    EXPECT_EQ(boxes.texts(), (Texts{"Next Basket Squence Number will be: 7",
                                    "Next Trade Squence Number will be: 12"}));
}

TEST_F(UtilitiesScreen, ExitCloses) {
    Click(screen, "cmdExit");
    EXPECT_EQ(screen.result(), QDialog::Accepted);
}

} // namespace
} // namespace wicker
