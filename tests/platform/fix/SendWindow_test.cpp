#include "platform/fix/SendWindow.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

FixMessage Request(const std::string& id) {
    FixMessage m;
    m.msgType = "D";
    m.add(11, id);
    return m;
}

std::string IdOf(const std::optional<FixMessage>& m) {
    return m ? *m->find(11) : "-";
}

TEST(SendWindow, AtMostLimitOutstandingInOrder) {
    SendWindow w(2);
    for (const char* id : {"A", "B", "C", "D"}) {
        w.push(Request(id));
    }
    EXPECT_EQ(IdOf(w.next()), "A");
    EXPECT_EQ(IdOf(w.next()), "B");
    EXPECT_EQ(IdOf(w.next()), "-") << "window full";
    EXPECT_EQ(w.outstanding(), 2u);
    EXPECT_EQ(w.waiting(), 2u);
    w.answered("B");
    EXPECT_EQ(IdOf(w.next()), "C");
    EXPECT_EQ(IdOf(w.next()), "-");
    w.answered("Z"); // never sent: frees nothing
    EXPECT_EQ(IdOf(w.next()), "-");
    w.answered("A");
    w.answered("A"); // a second answer frees nothing more
    EXPECT_EQ(IdOf(w.next()), "D");
    EXPECT_EQ(IdOf(w.next()), "-");
    EXPECT_EQ(w.outstanding(), 2u);
}

TEST(SendWindow, ResetReturnsTheWaitingAndEmptiesTheWindow) {
    SendWindow w(1);
    w.push(Request("A"));
    w.push(Request("B"));
    w.push(Request("C"));
    EXPECT_EQ(IdOf(w.next()), "A");
    const std::vector<FixMessage> dropped = w.reset();
    ASSERT_EQ(dropped.size(), 2u);
    EXPECT_EQ(*dropped[0].find(11), "B");
    EXPECT_EQ(*dropped[1].find(11), "C");
    EXPECT_EQ(w.outstanding(), 0u);
    EXPECT_EQ(w.waiting(), 0u);
    w.push(Request("D"));
    EXPECT_EQ(IdOf(w.next()), "D") << "A's slot was freed by the reset";
}

TEST(SendWindow, ZeroLimitStillSendsOneAtATime) {
    SendWindow w(0);
    EXPECT_EQ(w.limit(), 1u);
    w.push(Request("A"));
    w.push(Request("B"));
    EXPECT_EQ(IdOf(w.next()), "A");
    EXPECT_EQ(IdOf(w.next()), "-");
}

} // namespace
} // namespace wicker
