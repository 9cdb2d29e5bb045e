#include "baskets/OrdinaryError.h"
#include "common/RuntimeError.h"
#include "storage/Database.h"
#include "storage/JetSql.h"
#include "support/RecordingMessageBoxes.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(OrdinaryErrorTest, RuntimeErrorShowsItsNumber) {
    EXPECT_EQ(OrdinaryErrorText(RuntimeError(13, "Type mismatch")),
              "Run-time error '13':\n\nType mismatch");
}

TEST(OrdinaryErrorTest, ProviderErrorShowsItsHexadecimalForm) {
    EXPECT_EQ(OrdinaryErrorText(DbError("Bad", dberr::Unspecified)),
              "Run-time error '-2147467259 (80004005)':\n\nBad");
}

TEST(OrdinaryErrorTest, ErrorsWithoutANumberShowTheirTextAloneInACriticalBox) {
    test::RecordingMessageBoxes boxes;
    ShowOrdinaryError(boxes, std::runtime_error("odd"));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "odd");
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Critical);
}

} // namespace
} // namespace wicker
