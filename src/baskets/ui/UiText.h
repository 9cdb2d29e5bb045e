#pragma once

#include <string>

#include <QString>

namespace wicker {

/// Text crosses between the logic (UTF-8 std::string) and the widgets (QString) here.
inline QString ToQ(const std::string& s) {
    return QString::fromStdString(s);
}
inline std::string ToStd(const QString& s) {
    return s.toStdString();
}

} // namespace wicker
