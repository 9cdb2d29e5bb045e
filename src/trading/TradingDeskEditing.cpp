// The main screen's own basket editing: paste, new basket, line and basket removal,
// save-as, and the add-stock and edit-item dialogs' changes to the loaded basket.

#include "baskets/MainLineEdits.h"
#include "baskets/OrdinaryError.h"
#include "common/Text.h"
#include "trading/TradingDesk.h"
#include "trading/basket/BasketCalculation.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace wicker {
namespace {

constexpr const char* kUnsavedName = "Basket";

} // namespace

std::optional<PasteTable> TradingDesk::ParsePasteText(std::string_view text) {
    return ProcessInputText(WithCrLf(text));
}

bool TradingDesk::PasteLines(const PasteTable& table) {
    const bool loaded = PasteInputText(
        table, [this](std::vector<StockLine> lines) { LoadPastedLines(std::move(lines)); },
        m_boxes);
    m_stocks.FlushChanges();
    Changed(ScreenPart::BasketName | ScreenPart::StatusBar);
    return loaded;
}

void TradingDesk::LoadPastedLines(std::vector<StockLine> lines) {
    // The name goes first: should the calculation fail, the pasted lines must not be sent
    // under the name of the basket they replaced.
    m_currentBasketNum = -1;
    m_currentBasketName = kUnsavedName;
    m_stocks.Assign(std::move(lines));
    m_quotes.SetLines(m_stocks);
    m_registrations.SetBasketSymbols(BasketSymbols());
    EnableButtons(false);
    // Every line gets the screen's modifier and TIF first: a quantity that is no number
    // throws in the calculation (the paste reports it), and the other lines must still
    // be whole.
    SetMod(m_stocks, m_modText);
    SetTif(m_stocks, m_tifText);
    CalcBasket(m_stocks, {m_percentText, m_deltaText}, m_settings.shareRounding, m_lineNotional);
    UpdateNotional();
}

void TradingDesk::NewBasket() {
    m_currentBasketNum = -1;
    ClearBasket();
    RunGuarded([&] {
        EnableButtons(false);
        Recalculate();
    });
    m_currentBasketName = kUnsavedName;
    Changed(ScreenPart::BasketName | ScreenPart::StatusBar);
}

void TradingDesk::RemoveSelectedLine(int row) {
    if (m_stocks.Empty() || row < 0 || row >= m_stocks.Count()) {
        return;
    }
    RunGuarded([&] {
        if (m_currentBasketNum != -1) {
            // Deleted first: a refused statement leaves the line where it is.
            db().ExecuteSql("DELETE FROM tblBasketDetails WHERE intRecordNum = " +
                            std::to_string(m_stocks.RecordNum(row)));
        }
        m_stocks.RemoveLines(row, row);
        RequoteAndCalculate();
    });
}

void TradingDesk::RemoveAllLines() {
    if (m_stocks.Empty()) {
        return;
    }
    RunGuarded([&] {
        m_stocks.Clear();
        RequoteAndCalculate();
        if (m_currentBasketNum != -1) {
            db().ExecuteSql("DELETE FROM tblBasketDetails WHERE intBasketNum = " +
                            std::to_string(m_currentBasketNum));
        }
    });
}

bool TradingDesk::RemoveBasket(const std::string& basketName) {
    std::optional<int32_t> num;
    RunGuarded([&] {
        num = ReadBasketNum(db(), basketName);
        if (!num) {
            return;
        }
        const std::string number = std::to_string(*num);
        // Both or neither: a basket row without its lines (or lines without their basket)
        // would be a half-deleted basket.
        Database::Transaction tx(db());
        db().ExecuteSql("DELETE FROM tblBasketDetails WHERE intBasketNum = " + number);
        db().ExecuteSql("DELETE FROM tblBaskets WHERE intBasketNum = " + number);
        tx.commit();
    });
    if (!num) {
        return false;
    }
    LoadBasketList();
    LoadButtonValues();
    if (*num == m_currentBasketNum) {
        NewBasket();
    }
    return true;
}

std::vector<BasketLine> TradingDesk::LinesToSave() const {
    std::vector<BasketLine> lines;
    lines.reserve(static_cast<size_t>(m_stocks.Count()));
    for (const StockLine& line : m_stocks.Lines()) {
        lines.push_back(
            BasketLine{line.cells[stkSymbol], line.cells[stkBasketQty], line.cells[stkDest]});
    }
    return lines;
}

