#pragma once

#include "common/MessageBox.h"
#include "trading/basket/StockList.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// One row of the paste table: the texts as they were pasted (the destination may be empty).
struct PasteRow {
    std::string symbol;
    std::string quantity;
    std::string destination;
    bool operator==(const PasteRow&) const = default;
};
using PasteTable = std::vector<PasteRow>;

/// Shown when a paste could not be loaded.
inline constexpr std::string_view PasteFormatMessage =
    "The data you wish to paste is not formatted correctly.";

/// Most lines one paste loads. Every pasted line is quoted, calculated and drawn on the
/// main screen at once; far beyond this the screen stops answering and the memory runs out.
inline constexpr size_t kMaxPasteLines = 10000;

/// Shown when a paste has more lines than kMaxPasteLines; nothing is loaded then.
std::string PasteTooLongMessage();

/// ProcessInputText: parses tab-separated lines (clipboard or dropped text) into the paste
/// table. Refused (nullopt) when the text lacks a carriage return, a line feed or a tab, or
/// when a kept line has no tab. The piece after the last line feed is never kept: text
/// copied from a spreadsheet ends with a line break, and a last line without one is lost.
/// Text that is not so, or that starts with a header row, is read as a spreadsheet file
/// (comma, semicolon or tab, quoted cells, named columns) and taken when every line is good.
/// Stops after kMaxPasteLines + 1 lines, so an oversized paste costs little memory.
std::optional<PasteTable> ProcessInputText(std::string_view text);

/// Clipboard or dropped text with every line feed preceded by a carriage return. Desktops
/// other than Windows end copied lines with a line feed alone; ProcessInputText wants the
/// CR LF of the Windows clipboard, so the screen passes such text through this first.
std::string WithCrLf(std::string_view text);

/// The lines PasteInputText puts into lvStocks, in table order: symbol and quantity
/// trimmed, the destination upper case, "NYSE" for an empty destination ("ARCA" when the
/// symbol is longer than three characters), ticked, not stored.
std::vector<StockLine> PastedLines(const PasteTable& table);

/// PasteInputText: hands the pasted lines to `load`, which replaces the loaded basket by
/// them (unsaved basket, lines, quotes, recalculation, the name "Basket"). When `load`
/// throws, the lines it took stay and PasteFormatMessage is shown. A table longer than
/// kMaxPasteLines is refused with PasteTooLongMessage before anything is loaded. False
/// after an error.
bool PasteInputText(const PasteTable& table,
                    const std::function<void(std::vector<StockLine>)>& load, MessageBoxes& boxes);

} // namespace wicker
