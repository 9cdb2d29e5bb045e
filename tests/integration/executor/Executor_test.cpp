// Wicker's FIX platform against a counterparty it was not written with: QuickFIX's own
// "executor" example, which fills limit orders at their price and refuses every other order
// type. All 21 order buttons go through the desk's send path in FIX 4.2 and 4.4; every
// NewOrderSingle is checked on the wire, every fill in the basket totals and every refusal
// in the reject lines with the counterparty's reason.

#include "platform/fix/FixPlatform.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "trading/TradingEvents.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/orders/OrderTracker.h"

#include <arpa/inet.h>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <netinet/in.h>
#include <sstream>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using Tags = std::map<int, std::string>;

/// A free loopback port, as the kernel hands one out.
int FreePort() {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof a;
    bind(fd, reinterpret_cast<sockaddr*>(&a), len);
    getsockname(fd, reinterpret_cast<sockaddr*>(&a), &len);
    close(fd);
    return ntohs(a.sin_port);
}

/// Local addresses listening on `port`, as /proc/net/tcp and tcp6 show them.
std::vector<std::string> Listeners(int port) {
    char hexPort[8];
    std::snprintf(hexPort, sizeof hexPort, ":%04X", port);
    std::vector<std::string> found;
    for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        std::ifstream in(table);
        std::string line;
        while (std::getline(in, line)) {
            std::istringstream fields(line);
            std::string slot, local, remote, state;
            fields >> slot >> local >> remote >> state;
            if (state == "0A" && local.ends_with(hexPort)) {
                found.push_back(local);
            }
        }
    }
    return found;
}

/// The executor as a child process, kept on loopback by the bind shim, its screen log in a
/// file; killed when the test ends.
class ExecutorProcess {
public:
    ExecutorProcess(const std::filesystem::path& config, const std::filesystem::path& log) {
        m_pid = fork();
        if (m_pid == 0) {
            const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dup2(out, 1);
            dup2(out, 2);
            setenv("LD_PRELOAD", LOOPBACK_BIND_PRELOAD, 1);
            execl(QUICKFIX_EXECUTOR_PROGRAM, QUICKFIX_EXECUTOR_PROGRAM, config.c_str(), nullptr);
            _exit(127);
        }
    }
    ~ExecutorProcess() {
        if (m_pid > 0) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
    }
    ExecutorProcess(const ExecutorProcess&) = delete;
    ExecutorProcess& operator=(const ExecutorProcess&) = delete;

private:
    pid_t m_pid = -1;
};

/// The platform's events into the trading screen's handlers, as the program's drain does.
class ToDesk : public QVXEvents, public QVXQuoteEvents {
public:
    explicit ToDesk(TradingEvents& events) : m_events(events) {}
    std::vector<QVXRejectStruct> rejects;

    void OnQVXOrderUpdate(const QVXOrderStruct& u) override { m_events.OnQVXOrderUpdate(u); }
    void OnQVXOrderReject(const QVXRejectStruct& r) override {
        rejects.push_back(r);
        m_events.OnQVXOrderReject(r);
    }
    void OnQVXOrderWarning(const QVXOrderWarning& w) override { m_events.OnQVXOrderWarning(w); }
    void OnQVXShutdown() override { m_events.OnQVXShutdown(); }
    void OnPlatformStatus(bool, const std::string&) override {}
    void OnQVXQuoteSnap(const QVXQuoteStruct&) override {}
    void OnQVXQuoteUpdate(const QVXQuoteStruct&) override {}

private:
    TradingEvents& m_events;
};

/// Every NewOrderSingle Wicker sent, from its FIX message log, by symbol.
std::map<std::string, Tags> SentOrders(const std::filesystem::path& logFolder) {
    std::map<std::string, Tags> sent;
    for (const auto& entry : std::filesystem::directory_iterator(logFolder)) {
        std::ifstream in(entry.path());
        std::string line;
        while (std::getline(in, line)) {
            Tags tags;
            std::stringstream fields(line);
            std::string pair;
            while (std::getline(fields, pair, '\x01')) {
                const size_t eq = pair.find('=');
                const size_t start = pair.rfind(' ', eq);
                if (eq != std::string::npos && eq > 0) {
                    const std::string tag =
                        pair.substr(start == std::string::npos ? 0 : start + 1, eq);
                    tags[std::atoi(tag.c_str())] = pair.substr(eq + 1);
                }
            }
            if (tags[35] == "D") {
                sent[tags[55]] = tags;
            }
        }
    }
    return sent;
}

