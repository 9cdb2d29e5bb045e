#include "platform/fix/FixPlatform.h"
#include "platform/fix/FixPlatformRecords.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/FixTestPeer.h"
#include "platform/fix/GatewayFixture.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

// Keeps what the platform's queue delivers, as the screen's handlers would see it.
class Screen : public QVXEvents, public QVXQuoteEvents {
public:
    std::vector<QVXOrderStruct> updates;
    std::vector<QVXRejectStruct> rejects;
    std::vector<QVXOrderWarning> warnings;
    std::vector<std::pair<bool, QVXQuoteStruct>> quotes; // snapshot?, record
    std::vector<std::string> status;
    void OnQVXOrderUpdate(const QVXOrderStruct& u) override { updates.push_back(u); }
    void OnQVXOrderReject(const QVXRejectStruct& r) override { rejects.push_back(r); }
    void OnQVXOrderWarning(const QVXOrderWarning& w) override { warnings.push_back(w); }
    void OnQVXShutdown() override {}
    void OnPlatformStatus(bool online, const std::string& text) override {
        status.push_back((online ? "up: " : "down: ") + text);
    }
    void OnQVXQuoteSnap(const QVXQuoteStruct& q) override { quotes.emplace_back(true, q); }
    void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override { quotes.emplace_back(false, q); }
};

TEST(FixPlatformRecords, OrdStatusBecomesTheOrderStatusCode) {
    const std::pair<const char*, int32_t> rows[] = {
        {"0", QVXOrderStatus::Open},          {"1", QVXOrderStatus::PartiallyFilled},
        {"2", QVXOrderStatus::Filled},        {"3", QVXOrderStatus::DoneForDay},
        {"4", QVXOrderStatus::Cancelled},     {"5", QVXOrderStatus::Open},
        {"6", QVXOrderStatus::PendingCancel}, {"8", QVXOrderStatus::Rejected},
        {"A", QVXOrderStatus::PendingNew},    {"C", QVXOrderStatus::Cancelled},
        {"E", QVXOrderStatus::Open},          {"", QVXOrderStatus::PendingNew},
        {"42", QVXOrderStatus::PendingNew},
    };
    for (const auto& [ordStatus, code] : rows) {
        EXPECT_EQ(OrderStatusOf(ordStatus), code) << '"' << ordStatus << '"';
    }
}

TEST(FixPlatformRecords, OrderStateKeepsIdentityQuantitiesAndMemo) {
    FixOrderState o;
    o.recordId = 12;
    o.clOrdID = "A-1";
    o.currentClOrdID = "A-1-C1";
    o.orderID = "X9";
    o.side = "T";
    o.symbol = "IBM";
    o.destination = "NYSE";
    o.memo = "Tech-3-/bskt";
    o.quantity = 500;
    o.leaves = 200;
    o.cum = 300;
    o.avgPx = 101.5;
    o.ordStatus = "1";
    o.status = "Partially Filled";
    const QVXOrderStruct u = OrderStructOf(o);
    EXPECT_EQ(u.OrderRecordId, 12);
    EXPECT_EQ(u.ClOrderID, "A-1") << "the id the order was sent with";
    EXPECT_EQ(u.ExchOrderId, "X9");
    EXPECT_EQ(u.Side, "T");
    EXPECT_EQ(u.Memo, "Tech-3-/bskt");
    EXPECT_EQ(u.Quantity, 500);
    EXPECT_EQ(u.LvsQuantity, 200);
    EXPECT_EQ(u.CumExecQuantity, 300);
    EXPECT_DOUBLE_EQ(u.AvgExecPrice, 101.5);
    EXPECT_EQ(u.OrderStatus, QVXOrderStatus::PartiallyFilled);
    EXPECT_EQ(u.Action, "Partially Filled");
}

