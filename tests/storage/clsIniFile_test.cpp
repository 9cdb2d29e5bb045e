#include "storage/FolderLock.h"
#include "storage/clsIniFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class IniTest : public testing::Test {
protected:
    test::TempDir dir;
    clsIniFile ini;
    fs::path file() const { return dir / "basket.ini"; }
    void SetUp() override {
        ini.setPath(file());
        ini.setSection("Sequence");
        ini.setKey("BasketNum");
    }
    // Every entry of the folder, to see that no temporary file stays behind; the folder's
    // lock file, which every write takes, stays by design.
    Strings Entries() const {
        Strings out;
        for (const auto& e : fs::directory_iterator(dir.path())) {
            if (e.path().filename() != FolderLock::kFileName) {
                out.push_back(e.path().filename().string());
            }
        }
        return out;
    }
};

TEST_F(IniTest, MissingFileOrKeyGivesDefaultAndReadsNeverWrite) {
    EXPECT_EQ(ini.Value(), "");
    ini.setDefault("1");
    EXPECT_EQ(ini.Value(), "1");
    EXPECT_FALSE(fs::exists(file()));
    test::WriteFile(file(), "[Sequence]\r\nSeqNum=4\r\n");
    EXPECT_EQ(ini.Value(), "1");
    ini.setDefault("FAIL  "); // the system drops a default's trailing blanks
    EXPECT_EQ(ini.Value(), "FAIL");
}

TEST_F(IniTest, WritesCreateTheFileAndNamesIgnoreCase) {
    ini.setValue("7");
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(ini.LastReturnCode(), 1);
    ini.setSection("SEQUENCE");
    ini.setKey("basketnum");
    EXPECT_EQ(ini.Value(), "7");
    ini.setValue("8");
    EXPECT_EQ(test::ReadFile(file()), "[Sequence]\r\nBasketNum=8\r\n");
}

TEST_F(IniTest, NulCharactersAreRemovedBeforeWriting) {
    ini.setValue(std::string("\0"
                             "7\0\0 2\0",
                             7));
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(ini.Value(), "7 2");
}

TEST_F(IniTest, ValuesReadBackCutTo254Characters) {
    ini.setValue(std::string(254, 'a'));
    EXPECT_EQ(ini.Value(), std::string(254, 'a'));
    ini.setValue(std::string(300, 'b'));
    EXPECT_EQ(ini.Value(), std::string(254, 'b'));
    EXPECT_NE(test::ReadFile(file()).find(std::string(300, 'b')), std::string::npos);
    // Characters, not bytes: "é" is one byte in the file and two in UTF-8.
    std::string accents;
    for (int i = 0; i < 300; ++i) {
        accents += "\xC3\xA9";
    }
    ini.setValue(accents);
    EXPECT_EQ(ini.Value(), accents.substr(0, 508));
    ini.setKey("Other");
    ini.setDefault(std::string(300, 'd'));
    EXPECT_EQ(ini.Value(), std::string(254, 'd'));
}