const char* FixSide(std::string_view side) {
    return side == "S" ? "2" : side == "T" ? "5" : "1";
}
/// OrdType(40) and TimeInForce(59) of a button: market-on-close is its own order type in
/// FIX 4.2 and a market order "at the close" in 4.4.
std::pair<std::string, std::string> FixTypeAndTif(ButtonKind kind, FixVersion version) {
    switch (kind) {
    case ButtonKind::Limit:
        return {"2", "0"};
    case ButtonKind::MarketOnClose:
        return version == FixVersion::Fix42 ? std::pair{"5", "0"} : std::pair{"1", "7"};
    case ButtonKind::MarketOnOpen:
        return {"1", "2"};
    default:
        return {"1", "0"};
    }
}

struct Quotes {
    const char* bid = "10.00";
    const char* ask = "10.02";
    const char* last = "10.01";
    const char* line = "10.05";
};

double ExpectedPrice(PriceSource source) {
    const Quotes q;
    switch (source) {
    case PriceSource::Bid:
        return std::stod(q.bid);
    case PriceSource::Ask:
        return std::stod(q.ask);
    case PriceSource::Last:
        return std::stod(q.last);
    case PriceSource::LinePrice:
        return std::stod(q.line);
    default:
        return 0;
    }
}

class QuickFixExecutor : public ::testing::TestWithParam<FixVersion> {
protected:
    QuickFixExecutor()
        : clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})), tracker(boxes, clock),
          events(tracker, [] {}), toDesk(events) {}

    /// Starts the executor on `onPort`, or on a free port the first time.
    void StartExecutor(int onPort = 0) {
        port = onPort != 0 ? onPort : FreePort();
        std::ofstream cfg(dir / "executor.cfg");
        cfg << "[DEFAULT]\nConnectionType=acceptor\nSocketAcceptPort=" << port
            << "\nSocketReuseAddress=Y\nStartTime=00:00:00\nEndTime=00:00:00\n"
            << "UseDataDictionary=N\nFileStorePath=" << (dir / "executor-store").string()
            << "\nSenderCompID=EXEC\nTargetCompID=WICKER\n"
            << "[SESSION]\nBeginString=FIX.4.2\n[SESSION]\nBeginString=FIX.4.4\n";
        cfg.close();
        executor =
            std::make_unique<ExecutorProcess>(dir / "executor.cfg", dir / "executor-screen.log");
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (Listeners(port).empty() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(20ms);
        }
    }
    template <class Pred> bool PumpUntil(Pred pred, std::chrono::seconds limit = 20s) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (std::chrono::steady_clock::now() < deadline) {
            platform->Events().drain(toDesk, toDesk);
            tracker.FillOrderList();
            if (pred()) {
                return true;
            }
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }

    void Connect() {
        FixPlatformSettings s;
        s.port = port;
        s.targetCompID = "EXEC";
        s.version = GetParam();
        s.reconnectInterval = 1;
        platform = std::make_unique<FixPlatform>(s, PreTradeLimits{}, dir / "wicker", clock);
        ASSERT_TRUE(platform->Start().ok());
        ASSERT_TRUE(PumpUntil([&] { return platform->isLoggedOn(); }));
        execution = std::make_unique<BasketExecution>(*platform, sequence, store, boxes, clock);
    }
    /// One click of button `b` on `lines` lines S<b>.<n>, quantity 100 each.
    void Click(int b, int lines) {
        const Quotes q;
        std::vector<ExecutionLine> list;
        for (int n = 0; n < lines; ++n) {
            ExecutionLine l;
            l.checked = true;
            l.symbol = "S" + std::to_string(b) + (lines > 1 ? "." + std::to_string(n) : "");
            l.bid = q.bid;
            l.ask = q.ask;
            l.last = q.last;
            l.price = q.line;
            l.quantity = std::to_string(lines > 1 ? 100 : 100 * (b + 1));
            l.destination = "NASDAQ";
            l.modifier = "0";
            l.tif = "DAY";
            list.push_back(l);
        }
        const ExecuteReport r = execution->cmdExecuteBasket_Click(
            b, SendLines::Of(list), ExecutionInputs{"acct01", "1", "Exec"}, ExecutionSettings{});
        EXPECT_EQ(r.ordersSubmitted, lines) << "button " << b;
        EXPECT_TRUE(r.submitErrors.empty()) << "button " << b;
    }
    /// Send `send` holds `quantity` shares in lvBaskets, all filled. The tracker here learns
    /// orders from reports only, so the quantity tells whether every order was reported.
    bool RowFilled(int16_t send, int64_t quantity) {
        for (const OrderRow& row : tracker.Rows()) {
            if (row.m_nBasketNum == send) {
                return row.m_nTotalQty == quantity && row.m_nFilledQty == quantity;
            }
        }
        return false;
    }

    class NullStore : public SequenceStore {
    public:
        Result<void> SaveBasketNum(int16_t) override { return {}; }
    };

    test::TempDir dir;
    int port = 0;
    std::unique_ptr<ExecutorProcess> executor;
    ManualClock clock;
    test::RecordingMessageBoxes boxes;
    OrderTracker tracker;
    TradingEvents events;
    ToDesk toDesk;
    std::unique_ptr<FixPlatform> platform;
    SendSequence sequence{1, 1};
    NullStore store;
    std::unique_ptr<BasketExecution> execution;
};

