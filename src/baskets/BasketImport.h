#pragma once

#include "baskets/BasketFileReader.h"
#include "baskets/Destinations.h"
#include "common/MessageBox.h"
#include "storage/Database.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// What the trader fills in on the import dialog.
struct BasketImportRequest {
    std::string basketName;
    std::string buttonName;
    std::string fileName;
    std::string listedDestination; ///< default for symbols of up to three characters
    std::string otcDestination;    ///< default for longer symbols
};

/// The box that gets the focus after a refused request.
enum class ImportFocus { None, BasketName, ButtonName, FileName };

/// Why the line-by-line import stopped early.
struct ImportFailure {
    uint64_t lineNumber = 0; ///< first line that is not stored
    std::string text;        ///< what went wrong, for the user
};

/// Reads the lines of a basket file into an existing basket, a few at a time so a screen
/// can show progress and stay responsive. The first line that cannot be stored stops the
/// import; the lines before it stay stored.
/// Given `whole`, the transaction that wrote the basket row, the basket and its lines
/// become durable together only when the import ends (at the end of the file, on a bad
/// line, on cancel): a program that dies half-way leaves no basket at all, never a short
/// one that looks whole. Destroyed before it ended, it stores nothing.
class BasketFileImport {
public:
    BasketFileImport(Database& db, int32_t basketNum, std::string basketName,
                     std::unique_ptr<BasketFileReader> reader, std::string listedDestination,
                     std::string otcDestination, const std::vector<std::string>& validDestinations,
                     std::unique_ptr<Database::Transaction> whole = nullptr);
    ~BasketFileImport();
    BasketFileImport(const BasketFileImport&) = delete;
    BasketFileImport& operator=(const BasketFileImport&) = delete;

    /// Imports up to `maxLines` more lines; true while more work remains.
    bool step(size_t maxLines);
    /// Stops before the next line; the lines imported so far stay stored.
    void cancel() { m_cancelled = true; }

    bool finished() const { return m_atEnd || m_failure || m_cancelled; }
    /// True when cancel() stopped the import before the end of the file.
    bool cancelled() const { return m_cancelled && !m_atEnd && !m_failure; }
    const std::optional<ImportFailure>& failure() const { return m_failure; }

    int32_t basketNum() const { return m_basketNum; }
    const std::string& basketName() const { return m_basketName; }
    uint64_t linesImported() const { return m_linesImported; }
    uint64_t bytesRead() const { return m_reader->bytesRead(); }
    uint64_t totalBytes() const { return m_reader->totalBytes(); }
    /// Destinations named in the file that are not enabled, once each, in file order.
    const std::vector<std::string>& invalidDestinations() const { return m_invalid.noted(); }
    /// Index shares given in the file, by symbol; a later line replaces an earlier one.
    const std::map<std::string, int32_t>& indexShares() const { return m_indexShares; }

private:
    void importLine(BasketFileLine& line);
    void commitWhole();

    Database& m_db;
    int32_t m_basketNum;
    std::string m_basketName;
    std::unique_ptr<BasketFileReader> m_reader;
    std::string m_listed;
    std::string m_otc;
    InvalidDestinations m_invalid;
    std::map<std::string, int32_t> m_indexShares;
    std::optional<ImportFailure> m_failure;
    uint64_t m_linesImported = 0;
    bool m_atEnd = false;
    bool m_cancelled = false;
    std::unique_ptr<Database::Transaction> m_whole;
};

/// Steps before the lines: checks the three boxes, opens the file, refuses a name that
/// exists, stores the basket row (never on a button) and reads its number back. Every
/// refusal is shown in a message box and named in `focus`; nothing is then returned.
/// The file is opened before the basket row is written, so an unreadable file leaves
/// no empty basket behind.
std::unique_ptr<BasketFileImport> StartBasketImport(Database& db, MessageBoxes& boxes,
                                                    const BasketImportRequest& request,
                                                    ImportFocus& focus);

/// Messages after the import: a stop on a bad line or a cancel, then the destinations
/// that are not enabled ("Invalid Destination", one per line).
void ReportBasketImport(MessageBoxes& boxes, const BasketFileImport& import);

} // namespace wicker