TEST_F(IniTest, FileIsWindows1252OnDisk) {
    ini.setValue("caf\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(test::ReadFile(file()), "[Sequence]\r\nBasketNum=caf\xE9 \x80\r\n");
    EXPECT_EQ(ini.Value(), "caf\xC3\xA9 \xE2\x82\xAC");
}

TEST_F(IniTest, OtherLinesSurviveARewrite) {
    test::WriteFile(file(), "; written by hand\n[A]\nx = 1\njunk\n\n[Sequence]\nSeqNum=3\n");
    ini.setValue("9");
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(test::ReadFile(file()),
              "; written by hand\r\n[A]\r\nx = 1\r\njunk\r\n\r\n[Sequence]\r\nSeqNum=3\r\n"
              "BasketNum=9\r\n");
    EXPECT_EQ(Entries(), Strings{"basket.ini"});
}

TEST_F(IniTest, DeleteKeyAndDeleteSection) {
    test::WriteFile(file(), "[Sequence]\r\nBasketNum=1\r\nSeqNum=2\r\n[A]\r\nx=1\r\n");
    ini.DeleteKey();
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(test::ReadFile(file()), "[Sequence]\r\nSeqNum=2\r\n[A]\r\nx=1\r\n");
    ini.DeleteKey(); // already gone: nothing to do, and that is no failure
    EXPECT_TRUE(ini.Success());
    ini.DeleteSection();
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(test::ReadFile(file()), "[A]\r\nx=1\r\n");
}

TEST_F(IniTest, AssigningINISectionDeletesTheSection) {
    test::WriteFile(file(), "[Sequence]\r\nBasketNum=1\r\n[A]\r\nx=1\r\n");
    ini.setINISection("NewKey=stored?");
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(test::ReadFile(file()), "[A]\r\nx=1\r\n");
}

TEST_F(IniTest, EnumerateCurrentSectionInFileOrder) {
    std::vector<std::string> names{"stale"};
    int32_t count = -1;
    test::WriteFile(file(), "[Empty]\r\n; only a comment\r\n[S]\r\nb=1\r\na=2\r\n");
    for (const char* empty : {"Empty", "Missing"}) {
        ini.setSection(empty);
        ini.EnumerateCurrentSection(names, count);
        EXPECT_EQ(count, 0) << empty;
        EXPECT_EQ(names, Strings{""}) << empty;
    }
    ini.setDefault("FAIL"); // a default that is no list enumerates as nothing
    ini.EnumerateCurrentSection(names, count);
    EXPECT_EQ(count, 0);
    ini.setSection("s");
    EXPECT_EQ(ini.INISection(), std::string("b\0a\0\0", 5));
    ini.EnumerateCurrentSection(names, count);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(names, (Strings{"", "b", "a"}));
}

TEST_F(IniTest, EnumerateAllSections) {
    std::vector<std::string> names;
    int32_t count = -1;
    ini.EnumerateAllSections(names, count);
    EXPECT_EQ(count, 0);
    test::WriteFile(file(), "[B]\r\n[A]\r\n[b]\r\n");
    EXPECT_EQ(ini.Sections(), std::string("B\0A\0\0", 5));
    ini.EnumerateAllSections(names, count);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(names, (Strings{"", "B", "A"}));
}

TEST_F(IniTest, NameListsKeepToTheirBufferWithWholeNames) {
    std::string text = "[S]\r\n";
    for (int i = 0; i < 1200; ++i) {
        text += "key" + std::to_string(1000 + i) + "=1\r\n"; // 7 characters + NUL each
    }
    test::WriteFile(file(), text);
    ini.setSection("S");
    std::vector<std::string> names;
    int32_t count = 0;
    ini.EnumerateCurrentSection(names, count);
    EXPECT_EQ(count, 8191 / 8);
    EXPECT_EQ(names.back(), "key" + std::to_string(1000 + count - 1));
    EXPECT_LE(ini.INISection().size(), 8192u);
}

TEST_F(IniTest, UnreadableFilesAreNeverOverwritten) {
    // A folder where the file should be.
    fs::create_directory(file());
    ini.setDefault("d");
    EXPECT_EQ(ini.Value(), "d");
    ini.setValue("1");
    EXPECT_FALSE(ini.Success());
    ini.DeleteSection();
    EXPECT_FALSE(ini.Success());
    EXPECT_TRUE(fs::is_directory(file()));

    // A UTF-16 file: its bytes stay as they are.
    const std::string utf16("\xFF\xFE[\0S\0]\0", 8);
    test::WriteFile(dir / "wide.ini", utf16);
    ini.setPath(dir / "wide.ini");
    ini.setValue("1");
    EXPECT_FALSE(ini.Success());
    EXPECT_EQ(test::ReadFile(dir / "wide.ini"), utf16);
}

TEST_F(IniTest, MissingFolderFailsAndPathThroughAFileReadsDefault) {
    ini.setPath(dir / "nofolder" / "basket.ini");
    ini.setValue("1");
    EXPECT_EQ(ini.LastReturnCode(), 0);
    EXPECT_FALSE(fs::exists(dir / "nofolder"));

    test::WriteFile(dir / "plain.txt", "x");
    ini.setPath(dir / "plain.txt" / "basket.ini");
    ini.setDefault("d");
    EXPECT_EQ(ini.Value(), "d");
    ini.setValue("1");
    EXPECT_FALSE(ini.Success());
    EXPECT_EQ(test::ReadFile(dir / "plain.txt"), "x");
}

TEST_F(IniTest, LineBreaksInATextFailInsteadOfAddingLines) {
    ini.setValue("1");
    ini.setValue("2\r\n[Install]\r\n4010=1");
    EXPECT_FALSE(ini.Success());
    EXPECT_EQ(test::ReadFile(file()), "[Sequence]\r\nBasketNum=1\r\n");
    ini.setKey("a=b");
    ini.setValue("1");
    EXPECT_FALSE(ini.Success());
}

TEST_F(IniTest, RewriteKeepsPermissionsAndSymbolicLinks) {
    test::WriteFile(dir / "real.ini", "[Sequence]\r\nBasketNum=1\r\n");
    fs::permissions(dir / "real.ini", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.ini", file());
    ini.setValue("5");
    EXPECT_TRUE(ini.Success());
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(test::ReadFile(dir / "real.ini"), "[Sequence]\r\nBasketNum=5\r\n");
    EXPECT_EQ(fs::status(dir / "real.ini").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(Entries().size(), 2u);
}

TEST(CLngDefault, HalvesToEvenAndFallsBackOnAnyError) {
    const std::tuple<const char*, const char*, int32_t> rows[] = {
        {"half down to even", "2.5", 2},
        {"half up to even", "3.5", 4},
        {"negative half", "-2.5", -2},
        {"blanks around", " 12 ", 12},
        {"exponent", "1e3", 1000},
        {"largest", "2147483647", 2147483647},
        {"empty", "", -1},
        {"the missing-key word", "FAIL", -1},
        {"trailing letters", "12abc", -1},
        {"overflow", "3000000000", -1},
        {"negative overflow", "-2147483649", -1},
    };
    for (const auto& [name, text, want] : rows) {
        EXPECT_EQ(clsIniFile::CLngDefault(text, -1), want) << name;
    }
}

class FakeWindow : public WindowGeometry {
public:
    WindowState st = WindowState::Normal;
    Rect r{10, 20, 300, 200};
    Rect scr{0, 0, 1920, 1080};
    int moves = 0;
    WindowState state() const override { return st; }
    void setState(WindowState s) override { st = s; }
    Rect rect() const override { return r; }
    void move(const Rect& to) override {
        r = to;
        ++moves;
    }
    Rect screen() const override { return scr; }
};

TEST_F(IniTest, SaveFormPositionByWindowState) {
    ini.setSection("frmMain");
    ini.setKey("Caller");
    FakeWindow w;
    w.st = WindowState::Minimised;
    ini.SaveFormPosition(w);
    EXPECT_FALSE(fs::exists(file()));

    w.st = WindowState::Normal;
    ini.SaveFormPosition(w);
    EXPECT_EQ(test::ReadFile(file()),
              "[frmMain]\r\nMaximised=0\r\nLeft=10\r\nTop=20\r\nWidth=300\r\nHeight=200\r\n");

    w.st = WindowState::Maximised;
    w.r = {0, 0, 1920, 1080};
    ini.SaveFormPosition(w);
    EXPECT_EQ(test::ReadFile(file()),
              "[frmMain]\r\nMaximised=1\r\nLeft=10\r\nTop=20\r\nWidth=300\r\nHeight=200\r\n");
    EXPECT_EQ(ini.Key(), "Caller");
}

struct PlacementRow {
    const char* name;
    std::string keys;
    std::optional<int> minWidth;
    std::optional<int> minHeight;
    Rect screen;
    Rect want;
};

TEST_F(IniTest, LoadFormPositionEndsOnScreenAndNoSmallerThanTheMinimum) {
    const Rect hd{0, 0, 1920, 1080};
    const PlacementRow rows[] = {
        {"as saved",
         "Left=10\r\nTop=20\r\nWidth=300\r\nHeight=200\r\n",
         {},
         {},
         hd,
         {10, 20, 300, 200}},
        {"nothing saved is centred", "", {}, {}, hd, {640, 300, 640, 480}},
        {"unusable values keep the size, centred",
         "Left=x\r\nTop=\r\nWidth=-5\r\nHeight=1e99\r\n",
         {},
         {},
         hd,
         {640, 300, 640, 480}},
        {"grown to the minimum", "Width=100\r\nHeight=90\r\n", 400, 300, hd, {760, 390, 400, 300}},
        {"off the right and bottom",
         "Left=5000\r\nTop=3000\r\n",
         {},
         {},
         hd,
         {1280, 600, 640, 480}},
        {"off the left and top", "Left=-900\r\nTop=-20\r\n", {}, {}, hd, {0, 0, 640, 480}},
        {"larger than the screen",
         "Left=-10\r\nWidth=4000\r\nHeight=3000\r\n",
         {},
         {},
         hd,
         {0, 0, 1920, 1080}},
        {"second screen to the right",
         "Left=100\r\n",
         {},
         {},
         {1920, 0, 1280, 1024},
         {1920, 272, 640, 480}},
        {"minimum above the screen wins", "", 2000, {}, hd, {0, 300, 2000, 480}},
        {"no screen known: saved place, minimum size",
         "Left=10\r\nWidth=100\r\nHeight=90\r\n",
         400,
         300,
         {},
         {10, 60, 400, 300}},
    };
    for (const auto& row : rows) {
        test::WriteFile(file(), "[frmMain]\r\n" + row.keys);
        ini.setSection("frmMain");
        FakeWindow w;
        w.r = {50, 60, 640, 480};
        w.scr = row.screen;
        ini.LoadFormPosition(w, row.minWidth, row.minHeight);
        EXPECT_EQ(w.r, row.want) << row.name;
        EXPECT_EQ(w.moves, 1) << row.name;
        EXPECT_EQ(w.st, WindowState::Normal) << row.name;
    }
}

TEST_F(IniTest, LoadFormPositionMaximisesAndRestoresKeyAndDefault) {
    test::WriteFile(file(), "[frmMain]\r\nMaximised=1\r\n");
    ini.setSection("frmMain");
    ini.setKey("Caller");
    ini.setDefault("keep");
    FakeWindow w;
    ini.LoadFormPosition(w);
    EXPECT_EQ(w.st, WindowState::Maximised);
    EXPECT_EQ(ini.Key(), "Caller");
    EXPECT_EQ(ini.Default(), "keep");
}

} // namespace
} // namespace wicker