TEST_P(QuickFixExecutor, AllButtonsGoOutWithTheirTagsFillsReachTheTotalsRefusalsShowTheirReason) {
    StartExecutor();
    const std::vector<std::string> listening = Listeners(port);
    ASSERT_EQ(listening.size(), 1u) << "the executor did not start: see executor-screen.log";
    EXPECT_EQ(listening[0], "0100007F" + listening[0].substr(8)) << "listening beyond loopback";

    Connect();
    int limits = 0;
    for (int b = 0; b < ExecuteButtonCount; ++b) {
        Click(b, 1);
        limits += ExecuteButtonRuleFor(b)->kind == ButtonKind::Limit;
    }
    const size_t refused = ExecuteButtonCount - limits;

    const bool settled = PumpUntil([&] {
        int filled = 0;
        for (const OrderRow& row : tracker.Rows()) {
            filled += row.m_nTotalQty > 0 && row.m_nFilledQty == row.m_nTotalQty;
        }
        return filled == limits && toDesk.rejects.size() == refused;
    });
    EXPECT_TRUE(settled) << "rejects " << toDesk.rejects.size() << " of " << refused;

    // On the wire: each button's side, order type, price and the fixed tags.
    const std::map<std::string, Tags> sent = SentOrders(dir / "wicker" / "log");
    ASSERT_EQ(sent.size(), size_t(ExecuteButtonCount));
    std::map<std::string, int> buttonOfId;
    for (int b = 0; b < ExecuteButtonCount; ++b) {
        const ExecuteButtonRule rule = *ExecuteButtonRuleFor(b);
        SCOPED_TRACE(std::string(rule.caption));
        Tags tags = sent.at("S" + std::to_string(b));
        buttonOfId[tags[11]] = b;
        EXPECT_EQ(tags[1], "ACCT01");
        EXPECT_FALSE(tags[11].empty());
        EXPECT_EQ(tags[21], "1");
        EXPECT_EQ(tags[38], std::to_string(100 * (b + 1)));
        const auto [ordType, tif] = FixTypeAndTif(rule.kind, GetParam());
        EXPECT_EQ(tags[40], ordType);
        EXPECT_EQ(tags[54], FixSide(rule.side));
        EXPECT_EQ(tags[59], tif);
        EXPECT_GE(tags[60].size(), 17u) << "TransactTime yyyymmdd-hh:mm:ss";
        EXPECT_EQ(tags[100], "NASDAQ");
        ASSERT_EQ(tags.count(44), rule.kind == ButtonKind::Limit ? 1u : 0u);
        if (rule.kind == ButtonKind::Limit) {
            EXPECT_DOUBLE_EQ(std::stod(tags[44]), ExpectedPrice(rule.price));
        }
    }

    // In lvBaskets: one row per click (send n is button n-1), limits filled in full at
    // their price, nothing left open.
    ASSERT_EQ(tracker.Rows().size(), size_t(ExecuteButtonCount));
    for (const OrderRow& row : tracker.Rows()) {
        const ExecuteButtonRule rule = *ExecuteButtonRuleFor(row.m_nBasketNum - 1);
        SCOPED_TRACE(std::string(rule.caption));
        EXPECT_EQ(row.m_nOpenOrders, 0);
        EXPECT_EQ(row.m_nOpenQty, 0);
        if (rule.kind == ButtonKind::Limit) {
            const int64_t qty = 100 * row.m_nBasketNum;
            EXPECT_EQ(row.m_nTotalQty, qty);
            EXPECT_EQ(row.m_nFilledQty, qty);
            const bool buys = rule.side == "BUY" || rule.side == "B";
            EXPECT_NEAR(buys ? row.m_fDlrsBot : row.m_fDlrsSld, qty * ExpectedPrice(rule.price),
                        0.005);
        }
    }
    // Refusals: the non-limit buttons, each with the executor's reason on its reject line.
    ASSERT_EQ(toDesk.rejects.size(), refused);
    ASSERT_EQ(tracker.PendingRejects().size(), refused);
    for (size_t i = 0; i < refused; ++i) {
        const QVXRejectStruct& r = toDesk.rejects[i];
        ASSERT_EQ(buttonOfId.count(r.ClOrderID), 1u) << r.ClOrderID;
        EXPECT_NE(ExecuteButtonRuleFor(buttonOfId[r.ClOrderID])->kind, ButtonKind::Limit);
        EXPECT_FALSE(r.ReasonText.empty()) << r.ClOrderID;
        EXPECT_NE(tracker.PendingRejects()[i].find(" - " + r.ReasonText), std::string::npos)
            << tracker.PendingRejects()[i];
    }
}

