#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// The platform's order-maintenance object, as the cancel menus use it.
class QVXOrderMaintenance {
public:
    virtual ~QVXOrderMaintenance() = default;
    /// Asks the platform to cancel the order with this client order id and record id; the
    /// third and fourth arguments are always empty. The answer comes as order events.
    virtual void CancelOrder(const std::string& clOrderId, int32_t orderRecordId,
                             const std::string& third, const std::string& fourth) = 0;
};

} // namespace wicker
