#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wicker {

/// Memo that marks an order as one of a basket send: name-send-/bskt ("Tech10-57-/bskt").
std::string BasketMemo(std::string_view basketName, int16_t basketSeq);

/// The id by which a basket's orders come back: its name without dashes, as the memo's
/// pieces before the send number are joined.
std::string BasketIdOf(std::string_view basketName);

/// Client order id account-yyyymmdd-send-order ("ACCT01-20240315-57-3"); `yyyymmdd` is
/// today's date as FormatYyyymmdd gives it. Orders past the 9,999th of a send carry
/// numbers from 10,000 on.
std::string BasketClOrderID(std::string_view account, std::string_view yyyymmdd, int16_t basketSeq,
                            int32_t orderNumber);
/// The part of BasketClOrderID before the order number ("ACCT01-20240315-57-"), which every
/// order of a send shares.
std::string BasketClOrderIDPrefix(std::string_view account, std::string_view yyyymmdd,
                                  int16_t basketSeq);

/// The basket an order belongs to, read back from its memo.
struct BasketMemoId {
    std::string basketId; ///< the name with its dashes removed
    int16_t basketSeq = 0;
};

/// Recognises a basket order's memo: at least three dash-separated pieces, the last
/// exactly "/bskt". The id is every piece before the send number joined without dashes
/// (Tech-10-57-/bskt gives Tech10 and 57). Not a basket memo: nullopt. A send number
/// that is not a 16-bit number throws RuntimeError (type mismatch or overflow).
std::optional<BasketMemoId> ParseBasketMemo(std::string_view memo);

} // namespace wicker