// The executor numbers its ExecIDs from 1 again when it restarts: the second run's fills are
// new fills of other orders, not duplicates of the first run's.
TEST_P(QuickFixExecutor, FillsAfterTheExecutorRestartsReachTheTotals) {
    StartExecutor();
    Connect();
    Click(0, 3); // BUY BID: ExecIDs 1..3
    // Every fill in before the kill: an order still on its way then is one the restarted
    // executor asks to have resent, which Wicker refuses and shows as not sent.
    ASSERT_TRUE(PumpUntil([&] { return RowFilled(1, 300); }));
    executor.reset();
    ASSERT_TRUE(PumpUntil([&] { return !platform->isLoggedOn(); }));
    StartExecutor(port);
    // Reconnects back off (1, 2, 4, 8 s...): a slow executor start can meet a long wait.
    ASSERT_TRUE(PumpUntil([&] { return platform->isLoggedOn(); }, 60s));
    Click(4, 3); // SELL BID: ExecIDs 1..3 again
    EXPECT_TRUE(PumpUntil([&] { return RowFilled(2, 300); }));
    EXPECT_TRUE(RowFilled(1, 300));
    EXPECT_TRUE(toDesk.rejects.empty());
}

INSTANTIATE_TEST_SUITE_P(Versions, QuickFixExecutor,
                         ::testing::Values(FixVersion::Fix42, FixVersion::Fix44),
                         [](const ::testing::TestParamInfo<FixVersion>& p) {
                             return p.param == FixVersion::Fix42 ? "Fix42" : "Fix44";
                         });

} // namespace
} // namespace wicker
