#pragma once

// Order-update and reject records as the platform hands them to the order tracker, for the
// tests that fill a tracker with a few basket orders.

#include "platform/QVXOrderStruct.h"

#include <cstdint>
#include <string>

namespace wicker::test {

/// A buy of 100 IBM under `memo` with `leaves` still open and the rest filled.
inline QVXOrderStruct TrackedOrder(int32_t id, const std::string& memo,
                                   const std::string& clOrderId, int32_t leaves) {
    QVXOrderStruct r;
    r.OrderRecordId = id;
    r.Memo = memo;
    r.ClOrderID = clOrderId;
    r.Side = "B";
    r.Quantity = 100;
    r.LvsQuantity = leaves;
    r.CumExecQuantity = 100 - leaves;
    r.Symbol = "IBM";
    r.Instrument = "IBM";
    return r;
}

} // namespace wicker::test
