#pragma once

#include "admin/TradingDataReset.h"

namespace wicker {

class TradingDesk;

/// The main screen's answer to the utilities screen: its in-memory trading data cleared
/// or closed, and lvBaskets shown anew at once.
class MainTradingDataReset final : public TradingDataReset {
public:
    explicit MainTradingDataReset(TradingDesk& desk) : m_desk(desk) {}

    void ClearTradingData() override;
    void MarkAllOrdersClosed() override;

private:
    TradingDesk& m_desk;
};

} // namespace wicker
