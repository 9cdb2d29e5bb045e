#pragma once

#include "baskets/DelimitedText.h"
#include "baskets/SpreadsheetColumns.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// What validation needs besides the file: the import defaults and the enabled destinations.
struct SpreadsheetDefaults {
    std::string listedDestination; ///< for symbols of up to three characters; may be empty
    std::string otcDestination;    ///< for longer symbols; may be empty
    std::vector<std::string> validDestinations;
};

/// One data record of the file, checked.
struct SpreadsheetLine {
    uint64_t line = 0;    ///< file line the record starts on
    std::string symbol;   ///< trimmed, upper case
    int32_t quantity = 0; ///< valid only when `errors` is empty
    std::string quantityText;
    std::string destination; ///< upper case; the default when the file gives none
    bool defaultDestination = false;
    std::optional<int32_t> indexShares;
    std::string side;                  ///< "Buy", "Sell", "Sell Short", "Buy to Cover" or empty
    std::vector<std::string> errors;   ///< the line cannot be stored
    std::vector<std::string> warnings; ///< stored all the same
};

/// A spreadsheet file read as a basket, every problem found, nothing stored.
struct SpreadsheetBasket {
    std::string encoding;
    char delimiter = ',';
    SheetColumns layout;
    std::vector<std::string> fileErrors; ///< problems of the file as a whole
    std::vector<SpreadsheetLine> lines;
    std::string side; ///< the side every line names, when the file has a side column
    size_t errorLines = 0;
    size_t warningLines = 0;

    /// True when the whole basket can be stored.
    bool storable() const { return fileErrors.empty() && errorLines == 0 && !lines.empty(); }
};

/// Largest file read: far beyond any basket, small enough to hold in memory.
inline constexpr uintmax_t kMaxSpreadsheetBytes = 64ull * 1024 * 1024;

/// Reads and checks a spreadsheet export given as bytes.
SpreadsheetBasket ParseSpreadsheetBasket(std::string_view bytes,
                                         const SpreadsheetDefaults& defaults);

/// Reads and checks a file; a file that cannot be read gives a file error, never a throw.
SpreadsheetBasket LoadSpreadsheetBasket(const std::filesystem::path& path,
                                        const SpreadsheetDefaults& defaults);

/// The problems for a message box: file errors, then "Line N: ..." for each line error,
/// at most `maxLines` of them and a count of the rest.
std::string SpreadsheetProblemsText(const SpreadsheetBasket& basket, size_t maxLines);

/// "Comma-separated, UTF-8, header: Symbol, Qty...; 120 lines, 2 with problems": the
/// preview's one-line summary.
std::string SpreadsheetSummary(const SpreadsheetBasket& basket);

} // namespace wicker
