#include "platform/PreTradeLimits.h"

#include "common/Conversions.h"
#include "common/Text.h"

#include <cmath>
#include <exception>

namespace wicker {

int32_t CheckPreTradeLimits(const PreTradeLimits& limits, std::string_view destination,
                            int32_t quantity, double price) {
    if (!limits.enabledDestinations.empty() &&
        limits.enabledDestinations.count(UCase(Trim(destination))) == 0) {
        return -7;
    }
    if (limits.maxOrderNotional > 0 &&
        (price <= 0 || static_cast<double>(quantity) * price > limits.maxOrderNotional)) {
        return -8;
    }
    return 0;
}

Result<PreTradeLimits>
ReadPreTradeLimits(const std::function<std::optional<std::string>(std::string_view)>& key) {
    PreTradeLimits limits;
    if (const auto list = key("EnabledDestinations")) {
        for (const std::string& item : Split(*list, ",")) {
            if (std::string d = UCase(Trim(item)); !d.empty()) {
                limits.enabledDestinations.insert(std::move(d));
            }
        }
    }
    if (const auto text = key("MaxOrderNotional"); text && !Trim(*text).empty()) {
        const std::string t = Trim(*text);
        double amount = -1;
        try {
            amount = IsNumeric(t) ? CDbl(t) : -1;
        } catch (const std::exception&) { // overflow: refused below like any bad amount
        }
        if (!std::isfinite(amount) || amount < 0) {
            return Error{"The setting MaxOrderNotional in section Platform of basket.ini must "
                         "be a dollar amount of 0 or more (0 = no limit), not \"" +
                         t + "\"."};
        }
        limits.maxOrderNotional = amount;
    }
    return limits;
}

} // namespace wicker
