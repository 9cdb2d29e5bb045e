#include "trading/basket/PasteInput.h"

#include "baskets/Destinations.h"
#include "baskets/SpreadsheetBasket.h"
#include "common/Text.h"

#include <algorithm>
#include <exception>
#include <string>

namespace wicker {
namespace {

constexpr char kCr = '\r';
constexpr char kLf = '\n';
constexpr char kTab = '\t';

// Symbol, quantity and (when there is a third piece) destination of one line; nothing
// when the line has no tab, because then it has no quantity.
std::optional<PasteRow> SplitLine(std::string_view line) {
    const size_t first = line.find(kTab);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    PasteRow row;
    row.symbol = std::string(line.substr(0, first));
    const std::string_view rest = line.substr(first + 1);
    const size_t second = rest.find(kTab);
    row.quantity = std::string(rest.substr(0, second));
    if (second != std::string_view::npos) {
        // Pieces after the third are ignored.
        const std::string_view tail = rest.substr(second + 1);
        row.destination = std::string(tail.substr(0, tail.find(kTab)));
    }
    return row;
}

// Text in a spreadsheet's other shapes: commas or semicolons, quoted cells, a header row
// naming the columns. Taken only when every line is good, since a paste has no preview.
std::optional<PasteTable> SpreadsheetPaste(std::string_view text) {
    if (text.find(kLf) == std::string_view::npos) {
        return std::nullopt;
    }
    const auto basket = ParseSpreadsheetBasket(text, {"NYSE", "ARCA", {}});
    if (!basket.storable()) {
        return std::nullopt;
    }
    PasteTable table;
    table.reserve(basket.lines.size());
    for (const auto& line : basket.lines) {
        table.push_back({line.symbol, std::to_string(line.quantity), line.destination});
    }
    return table;
}

bool StartsWithHeader(const PasteTable& table) {
    return !table.empty() && (RecognizeColumn(table.front().symbol) == BasketColumn::Symbol ||
                              RecognizeColumn(table.front().quantity) == BasketColumn::Quantity);
}

std::optional<PasteTable> TabSeparatedPaste(std::string_view text) {
    if (text.find(kCr) == std::string_view::npos || text.find(kLf) == std::string_view::npos ||
        text.find(kTab) == std::string_view::npos) {
        return std::nullopt;
    }
    std::string lines(text);
    lines.erase(std::remove(lines.begin(), lines.end(), kCr), lines.end());

    PasteTable table;
    table.reserve(std::min(static_cast<size_t>(std::count(lines.begin(), lines.end(), kLf)),
                           kMaxPasteLines + 1));
    const std::string_view all(lines);
    size_t start = 0;
    // Only pieces ended by a line feed are kept: the piece after the last one is dropped.
    for (size_t end = all.find(kLf); end != std::string_view::npos; end = all.find(kLf, start)) {
        auto row = SplitLine(all.substr(start, end - start));
        if (!row) {
            return std::nullopt;
        }
        table.push_back(std::move(*row));
        if (table.size() > kMaxPasteLines) {
            break; // enough to refuse the paste
        }
        start = end + 1;
    }
    return table;
}

} // namespace

std::optional<PasteTable> ProcessInputText(std::string_view text) {
    if (auto table = TabSeparatedPaste(text); table && !StartsWithHeader(*table)) {
        return table;
    }
    return SpreadsheetPaste(text);
}

std::string WithCrLf(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    char previous = 0;
    for (const char c : text) {
        if (c == kLf && previous != kCr) {
            out += kCr;
        }
        out += c;
        previous = c;
    }
    return out;
}

std::vector<StockLine> PastedLines(const PasteTable& table) {
    std::vector<StockLine> lines;
    lines.reserve(table.size());
    for (const auto& row : table) {
        // Fixed defaults of a paste; the import screen's own defaults do not apply here.
        const std::string destination = row.destination.empty()
                                            ? DefaultDestinationFor(row.symbol, "NYSE", "ARCA")
                                            : row.destination;
        StockLine line;
        line.cells[stkSymbol] = Trim(row.symbol);
        line.cells[stkBasketQty] = Trim(row.quantity);
        line.cells[stkDest] = UCase(destination);
        line.checked = true;
        line.recordNum = -1;
        lines.push_back(std::move(line));
    }
    return lines;
}

std::string PasteTooLongMessage() {
    return "The data you wish to paste has more than " + std::to_string(kMaxPasteLines) +
           " lines. A basket holds at most " + std::to_string(kMaxPasteLines) +
           " lines, so that the main screen can quote, calculate and send them without "
           "stalling. Nothing was pasted; please paste the list in parts, as several baskets.";
}

bool PasteInputText(const PasteTable& table,
                    const std::function<void(std::vector<StockLine>)>& load, MessageBoxes& boxes) {
    if (table.size() > kMaxPasteLines) {
        boxes.show(PasteTooLongMessage(), 48, "");
        return false;
    }
    try {
        load(PastedLines(table));
    } catch (const std::exception&) {
        boxes.show(std::string(PasteFormatMessage), 48, "");
        return false;
    }
    return true;
}

} // namespace wicker
