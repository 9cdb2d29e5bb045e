// Every settings key through loading and every formatting that uses it: the input is
// basket.ini (and, after a 0x1E byte, $QvxLast.ini). The desk starts with it, loads and
// quotes a basket, sends it, shows the order summary of the send and closes, writing its
// keys back. Property: no value crashes any of it; what the close wrote reads back the
// same at the next start.
#include "FuzzSupport.h"
#include "common/Formats.h"
#include "storage/Settings.h"
#include "trading/orders/OrderRow.h"
#include "trading/orders/OrderSummary.h"
#include "trading/quotes/QuoteDisplay.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

using namespace std::chrono_literals;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace wicker;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const size_t cut = bytes.find('\x1e');
    // The database stays from run to run (making it is most of a start); the settings
    // files are the input's alone.
    static const auto folder = fuzz::FreshFolder("settings");
    std::filesystem::remove(folder / "$QvxLast.ini");
    std::ofstream(folder / "basket.ini", std::ios::binary | std::ios::trunc)
        << bytes.substr(0, cut);
    if (cut != std::string::npos) {
        std::ofstream(folder / "$QvxLast.ini", std::ios::binary) << bytes.substr(cut + 1);
    }

    Settings loaded;
    {
        fuzz::SimDesk run(folder);
        fuzz::Check(run.loaded);
        TradingDesk& desk = run.desk;
        const Settings& s = desk.settings();
        const QuoteDisplay display = QuoteDisplayFrom(s);
        for (double price : {0.0, 1.5, -2.25, 123456.789, 1e300}) {
            (void)PriceText(price, s.numDecimals);
            (void)FormatDecimals(price, s.numDecimals);
        }
        for (int32_t volume : {0, 999, 1000000, -5}) {
            (void)VolumeText(volume, display);
        }
        desk.PasteLines(*TradingDesk::ParsePasteText("IBM\t100\r\nMSFT\t55\r\n"));
        run.Run(600ms);
        (void)desk.ExecuteBasket(0, "FUZZ");
        run.Run(1s);
        for (const BasketListLine& line : desk.BasketListLines()) {
            if (const auto send = BasketSendOf(line[colBasketNum], line[colBasket])) {
                (void)OrderSummaryLines(desk.Tracker(), *send, s.numDecimals);
            }
        }
        loaded = s;
        desk.FormUnload();
    }
    // The keys the close wrote, as the next start reads them.
    ManualClock clock(FromLocal(LocalDateTime{2026, 11, 23, 11, 0, 0, 0}));
    const Settings again = LoadSettings(folder, clock);
    fuzz::Check(again.itemsPositions == loaded.itemsPositions);
    fuzz::Check(again.infoPositions == loaded.infoPositions);
    fuzz::Check(again.buttons == loaded.buttons);
    fuzz::Check(again.basketItemsCols == loaded.basketItemsCols);
    fuzz::Check(again.basketInfoCols == loaded.basketInfoCols);
    fuzz::Check(again.numDecimals == loaded.numDecimals);
    return 0;
}
