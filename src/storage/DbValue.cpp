#include "storage/DbValue.h"

#include "common/Conversions.h"

namespace wicker {

std::string DbValue::text() const {
    if (const auto* i = std::get_if<int64_t>(&m_v)) {
        return std::to_string(*i);
    }
    if (const auto* d = std::get_if<double>(&m_v)) {
        return NumberText(*d);
    }
    if (const auto* s = std::get_if<std::string>(&m_v)) {
        return *s;
    }
    return {};
}

double DbValue::toDouble() const {
    if (const auto* i = std::get_if<int64_t>(&m_v)) {
        return static_cast<double>(*i);
    }
    if (const auto* d = std::get_if<double>(&m_v)) {
        return *d;
    }
    if (const auto* s = std::get_if<std::string>(&m_v)) {
        return CDbl(*s);
    }
    return 0.0;
}

int32_t DbValue::toLong() const {
    return CLng(toDouble());
}
int16_t DbValue::toInt() const {
    return CInt(toDouble());
}

} // namespace wicker
