#include "baskets/OrdinaryError.h"

#include "common/RuntimeError.h"
#include "storage/Database.h"

#include <cstdint>
#include <cstdio>

namespace wicker {

int ErrorNumber(const std::exception& error) {
    if (const auto* rt = dynamic_cast<const RuntimeError*>(&error)) {
        return rt->number();
    }
    if (const auto* db = dynamic_cast<const DbError*>(&error)) {
        return db->number();
    }
    return 0;
}

std::string OrdinaryErrorText(const std::exception& error) {
    const int number = ErrorNumber(error);
    // Number 0 is no error a trader can look up: such an error says what it is itself.
    if (number == 0) {
        return error.what();
    }
    std::string shown = std::to_string(number);
    if (number < 0) {
        char hex[16];
        std::snprintf(hex, sizeof hex, "%08X", static_cast<uint32_t>(number));
        shown += " (" + std::string(hex) + ")";
    }
    return "Run-time error '" + shown + "':\n\n" + error.what();
}

void ShowOrdinaryError(MessageBoxes& boxes, const std::exception& error) {
    boxes.show(OrdinaryErrorText(error), 16, "");
}

} // namespace wicker