void TradingDesk::BasketSavedAs(int32_t basketNum) {
    RunGuarded([&] {
        m_currentBasketNum = basketNum;
        Recordset rs =
            db().OpenRecordset("SELECT strBasketName FROM tblBaskets WHERE intBasketNum = " +
                               std::to_string(basketNum));
        if (!rs.IsEOF()) {
            // Reloading by name after an edit in the setup screen must find this basket.
            m_currentBasketName = rs.Field("strBasketName").text();
        }
        // The rows were written in line order: give each line its record number, so that
        // removing or editing it reaches its row.
        std::vector<StockLine> stored = ReadBasketLines(db(), basketNum);
        std::sort(stored.begin(), stored.end(),
                  [](const StockLine& a, const StockLine& b) { return a.recordNum < b.recordNum; });
        if (static_cast<int>(stored.size()) == m_stocks.Count()) {
            std::vector<StockLine> lines = m_stocks.Lines();
            for (size_t i = 0; i < lines.size(); ++i) {
                lines[i].recordNum = stored[i].recordNum;
            }
            m_stocks.Assign(std::move(lines));
        }
    });
    LoadBasketList();
    LoadButtonValues();
    Changed(ScreenPart::BasketName);
}

bool TradingDesk::CheckMainLine(MainLineEntry& entry) {
    if (entry.symbol.empty()) {
        m_boxes.show("Please enter symbol.", 48, "Symbol");
        return false;
    }
    if (entry.quantity.empty()) {
        entry.quantity = "0";
    }
    if (entry.modifier.empty()) {
        entry.modifier = "0";
    }
    entry.destination = UCase(entry.destination);
    return true;
}

bool TradingDesk::AddMainLine(MainLineEntry& entry) {
    if (!CheckMainLine(entry)) {
        return false;
    }
    bool added = false;
    RunGuarded([&] {
        StockLine line;
        if (m_currentBasketNum != -1) {
            db().ExecuteSql(AddMainLineSql(m_currentBasketNum, entry.symbol, entry.quantity,
                                           entry.destination));
            line.recordNum = db().OpenRecordset("SELECT MAX(intRecordNum) AS n FROM "
                                                "tblBasketDetails WHERE intBasketNum = " +
                                                std::to_string(m_currentBasketNum))
                                 .Field("n")
                                 .toLong();
        }
        line.cells[stkSymbol] = entry.symbol;
        line.cells[stkBasketQty] = entry.quantity;
        line.cells[stkDest] = entry.destination;
        line.cells[stkMod] = "0";
        line.cells[stkTif] = "DAY";
        line.checked = true;
        m_stocks.AddLine(std::move(line));
        added = true;
        RequoteAndCalculate();
    });
    return added;
}

MainLineEntry TradingDesk::LineEntry(int row) const {
    const StockLine& line = m_stocks.Line(row);
    return MainLineEntry{line.cells[stkSymbol], line.cells[stkBasketQty], line.cells[stkDest],
                         line.cells[stkMod], line.cells[stkTif]};
}

bool TradingDesk::EditMainLine(int row, MainLineEntry& entry) {
    if (row < 0 || row >= m_stocks.Count() || !CheckMainLine(entry)) {
        return false;
    }
    bool changed = false;
    RunGuarded([&] {
        const MainLineEntry old = LineEntry(row);
        // An unsaved basket has no rows yet: its lines are written when it is saved.
        if (m_currentBasketNum != -1) {
            MainLineEdit edit;
            edit.basketNum = m_currentBasketNum;
            edit.recordNum = m_stocks.RecordNum(row);
            edit.oldSymbol = old.symbol;
            edit.oldQuantity = old.quantity;
            edit.oldDestination = old.destination;
            edit.symbol = entry.symbol;
            edit.quantity = entry.quantity;
            edit.destination = entry.destination;
            db().ExecuteSql(EditItemSql(edit));
        }
        m_stocks.SetCell(row, stkSymbol, entry.symbol);
        m_stocks.SetCell(row, stkBasketQty, entry.quantity);
        m_stocks.SetCell(row, stkDest, entry.destination);
        m_stocks.SetCell(row, stkMod, entry.modifier);
        m_stocks.SetCell(row, stkTif, entry.tif);
        changed = true;
        RequoteAndCalculate();
    });
    return changed;
}

void TradingDesk::RequoteAndCalculate() {
    // Quotes follow the lines again (a changed symbol, rows that moved up); the lines' own
    // modifier and TIF stay as they are.
    m_quotes.SetLines(m_stocks);
    m_registrations.SetBasketSymbols(BasketSymbols());
    // A line that never got them (a paste refused part-way) takes the screen's.
    for (int row = 0; row < m_stocks.Count(); ++row) {
        if (m_stocks.Cell(row, stkMod).empty()) {
            m_stocks.SetCell(row, stkMod, m_modText);
        }
        if (m_stocks.Cell(row, stkTif).empty()) {
            m_stocks.SetCell(row, stkTif, m_tifText.empty() ? "DAY" : m_tifText);
        }
    }
    RunCalcBasket();
}

// Trading data ------------------------------------------------------------------------------

void TradingDesk::ClearTradingData() {
    m_tracker.Clear();
    Changed(ScreenPart::BasketTotals);
}

void TradingDesk::RefreshBasketTotals() {
    m_tracker.FillOrderList();
    Changed(ScreenPart::BasketTotals);
}

} // namespace wicker
