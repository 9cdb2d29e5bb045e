#include "baskets/SpreadsheetBasket.h"

#include "baskets/Destinations.h"
#include "common/Text.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <limits>
#include <map>
#include <system_error>
#include <unordered_set>

namespace wicker {
namespace {

constexpr size_t kMaxSymbolChars = 10;      // tblBasketDetails.strSym
constexpr size_t kMaxDestinationChars = 15; // tblBasketDetails.strDest

std::string Quoted(std::string_view s) {
    return "\"" + std::string(s) + "\"";
}

// Blanks a spreadsheet may leave around a cell, the no-break space included.
std::string TrimCell(std::string_view s) {
    std::string out = Trim(s);
    for (const std::string_view nbsp : {std::string_view("\xC2\xA0")}) {
        while (out.starts_with(nbsp)) {
            out.erase(0, nbsp.size());
        }
        while (out.ends_with(nbsp)) {
            out.erase(out.size() - nbsp.size());
        }
    }
    return Trim(out);
}

bool AllDigits(std::string_view s) {
    return !s.empty() &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A count of shares as spreadsheets write it: "1500", "1,500", "1 500", "1500.00".
// Nothing for anything else (signs, fractions, words); the caller says why.
std::optional<int64_t> ParseShares(std::string_view text) {
    std::string s(text);
    if (const size_t dot = s.find('.'); dot != std::string::npos) {
        const std::string fraction = s.substr(dot + 1);
        if (!AllDigits(fraction) || fraction.find_first_not_of('0') != std::string::npos) {
            return std::nullopt;
        }
        s.erase(dot);
    }
    std::string digits;
    size_t group = 0;
    bool grouped = false;
    for (size_t i = 0; i < s.size(); ++i) {
        const char c = s[i];
        if (c >= '0' && c <= '9') {
            digits += c;
            ++group;
            continue;
        }
        const bool nbsp = s.compare(i, 2, "\xC2\xA0") == 0;
        if (c != ',' && c != ' ' && c != '\'' && !nbsp) {
            return std::nullopt;
        }
        // A thousands separator: 1 to 3 digits before the first, exactly 3 between.
        if (group == 0 || group > 3 || (grouped && group != 3)) {
            return std::nullopt;
        }
        grouped = true;
        group = 0;
        i += nbsp ? 1 : 0;
    }
    if (digits.empty() || (grouped && group != 3) || digits.size() > 12) {
        return std::nullopt;
    }
    int64_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

// Why a count of shares was refused, in the trader's words.
std::string SharesProblem(std::string_view what, const std::string& text) {
    if (text.starts_with('-')) {
        return what == "quantity"
                   ? "quantity " + Quoted(text) +
                         " is negative: give the number of shares; the order button chooses "
                         "buy or sell"
                   : std::string(what) + " " + Quoted(text) + " is negative";
    }
    return std::string(what) + " " + Quoted(text) + " is not a whole number of shares";
}

std::optional<std::string> SideName(std::string_view cell) {
    std::string key;
    for (const char c : LCase(cell)) {
        if (c != ' ' && c != '_' && c != '-' && c != '/') {
            key += c;
        }
    }
    static const std::map<std::string, std::string, std::less<>> kSides = {
        {"b", "Buy"},
        {"buy", "Buy"},
        {"buytoopen", "Buy"},
        {"long", "Buy"},
        {"s", "Sell"},
        {"sell", "Sell"},
        {"selltoclose", "Sell"},
        {"ss", "Sell Short"},
        {"short", "Sell Short"},
        {"sellshort", "Sell Short"},
        {"shortsell", "Sell Short"},
        {"sshort", "Sell Short"},
        {"btc", "Buy to Cover"},
        {"cover", "Buy to Cover"},
        {"buytocover", "Buy to Cover"},
        {"buycover", "Buy to Cover"},
    };
    const auto it = kSides.find(key);
    if (it == kSides.end()) {
        return std::nullopt;
    }
    return it->second;
}

bool SymbolCharacterAllowed(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u > ' ' && u != 0x7F && c != ',' && c != '"' && c != '\'' && c != ';';
}

std::string Cell(const DelimitedRecord& record, std::optional<size_t> at) {
    if (!at || *at >= record.cells.size()) {
        return {};
    }
    return TrimCell(record.cells[*at]);
}

void CheckSymbol(SpreadsheetLine& line) {
    if (line.symbol.empty()) {
        line.errors.push_back("no symbol");
    } else if (!std::all_of(line.symbol.begin(), line.symbol.end(), SymbolCharacterAllowed)) {
        line.errors.push_back("symbol " + Quoted(line.symbol) +
                              " holds a blank, comma, quote or control character");
    } else if (CharCount(line.symbol) > kMaxSymbolChars) {
        line.errors.push_back("symbol " + Quoted(line.symbol) + " is longer than " +
                              std::to_string(kMaxSymbolChars) + " characters");
    }
}

void CheckQuantity(SpreadsheetLine& line) {
    if (line.quantityText.empty()) {
        line.errors.push_back("no quantity");
        return;
    }
    const auto shares = ParseShares(line.quantityText);
    if (!shares) {
        line.errors.push_back(SharesProblem("quantity", line.quantityText));
    } else if (*shares == 0) {
        line.errors.push_back("quantity is 0");
    } else if (*shares > std::numeric_limits<int32_t>::max()) {
        line.errors.push_back("quantity " + line.quantityText + " is too large");
    } else {
        line.quantity = static_cast<int32_t>(*shares);
    }
}

void CheckIndexShares(SpreadsheetLine& line, const std::string& text) {
    if (text.empty()) {
        return;
    }
    const auto shares = ParseShares(text);
    if (!shares) {
        line.errors.push_back(SharesProblem("index shares", text));
    } else if (*shares > std::numeric_limits<int32_t>::max()) {
        line.errors.push_back("index shares " + text + " is too large");
    } else {
        line.indexShares = static_cast<int32_t>(*shares);
    }
}

void CheckDestination(SpreadsheetLine& line, const SpreadsheetDefaults& defaults,
                      const std::unordered_set<std::string>& valid) {
    if (line.destination.empty()) {
        line.destination =
            DefaultDestinationFor(line.symbol, defaults.listedDestination, defaults.otcDestination);
        line.defaultDestination = true;
        if (line.destination.empty()) {
            line.errors.push_back("no destination, and no default destination is chosen");
            return;
        }
    }
    if (CharCount(line.destination) > kMaxDestinationChars) {
        line.errors.push_back("destination " + Quoted(line.destination) + " is longer than " +
                              std::to_string(kMaxDestinationChars) + " characters");
    } else if (!valid.contains(line.destination)) {
        line.warnings.push_back("destination " + line.destination +
                                " is not an enabled destination");
    }
}

SpreadsheetLine CheckRecord(const DelimitedRecord& record, const SheetColumns& layout,
                            const SpreadsheetDefaults& defaults,
                            const std::unordered_set<std::string>& valid) {
    SpreadsheetLine line;
    line.line = record.line;
    if (record.unterminatedQuote) {
        // The rest of the file is in that cell: nothing else on the line can be judged.
        line.errors.push_back("a quoted cell is not closed before the end of the file");
        return line;
    }
    line.symbol = UCase(Cell(record, layout[BasketColumn::Symbol]));
    line.quantityText = Cell(record, layout[BasketColumn::Quantity]);
    line.destination = UCase(Cell(record, layout[BasketColumn::Destination]));
    CheckSymbol(line);
    CheckQuantity(line);
    CheckDestination(line, defaults, valid);
    CheckIndexShares(line, Cell(record, layout[BasketColumn::IndexShares]));
    if (layout[BasketColumn::Side]) {
        const std::string side = Cell(record, layout[BasketColumn::Side]);
        if (side.empty()) {
            line.errors.push_back("no side");
        } else if (auto name = SideName(side)) {
            line.side = *name;
        } else {
            line.errors.push_back("side " + Quoted(side) +
                                  " is not Buy, Sell, Sell Short or Buy to Cover");
        }
    }
    return line;
}

// A basket is sent with the side of the order button, so all its lines share one side.
void CheckOneSide(SpreadsheetBasket& basket) {
    const SpreadsheetLine* first = nullptr;
    for (auto& line : basket.lines) {
        if (line.side.empty()) {
            continue;
        }
        if (first == nullptr) {
            first = &line;
            basket.side = line.side;
        } else if (line.side != first->side) {
            line.errors.push_back("side " + line.side + " differs from " + first->side +
                                  " on line " + std::to_string(first->line) +
                                  ": a basket is sent with one side; put " + line.side +
                                  " lines into a basket of their own");
        }
    }
}

// Index shares belong to a symbol: two lines that give different values cannot both hold.
void CheckIndexSharesAgree(SpreadsheetBasket& basket) {
    std::map<std::string, const SpreadsheetLine*> seen;
    for (auto& line : basket.lines) {
        if (!line.indexShares) {
            continue;
        }
        const auto [it, added] = seen.emplace(line.symbol, &line);
        if (!added && it->second->indexShares != line.indexShares) {
            line.warnings.push_back("index shares " + std::to_string(*line.indexShares) +
                                    " replace " + std::to_string(*it->second->indexShares) +
                                    " given for " + line.symbol + " on line " +
                                    std::to_string(it->second->line));
            it->second = &line;
        }
    }
}

std::string DelimiterName(char delimiter) {
    switch (delimiter) {
    case '\t':
        return "Tab-separated";
    case ';':
        return "Semicolon-separated";
    default:
        return "Comma-separated";
    }
}

} // namespace

SpreadsheetBasket ParseSpreadsheetBasket(std::string_view bytes,
                                         const SpreadsheetDefaults& defaults) {
    SpreadsheetBasket basket;
    DelimitedText text = ReadDelimitedText(bytes);
    basket.encoding = text.encoding;
    basket.delimiter = text.delimiter;
    if (text.records.empty()) {
        basket.fileErrors.push_back("The file holds no lines.");
        return basket;
    }
    basket.layout = LayoutFromFirstRecord(text.records.front().cells);
    if (!basket.layout.problem.empty()) {
        basket.fileErrors.push_back(basket.layout.problem);
        return basket;
    }
    const std::unordered_set<std::string> valid(defaults.validDestinations.begin(),
                                                defaults.validDestinations.end());
    const size_t first = basket.layout.header ? 1 : 0;
    basket.lines.reserve(text.records.size() - first);
    for (size_t i = first; i < text.records.size(); ++i) {
        basket.lines.push_back(CheckRecord(text.records[i], basket.layout, defaults, valid));
    }
    if (basket.lines.empty()) {
        basket.fileErrors.push_back("The file holds a header row but no stock lines.");
    }
    CheckOneSide(basket);
    CheckIndexSharesAgree(basket);
    for (const auto& line : basket.lines) {
        basket.errorLines += line.errors.empty() ? 0 : 1;
        basket.warningLines += line.warnings.empty() ? 0 : 1;
    }
    return basket;
}

SpreadsheetBasket LoadSpreadsheetBasket(const std::filesystem::path& path,
                                        const SpreadsheetDefaults& defaults) {
    auto refused = [](std::string text) {
        SpreadsheetBasket basket;
        basket.fileErrors.push_back(std::move(text));
        return basket;
    };
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        return refused("The file " + path.string() + " was not found or is not a file.");
    }
    const auto size = std::filesystem::file_size(path, ec);
    if (ec || size > kMaxSpreadsheetBytes) {
        return refused("The file " + path.string() + " is larger than " +
                       std::to_string(kMaxSpreadsheetBytes / (1024 * 1024)) +
                       " MB; no basket is that large.");
    }
    std::ifstream in(path, std::ios::binary);
    std::string bytes(static_cast<size_t>(size), '\0');
    if (!in || !in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        return refused("The file " + path.string() + " could not be read.");
    }
    return ParseSpreadsheetBasket(bytes, defaults);
}

std::string SpreadsheetProblemsText(const SpreadsheetBasket& basket, size_t maxLines) {
    std::string out;
    for (const auto& e : basket.fileErrors) {
        out += e + "\n";
    }
    size_t shown = 0;
    for (const auto& line : basket.lines) {
        if (line.errors.empty()) {
            continue;
        }
        if (shown == maxLines) {
            out += "... and " + std::to_string(basket.errorLines - shown) + " more lines.\n";
            break;
        }
        out += "Line " + std::to_string(line.line) + ": ";
        for (size_t i = 0; i < line.errors.size(); ++i) {
            out += (i ? "; " : "") + line.errors[i];
        }
        out += ".\n";
        ++shown;
    }
    return out;
}

std::string SpreadsheetSummary(const SpreadsheetBasket& basket) {
    if (!basket.fileErrors.empty()) {
        return basket.fileErrors.front();
    }
    std::string out = DelimiterName(basket.delimiter) + ", " + basket.encoding + ", ";
    out += basket.layout.header ? "header row"
                                : "no header row (symbol, quantity, destination, "
                                  "index shares)";
    if (!basket.layout.ignored.empty()) {
        out += "; not read: ";
        for (size_t i = 0; i < basket.layout.ignored.size(); ++i) {
            out += (i ? ", " : "") + basket.layout.ignored[i];
        }
    }
    out += ". " + std::to_string(basket.lines.size()) + " lines";
    if (basket.errorLines > 0) {
        out += ", " + std::to_string(basket.errorLines) + " with errors";
    }
    if (basket.warningLines > 0) {
        out += ", " + std::to_string(basket.warningLines) + " with warnings";
    }
    out += ".";
    if (!basket.side.empty()) {
        out += " Side " + basket.side + ": it is not stored; send with the " + basket.side +
               " order button.";
    }
    return out;
}

} // namespace wicker
