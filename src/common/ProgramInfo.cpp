#include "common/ProgramInfo.h"

#include <utility>

namespace wicker {
namespace {

std::string Compiler() {
#if defined(__clang__)
    return std::string("Clang ") + __clang_version__;
#elif defined(__GNUC__)
    return std::string("GCC ") + __VERSION__;
#else
    return "an unknown compiler";
#endif
}

} // namespace

std::string BuildDescription() {
    std::string text = Compiler();
#ifdef NDEBUG
    text += ", optimised";
#else
    text += ", debug";
#endif
#if defined(__SANITIZE_ADDRESS__)
    text += ", address sanitizer";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    text += ", address sanitizer";
#endif
#endif
    return text;
}

std::string SystemInformationText(const ProgramFacts& facts) {
    const std::pair<const char*, const std::string*> lines[] = {
        {"Program", nullptr},
        {"Version", &facts.version},
        {"Build", &facts.build},
        {"Data folder", &facts.dataFolder},
        {"Platform", &facts.platform},
        {"Platform details", &facts.platformDetails},
        {"Operating system", &facts.os},
        {"Qt", &facts.qtVersion},
        {"SQLite", &facts.sqliteVersion},
    };
    std::string text;
    for (const auto& [label, value] : lines) {
        text += label;
        text += ": ";
        if (value == nullptr) {
            text += "Wicker";
        } else {
            text += value->empty() ? "(not known)" : *value;
        }
        text += "\r\n";
    }
    return text;
}

const std::vector<LibraryLicence>& Licences() {
    static const std::vector<LibraryLicence> libraries = {
        {"Qt 6", "GNU Lesser General Public License v3 (LGPL-3.0); linked dynamically."},
        {"SQLite", "Public domain."},
        {"QuickFIX", "The QuickFIX Software License, version 1.0 (BSD-style); used for FIX "
                     "connections."},
    };
    return libraries;
}

} // namespace wicker
