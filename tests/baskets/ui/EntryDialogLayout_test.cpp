// What the small entry dialogs look like to the keyboard: the order Tab walks their
// boxes and buttons, the rows of their forms and the captions of their buttons.

#include "baskets/BasketTestDb.h"
#include "baskets/MemoryIndexStore.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmAddStock.h"
#include "baskets/ui/frmAddStockMain.h"
#include "baskets/ui/frmEditDivisor.h"
#include "baskets/ui/frmEditItem.h"
#include "baskets/ui/frmEditStock.h"
#include "baskets/ui/frmSaveAs.h"
#include "support/RecordingMessageBoxes.h"

#include <memory>

#include <QFormLayout>
#include <QLabel>
#include <QLayout>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;
using Strings = std::vector<std::string>;

/// The names of the widgets a form row holds (one, or several side by side).
std::string FieldNames(QLayoutItem& item) {
    if (item.widget() != nullptr) {
        return item.widget()->objectName().toStdString();
    }
    std::string names;
    for (int i = 0; i < item.layout()->count(); ++i) {
        if (const QWidget* w = item.layout()->itemAt(i)->widget()) {
            names += (names.empty() ? "" : "+") + w->objectName().toStdString();
        }
    }
    return names;
}

/// Each form row as "label=field".
Strings FormRows(const QWidget& dialog) {
    auto* form = dialog.findChild<QFormLayout*>();
    if (form == nullptr) {
        return {};
    }
    Strings out;
    for (int r = 0; r < form->rowCount(); ++r) {
        const auto* label =
            qobject_cast<QLabel*>(form->itemAt(r, QFormLayout::LabelRole)->widget());
        out.push_back((label ? label->text().toStdString() : "") + "=" +
                      FieldNames(*form->itemAt(r, QFormLayout::FieldRole)));
    }
    return out;
}

struct Parts {
    BasketTestDb& t;
    MessageBoxes& boxes;
    BasketIndexStore& index;
};

struct LayoutCase {
    const char* name;
    std::function<std::unique_ptr<QDialog>(Parts&)> open;
    const char* objectName;
    const char* caption;
    Strings tabOrder;
    Strings formRows;
    Strings buttons;
};

void PrintTo(const LayoutCase& c, std::ostream* os) {
    *os << c.name;
}

class EntryDialogLayout : public testing::TestWithParam<LayoutCase> {
protected:
    BasketTestDb t;
    RecordingMessageBoxes boxes;
    MemoryIndexStore index;
    Parts parts{t, boxes, index};
};

TEST_P(EntryDialogLayout, TabWalksTheFormThenTheButtons) {
    const LayoutCase& c = GetParam();
    const auto dialog = c.open(parts);
    EXPECT_EQ(dialog->objectName().toStdString(), c.objectName);
    EXPECT_EQ(dialog->windowTitle().toStdString(), c.caption);
    EXPECT_EQ(TabOrder(*dialog), c.tabOrder);
    EXPECT_EQ(FormRows(*dialog), c.formRows);
    EXPECT_EQ(TabButtons(*dialog), c.buttons);
    EXPECT_TRUE(boxes.shown().empty());
}

const LayoutCase kLayouts[] = {
    {"AddStock",
     [](Parts& p) {
         return std::make_unique<frmAddStock>(*p.t.db, p.boxes, p.t.addBasket("A"), nullptr);
     },
     "frmAddStock",
     "Add Stock",
     {"txtSymbol", "txtQty", "cboDest", "txtIndexShares", "cmdAdd", "cmdCancel"},
     {"Symbol:=txtSymbol", "Quantity:=txtQty", "Destination:=cboDest",
      "Index Shares:=txtIndexShares"},
     {"cmdAdd:Add Stock", "cmdCancel:Cancel"}},
    {"EditStock",
     [](Parts& p) {
         return std::make_unique<frmEditStock>(*p.t.db, p.boxes,
                                               StockLineKey{1, "IBM", 5, "NYSE", 0}, nullptr);
     },
     "frmEditStock",
     "Edit Stock",
     {"txtSymbol", "txtQty", "txtDest", "txtIndexShares", "cmdSave", "cmdCancel"},
     {"Symbol:=txtSymbol", "Quantity:=txtQty", "Destination:=txtDest",
      "Index Shares:=txtIndexShares"},
     {"cmdSave:Save", "cmdCancel:Cancel"}},
    {"AddStockMain",
     [](Parts& p) {
         return std::make_unique<frmAddStockMain>(*p.t.db, p.boxes,
                                                  [](MainLineEntry&) { return false; });
     },
     "frmAddStockMain",
     "Add Stock",
     {"txtSymbol", "txtQuantity", "cboDest", "buttonAddStock", "buttonCancel"},
     {"Symbol:=txtSymbol", "Quantity:=txtQuantity", "Destination:=cboDest"},
     {"buttonAddStock:Add Stock", "buttonCancel:Cancel"}},
    {"EditItem",
     [](Parts& p) {
         return std::make_unique<frmEditItem>(*p.t.db, p.boxes, MainLineEntry{"KO", "1", "NYSE"},
                                              [](MainLineEntry&) { return false; });
     },
     "frmEditItem",
     "Edit Item",
     {"txtSym", "txtQty", "cbDest", "txtMod", "cbTif", "cmdOk", "cmdCancel"},
     {"Symbol:=txtSym", "Quantity:=txtQty", "Destination:=cbDest", "Modifier:=txtMod+UpDown1",
      "TIF:=cbTif"},
     {"cmdOk:OK", "cmdCancel:Cancel"}},
    {"EditDivisor",
     [](Parts& p) {
         return std::make_unique<frmEditDivisor>(p.boxes, p.index, "Tech", "TK", 2.0,
                                                 "Price Weighted", nullptr);
     },
     "frmEditDivisor",
     "Edit Basket",
     // The read-only name boxes come after the boxes that can change.
     {"txtDivisor", "cbIndex", "txtBasketName", "txtButtonName", "butOK", "butCancel"},
     {"Basket Name:=txtBasketName", "Button Name:=txtButtonName", "Divisor:=txtDivisor",
      "Index:=cbIndex"},
     {"butOK:Save", "butCancel:Cancel"}},
    {"SaveAs",
     [](Parts& p) {
         return std::make_unique<frmSaveAs>(*p.t.db, p.boxes, std::vector<BasketLine>{});
     },
     "frmSaveAs",
     "Save As",
     {"txtBasketName", "txtButtonName", "buttonSave", "buttonCancel"},
     {"Basket Name:=txtBasketName", "Button Name:=txtButtonName"},
     {"buttonSave:Save", "buttonCancel:Cancel"}},
};

INSTANTIATE_TEST_SUITE_P(Dialogs, EntryDialogLayout, testing::ValuesIn(kLayouts),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace wicker
