#include "common/Clock.h"

#include <ctime>

namespace wicker {

LocalDateTime Clock::localNow() const {
    return ToLocal(now());
}

LocalDateTime ToLocal(Clock::TimePoint t) {
    const std::time_t secs = std::chrono::system_clock::to_time_t(t);
    std::tm tm{};
    localtime_r(&secs, &tm);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(t.time_since_epoch()) %
                    std::chrono::seconds(1);
    LocalDateTime out;
    out.year = tm.tm_year + 1900;
    out.month = tm.tm_mon + 1;
    out.day = tm.tm_mday;
    out.hour = tm.tm_hour;
    out.minute = tm.tm_min;
    out.second = tm.tm_sec;
    out.millisecond = static_cast<int>(ms.count() < 0 ? ms.count() + 1000 : ms.count());
    return out;
}

Clock::TimePoint FromLocal(const LocalDateTime& t) {
    std::tm tm{};
    tm.tm_year = t.year - 1900;
    tm.tm_mon = t.month - 1;
    tm.tm_mday = t.day;
    tm.tm_hour = t.hour;
    tm.tm_min = t.minute;
    tm.tm_sec = t.second;
    tm.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&tm)) +
           std::chrono::milliseconds(t.millisecond);
}

} // namespace wicker
