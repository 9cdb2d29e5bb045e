#include "baskets/MemoryIndexStore.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmEditDivisor.h"
#include "support/RecordingMessageBoxes.h"

#include <QComboBox>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class EditDivisorScreen : public testing::Test {
protected:
    RecordingMessageBoxes boxes;
    MemoryIndexStore index;
    std::optional<std::pair<double, std::string>> saved;
    frmEditDivisor dialog{boxes,
                          index,
                          "Tech",
                          "TK",
                          2.5,
                          "Mkt Cap Weighted",
                          [this](double d, const std::string& t) {
                              saved = {d, t};
                          }};
    QLineEdit& divisor = Child<QLineEdit>(dialog, "txtDivisor");
};

TEST_F(EditDivisorScreen, ShowsTheBasketAndItsValues) {
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Edit Basket");
    EXPECT_EQ(Child<QLineEdit>(dialog, "txtBasketName").text().toStdString(), "Tech");
    EXPECT_TRUE(Child<QLineEdit>(dialog, "txtBasketName").isReadOnly());
    EXPECT_EQ(Child<QLineEdit>(dialog, "txtButtonName").text().toStdString(), "TK");
    EXPECT_EQ(divisor.text().toStdString(), "2.5");
    EXPECT_EQ(Child<QComboBox>(dialog, "cbIndex").currentText().toStdString(), "Mkt Cap Weighted");
}

TEST_F(EditDivisorScreen, EnterInTheDivisorBoxSavesTheIndexType) {
    divisor.setText(QStringLiteral("4"));
    Child<QComboBox>(dialog, "cbIndex").setCurrentIndex(2);
    PressEnter(divisor);
    EXPECT_EQ(index.divisors.at("Tech"), 4);
    EXPECT_EQ(index.indexTypes.at("Tech"), "Eql Dlr Weighted");
    EXPECT_EQ(saved->second, "Eql Dlr Weighted");
}

TEST_F(EditDivisorScreen, DivisorThatIsNotANumberStaysOpenAndStoresNothing) {
    divisor.setText(QStringLiteral("x"));
    Click(dialog, "butOK");
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Run-time error '13':\n\nType mismatch"}));
    EXPECT_TRUE(index.divisors.empty());
    EXPECT_FALSE(saved);
}

TEST_F(EditDivisorScreen, CancelStoresNothing) {
    divisor.setText(QStringLiteral("9"));
    Click(dialog, "butCancel");
    EXPECT_TRUE(index.divisors.empty());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

} // namespace
} // namespace wicker
