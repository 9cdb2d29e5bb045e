#include "trading/orders/OrderJournal.h"

#include "common/Conversions.h"
#include "storage/BasketDatabase.h"
#include "storage/JetSql.h"

#include <cstdio>

namespace wicker {

namespace {

std::string TwoDigits(int n) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d", n);
    return buf;
}

std::string DateText(const LocalDateTime& t) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%04d-", t.year);
    return buf + TwoDigits(t.month) + "-" + TwoDigits(t.day);
}

std::string TimeText(const LocalDateTime& t) {
    return TwoDigits(t.hour) + ":" + TwoDigits(t.minute) + ":" + TwoDigits(t.second);
}

std::string Number(double value) {
    return SqlNumber(NumberText(value));
}

} // namespace

std::string JournalInsertSql(const JournalEntry& e, bool withTifColumns) {
    std::string sql = withTifColumns
                          ? "INSERT INTO tblOrders(dtDate,dtTime,strClOrdId,intBasketSeq,strAcct,"
                            "strSym,strSide,strDest,sngOrdPrice,lngOrdQty,lngLvsQty,lngExecQty,"
                            "strStatus,strBasketName,chTif) VALUES('"
                          : "INSERT INTO tblOrders(dtDate,dtTime,strClOrdId,intBasketSeq,strAcct,"
                            "strSym,strSide,sngOrdPrice,lngOrdQty,lngLvsQty,lngExecQty,strStatus) "
                            "VALUES('";
    sql += DateText(e.sent) + "','" + TimeText(e.sent) + "','" + SqlText(e.clOrderId) + "'," +
           Number(e.basketSeq) + ",'" + SqlText(e.account) + "','" + SqlText(e.symbol) + "','" +
           SqlText(e.side) + "',";
    if (withTifColumns) {
        sql += "'" + SqlText(e.destination) + "',";
    }
    sql += Number(e.price) + "," + Number(e.quantity) + "," + Number(e.leaves) + ",0,'Sending-N'";
    if (withTifColumns) {
        sql += ",'" + SqlText(e.basketName) + "','" + SqlText(e.tif) + "'";
    }
    sql += ")";
    return sql;
}

OrderJournal::OrderJournal(Database& db) : m_db(db) {}

bool OrderJournal::WithTifColumns() {
    if (!m_withTifColumns) {
        m_withTifColumns = IsDbVersion4013(m_db);
    }
    return *m_withTifColumns;
}

void OrderJournal::Execute(const std::string& insertSql) {
    m_db.ExecuteSql(insertSql);
}

std::vector<std::string> OrderJournal::ClOrderIds(int16_t basketSeq) {
    std::vector<std::string> ids;
    Recordset rs = m_db.OpenRecordset("SELECT strClOrdId FROM tblOrders WHERE intBasketSeq = " +
                                      std::to_string(basketSeq));
    for (; !rs.IsEOF(); rs.MoveNext()) {
        const DbValue& v = rs.Field(0);
        if (!v.isNull()) {
            ids.push_back(v.text());
        }
    }
    return ids;
}

} // namespace wicker
