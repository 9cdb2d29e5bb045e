// The program's command line: what each form of the options asks for, and every mistake
// named in its message.

#include "app/ui/CommandLine.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(CommandLine, OptionsAreRead) {
    struct Row {
        const char* name;
        std::vector<std::string> args;
        bool help;
        bool version;
        std::optional<std::string> dataDir;
        std::optional<std::string> screenshot;
    };
    const Row rows[] = {
        {"nothing", {}, false, false, std::nullopt, std::nullopt},
        {"help", {"--help"}, true, false, std::nullopt, std::nullopt},
        {"short help", {"-h"}, true, false, std::nullopt, std::nullopt},
        {"version", {"--version"}, false, true, std::nullopt, std::nullopt},
        {"data dir", {"--data-dir", "/tmp/w"}, false, false, "/tmp/w", std::nullopt},
        {"data dir with =", {"--data-dir=/tmp/w x"}, false, false, "/tmp/w x", std::nullopt},
        {"screenshot and folder",
         {"--screenshot", "a.png", "--data-dir", "d"},
         false,
         false,
         "d",
         "a.png"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const Result<CommandLine> cl = ParseCommandLine(r.args);
        ASSERT_TRUE(cl.ok()) << cl.error().message;
        EXPECT_EQ(cl->help, r.help);
        EXPECT_EQ(cl->version, r.version);
        EXPECT_EQ(cl->dataDir ? std::optional<std::string>(cl->dataDir->string()) : std::nullopt,
                  r.dataDir);
        EXPECT_EQ(cl->screenshot ? std::optional<std::string>(cl->screenshot->string())
                                 : std::nullopt,
                  r.screenshot);
    }
    EXPECT_EQ(ParseCommandLine({"--account", "DEMO01"})->account, "DEMO01");
}

TEST(CommandLine, MistakesAreNamed) {
    struct Row {
        const char* name;
        std::vector<std::string> args;
        const char* message;
    };
    const Row rows[] = {
        {"unknown option", {"--colour"}, "Unknown option --colour. Try wicker --help."},
        {"stray word", {"basket.ini"}, "Unknown option basket.ini. Try wicker --help."},
        {"folder missing", {"--data-dir"}, "Option --data-dir needs a value."},
        {"folder empty", {"--data-dir="}, "Option --data-dir needs a value."},
        {"picture missing", {"--screenshot"}, "Option --screenshot needs a value."},
        {"account empty", {"--account="}, "Option --account needs a value."},
        {"help takes no value", {"--help=yes"}, "Unknown option --help=yes. Try wicker --help."},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const Result<CommandLine> cl = ParseCommandLine(r.args);
        ASSERT_FALSE(cl.ok());
        EXPECT_EQ(cl.error().message, r.message);
    }
}

TEST(CommandLine, HelpNamesEveryOptionAndVersionTheNumber) {
    const std::string usage = UsageText();
    for (const char* option : {"--data-dir", "--account", "--screenshot", "--version", "--help",
                               "Mode=SIM", "Mode=FIX"}) {
        EXPECT_NE(usage.find(option), std::string::npos) << option;
    }
    EXPECT_EQ(VersionText(), std::string("wicker ") + WICKER_VERSION);
}

} // namespace
} // namespace wicker
