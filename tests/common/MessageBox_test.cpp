#include "common/MessageBox.h"
#include "support/RecordingMessageBoxes.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(MessageFromFlags, ClassicFlagValues) {
    struct Row {
        int flags;
        MsgButtons buttons;
        MsgIcon icon;
        MsgDefault def;
    };
    const Row rows[] = {
        {0, MsgButtons::Ok, MsgIcon::None, MsgDefault::First},
        {1, MsgButtons::OkCancel, MsgIcon::None, MsgDefault::First},
        {48, MsgButtons::Ok, MsgIcon::Exclamation, MsgDefault::First},
        {64, MsgButtons::Ok, MsgIcon::Information, MsgDefault::First},
        {292, MsgButtons::YesNo, MsgIcon::Question, MsgDefault::Second},
        {16, MsgButtons::Ok, MsgIcon::Critical, MsgDefault::First},
    };
    for (const auto& r : rows) {
        const auto m = MessageFromFlags("t", r.flags, "T");
        EXPECT_EQ(m.buttons, r.buttons) << r.flags;
        EXPECT_EQ(m.icon, r.icon) << r.flags;
        EXPECT_EQ(m.defaultButton, r.def) << r.flags;
    }
}

TEST(RecordingMessageBoxes, ScriptedAnswersThenDefaultButton) {
    test::RecordingMessageBoxes boxes;
    boxes.answerNext(MsgAnswer::Yes);
    EXPECT_EQ(boxes.show("Send?", 292, "Confirm"), MsgAnswer::Yes);
    EXPECT_EQ(boxes.show("Again?", 292, "Confirm"), MsgAnswer::No); // No is the default
    EXPECT_EQ(boxes.show("Done", 64, "Info"), MsgAnswer::Ok);
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Send?", "Again?", "Done"}));
    EXPECT_EQ(boxes.shown()[0].title, "Confirm");
}

} // namespace
} // namespace wicker
