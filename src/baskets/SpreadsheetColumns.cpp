#include "baskets/SpreadsheetColumns.h"

#include "common/Text.h"

#include <cctype>
#include <unordered_map>

namespace wicker {
namespace {

// Lower case letters and digits only: "Index Shares", "index_shares" and "INDEX-SHARES"
// are one name.
std::string Normalized(std::string_view cell) {
    std::string out;
    for (const char c : cell) {
        const auto u = static_cast<unsigned char>(c);
        if (std::isalnum(u) != 0 && u < 0x80) {
            out += static_cast<char>(std::tolower(u));
        }
    }
    return out;
}

const std::unordered_map<std::string, BasketColumn>& KnownNames() {
    static const std::unordered_map<std::string, BasketColumn> names = {
        {"symbol", BasketColumn::Symbol},
        {"sym", BasketColumn::Symbol},
        {"ticker", BasketColumn::Symbol},
        {"tickersymbol", BasketColumn::Symbol},
        {"stock", BasketColumn::Symbol},
        {"stocksymbol", BasketColumn::Symbol},
        {"security", BasketColumn::Symbol},
        {"instrument", BasketColumn::Symbol},
        {"rootsymbol", BasketColumn::Symbol},
        {"quantity", BasketColumn::Quantity},
        {"qty", BasketColumn::Quantity},
        {"shares", BasketColumn::Quantity},
        {"sharequantity", BasketColumn::Quantity},
        {"orderquantity", BasketColumn::Quantity},
        {"orderqty", BasketColumn::Quantity},
        {"totalquantity", BasketColumn::Quantity},
        {"totalqty", BasketColumn::Quantity},
        {"ordersize", BasketColumn::Quantity},
        {"size", BasketColumn::Quantity},
        {"destination", BasketColumn::Destination},
        {"dest", BasketColumn::Destination},
        {"route", BasketColumn::Destination},
        {"routing", BasketColumn::Destination},
        {"exchange", BasketColumn::Destination},
        {"venue", BasketColumn::Destination},
        {"indexshares", BasketColumn::IndexShares},
        {"indexshare", BasketColumn::IndexShares},
        {"indexqty", BasketColumn::IndexShares},
        {"indexquantity", BasketColumn::IndexShares},
        {"side", BasketColumn::Side},
        {"orderside", BasketColumn::Side},
        {"action", BasketColumn::Side},
        {"tradeaction", BasketColumn::Side},
        {"buysell", BasketColumn::Side},
        {"bs", BasketColumn::Side},
        {"transaction", BasketColumn::Side},
        {"transactiontype", BasketColumn::Side},
    };
    return names;
}

} // namespace

std::optional<BasketColumn> RecognizeColumn(std::string_view headerCell) {
    const auto& names = KnownNames();
    const auto it = names.find(Normalized(headerCell));
    if (it == names.end()) {
        return std::nullopt;
    }
    return it->second;
}

std::string_view ColumnText(BasketColumn column) {
    switch (column) {
    case BasketColumn::Symbol:
        return "symbol";
    case BasketColumn::Quantity:
        return "quantity";
    case BasketColumn::Destination:
        return "destination";
    case BasketColumn::IndexShares:
        return "index shares";
    case BasketColumn::Side:
        return "side";
    }
    return "";
}

SheetColumns LayoutFromFirstRecord(const std::vector<std::string>& firstRecord) {
    SheetColumns layout;
    for (size_t i = 0; i < firstRecord.size(); ++i) {
        const auto column = RecognizeColumn(firstRecord[i]);
        if (column == BasketColumn::Symbol || column == BasketColumn::Quantity) {
            layout.header = true;
        }
    }
    if (!layout.header) {
        // No header: the order of a basket file.
        for (size_t i = 0; i < 4; ++i) {
            layout.at[i] = i;
        }
        return layout;
    }
    std::array<std::string, kBasketColumnCount> names;
    for (size_t i = 0; i < firstRecord.size(); ++i) {
        const std::string name = Trim(firstRecord[i]);
        const auto column = RecognizeColumn(name);
        if (!column) {
            if (!name.empty()) {
                layout.ignored.push_back(name);
            }
            continue;
        }
        const auto k = static_cast<size_t>(*column);
        if (layout.at[k] && layout.problem.empty()) {
            layout.problem = "The header row names the " + std::string(ColumnText(*column)) +
                             " twice: \"" + names[k] + "\" and \"" + name + "\".";
        }
        if (!layout.at[k]) {
            layout.at[k] = i;
            names[k] = name;
        }
    }
    for (const BasketColumn needed : {BasketColumn::Symbol, BasketColumn::Quantity}) {
        if (!layout[needed] && layout.problem.empty()) {
            layout.problem = "The header row has no " + std::string(ColumnText(needed)) +
                             " column (for example \"" +
                             (needed == BasketColumn::Symbol ? "Symbol" : "Quantity") + "\").";
        }
    }
    return layout;
}

} // namespace wicker
