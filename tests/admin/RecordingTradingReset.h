#pragma once

#include "admin/TradingDataReset.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace wicker::test {

/// Records what the utilities asked of the main screen; can be told to fail.
class RecordingTradingReset : public TradingDataReset {
public:
    void ClearTradingData() override { record("ClearTradingData"); }
    void MarkAllOrdersClosed() override { record("MarkAllOrdersClosed"); }

    std::vector<std::string> calls;
    bool fail = false;

private:
    void record(const char* call) {
        if (fail) {
            throw std::runtime_error("the trading data is busy");
        }
        calls.emplace_back(call);
    }
};

} // namespace wicker::test