TEST(FixPlatformRecords, AnIncrementCarriesOnlyItsFieldsAndASnapshotAll) {
    FixQuoteFields f;
    f.symbol = "IBM";
    f.bid = 100.01;
    f.volume = 5000;
    QVXQuoteStruct q = QuoteStructOf(f);
    EXPECT_EQ(q.Fields, QVXQuoteField::Bid | QVXQuoteField::CumVolume);
    EXPECT_DOUBLE_EQ(q.BidPrice, 100.01);
    EXPECT_EQ(q.CumVolume, 5000);
    EXPECT_EQ(q.AskPrice, kQVXNoPrice);

    f.snapshot = true;
    q = QuoteStructOf(f);
    EXPECT_EQ(q.Fields, QVXQuoteField::All);
    EXPECT_EQ(q.AskPrice, kQVXNoPrice) << "absent from a snapshot: carried, with no value";
    EXPECT_EQ(q.AskSize, kQVXNoValue);
}

TEST(PreTradeLimits, DestinationAndNotional) {
    PreTradeLimits limits;
    EXPECT_EQ(CheckPreTradeLimits(limits, "ANY", 1000000, 0), 0) << "no limits set";
    limits.enabledDestinations = {"NYSE", "ARCA"};
    limits.maxOrderNotional = 100000;
    struct Row {
        const char* destination;
        int32_t quantity;
        double price;
        int32_t result;
    };
    const Row rows[] = {
        {"NYSE", 1000, 100, 0},  {"arca", 1000, 100, 0}, {"NSDQ", 1, 1, -7},      {"", 1, 1, -7},
        {"NYSE", 1001, 100, -8}, {"NYSE", 1, 0, -8},     {"NSDQ", 5000, 100, -7},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(CheckPreTradeLimits(limits, r.destination, r.quantity, r.price), r.result)
            << r.destination << " " << r.quantity << " @ " << r.price;
    }
}

TEST(PreTradeLimits, ReadFromTheSettings) {
    std::map<std::string, std::string, std::less<>> keys;
    const auto reader = [&](std::string_view k) -> std::optional<std::string> {
        const auto it = keys.find(k);
        return it == keys.end() ? std::nullopt : std::optional<std::string>(it->second);
    };
    Result<PreTradeLimits> none = ReadPreTradeLimits(reader);
    ASSERT_TRUE(none.ok());
    EXPECT_TRUE(none->enabledDestinations.empty());
    EXPECT_EQ(none->maxOrderNotional, 0);

    keys["EnabledDestinations"] = " nyse, ARCA ,,";
    keys["MaxOrderNotional"] = "250000.5";
    Result<PreTradeLimits> some = ReadPreTradeLimits(reader);
    ASSERT_TRUE(some.ok());
    EXPECT_EQ(some->enabledDestinations, (std::set<std::string>{"ARCA", "NYSE"}));
    EXPECT_EQ(some->maxOrderNotional, 250000.5);

    for (const char* bad : {"abc", "-1", "1e999"}) {
        keys["MaxOrderNotional"] = bad;
        Result<PreTradeLimits> r = ReadPreTradeLimits(reader);
        ASSERT_FALSE(r.ok()) << bad;
        EXPECT_NE(r.error().message.find("MaxOrderNotional"), std::string::npos);
    }
}

// Acknowledges every order, then fills it twice over.
void AckAndOverfill(FixAcceptor& a, const FixMessage& in) {
    if (in.msgType != "D") {
        return;
    }
    FixMessage ack = test::NewOrderAck(in);
    a.send(0, ack);
    const std::string id = test::Tag(in, 11);
    const std::string twice = std::to_string(2 * std::stoi(test::Tag(in, 38)));
    FixMessage fill;
    fill.msgType = "8";
    for (const auto& [tag, value] :
         std::initializer_list<std::pair<int, std::string>>{{37, "O-" + id},
                                                            {11, id},
                                                            {17, "F-" + id},
                                                            {150, "2"},
                                                            {39, "2"},
                                                            {55, test::Tag(in, 55)},
                                                            {54, test::Tag(in, 54)},
                                                            {38, test::Tag(in, 38)},
                                                            {151, "0"},
                                                            {14, twice},
                                                            {6, "100"},
                                                            {32, twice},
                                                            {31, "100"}}) {
        fill.add(tag, value);
    }
    a.send(0, fill);
}

