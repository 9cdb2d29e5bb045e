// libFuzzer harness for the Jet-dialect adapter: any statement text must either
// translate or be refused with DbError, and a translated one must run or be refused
// by the engine, never crash. Build: see fuzz/README.md.
#include "storage/Database.h"
#include "storage/JetSql.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string sql(reinterpret_cast<const char*>(data), size);
    static auto db = [] {
        auto d = wicker::Database::OpenInMemory();
        d->ExecuteSql("CREATE TABLE t (" + wicker::JetColumnDef("a", "Text(10)") + ", " +
                      wicker::JetColumnDef("b", "Long") + ")");
        return d;
    }();
    try {
        (void)wicker::TranslateJet(sql);
        db->ExecuteSql(sql);
    } catch (const wicker::DbError&) {
    }
    try {
        (void)wicker::SqlText(sql);
        (void)wicker::SqlNumber(sql);
    } catch (const wicker::DbError&) {
    }
    return 0;
}
