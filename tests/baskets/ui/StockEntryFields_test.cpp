#include "baskets/BasketTestDb.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/StockEntryFields.h"
#include "baskets/ui/frmAddStock.h"
#include "baskets/ui/frmAddStockMain.h"
#include "baskets/ui/frmEditItem.h"
#include "baskets/ui/frmEditStock.h"
#include "support/RecordingMessageBoxes.h"

#include <memory>

#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class StockEntryFieldsTest : public testing::Test {
protected:
    QDialog dialog;
    StockEntryFields fields{&dialog, {"sym", "qty", "dest"}};
};

TEST_F(StockEntryFieldsTest, WithoutIndexSharesThereAreThreeBoxesAndRows) {
    EXPECT_EQ(fields.indexShares(), nullptr);
    EXPECT_EQ(fields.boxes(),
              (std::vector<QWidget*>{fields.symbol(), fields.quantity(), fields.destination()}));
    auto* form = new QFormLayout(&dialog);
    fields.addRows(*form);
    EXPECT_EQ(form->rowCount(), 3);
    EXPECT_EQ(&Child<QLineEdit>(dialog, "sym"), fields.symbol());
    EXPECT_EQ(&Child<QComboBox>(dialog, "dest"), fields.destination());
}

TEST_F(StockEntryFieldsTest, ReadsTheBoxesAsTypedAndShowsWhatTheLogicFilledIn) {
    Type(*fields.symbol(), QStringLiteral("ib"));
    Type(*fields.symbol(), QStringLiteral("m"), true); // Shift inverts the case
    fields.quantity()->setText(QStringLiteral(" 12 "));
    fields.destination()->setEditText(QStringLiteral("nowhere"));
    const StockEntry typed = fields.entry();
    EXPECT_EQ(typed.symbol, "IBm");
    EXPECT_EQ(typed.quantity, " 12 ");
    EXPECT_EQ(typed.destination, "nowhere");
    EXPECT_EQ(typed.indexShares, "");
    const MainLineEntry line = fields.mainLine();
    EXPECT_EQ(line, (MainLineEntry{"IBm", " 12 ", "nowhere"}));

    fields.showFilledIn({"IBM", "0", "nowhere", "0"});
    EXPECT_EQ(fields.quantity()->text().toStdString(), "0");
}

TEST_F(StockEntryFieldsTest, HandOverFocusesAnEmptySymbolOnlyWhenTheLineIsRefused) {
    struct Row {
        const char* name;
        const char* symbol;
        bool taken;
        bool symbolFocused;
    };
    const Row rows[] = {{"RefusedWithoutSymbol", "", false, true},
                        {"RefusedWithSymbol", "IBM", false, false},
                        {"TakenWithoutSymbol", "", true, false}};
    dialog.show();
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        fields.quantity()->setFocus();
        fields.symbol()->setText(QString::fromLatin1(r.symbol));
        MainLineEntry entry = fields.mainLine();
        const bool taken = fields.handOver(entry, [&](MainLineEntry& e) {
            e.quantity = "7";
            return r.taken;
        });
        EXPECT_EQ(taken, r.taken);
        EXPECT_EQ(fields.quantity()->text().toStdString(), "7");
        EXPECT_EQ(dialog.focusWidget() == fields.symbol(), r.symbolFocused);
    }
}

struct UnreadableCase {
    const char* name;
    std::function<std::unique_ptr<QDialog>(BasketTestDb&, MessageBoxes&)> open;
    const char* destination;
};

void PrintTo(const UnreadableCase& c, std::ostream* os) {
    *os << c.name;
}

class UnreadableDestinations : public testing::TestWithParam<UnreadableCase> {
protected:
    BasketTestDb t;
    RecordingMessageBoxes boxes;
};

TEST_P(UnreadableDestinations, AreReportedOnceAndTheDialogStillOpensWithAnEmptyList) {
    t.db->ExecuteSql("DROP TABLE tblDest");
    const auto dialog = GetParam().open(t, boxes);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Critical);
    EXPECT_EQ(boxes.texts()[0].rfind("Run-time error '", 0), 0u);
    EXPECT_EQ(Child<QComboBox>(*dialog, GetParam().destination).count(), 0);
}

const UnreadableCase kUnreadable[] = {
    {"AddStock",
     [](BasketTestDb& t, MessageBoxes& b) {
         return std::make_unique<frmAddStock>(*t.db, b, 1, nullptr);
     },
     "cboDest"},
    {"EditStock",
     [](BasketTestDb& t, MessageBoxes& b) {
         return std::make_unique<frmEditStock>(*t.db, b, StockLineKey{1, "IBM", 5, "NYSE", 0},
                                               nullptr);
     },
     "txtDest"},
    {"AddStockMain",
     [](BasketTestDb& t, MessageBoxes& b) {
         return std::make_unique<frmAddStockMain>(*t.db, b, [](MainLineEntry&) { return false; });
     },
     "cboDest"},
    {"EditItem",
     [](BasketTestDb& t, MessageBoxes& b) {
         return std::make_unique<frmEditItem>(*t.db, b, MainLineEntry{"KO", "1", "NYSE"},
                                              [](MainLineEntry&) { return false; });
     },
     "cbDest"},
};

INSTANTIATE_TEST_SUITE_P(Dialogs, UnreadableDestinations, testing::ValuesIn(kUnreadable),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace wicker
