// The program on FIX, killed half-way through a send or stopped with resting orders, and
// started again against the same wicker-exchange: the folder tool runs the real desk in a
// process of its own (see tests/support/tool), the exchange runs in another.

#include "exchange/ExchangeProcess.h"
#include "support/Subprocess.h"
#include "support/TempDir.h"

#include <fstream>
#include <set>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

class FixDeskRestart : public ::testing::Test {
protected:
    FixDeskRestart() : exchange(WICKER_EXCHANGE_PROGRAM, exchangeDir / "exchange") {}

    void SetUp() override {
        const Result<void> started =
            exchange.start({"--market", "steady", "--data-dir", (exchangeDir / "data").string(),
                            "--journal", (exchangeDir / "orders.txt").string()});
        ASSERT_TRUE(started.ok()) << started.error().message;
        test::WriteFile(dir / "basket.ini",
                        "[Platform]\r\nMode=FIX\r\nFixPort=" + std::to_string(exchange.port()) +
                            "\r\nFixReconnectInterval=1\r\n");
    }
    std::string folder() const { return dir.path().string(); }

    /// The client order ids of the new orders the exchange received, in order.
    std::vector<std::string> ReceivedIds() const {
        std::vector<std::string> ids;
        std::ifstream journal(exchangeDir / "orders.txt");
        // One line per new order: its fields as "tag=value|".
        for (std::string line; std::getline(journal, line);) {
            line.insert(0, "|");
            const size_t at = line.find("|11=");
            if (at != std::string::npos) {
                ids.push_back(line.substr(at + 4, line.find('|', at + 4) - at - 4));
            }
        }
        return ids;
    }

    test::TempDir dir;
    test::TempDir exchangeDir;
    ExchangeProcess exchange;
};

TEST_F(FixDeskRestart, AKillHalfWayThroughASendLosesNoOrderOfTheBrokerAndSendsNoneTwice) {
    {
        test::Subprocess send({test::FolderTool(), "send", folder(), "5000", "3", "2500"});
        ASSERT_TRUE(send.waitFor("paused"));
        for (int i = 0; i < 1000 && ReceivedIds().size() < 2500; ++i) {
            std::this_thread::sleep_for(20ms);
        }
        send.killHard();
        send.wait();
    }
    const std::vector<std::string> received = ReceivedIds();
    ASSERT_EQ(received.size(), 2500u);
    const test::FolderToolRun shown = test::RunFolderTool({"show", folder()});
    ASSERT_EQ(shown.exitCode, 0);
    ASSERT_EQ(shown.orders.size(), 5000u);
    const std::set<std::string> atBroker(received.begin(), received.end());
    size_t notSent = 0;
    for (const auto& [id, o] : shown.orders) {
        if (atBroker.count(id) == 0) {
            EXPECT_EQ(o.status, "Not sent (program stopped)") << id;
            ++notSent;
            continue;
        }
        EXPECT_EQ(o.status, "Filled") << id;
        EXPECT_GT(o.cum, 0) << id;
    }
    EXPECT_EQ(notSent, 2500u);

    const test::FolderToolRun next = test::RunFolderTool({"send", folder(), "5", "3"});
    EXPECT_TRUE(test::Printed(next, "sent 2 5")) << "a new send number";
    std::vector<std::string> all = ReceivedIds();
    for (int i = 0; i < 250 && all.size() < 2505; ++i) {
        std::this_thread::sleep_for(20ms);
        all = ReceivedIds();
    }
    EXPECT_EQ(all.size(), 2505u);
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size())
        << "no client order id twice at the broker";
}

TEST_F(FixDeskRestart, RestingOrdersRestAfterARestartAndACancelFromTheNewRunReachesThem) {
    const test::FolderToolRun sent = test::RunFolderTool({"send", folder(), "20", "9"});
    ASSERT_EQ(sent.exitCode, 0);
    int seq = 0, submitted = 0;
    for (const std::string& line : sent.lines) {
        if (line.starts_with("sent ")) {
            std::istringstream(line.substr(5)) >> seq >> submitted;
        }
    }
    ASSERT_GT(submitted, 0);

    const test::FolderToolRun shown = test::RunFolderTool({"show", folder(), std::to_string(seq)});
    EXPECT_TRUE(test::Printed(shown, "cancelled " + std::to_string(submitted)));
    ASSERT_EQ(shown.orders.size(), static_cast<size_t>(submitted));
    for (const auto& [id, o] : shown.orders) {
        EXPECT_EQ(o.status, "Cancelled") << id;
        EXPECT_EQ(o.leaves, 0) << id;
    }
}

} // namespace
} // namespace wicker
