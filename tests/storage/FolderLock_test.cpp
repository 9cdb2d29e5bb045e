#include "platform/sim/SimBookFile.h"
#include "storage/FolderLock.h"
#include "storage/clsIniFile.h"
#include "support/Subprocess.h"
#include "support/TempDir.h"
#include "trading/orders/IniSequenceStore.h"
#include "trading/orders/OrderLedger.h"

#include <functional>
#include <map>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::FolderTool;
using test::Subprocess;

std::map<std::string, std::string> Snapshot(const std::filesystem::path& dir) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
        files[entry.path().string()] = entry.is_regular_file() ? test::ReadFile(entry.path()) : "";
    }
    return files;
}

TEST(FolderLock, SecondStartIsRefusedWithTheHolderAndChangesNoByte) {
    test::TempDir dir;
    test::WriteFile(dir / "basket.ini", "[Basket]\r\nBasketNum=7\r\n");
    test::WriteFile(dir / "baskets.mdb", "not looked at");
    Subprocess holder({FolderTool(), "hold", dir.path().string()});
    ASSERT_TRUE(holder.waitFor("locked"));
    const auto before = Snapshot(dir.path());
    EXPECT_EQ(before.at((dir / FolderLock::kFileName).string()),
              std::to_string(holder.pid()) + "\n");

    Subprocess second({FolderTool(), "try", dir.path().string()});
    const auto message = second.readLine();
    EXPECT_EQ(second.wait(), 3);
    ASSERT_TRUE(message);
    EXPECT_NE(message->find(dir.path().string()), std::string::npos) << *message;
    EXPECT_NE(message->find("process id " + std::to_string(holder.pid())), std::string::npos)
        << *message;
    EXPECT_EQ(Snapshot(dir.path()), before);

    // Within the program too: a second lock of the same folder is refused.
    EXPECT_FALSE(FolderLock::Acquire(dir.path()));
    // A killed holder leaves no stale lock behind.
    holder.killHard();
    EXPECT_TRUE(FolderLock::Acquire(dir.path()));
}

TEST(FolderLock, TwoProcessesWritingBasketIniUnderTheLockKeepEveryKey) {
    test::TempDir dir;
    constexpr int kKeys = 300;
    Subprocess a({FolderTool(), "ini", dir.path().string(), "A", std::to_string(kKeys)});
    Subprocess b({FolderTool(), "ini", dir.path().string(), "B", std::to_string(kKeys)});
    EXPECT_EQ(a.wait(), 0);
    EXPECT_EQ(b.wait(), 0);
    clsIniFile ini;
    ini.setPath(dir / "basket.ini");
    ini.setSection("Hammer");
    std::vector<std::string> names;
    int32_t count = 0;
    ini.EnumerateCurrentSection(names, count);
    EXPECT_EQ(count, 2 * kKeys);
    for (const char* tag : {"A", "B"}) {
        ini.setKey(std::string(tag) + std::to_string(kKeys - 1));
        EXPECT_EQ(ini.Value(), std::to_string(kKeys - 1)) << tag;
    }
}

// The writers of the folder's files write under its lock: while another process holds the
// folder, each refuses, names the holder, and writes nothing; once this process holds it,
// they write.
TEST(FolderLock, WritersOfTheFolderRefuseWhileAnotherProcessHoldsIt) {
    test::TempDir dir;
    test::WriteFile(dir / "basket.ini", "[Sequence]\r\nBasketNum=7\r\n");
    ManualClock clock;
    const auto refusal = [](const std::function<void()>& write) {
        try {
            write();
        } catch (const std::exception& e) {
            return std::string(e.what());
        }
        return std::string();
    };
    const std::pair<std::string, std::function<std::string()>> writers[] = {
        {"basket.ini",
         [&] {
             const Result<void> saved = IniSequenceStore(dir / "basket.ini").SaveBasketNum(9);
             return saved ? std::string() : saved.error().message;
         }},
        {"order journal", [&] { return refusal([&] { OrderLedger(dir / "orders.db", clock); }); }},
        {"simulated book",
         [&] { return refusal([&] { SimBookFile(dir / kSimBookFileName, "20240315"); }); }},
    };
    {
        Subprocess holder({FolderTool(), "hold", dir.path().string()});
        ASSERT_TRUE(holder.waitFor("locked"));
        const auto before = Snapshot(dir.path());
        for (const auto& [name, write] : writers) {
            const std::string text = write();
            EXPECT_NE(text.find("process id " + std::to_string(holder.pid())), std::string::npos)
                << name << ": " << text;
        }
        EXPECT_EQ(Snapshot(dir.path()), before);
    }
    Result<FolderLock> held = FolderLock::Acquire(dir.path());
    ASSERT_TRUE(held);
    for (const auto& [name, write] : writers) {
        EXPECT_EQ(write(), "") << name;
    }
    EXPECT_EQ(test::ReadFile(dir / "basket.ini"), "[Sequence]\r\nBasketNum=9\r\n");
}

} // namespace
} // namespace wicker
