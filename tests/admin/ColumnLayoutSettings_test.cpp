#include "admin/ColumnLayoutSettings.h"
#include "storage/Settings.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

std::vector<ColumnEntry> Entries(std::initializer_list<std::pair<int, bool>> list) {
    std::vector<ColumnEntry> out;
    for (const auto& [column, shown] : list) {
        out.push_back({column, shown});
    }
    return out;
}

TEST(ColumnEntries, FollowPositionsAndFlags) {
    struct Row {
        const char* name;
        const char* shown;
        std::vector<std::string> positions;
        std::vector<ColumnEntry> entries;
    };
    const Row rows[] = {
        {"natural", "111", {"1", "2", "3", ""}, Entries({{0, true}, {1, true}, {2, true}})},
        {"moved and hidden", "101", {"3", "1", "2"}, Entries({{1, false}, {2, true}, {0, true}})},
        {"short flags show the rest",
         "0",
         {"1", "2", "3"},
         Entries({{0, false}, {1, true}, {2, true}})},
        {"broken positions: natural order",
         "111",
         {"1", "1", "2"},
         Entries({{0, true}, {1, true}, {2, true}})},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(ColumnEntries(r.shown, r.positions, 3), r.entries) << r.name;
    }
}

TEST(ColumnSettingsFrom, GivesFlagsByColumnAndPositionsByColumn) {
    const auto text = ColumnSettingsFrom(Entries({{1, false}, {2, true}, {0, true}}), 3, true);
    ASSERT_TRUE(text.ok());
    EXPECT_EQ(text->shown, "101");
    EXPECT_EQ(text->positions, (std::vector<std::string>{"3", "1", "2", ""}));
    // And back again.
    EXPECT_EQ(ColumnEntries(text->shown, text->positions, 3),
              Entries({{1, false}, {2, true}, {0, true}}));
}

TEST(ColumnSettingsFrom, RefusesWhatIsNoArrangement) {
    struct Row {
        const char* name;
        std::vector<ColumnEntry> entries;
    };
    const Row rows[] = {
        {"nothing shown", Entries({{0, false}, {1, false}, {2, false}})},
        {"a column twice", Entries({{0, true}, {0, true}, {2, true}})},
        {"too few", Entries({{0, true}, {1, true}})},
        {"out of range", Entries({{0, true}, {1, true}, {3, true}})},
    };
    for (const Row& r : rows) {
        EXPECT_FALSE(ColumnSettingsFrom(r.entries, 3, false).ok()) << r.name;
    }
}

TEST(WidthsToKeep, HiddenColumnsKeepTheirEarlierWidth) {
    const std::vector<std::optional<int32_t>> before{120, std::nullopt, 80, std::nullopt};
    const std::vector<int32_t> current{90, 0, 0, 60};
    const std::vector<bool> hidden{false, true, true, false};
    const std::vector<std::optional<int32_t>> expected{90, std::nullopt, 80, 60};
    EXPECT_EQ(WidthsToKeep(before, current, hidden), expected);
}

TEST(ColumnSettingsFile, ArrangementAndWidthsComeBackThroughTheStartUpLoader) {
    TempDir dir;
    std::vector<ColumnEntry> stock;
    for (int c = 19; c >= 0; --c) {
        stock.push_back({c, c != 7});
    }
    const auto stockText = ColumnSettingsFrom(stock, 20, true);
    const auto basketText = ColumnSettingsFrom(ColumnEntries("1111111111110", {}, 13), 13, false);
    ASSERT_TRUE(stockText.ok() && basketText.ok());
    ASSERT_TRUE(SaveColumnArrangement(dir.path(), *stockText, *basketText).ok());
    std::vector<std::optional<int32_t>> stockWidths(20);
    stockWidths[0] = 111;
    stockWidths[19] = 42;
    std::vector<std::optional<int32_t>> basketWidths(13);
    basketWidths[1] = 150;
    ASSERT_TRUE(SaveColumnWidths(dir.path(), stockWidths, basketWidths).ok());

    ManualClock clock{FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})};
    const Settings s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.basketItemsCols, "11111110111111111111");
    EXPECT_EQ(s.basketInfoCols, "1111111111110");
    EXPECT_EQ(s.itemsPositions.size(), 21u);
    EXPECT_EQ(s.itemsPositions.front(), "20");
    EXPECT_EQ(s.itemsPositions[19], "1");
    EXPECT_EQ(s.infoPositions.size(), 13u);
    EXPECT_EQ(s.stockColumnWidths, stockWidths);
    EXPECT_EQ(s.basketColumnWidths, basketWidths);
    EXPECT_EQ(ColumnEntries(s.basketItemsCols, s.itemsPositions, 20), stock);
}

TEST(ColumnSettingsFile, AFileThatCannotBeReadIsNeverWritten) {
    TempDir dir;
    std::filesystem::create_directories(dir / "basket.ini");
    std::vector<std::optional<int32_t>> widths(20, 50);
    EXPECT_FALSE(SaveColumnWidths(dir.path(), widths, {}).ok());
    EXPECT_TRUE(std::filesystem::is_directory(dir / "basket.ini"));
}

} // namespace
} // namespace wicker
