#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// One record of a delimited text file: its cells as written (quotes removed) and the
/// file line it starts on, so a message can point the trader at it.
struct DelimitedRecord {
    uint64_t line = 0;
    std::vector<std::string> cells;
    bool unterminatedQuote = false; ///< a quoted cell ran to the end of the file
};

/// A spreadsheet's text export, split into records.
struct DelimitedText {
    char delimiter = ',';
    std::string encoding;                 ///< "UTF-8", "UTF-16" or "Windows-1252", for the preview
    std::vector<DelimitedRecord> records; ///< blank records (only empty cells) left out
};

/// The bytes of a file as UTF-8: a UTF-8 byte-order mark is dropped, UTF-16 with its mark
/// (what "Unicode Text" exports write) is converted, and bytes that are not valid UTF-8
/// are read as Windows-1252. `encoding` names what was found.
std::string DecodeSpreadsheetBytes(std::string_view bytes, std::string& encoding);

/// The delimiter of the first non-blank line: whichever of tab, semicolon and comma occurs
/// most often outside quotes (tab wins a tie, then semicolon); comma when there is none.
char DetectDelimiter(std::string_view text);

/// Splits UTF-8 text into records: cells may be quoted with '"', a quoted cell holds
/// delimiters, line breaks and doubled quotes; lines end with LF or CR LF.
std::vector<DelimitedRecord> SplitDelimited(std::string_view text, char delimiter);

/// Decode, detect and split in one go.
DelimitedText ReadDelimitedText(std::string_view bytes);

} // namespace wicker
