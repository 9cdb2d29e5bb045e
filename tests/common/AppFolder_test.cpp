#include "common/AppFolder.h"
#include "support/TempDir.h"

#include <map>

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct Env {
    std::map<std::string, std::string> vars;
    std::optional<std::string> operator()(const char* name) const {
        auto it = vars.find(name);
        return it == vars.end() ? std::nullopt : std::optional<std::string>(it->second);
    }
};

TEST(ResolveAppFolder, OrderOfPrecedence) {
    test::TempDir exe;
    Env env{{{"WICKER_HOME", "/w"}, {"XDG_DATA_HOME", "/x"}, {"HOME", "/h"}}};
    AppFolderInputs in{std::filesystem::path("/cli"), env, exe.path()};

    EXPECT_EQ(ResolveAppFolder(in), "/cli");
    in.dataDirOption.reset();
    EXPECT_EQ(ResolveAppFolder(in), "/w");

    env.vars.erase("WICKER_HOME");
    in.env = env;
    EXPECT_EQ(ResolveAppFolder(in), "/x/wicker"); // program folder holds nothing yet

    test::WriteFile(exe / "baskets.mdb", "x");
    EXPECT_EQ(ResolveAppFolder(in), exe.path()); // portable install

    std::filesystem::remove(exe / "baskets.mdb");
    test::WriteFile(exe / "basket.ini", "");
    EXPECT_EQ(ResolveAppFolder(in), exe.path());

    std::filesystem::remove(exe / "basket.ini");
    env.vars.erase("XDG_DATA_HOME");
    in.env = env;
    EXPECT_EQ(ResolveAppFolder(in), "/h/.local/share/wicker");
}

TEST(ResolveAppFolder, EmptyAndRelativeValuesAreIgnored) {
    Env env{{{"WICKER_HOME", ""}, {"XDG_DATA_HOME", ""}, {"HOME", "/h"}}};
    AppFolderInputs in{std::filesystem::path(""), env, {}};
    EXPECT_EQ(ResolveAppFolder(in), "/h/.local/share/wicker");
    env.vars["XDG_DATA_HOME"] = "data";
    in.env = env;
    EXPECT_EQ(ResolveAppFolder(in), "/h/.local/share/wicker");
    env.vars["HOME"] = "h";
    in.env = env;
    EXPECT_TRUE(ResolveAppFolder(in).is_absolute());
}

} // namespace
} // namespace wicker
