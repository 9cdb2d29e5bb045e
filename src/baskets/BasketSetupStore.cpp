#include "baskets/BasketSetupStore.h"

#include "common/Conversions.h"
#include "common/Text.h"
#include "storage/JetSql.h"

#include <utility>

namespace wicker {

std::string BasketRowKey(int32_t basketNum) {
    return std::to_string(basketNum) + "_";
}

int16_t BasketNumFromKey(std::string_view key) {
    return CInt(key.substr(0, key.find('_')));
}

std::vector<BasketRow> LoadBasketRows(Database& db, const BasketIndexStore& index) {
    std::vector<BasketRow> out;
    for (auto rs = db.OpenRecordset("SELECT * FROM tblBaskets ORDER BY intBasketNum"); !rs.IsEOF();
         rs.MoveNext()) {
        BasketRow row;
        row.basketNum = rs.Field("intBasketNum").toLong();
        row.name = Trim(rs.Field("strBasketName").text());
        row.button = Trim(rs.Field("strButtonName").text());
        row.type = Trim(rs.Field("chType").text());
        row.onButton = !rs.Field("intOnButton").isNull() && rs.Field("intOnButton").toDouble() == 1;
        row.divisor = NumberText(index.divisor(row.name).value_or(0.0));
        row.indexType = index.indexType(row.name).value_or("Price Weighted");
        out.push_back(std::move(row));
    }
    return out;
}

std::vector<StockRow> LoadStockRows(Database& db, int32_t basketNum) {
    std::vector<StockRow> out;
    for (auto rs = db.OpenRecordset("SELECT * FROM tblBasketDetails WHERE intBasketNum = " +
                                    std::to_string(basketNum));
         !rs.IsEOF(); rs.MoveNext()) {
        StockRow row;
        row.recordNum = rs.Field("intRecordNum").toLong();
        row.symbol = Trim(rs.Field("strSym").text());
        row.quantity = rs.Field("intQty").text();
        row.destination = rs.Field("strDest").text();
        const DbValue& shares = rs.Field("nIndexShares");
        row.indexShares = shares.isNull() ? "0" : shares.text();
        out.push_back(std::move(row));
    }
    return out;
}

void DeleteBasket(Database& db, int32_t basketNum) {
    const std::string n = std::to_string(basketNum);
    db.ExecuteSql("DELETE FROM tblBaskets WHERE intBasketNum = " + n);
    db.ExecuteSql("DELETE FROM tblBasketDetails WHERE intBasketNum = " + n);
}

void DeleteStockLine(Database& db, int32_t recordNum) {
    db.ExecuteSql("DELETE FROM tblBasketDetails WHERE intRecordNum = " + std::to_string(recordNum));
}

std::optional<size_t> RowAfterDelete(size_t deleted, size_t remaining) {
    if (remaining == 0) {
        return std::nullopt;
    }
    return deleted < remaining ? deleted : remaining - 1;
}

namespace {

void UpdateButtonFlag(Database& db, const BasketRow& row) {
    db.ExecuteSql(std::string("UPDATE tblBaskets SET intOnButton = ") + (row.onButton ? "1" : "0") +
                  " WHERE strBasketName = '" + SqlText(row.name) + "'");
}

void ReplaceLines(Database& db, int32_t basketNum, const std::vector<StockRow>& stocks) {
    const std::string n = std::to_string(basketNum);
    db.ExecuteSql("DELETE FROM tblBasketDetails WHERE intBasketNum = " + n);
    for (const auto& s : stocks) {
        db.ExecuteSql(
            "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest,nIndexShares) "
            "VALUES(" +
            n + ",'" + SqlText(s.symbol) + "'," + SqlNumber(s.quantity) + ",'" +
            SqlText(s.destination) + "'," + SqlNumber(s.indexShares) + ")");
    }
}

} // namespace

void WriteButtonFlags(Database& db, const std::vector<BasketRow>& baskets) {
    Database::Transaction tx(db);
    for (const auto& row : baskets) {
        UpdateButtonFlag(db, row);
    }
    tx.commit();
}

void SaveBasketChanges(Database& db, BasketIndexStore& index, int32_t basketNum,
                       const std::vector<StockRow>& stocks, const std::vector<BasketRow>& baskets) {
    if (basketNum != 0) {
        // All or nothing: a line the database refuses must not cost the stored lines.
        Database::Transaction tx(db);
        ReplaceLines(db, basketNum, stocks);
        tx.commit();
    }
    // Convert every divisor before touching the collections, so a bad one leaves them whole.
    std::vector<double> divisors;
    divisors.reserve(baskets.size());
    for (const auto& row : baskets) {
        divisors.push_back(CDbl(row.divisor));
    }
    WriteButtonFlags(db, baskets);
    index.clear();
    for (size_t i = 0; i < baskets.size(); ++i) {
        index.setDivisor(baskets[i].name, divisors[i]);
        index.setIndexType(baskets[i].name, baskets[i].indexType);
    }
}

} // namespace wicker
