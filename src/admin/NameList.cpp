#include "admin/NameList.h"

#include "common/Text.h"

#include <algorithm>

namespace wicker {

std::optional<std::string> NameToAdd(std::string_view typed,
                                     const std::vector<std::string>& present) {
    if (typed.empty()) {
        return std::nullopt;
    }
    std::string name = UCase(typed);
    if (std::find(present.begin(), present.end(), name) != present.end()) {
        return std::nullopt;
    }
    return name;
}

} // namespace wicker
