#include "trading/orders/BasketOrderIds.h"

#include "common/Conversions.h"
#include "common/Text.h"

namespace wicker {

std::string BasketMemo(std::string_view basketName, int16_t basketSeq) {
    std::string memo(basketName);
    memo += '-';
    memo += std::to_string(basketSeq);
    memo += "-/bskt";
    return memo;
}

std::string BasketIdOf(std::string_view basketName) {
    std::string id;
    id.reserve(basketName.size());
    for (const char c : basketName) {
        if (c != '-') {
            id += c;
        }
    }
    return id;
}

std::string BasketClOrderIDPrefix(std::string_view account, std::string_view yyyymmdd,
                                  int16_t basketSeq) {
    std::string id(account);
    id += '-';
    id += yyyymmdd;
    id += '-';
    id += std::to_string(basketSeq);
    id += '-';
    return id;
}

std::string BasketClOrderID(std::string_view account, std::string_view yyyymmdd, int16_t basketSeq,
                            int32_t orderNumber) {
    return BasketClOrderIDPrefix(account, yyyymmdd, basketSeq) + std::to_string(orderNumber);
}

std::optional<BasketMemoId> ParseBasketMemo(std::string_view memo) {
    const std::vector<std::string> pieces = Split(memo, "-");
    if (pieces.size() < 3 || pieces.back() != "/bskt") {
        return std::nullopt;
    }
    BasketMemoId id;
    id.basketSeq = CInt(pieces[pieces.size() - 2]);
    for (size_t i = 0; i + 2 < pieces.size(); ++i) {
        id.basketId += pieces[i];
    }
    return id;
}

} // namespace wicker
