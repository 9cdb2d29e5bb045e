#include "storage/clsIniFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

class FakeWindow : public WindowGeometry {
public:
    WindowState st = WindowState::Normal;
    Rect r{10, 20, 300, 200};
    Rect scr{0, 0, 1920, 1080};
    WindowState state() const override { return st; }
    void setState(WindowState s) override { st = s; }
    Rect rect() const override { return r; }
    void move(const Rect& to) override { r = to; }
    Rect screen() const override { return scr; }
};

class IniTest : public testing::Test {
protected:
    test::TempDir dir;
    clsIniFile ini;
    void SetUp() override {
        ini.setPath(dir / "basket.ini");
        ini.setSection("Sequence");
        ini.setKey("BasketNum");
    }
};

TEST_F(IniTest, MissingFileOrKeyGivesDefault) {
    EXPECT_EQ(ini.Value(), "");
    ini.setDefault("1");
    EXPECT_EQ(ini.Value(), "1");
    EXPECT_FALSE(std::filesystem::exists(dir / "basket.ini")); // reads never write
}

TEST_F(IniTest, WriteReadCaseInsensitiveAndNulRemoved) {
    ini.setValue(std::string("7\0\0 2", 5));
    EXPECT_TRUE(ini.Success());
    ini.setSection("SEQUENCE");
    ini.setKey("basketnum");
    EXPECT_EQ(ini.Value(), "7 2");
    EXPECT_EQ(test::ReadFile(dir / "basket.ini"), "[Sequence]\r\nBasketNum=7 2\r\n");
}

TEST_F(IniTest, LongValuesAreCutTo254) {
    ini.setValue(std::string(254, 'a'));
    EXPECT_EQ(ini.Value().size(), 254u);
    ini.setValue(std::string(300, 'b'));
    EXPECT_EQ(ini.Value(), std::string(254, 'b'));
}

TEST_F(IniTest, CommentsAndOtherSectionsSurviveRewrites) {
    test::WriteFile(dir / "basket.ini", "; note\r\n[A]\r\nx=1\r\n\r\n[Sequence]\r\nSeqNum=3\r\n");
    ini.setValue("9");
    ini.setSection("A");
    ini.setKey("y");
    ini.setValue("2");
    EXPECT_EQ(test::ReadFile(dir / "basket.ini"),
              "; note\r\n[A]\r\nx=1\r\ny=2\r\n\r\n[Sequence]\r\nSeqNum=3\r\nBasketNum=9\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "basket.ini.tmp"));
}

TEST_F(IniTest, EnumerateAndDeleteSection) {
    std::vector<std::string> names;
    int32_t count = -1;
    ini.setSection("Empty");
    ini.EnumerateCurrentSection(names, count);
    EXPECT_EQ(count, 0);
    ini.setSection("S");
    ini.setKey("b");
    ini.setValue("1");
    ini.setKey("a");
    ini.setValue("2");
    ini.EnumerateCurrentSection(names, count);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(names[1], "b");
    EXPECT_EQ(names[2], "a");
    ini.setINISection("ignored text");
    ini.setKey("b");
    EXPECT_EQ(ini.Value(), "");
    ini.EnumerateAllSections(names, count);
    EXPECT_EQ(count, 0);
}

TEST_F(IniTest, UnreadableFileIsNeverWritten) {
    std::filesystem::create_directory(dir / "basket.ini"); // a folder where the file should be
    ini.setValue("1");
    EXPECT_FALSE(ini.Success());
    EXPECT_TRUE(std::filesystem::is_directory(dir / "basket.ini"));
}

TEST(CLngDefault, HalvesToEvenElseFallback) {
    const std::pair<const char*, int32_t> rows[] = {{"2.5", 2},        {"3.5", 4},   {"-2.5", -2},
                                                    {"", -1},          {"FAIL", -1}, {"1e3", 1000},
                                                    {"3000000000", -1}};
    for (const auto& [text, want] : rows) {
        EXPECT_EQ(clsIniFile::CLngDefault(text, -1), want) << text;
    }
}

TEST_F(IniTest, FormPosition) {
    ini.setSection("frmMain");
    FakeWindow w;
    w.st = WindowState::Minimised;
    ini.SaveFormPosition(w);
    EXPECT_FALSE(std::filesystem::exists(dir / "basket.ini"));
    w.st = WindowState::Normal;
    ini.SaveFormPosition(w);
    w.st = WindowState::Maximised;
    w.r = {0, 0, 1920, 1080};
    ini.SaveFormPosition(w); // only "Maximised" changes
    ini.setKey("Width");
    EXPECT_EQ(ini.Value(), "300");
    EXPECT_EQ(ini.Key(), "Width");

    FakeWindow fresh;
    fresh.r = {0, 0, 50, 50};
    ini.LoadFormPosition(fresh);
    EXPECT_EQ(fresh.r, (Rect{10, 20, 300, 200}));
    EXPECT_EQ(fresh.st, WindowState::Maximised);

    // Off-screen and too small: pulled back and grown to the minimum.
    ini.setKey("Left");
    ini.setValue("5000");
    ini.setKey("Width");
    ini.setValue("100");
    FakeWindow other;
    ini.LoadFormPosition(other, 400, 100);
    EXPECT_EQ(other.r, (Rect{1520, 20, 400, 200}));
}

} // namespace
} // namespace wicker
