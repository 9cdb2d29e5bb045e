#pragma once

// The trading desk without a screen on a data folder of its own, over a platform that
// records what the desk asks of it. Prepare() fills the database before Start().

#include "FakePlatform.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "support/TestDatabase.h"
#include "trading/TradingDesk.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker::test {

class DeskFixture : public ::testing::Test {
protected:
    using Strings = std::vector<std::string>;

    /// A database at the current version (or `version`) holding the given SQL rows.
    void Prepare(const Strings& statements, const std::string& version = "") {
        auto db = CreateTestDatabase(dir / "baskets.mdb");
        if (!version.empty()) {
            db->ExecuteSql("UPDATE tblConfig SET strDbVersion = '" + version + "'");
        }
        for (const auto& sql : statements) {
            db->ExecuteSql(sql);
        }
    }

    TradingDesk& Start() {
        desk = std::make_unique<TradingDesk>(platform, boxes, clock, dir.path());
        desk->setScreenChanged([this](uint32_t parts) { changed |= parts; });
        const Result<void> r = desk->FormLoad();
        EXPECT_TRUE(r.ok()) << (r ? "" : r.error().message);
        return *desk;
    }

    static std::string Basket(const std::string& name, int onButton = 0,
                              const std::string& button = "Btn") {
        return "INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) VALUES('" +
               name + "','" + button + "'," + std::to_string(onButton) + ",'B')";
    }
    static std::string Line(int basket, const std::string& sym, const std::string& qty,
                            const std::string& dest = "NYSE") {
        return "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) VALUES(" +
               std::to_string(basket) + ",'" + sym + "'," + qty + ",'" + dest + "')";
    }

    /// One column of the loaded lines, top to bottom.
    Strings Column(int column) const {
        Strings out;
        for (int row = 0; row < desk->Stocks().Count(); ++row) {
            out.push_back(desk->Stocks().Cell(row, column));
        }
        return out;
    }

    TempDir dir;
    FakePlatform platform;
    RecordingMessageBoxes boxes;
    ManualClock clock{FromLocal(LocalDateTime{2024, 3, 15, 9, 30, 0, 0})};
    std::unique_ptr<TradingDesk> desk;
    uint32_t changed = 0;
};

} // namespace wicker::test
