// Paste and drop text, through the desk to a send on the simulator. Property: any text is
// either refused (nothing on the screen changes), refused with one message naming the
// line limit, or loaded as exactly the lines it holds and then sent and tracked, never a
// crash; the loaded basket reads back the pasted symbols and quantities.
#include "FuzzSupport.h"
#include "common/Text.h"
#include "trading/basket/PasteInput.h"

#include <cstddef>
#include <cstdint>
#include <string>

using namespace std::chrono_literals;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace wicker;
    const std::string text(reinterpret_cast<const char*>(data), size);
    static const auto folder = fuzz::FreshFolder("paste");
    fuzz::SimDesk run(folder);
    fuzz::Check(run.loaded);
    run.boxes.texts.clear();
    TradingDesk& desk = run.desk;

    const auto table = TradingDesk::ParsePasteText(text);
    if (!table) {
        fuzz::Check(desk.Stocks().Count() == 0 && run.boxes.texts.empty());
        return 0;
    }
    const bool loaded = desk.PasteLines(*table);
    if (table->size() > kMaxPasteLines) {
        fuzz::Check(!loaded && desk.Stocks().Count() == 0 &&
                    run.boxes.texts == std::vector<std::string>{PasteTooLongMessage()});
        return 0;
    }
    // Every line is on the screen, in order, whether its quantity was a number or not.
    fuzz::Check(desk.Stocks().Count() == static_cast<int>(table->size()));
    for (int row = 0; row < desk.Stocks().Count(); ++row) {
        const PasteRow& pasted = (*table)[static_cast<size_t>(row)];
        fuzz::Check(desk.Stocks().Cell(row, stkSymbol) == Trim(pasted.symbol));
        fuzz::Check(desk.Stocks().Cell(row, stkBasketQty) == Trim(pasted.quantity));
    }
    if (!loaded) {
        return 0;
    }
    run.Run(400ms);
    for (int button = 0; button < OrderButtonCount; button += 7) {
        (void)desk.ExecuteBasket(button, "FUZZ");
        run.Run(600ms);
    }
    (void)desk.CancelAllBaskets();
    run.Run(400ms);
    return 0;
}
