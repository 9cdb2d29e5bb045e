// The program itself, killed half-way through a send or stopped with resting orders, and
// started again, on the simulator of its data folder and on FIX against wicker-exchange: the
// folder tool runs the real desk in a process of its own (see tests/support/tool), the
// exchange runs in another.

#include "exchange/ExchangeProcess.h"
#include "platform/QVXOrderStruct.h"
#include "platform/sim/SimBookFile.h"
#include "storage/SqliteFile.h"
#include "support/Subprocess.h"
#include "support/TempDir.h"

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

/// What the broker holds of an order, where it says: status and filled quantity.
struct Kept {
    int64_t status = 0;
    int64_t cum = 0;
};

/// The simulated broker: its book is a file in the program's data folder.
class SimBroker {
public:
    explicit SimBroker(const std::filesystem::path& folder) : m_book(folder / kSimBookFileName) {
        // Few quote moves: resting orders stay resting while the test looks at them.
        test::WriteFile(folder / "basket.ini", "[Platform]\r\nSimUpdatesPerSecond=0.01\r\n");
    }
    /// The client order id of every order the broker took, once per row it holds.
    std::vector<std::string> ReceivedIds() const {
        std::vector<std::string> ids;
        for (const auto& [id, kept] : rows()) {
            ids.push_back(id);
        }
        return ids;
    }
    std::map<std::string, Kept> Book() const {
        std::map<std::string, Kept> book;
        for (const auto& [id, kept] : rows()) {
            book[id] = kept;
        }
        return book;
    }

private:
    std::vector<std::pair<std::string, Kept>> rows() const {
        if (!std::filesystem::exists(m_book)) {
            return {};
        }
        SqliteFile file(m_book);
        SqliteStatement s(file, "SELECT clOrdId, status, cum FROM book");
        std::vector<std::pair<std::string, Kept>> out;
        while (s.next()) {
            out.push_back({s.text(0), Kept{s.integer(1), s.integer(2)}});
        }
        return out;
    }
    std::filesystem::path m_book;
};

