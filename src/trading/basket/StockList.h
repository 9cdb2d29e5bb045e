#pragma once

#include "trading/orders/BasketExecution.h"
#include "trading/orders/SendLines.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace wicker {

/// Number of text cells of an lvStocks line: the item text and 19 sub-items.
inline constexpr int StockColumnCount = 20;

/// Sub-item positions of an lvStocks line (0 is the item's own text).
enum StockColumn : int {
    stkSymbol = 0,
    stkBid = 1,
    stkAsk = 2,
    stkLast = 3,
    stkBasketQty = 4, ///< quantity stored in the basket
    stkOrderQty = 5,  ///< quantity to send, computed by CalcBasket
    stkDest = 6,
    stkMod = 7, ///< price modifier copied from txtMod
    stkTif = 8, ///< time in force copied from cbTif
    stkVolume = 9,
    stkChange = 10,
    stkPctChange = 11,
    stkOpen = 12,
    stkHigh = 13,
    stkLow = 14,
    stkOpenChg = 15,
    stkPctOpenChg = 16,
    stkClose = 17,
    stkVwap = 18,
    stkPrice = 19, ///< the line's own price (imported or pasted)
};

/// Column captions of lvStocks, by StockColumn.
inline constexpr std::array<const char*, StockColumnCount> StockListCaptions{
    "Symbol", "Bid",     "Ask",       "Last",   "Bskt Qty", "Tot. Qty", "Dest.",
    "Mod",    "TIF",     "Volume",    "Change", "% Change", "Open",     "High",
    "Low",    "OpenChg", "% OpenChg", "Close",  "VWAP",     "Price"};

/// One line of lvStocks.
struct StockLine {
    std::array<std::string, StockColumnCount> cells;
    bool checked = true;
    int32_t recordNum = -1; ///< intRecordNum of the stored line; -1 for a line not stored
};

/// Changed cells of a run of lines, for a model's dataChanged: rows firstRow..lastRow,
/// columns firstColumn..lastColumn. `checkChanged` says the check box of column 0 changed.
struct StockCellRange {
    int firstRow = 0;
    int lastRow = 0;
    int firstColumn = 0;
    int lastColumn = 0;
    bool checkChanged = false;
    bool operator==(const StockCellRange&) const = default;
};

/// Hears of every change of the line store. Structural changes come in pairs around the
/// change (as a Qt model needs them); cell changes are gathered and delivered by
/// StockList::FlushChanges, at most one range per run of lines with the same columns.
class StockListObserver {
public:
    virtual ~StockListObserver() = default;
    virtual void StockListAboutToBeReset() = 0;
    virtual void StockListReset() = 0;
    virtual void StockLinesAboutToBeInserted(int first, int last) = 0;
    virtual void StockLinesInserted() = 0;
    virtual void StockLinesAboutToBeRemoved(int first, int last) = 0;
    virtual void StockLinesRemoved() = 0;
    virtual void StockCellsChanged(std::span<const StockCellRange> ranges) = 0;
};

/// The lines of the loaded basket (lvStocks): text cells, check boxes, record numbers.
/// Rows count from 0. Cell writes that change a text are remembered per line and column
/// until FlushChanges, so a burst of writes costs one notification per changed run.
class StockList {
public:
    int Count() const { return static_cast<int>(m_lines.size()); }
    bool Empty() const { return m_lines.empty(); }
    const StockLine& Line(int row) const { return m_lines.at(static_cast<size_t>(row)); }
    const std::vector<StockLine>& Lines() const { return m_lines; }
    const std::string& Cell(int row, int column) const;
    bool Checked(int row) const { return Line(row).checked; }
    int32_t RecordNum(int row) const { return Line(row).recordNum; }

    /// Writes one cell; a text equal to the present one is not a change.
    void SetCell(int row, int column, std::string text);
    void SetChecked(int row, bool checked);
    /// cmdSA / cmdCA: every line checked, or none.
    void SetAllChecked(bool checked);

    /// Replaces every line (an empty vector clears the list).
    void Assign(std::vector<StockLine> lines);
    void Clear() { Assign({}); }
    /// Appends a line; returns its row.
    int AddLine(StockLine line);
    /// Removes lines first..last.
    void RemoveLines(int first, int last);

    /// What a send reads of each line.
    std::vector<ExecutionLine> ExecutionLines() const;
    /// The same as a send needs it, made while the trader waits: `valuesOf(row)` gives the
    /// quote's own values of a line (NaN where none), and only what the send reads is copied:
    /// no text of an unchecked line, no quote cell whose value is known. The lines are made in
    /// the room of `room` (an earlier send's), so that no fresh memory is touched.
    SendLines LinesToSend(const std::function<ExecutionQuoteValues(int row)>& valuesOf,
                          SendLines room = {}) const;

    void setObserver(StockListObserver* observer) { m_observer = observer; }
    /// Delivers the cell changes gathered since the last flush, in row order.
    void FlushChanges();
    /// Cell changes not yet flushed.
    std::vector<StockCellRange> PendingChanges() const;
    /// Every SetCell call so far (changing or not): what the display work cost.
    uint64_t CellWrites() const { return m_cellWrites; }

private:
    static constexpr uint32_t CheckBit = 1u << StockColumnCount;
    void MarkDirty(int row, uint32_t bits);
    void DropChanges();

    std::vector<StockLine> m_lines;
    std::vector<uint32_t> m_dirty; ///< per line: changed columns, and CheckBit
    std::vector<int> m_dirtyRows;  ///< lines with a non-zero m_dirty, unsorted
    StockListObserver* m_observer = nullptr;
    uint64_t m_cellWrites = 0;
};

} // namespace wicker
