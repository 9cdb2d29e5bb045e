// libFuzzer harness for spreadsheet files and pasted text: any bytes must read as a checked
// basket or as problems, never crash, and a basket said to be storable holds only lines
// that can be stored. Built and run by scripts/fuzz.
#include "baskets/SpreadsheetBasket.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto basket =
        wicker::ParseSpreadsheetBasket(bytes, {"NYSE", "ARCA", {"NYSE", "ARCA", "NASDAQ"}});
    if (basket.storable()) {
        for (const auto& line : basket.lines) {
            if (!line.errors.empty() || line.symbol.empty() || line.quantity <= 0 ||
                line.destination.empty()) {
                __builtin_trap();
            }
        }
    }
    (void)wicker::SpreadsheetProblemsText(basket, 20);
    (void)wicker::SpreadsheetSummary(basket);
    return 0;
}
