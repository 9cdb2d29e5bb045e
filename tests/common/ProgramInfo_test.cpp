#include "common/ProgramInfo.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(ProgramInfo, EveryFactHasItsLineInOrderAndUnknownOnesSaySo) {
    ProgramFacts f;
    f.version = "1.2.3";
    f.build = "GCC 12, optimised";
    f.dataFolder = "/home/t/.local/share/wicker";
    f.platform = "SIMULATED";
    f.os = "Debian GNU/Linux 12";
    f.qtVersion = "6.4.2";
    f.sqliteVersion = "3.40.1";
    EXPECT_EQ(SystemInformationText(f), "Program: Wicker\r\n"
                                        "Version: 1.2.3\r\n"
                                        "Build: GCC 12, optimised\r\n"
                                        "Data folder: /home/t/.local/share/wicker\r\n"
                                        "Platform: SIMULATED\r\n"
                                        "Platform details: (not known)\r\n"
                                        "Operating system: Debian GNU/Linux 12\r\n"
                                        "Qt: 6.4.2\r\n"
                                        "SQLite: 3.40.1\r\n");
}

TEST(ProgramInfo, TheLicencesNameEveryLibraryLinked) {
    std::string names;
    for (const LibraryLicence& l : Licences()) {
        EXPECT_FALSE(l.licence.empty()) << l.name;
        names += l.name + ";";
    }
    EXPECT_EQ(names, "Qt 6;SQLite;QuickFIX;");
    EXPECT_FALSE(BuildDescription().empty());
}

} // namespace
} // namespace wicker
