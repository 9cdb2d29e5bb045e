// What the account and destination screens look like to the keyboard: the order Tab walks
// them, the captions of their buttons and what stands beside the list.

#include "admin/AdminTestDb.h"
#include "admin/ui/frmDest.h"
#include "admin/ui/frmSetup.h"
#include "baskets/ui/ScreenSupport.h"
#include "support/RecordingMessageBoxes.h"

#include <memory>

#include <QGroupBox>
#include <QLabel>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;
using Strings = std::vector<std::string>;

/// The texts of the labels, then the titles of the frames in brackets.
Strings Labels(const QWidget& screen) {
    Strings out;
    for (const auto* label : screen.findChildren<QLabel*>()) {
        out.push_back(label->text().toStdString());
    }
    for (const auto* frame : screen.findChildren<QGroupBox*>()) {
        out.push_back("[" + frame->title().toStdString() + "]");
    }
    return out;
}

struct LayoutCase {
    const char* name;
    std::function<std::unique_ptr<QDialog>(AdminTestDb&, MessageBoxes&)> open;
    Strings tabOrder;
    Strings buttons;
    Strings labels;
};

void PrintTo(const LayoutCase& c, std::ostream* os) {
    *os << c.name;
}

class NameSetupLayout : public testing::TestWithParam<LayoutCase> {
protected:
    AdminTestDb t;
    RecordingMessageBoxes boxes;
};

TEST_P(NameSetupLayout, TabOrderButtonsAndCaptions) {
    const LayoutCase& c = GetParam();
    const auto screen = c.open(t, boxes);
    EXPECT_EQ(TabOrder(*screen), c.tabOrder);
    EXPECT_EQ(TabButtons(*screen), c.buttons);
    EXPECT_EQ(Labels(*screen), c.labels);
    EXPECT_TRUE(boxes.shown().empty());
}

const LayoutCase kLayouts[] = {
    {"Destinations",
     [](AdminTestDb& t, MessageBoxes& b) { return std::make_unique<frmDest>(*t.db, b); },
     {"lvDest", "cmdOK", "cmdAdd", "cmdDelete", "cmdCancel"},
     {"cmdOK:OK", "cmdAdd:Add Destination", "cmdDelete:Delete Selected Destination",
      "cmdCancel:&Cancel"},
     {"Available Destinations"}},
    {"Accounts",
     [](AdminTestDb& t, MessageBoxes& b) { return std::make_unique<frmSetup>(*t.db, b, nullptr); },
     {"lvAccounts", "cboDefault", "cmdOK", "cmdAdd", "cmdDelete", "cmdCancel"},
     {"cmdOK:OK", "cmdAdd:Add Account", "cmdDelete:Delete Selected Account", "cmdCancel:&Cancel"},
     {"Available Accounts", "[Default Account]"}},
};

INSTANTIATE_TEST_SUITE_P(Screens, NameSetupLayout, testing::ValuesIn(kLayouts),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace wicker
