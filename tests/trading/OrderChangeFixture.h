#pragma once

// Tracked orders of one or two basket sends, a database with the order journal and a
// broker that records each change request and answers from a script, for the tests of
// changing and cancelling orders.

#include "platform/QVXOrderMaintenance.h"
#include "storage/BasketDatabase.h"
#include "storage/Database.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "support/TestDatabase.h"
#include "trading/orders/ModifyClOrderIds.h"
#include "trading/orders/OrderReplace.h"
#include "trading/orders/OrderTracker.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker::test {

/// Records ReplaceOrder and CancelOrder; answers a replace from `answers` by record id
/// (0 when none is scripted).
class ScriptedMaintenance : public QVXOrderMaintenance {
public:
    struct Replace {
        std::string clOrderId;
        int32_t orderRecordId = 0;
        QVXOrderChange change;
    };
    void CancelOrder(const std::string& clOrderId, int32_t orderRecordId, const std::string&,
                     const std::string&) override {
        cancels.emplace_back(clOrderId, orderRecordId);
    }
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                         const QVXOrderChange& change) override {
        replaces.push_back({clOrderId, orderRecordId, change});
        const auto a = answers.find(orderRecordId);
        return a == answers.end() ? 0 : a->second;
    }

    std::map<int32_t, int32_t> answers;
    std::vector<Replace> replaces;
    std::vector<std::pair<std::string, int32_t>> cancels;
};

/// One order-update record of basket `basket`, send `seq`.
inline QVXOrderStruct OrderRecord(int32_t recordId, const std::string& basket, int16_t seq,
                                  int32_t orderSeq, const std::string& symbol, int32_t quantity,
                                  int32_t filled, int32_t leaves, double lmtPrice = 10.0) {
    QVXOrderStruct r;
    r.OrderRecordId = recordId;
    r.Memo = basket + "-" + std::to_string(seq) + "-/bskt";
    r.ClOrderID = "DEMO01-20240315-" + std::to_string(seq) + "-" + std::to_string(orderSeq);
    r.Account = "DEMO01";
    r.Side = "B";
    r.Symbol = symbol;
    r.Destination = "NASDAQ";
    r.Tif = "D";
    r.Quantity = quantity;
    r.CumExecQuantity = filled;
    r.LvsQuantity = leaves;
    r.AvgExecPrice = filled > 0 ? lmtPrice : 0;
    r.LmtPrice = lmtPrice;
    r.PriceTypeCode = 5;
    r.OrderStatus = leaves > 0 ? (filled > 0 ? 2 : 1) : (filled == quantity ? 3 : 5);
    return r;
}

class OrderChange : public ::testing::Test {
protected:
    OrderChange()
        : clock(FromLocal(LocalDateTime{2024, 3, 15, 14, 5, 9, 0})), tracker(boxes, clock) {
        db = CreateTestDatabase(dir / "baskets.mdb");
    }

    void Track(const QVXOrderStruct& r) { tracker.OnQVXOrderUpdate(r); }

    /// tblOrders as files made before the journal's last three columns.
    void UseOldJournalTable() {
        for (const char* column : {"chTif", "strBasketName", "strDest"}) {
            db->ExecuteSql(std::string("ALTER TABLE tblOrders DROP COLUMN ") + column);
        }
        ASSERT_FALSE(IsDbVersion4013(*db));
    }

    int JournalRows() {
        return db->OpenRecordset("SELECT COUNT(*) FROM tblOrders").Field(0).toLong();
    }

    OrderReplace Replacer() { return OrderReplace(tracker, broker, *db, clock, ids); }

    TempDir dir;
    std::unique_ptr<Database> db;
    RecordingMessageBoxes boxes;
    ManualClock clock;
    OrderTracker tracker;
    ScriptedMaintenance broker;
    ModifyIdIssuer ids;
};

} // namespace wicker::test
