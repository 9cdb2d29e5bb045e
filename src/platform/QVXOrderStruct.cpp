#include "platform/QVXOrderStruct.h"

namespace wicker {

const char* QVXOrderStatusText(int32_t orderStatus) {
    switch (orderStatus) {
    case QVXOrderStatus::PendingNew:
        return "Pending";
    case QVXOrderStatus::Open:
        return "Open";
    case QVXOrderStatus::PartiallyFilled:
        return "Partial";
    case QVXOrderStatus::Filled:
        return "Filled";
    case QVXOrderStatus::PendingCancel:
        return "Pending Cancel";
    case QVXOrderStatus::Cancelled:
        return "Cancelled";
    case QVXOrderStatus::Rejected:
        return "Rejected";
    case QVXOrderStatus::DoneForDay:
        return "Done";
    default:
        return "Unknown";
    }
}

} // namespace wicker
