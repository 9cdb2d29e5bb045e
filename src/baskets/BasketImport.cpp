#include "baskets/BasketImport.h"

#include "baskets/OrdinaryError.h"
#include "common/Conversions.h"
#include "storage/JetSql.h"

#include <stdexcept>

namespace wicker {
namespace {

const char* const kImportErrorTitle = "Basket Import Error";

// A line the reader had to cut: no column of a basket line holds that much.
class OverlongLine : public std::runtime_error {
public:
    OverlongLine()
        : std::runtime_error("A field of this line is longer than " +
                             std::to_string(BasketFileReader::kMaxFieldBytes) + " characters.") {}
};

std::string LinesText(uint64_t n) {
    return std::to_string(n) + (n == 1 ? " line" : " lines");
}

} // namespace

BasketFileImport::BasketFileImport(Database& db, int32_t basketNum, std::string basketName,
                                   std::unique_ptr<BasketFileReader> reader,
                                   std::string listedDestination, std::string otcDestination,
                                   const std::vector<std::string>& validDestinations,
                                   std::unique_ptr<Database::Transaction> whole)
    : m_db(db), m_basketNum(basketNum), m_basketName(std::move(basketName)),
      m_reader(std::move(reader)), m_listed(std::move(listedDestination)),
      m_otc(std::move(otcDestination)), m_invalid(validDestinations), m_whole(std::move(whole)) {}

BasketFileImport::~BasketFileImport() {
    if (finished()) {
        try {
            commitWhole(); // a cancel that was never followed by another step
        } catch (const std::exception&) {
            // The transaction's own destructor rolls back: no basket rather than a short one.
        }
    }
}

void BasketFileImport::commitWhole() {
    if (m_whole) {
        m_whole->commit();
        m_whole.reset();
    }
}

void BasketFileImport::importLine(BasketFileLine& line) {
    if (line.overlong) {
        throw OverlongLine();
    }
    BasketFileFields& f = line.fields;
    m_invalid.check(f.destination);
    if (f.destination.empty()) {
        f.destination = DefaultDestinationFor(f.symbol, m_listed, m_otc);
    }
    if (!f.indexShares.empty()) {
        m_indexShares[f.symbol] = CLng(f.indexShares);
    }
    // The quantity goes in as quoted text: the database converts it or refuses the line.
    m_db.ExecuteSql("INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) VALUES(" +
                    std::to_string(m_basketNum) + ",'" + SqlText(f.symbol) + "','" +
                    SqlText(f.quantity) + "','" + SqlText(f.destination) + "')");
}

bool BasketFileImport::step(size_t maxLines) {
    if (finished()) {
        commitWhole();
        return false;
    }
    uint64_t stored = 0;
    std::optional<ImportFailure> failure;
    try {
        Database::Transaction tx(m_db);
        for (size_t i = 0; i < maxLines; ++i) {
            BasketFileLine line;
            try {
                if (!m_reader->next(line)) {
                    m_atEnd = true;
                    break;
                }
                importLine(line);
            } catch (const std::exception& e) {
                failure = ImportFailure{m_linesImported + stored + 1, OrdinaryErrorText(e)};
                break;
            }
            ++stored;
        }
        tx.commit();
    } catch (const std::exception& e) {
        // The step's transaction failed: none of its lines is stored.
        m_atEnd = false;
        m_failure = ImportFailure{m_linesImported + 1, OrdinaryErrorText(e)};
        commitWhole();
        return false;
    }
    m_linesImported += stored;
    m_failure = std::move(failure);
    if (finished()) {
        commitWhole(); // a bad line keeps the lines before it, so the basket is stored
        return false;
    }
    return true;
}

std::unique_ptr<BasketFileImport> StartBasketImport(Database& db, MessageBoxes& boxes,
                                                    const BasketImportRequest& request,
                                                    ImportFocus& focus) {
    focus = ImportFocus::None;
    if (request.basketName.empty()) {
        boxes.show("Please enter a name for this basket.", 0, kImportErrorTitle);
        focus = ImportFocus::BasketName;
        return nullptr;
    }
    if (request.buttonName.empty()) {
        boxes.show("Please enter a button name for this basket.", 0, kImportErrorTitle);
        focus = ImportFocus::ButtonName;
        return nullptr;
    }
    if (request.fileName.empty()) {
        boxes.show("Please select a file to import from.", 0, kImportErrorTitle);
        focus = ImportFocus::FileName;
        return nullptr;
    }
    try {
        const std::vector<std::string> valid = EnabledDestinations(db, true);
        std::unique_ptr<BasketFileReader> reader;
        try {
            reader = std::make_unique<BasketFileReader>(request.fileName);
        } catch (const std::exception&) {
            focus = ImportFocus::FileName;
            throw;
        }
        const std::string name = SqlText(request.basketName);
        if (!db.OpenRecordset("SELECT * FROM tblBaskets WHERE strBasketName = '" + name + "'")
                 .IsEOF()) {
            boxes.show("There is an existing basket with this name.\nPlease choose a different "
                       "basket name.",
                       0, "Error loading basket.");
            focus = ImportFocus::BasketName;
            return nullptr;
        }
        // The row and every line go to disk together, when the import ends.
        auto whole = std::make_unique<Database::Transaction>(db);
        db.ExecuteSql(
            "INSERT INTO tblBaskets(strBasketName, strButtonName, intOnButton, chType) VALUES('" +
            name + "','" + SqlText(request.buttonName) + "',0,'B')");
        auto rs = db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" +
                                   name + "'");
        if (rs.IsEOF()) {
            // No runtime error is pending here: its number and text read 0 and empty.
            whole->commit(); // the basket row stays, as it always did
            boxes.show("Cound not retrieve basket number of imported basket. Import not "
                       "complete.\n0 ",
                       0, "Basket Import Error.");
            return nullptr;
        }
        return std::make_unique<BasketFileImport>(
            db, rs.Field("intBasketNum").toLong(), request.basketName, std::move(reader),
            request.listedDestination, request.otcDestination, valid, std::move(whole));
    } catch (const std::exception& e) {
        ShowOrdinaryError(boxes, e);
        return nullptr;
    }
}

void ReportBasketImport(MessageBoxes& boxes, const BasketFileImport& import) {
    if (const auto& failure = import.failure()) {
        boxes.show("Line " + std::to_string(failure->lineNumber) +
                       " of the file could not be imported.\n" + failure->text + "\n\nBasket \"" +
                       import.basketName() + "\" was created with the " +
                       LinesText(import.linesImported()) + " before it.",
                   48, kImportErrorTitle);
    } else if (import.cancelled()) {
        boxes.show("Import cancelled. Basket \"" + import.basketName() +
                       "\" was created with the first " + LinesText(import.linesImported()) +
                       " of the file.",
                   64, "Basket Import");
    }
    if (!import.invalidDestinations().empty()) {
        boxes.show(InvalidDestinationsText(import.invalidDestinations()), 48,
                   "Invalid Destination");
    }
}

} // namespace wicker
