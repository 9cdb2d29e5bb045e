#include "trading/basket/StockList.h"

#include "common/RuntimeError.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace wicker {
namespace {

void CheckColumn(int column) {
    if (column < 0 || column >= StockColumnCount) {
        throw RuntimeError(err::SubscriptOutOfRange, err::SubscriptText);
    }
}

} // namespace

const std::string& StockList::Cell(int row, int column) const {
    CheckColumn(column);
    return Line(row).cells[static_cast<size_t>(column)];
}

void StockList::SetCell(int row, int column, std::string text) {
    CheckColumn(column);
    std::string& cell = m_lines.at(static_cast<size_t>(row)).cells[static_cast<size_t>(column)];
    ++m_cellWrites;
    if (cell == text) {
        return;
    }
    cell = std::move(text);
    MarkDirty(row, 1u << column);
}

void StockList::SetChecked(int row, bool checked) {
    StockLine& line = m_lines.at(static_cast<size_t>(row));
    if (line.checked != checked) {
        line.checked = checked;
        MarkDirty(row, CheckBit);
    }
}

void StockList::SetAllChecked(bool checked) {
    for (int row = 0; row < Count(); ++row) {
        SetChecked(row, checked);
    }
}

void StockList::Assign(std::vector<StockLine> lines) {
    if (m_observer != nullptr) {
        m_observer->StockListAboutToBeReset();
    }
    DropChanges();
    m_lines = std::move(lines);
    m_dirty.assign(m_lines.size(), 0);
    if (m_observer != nullptr) {
        m_observer->StockListReset();
    }
}

int StockList::AddLine(StockLine line) {
    FlushChanges();
    const int row = Count();
    if (m_observer != nullptr) {
        m_observer->StockLinesAboutToBeInserted(row, row);
    }
    m_lines.push_back(std::move(line));
    m_dirty.push_back(0);
    if (m_observer != nullptr) {
        m_observer->StockLinesInserted();
    }
    return row;
}

void StockList::RemoveLines(int first, int last) {
    if (first < 0 || last < first || last >= Count()) {
        throw RuntimeError(err::SubscriptOutOfRange, err::SubscriptText);
    }
    // Pending changes name rows by their old numbers: deliver them first.
    FlushChanges();
    if (m_observer != nullptr) {
        m_observer->StockLinesAboutToBeRemoved(first, last);
    }
    m_lines.erase(m_lines.begin() + first, m_lines.begin() + last + 1);
    m_dirty.erase(m_dirty.begin() + first, m_dirty.begin() + last + 1);
    if (m_observer != nullptr) {
        m_observer->StockLinesRemoved();
    }
}

std::vector<ExecutionLine> StockList::ExecutionLines() const {
    std::vector<ExecutionLine> out;
    out.reserve(m_lines.size());
    for (const StockLine& line : m_lines) {
        ExecutionLine e;
        e.checked = line.checked;
        e.symbol = line.cells[stkSymbol];
        e.bid = line.cells[stkBid];
        e.ask = line.cells[stkAsk];
        e.last = line.cells[stkLast];
        e.quantity = line.cells[stkOrderQty];
        e.destination = line.cells[stkDest];
        e.modifier = line.cells[stkMod];
        e.tif = line.cells[stkTif];
        e.price = line.cells[stkPrice];
        out.push_back(std::move(e));
    }
    return out;
}

SendLines StockList::LinesToSend(const std::function<ExecutionQuoteValues(int row)>& valuesOf,
                                 SendLines room) const {
    SendLines out = std::move(room);
    out.clear();
    // Symbols and quantities mostly; the other texts repeat and are kept once.
    out.reserve(m_lines.size(), m_lines.size() * 12);
    for (size_t row = 0; row < m_lines.size(); ++row) {
        const StockLine& line = m_lines[row];
        if (!line.checked) {
            out.add(false, {}, {});
            continue;
        }
        const auto& c = line.cells;
        out.add(true, valuesOf(static_cast<int>(row)),
                {c[stkSymbol], c[stkBid], c[stkAsk], c[stkLast], c[stkOrderQty], c[stkDest],
                 c[stkMod], c[stkTif], c[stkPrice]});
    }
    return out;
}

void StockList::MarkDirty(int row, uint32_t bits) {
    uint32_t& mask = m_dirty[static_cast<size_t>(row)];
    if (mask == 0) {
        m_dirtyRows.push_back(row);
    }
    mask |= bits;
}

void StockList::DropChanges() {
    for (int row : m_dirtyRows) {
        if (static_cast<size_t>(row) < m_dirty.size()) {
            m_dirty[static_cast<size_t>(row)] = 0;
        }
    }
    m_dirtyRows.clear();
}

std::vector<StockCellRange> StockList::PendingChanges() const {
    std::vector<int> rows = m_dirtyRows;
    std::sort(rows.begin(), rows.end());
    std::vector<StockCellRange> ranges;
    uint32_t lastMask = 0;
    for (int row : rows) {
        const uint32_t mask = m_dirty[static_cast<size_t>(row)];
        if (!ranges.empty() && ranges.back().lastRow == row - 1 && mask == lastMask) {
            ranges.back().lastRow = row;
            continue;
        }
        const uint32_t columns = (mask & (CheckBit - 1)) | ((mask & CheckBit) ? 1u : 0u);
        StockCellRange r;
        r.firstRow = row;
        r.lastRow = row;
        r.firstColumn = std::countr_zero(columns);
        r.lastColumn = 31 - std::countl_zero(columns);
        r.checkChanged = (mask & CheckBit) != 0;
        ranges.push_back(r);
        lastMask = mask;
    }
    return ranges;
}

void StockList::FlushChanges() {
    if (m_dirtyRows.empty()) {
        return;
    }
    const std::vector<StockCellRange> ranges = PendingChanges();
    DropChanges();
    if (m_observer != nullptr) {
        m_observer->StockCellsChanged(ranges);
    }
}

} // namespace wicker