/// wicker-exchange in a process of its own; its journal lists every new order it received.
class FixBroker {
public:
    explicit FixBroker(const std::filesystem::path& folder)
        : m_exchange(WICKER_EXCHANGE_PROGRAM, m_dir / "exchange") {
        const Result<void> started =
            m_exchange.start({"--market", "steady", "--data-dir", (m_dir / "data").string(),
                              "--journal", (m_dir / "orders.txt").string()});
        EXPECT_TRUE(started.ok()) << started.error().message;
        test::WriteFile(folder / "basket.ini",
                        "[Platform]\r\nMode=FIX\r\nFixPort=" + std::to_string(m_exchange.port()) +
                            "\r\nFixReconnectInterval=1\r\n");
    }
    std::vector<std::string> ReceivedIds() const {
        std::vector<std::string> ids;
        std::ifstream journal(m_dir / "orders.txt");
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
    /// The exchange's journal holds no states.
    std::map<std::string, Kept> Book() const { return {}; }

private:
    test::TempDir m_dir;
    ExchangeProcess m_exchange;
};

template <class Broker> class DeskRestart : public ::testing::Test {
protected:
    std::string folder() const { return dir.path().string(); }
    std::vector<std::string> ReceivedWhenThereAre(size_t count) const {
        std::vector<std::string> ids = broker.ReceivedIds();
        for (int i = 0; i < 1000 && ids.size() < count; ++i) {
            std::this_thread::sleep_for(20ms);
            ids = broker.ReceivedIds();
        }
        return ids;
    }

    test::TempDir dir;
    Broker broker{dir.path()};
};

using Brokers = ::testing::Types<SimBroker, FixBroker>;
class BrokerName {
public:
    template <class T> static std::string GetName(int) {
        return std::is_same_v<T, SimBroker> ? "Simulator" : "FixExchange";
    }
};
TYPED_TEST_SUITE(DeskRestart, Brokers, BrokerName);

TYPED_TEST(DeskRestart, AKillHalfWayThroughASendLosesNoOrderOfTheBrokerAndSendsNoneTwice) {
    {
        test::Subprocess send({test::FolderTool(), "send", this->folder(), "5000", "3", "2500"});
        ASSERT_TRUE(send.waitFor("paused"));
        // The kill lands once the broker has taken the 2,500 orders handed to it.
        this->ReceivedWhenThereAre(2500);
        send.killHard();
        send.wait();
    }
    const std::vector<std::string> received = this->broker.ReceivedIds();
    ASSERT_EQ(received.size(), 2500u);
    const std::set<std::string> atBroker(received.begin(), received.end());
    const std::map<std::string, Kept> book = this->broker.Book();
    const test::FolderToolRun shown = test::RunFolderTool({"show", this->folder()});
    ASSERT_EQ(shown.exitCode, 0);
    // The orders a send has written down but not handed over yet may be any number past the
    // last one that left; all of them show, and none of the broker's is missing.
    ASSERT_GE(shown.orders.size(), 2500u);
    ASSERT_LE(shown.orders.size(), 5000u);
    for (const std::string& id : received) {
        EXPECT_EQ(shown.orders.count(id), 1u) << id;
    }
    size_t notSent = 0;
    for (const auto& [id, o] : shown.orders) {
        if (atBroker.count(id) == 0) {
            EXPECT_EQ(o.status, "Not sent (program stopped)") << id;
            ++notSent;
            continue;
        }
        EXPECT_EQ(o.status, "Filled") << id;
        EXPECT_GT(o.cum, 0) << id;
        if (const auto kept = book.find(id); kept != book.end()) {
            EXPECT_EQ(kept->second.status, QVXOrderStatus::Filled) << id;
            EXPECT_EQ(o.cum, kept->second.cum) << id;
        }
    }
    EXPECT_EQ(notSent, shown.orders.size() - 2500);

    const test::FolderToolRun next = test::RunFolderTool({"send", this->folder(), "5", "3"});
    EXPECT_TRUE(test::Printed(next, "sent 2 5")) << "a new send number";
    const std::vector<std::string> all = this->ReceivedWhenThereAre(2505);
    EXPECT_EQ(all.size(), 2505u);
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size())
        << "no client order id twice at the broker";
}

TYPED_TEST(DeskRestart, RestingOrdersRestAfterARestartAndACancelFromTheNewRunReachesThem) {
    const test::FolderToolRun sent =
        test::RunFolderTool({"send", this->folder(), "20", "9"}); // SHRT ASK: rests
    ASSERT_EQ(sent.exitCode, 0);
    int seq = 0, submitted = 0;
    for (const std::string& line : sent.lines) {
        if (line.starts_with("sent ")) {
            std::istringstream(line.substr(5)) >> seq >> submitted;
        }
    }
    ASSERT_GT(submitted, 0);
    for (const auto& [id, kept] : this->broker.Book()) {
        ASSERT_EQ(kept.status, QVXOrderStatus::Open) << id;
    }

    const test::FolderToolRun shown =
        test::RunFolderTool({"show", this->folder(), std::to_string(seq)});
    EXPECT_TRUE(test::Printed(shown, "cancelled " + std::to_string(submitted)));
    EXPECT_TRUE(test::Printed(shown, "restored " + std::to_string(submitted) + " adopted " +
                                         std::to_string(submitted)));
    ASSERT_EQ(shown.orders.size(), static_cast<size_t>(submitted));
    for (const auto& [id, o] : shown.orders) {
        EXPECT_EQ(o.status, "Cancelled") << id;
        EXPECT_EQ(o.leaves, 0) << id;
    }
    for (const auto& [id, kept] : this->broker.Book()) {
        EXPECT_EQ(kept.status, QVXOrderStatus::Cancelled) << id;
    }
}

} // namespace
} // namespace wicker