TEST(FixPlatform, OrdersGoOutThroughTheLimitsAndTheirReportsArriveInTheQueue) {
    test::FixTestPeer peer({test::PeerSide()});
    peer.setReply(AckAndOverfill);
    test::TempDir dir;
    ManualClock clock{Clock::TimePoint{std::chrono::seconds(1710513000)}};
    test::WriteFile(dir / "basket.ini",
                    "[Platform]\r\nMode=FIX\r\nFixPort=" + std::to_string(peer.port()) +
                        "\r\nFixReconnectInterval=1\r\n"
                        "EnabledDestinations=NYSE,ARCA\r\n"
                        "MaxOrderNotional=50000\r\n");
    Result<std::unique_ptr<Platform>> made = CreateFixPlatform(dir.path(), clock);
    ASSERT_TRUE(made.ok()) << made.error().message;
    Platform& platform = **made;
    EXPECT_EQ(platform.DisplayName(), "FIX 127.0.0.1:" + std::to_string(peer.port()));

    const auto order = [&](const std::string& id, const std::string& destination, int32_t qty,
                           int32_t priceType, double price) {
        std::unique_ptr<QVXOrder> o = platform.CreateOrder();
        o->setAccount("ACCT01");
        o->setSide("B");
        o->setSymbol("IBM");
        o->setQuantity(qty);
        o->setLmtPrice(price);
        o->setPriceType(priceType);
        o->setClOrderID(id);
        o->setTif("D");
        o->setDestination(destination);
        o->setMemo("Tech-1-/bskt");
        return o->SubmitOrder();
    };
    EXPECT_EQ(order("A-0", "NYSE", 100, 5, 100), -16) << "not started";
    EXPECT_EQ(platform.Details().rfind("QuickFIX 1.", 0), 0u) << platform.Details();
    EXPECT_NE(platform.Details().find("FIX.4.2 WICKER -> EXCH, not logged on"), std::string::npos)
        << platform.Details();
    ASSERT_TRUE(platform.Start().ok());
    auto& fix = dynamic_cast<FixPlatform&>(platform);
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] { return fix.isLoggedOn(); }));

    EXPECT_EQ(order("A-1", "NSDQ", 100, 5, 100), -7);
    EXPECT_EQ(order("A-2", "NYSE", 1000, 5, 100), -8);
    EXPECT_EQ(order("A-3", "NYSE", 100, 1, 0), -8) << "market order, no price known";
    const int32_t id = order("A-4", "arca", 100, 5, 100);
    EXPECT_GT(id, 0);

    Screen screen;
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] {
        platform.Events().drain(screen, screen);
        return !screen.warnings.empty();
    }));
    ASSERT_EQ(screen.warnings.size(), 1u) << "the overfill reaches the desk as a warning";
    EXPECT_EQ(screen.warnings[0].OrderRecordId, id);
    EXPECT_EQ(screen.warnings[0].ClOrderID, "A-4");
    EXPECT_NE(screen.warnings[0].Text.find("overfill"), std::string::npos)
        << screen.warnings[0].Text;
    ASSERT_EQ(screen.updates.size(), 2u);
    EXPECT_EQ(screen.updates[0].OrderRecordId, id);
    EXPECT_EQ(screen.updates[0].ClOrderID, "A-4");
    EXPECT_EQ(screen.updates[0].Memo, "Tech-1-/bskt");
    EXPECT_EQ(screen.updates[0].OrderStatus, QVXOrderStatus::Open);
    EXPECT_EQ(screen.updates[0].LvsQuantity, 100);
    ASSERT_FALSE(screen.status.empty());
    EXPECT_EQ(screen.status[0].rfind("up: ", 0), 0u) << screen.status[0];
    EXPECT_EQ(peer.received().size(), 1u) << "refused orders never reach the wire";
}

TEST(FixPlatform, ABadSettingIsNamed) {
    test::TempDir dir;
    ManualClock clock{Clock::TimePoint{}};
    test::WriteFile(dir / "basket.ini", "[Platform]\r\nMaxOrderNotional=lots\r\n");
    Result<std::unique_ptr<Platform>> made = CreateFixPlatform(dir.path(), clock);
    ASSERT_FALSE(made.ok());
    EXPECT_NE(made.error().message.find("MaxOrderNotional"), std::string::npos);
}

} // namespace
} // namespace wicker
